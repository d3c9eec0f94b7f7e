#pragma once

namespace brivane {

/// Whether brightness keys act on the built-in panel, or are left to the operating system there.
/// Main thread.
class BuiltInPanelDriving {
 public:
  virtual ~BuiltInPanelDriving() = default;

  virtual void setDrivesBuiltInPanel(bool drives) = 0;
};

}  // namespace brivane
