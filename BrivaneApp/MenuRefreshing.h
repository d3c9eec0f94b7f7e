#pragma once

namespace brivane {

/// What has to be done to the status item's menu when something that it shows has changed. Main
/// thread.
class MenuRefreshing {
 public:
  virtual ~MenuRefreshing() = default;

  virtual void refresh() = 0;
};

}  // namespace brivane
