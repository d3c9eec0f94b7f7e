#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "Machines/Desk/Hardware/DisplaysState.h"
#include "Machines/Desk/State/StoredState.h"

namespace brivane {

/// The displays that are plugged in, in the window system's order. Any thread: whoever asks gets a
/// picture of one moment, which later changes leave as it is.
class AttachedDisplays {
 public:
  using Snapshot = std::shared_ptr<const std::vector<DisplayDescription>>;

  /// `folder` is where processes share what changes; null: it changes in this object alone.
  AttachedDisplays(const std::vector<DisplayDescription>& displays, StateFolder* folder);

  Snapshot all() const;
  /// Null for displays that are not plugged in.
  std::shared_ptr<const DisplayDescription> find(DisplayID display) const;

  /// Behind all others; false when there is one of that identifier. Other processes don't see a
  /// display that is not in the desk file.
  bool plug(const DisplayDescription& display);
  /// False for displays that are not plugged in; the same for `change`.
  bool unplug(DisplayID display);
  /// As it was when it was unplugged, in its old place; false when it never was.
  bool replug(DisplayID display);
  bool change(DisplayID display, const std::function<void(AttachedDisplay&)>& operation);
  /// False unless both are plugged in.
  bool swapPorts(DisplayID one, DisplayID other);

 private:
  bool update(const std::function<bool(DisplaysState&)>& operation);
  void showState() const;

  mutable std::mutex mutex;
  /// What can't change about all displays that ever were.
  std::map<DisplayID, DisplayDescription> descriptions;
  mutable StoredState<DisplaysState> state;
  mutable Snapshot current;
};

}  // namespace brivane
