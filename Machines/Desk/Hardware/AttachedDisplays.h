#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "Machines/Desk/Hardware/DisplaysState.h"
#include "Machines/Desk/State/StoredState.h"

namespace brivane {

/// The displays that are plugged in, in the window system's order. Any thread: readers get an
/// immutable snapshot.
class AttachedDisplays {
 public:
  using Snapshot = std::shared_ptr<const std::vector<DisplayDescription>>;

  /// `folder` holds the state shared with other processes; null: the state is in memory.
  AttachedDisplays(const std::vector<DisplayDescription>& displays, StateFolder* folder);

  Snapshot all() const;
  /// Null for displays that are not plugged in.
  std::shared_ptr<const DisplayDescription> find(DisplayID display) const;

  /// False for displays that are not plugged in; so does `change`.
  bool unplug(DisplayID display);
  /// Restores the display as it was unplugged, in its old place; false when it is not unplugged.
  bool plug(DisplayID display);
  bool change(DisplayID display, const std::function<void(AttachedDisplay&)>& operation);
  /// False unless both are plugged in.
  bool swapPorts(DisplayID one, DisplayID other);

 private:
  bool update(const std::function<bool(DisplaysState&)>& operation);
  void showState() const;

  mutable std::mutex mutex;
  /// The unchangeable part of every display.
  std::map<DisplayID, DisplayDescription> descriptions;
  mutable StoredState<DisplaysState> state;
  mutable Snapshot current;
};

}  // namespace brivane
