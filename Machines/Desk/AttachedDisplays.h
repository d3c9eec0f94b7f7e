#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "Machines/Desk/DeskDescription.h"

namespace brivane {

/// The displays that are plugged in, in the window system's order. Any thread: whoever asks gets a
/// picture of one moment, which later changes leave as it is.
class AttachedDisplays {
 public:
  using Snapshot = std::shared_ptr<const std::vector<DisplayDescription>>;

  explicit AttachedDisplays(std::vector<DisplayDescription> displays);

  Snapshot all() const;
  /// Null for displays that are not plugged in.
  std::shared_ptr<const DisplayDescription> find(DisplayID display) const;

  /// Behind all others; false when there is one of that identifier.
  bool plug(DisplayDescription display);
  /// False for displays that are not plugged in; the same for `change`.
  bool unplug(DisplayID display);
  /// As it was when it was unplugged, in its old place; false when it never was.
  bool replug(DisplayID display);
  bool change(DisplayID display, const std::function<void(DisplayDescription&)>& operation);
  /// False unless both are plugged in.
  bool swapPorts(DisplayID one, DisplayID other);

 private:
  struct Unplugged {
    DisplayDescription description;
    std::size_t place = 0;
  };

  bool update(const std::function<bool(std::vector<DisplayDescription>&)>& operation);

  mutable std::mutex mutex;
  Snapshot current;
  std::map<DisplayID, Unplugged> unplugged;
};

}  // namespace brivane
