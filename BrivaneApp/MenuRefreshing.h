#pragma once

namespace brivane {

/// Updates the status item's menu after a change of its content. Main thread.
class MenuRefreshing {
 public:
  virtual ~MenuRefreshing() = default;

  virtual void refresh() = 0;
};

}  // namespace brivane
