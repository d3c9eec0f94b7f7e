#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "Machines/Desk/Hardware/DisplaysState.h"
#include "Machines/Desk/State/StoredState.h"

namespace brivane {

/// The displays that are plugged in, in the window system's order. Any thread.
class AttachedDisplays {
 public:
  /// The displays at one moment, whatever happens to them while somebody walks through them.
  class Snapshot {
   public:
    explicit Snapshot(std::vector<DisplayDescription> displays)
        : list(std::make_shared<const std::vector<DisplayDescription>>(std::move(displays))) {}

    auto begin() const { return list->begin(); }
    auto end() const { return list->end(); }
    std::size_t size() const { return list->size(); }
    /// The display shares the snapshot's life.
    std::shared_ptr<const DisplayDescription> share(const DisplayDescription& display) const {
      return {list, &display};
    }

   private:
    std::shared_ptr<const std::vector<DisplayDescription>> list;
  };

  /// `folder` holds the state shared with other processes; null: the state is in memory.
  AttachedDisplays(const std::vector<DisplayDescription>& displays, StateFolder* folder);

  Snapshot all() const;
  /// Null for displays that are not plugged in.
  std::shared_ptr<const DisplayDescription> find(DisplayID display) const;
  /// The same, by the window system's number.
  std::shared_ptr<const DisplayDescription> findNumbered(DisplayID number) const;
  /// The identifier of the display that has the number in the window system. When none is plugged
  /// in, the number, or 0 if that is the identifier of another display.
  DisplayID identifierOf(DisplayID number) const;

  /// False for displays that are not plugged in; so does `change`.
  bool unplug(DisplayID display);
  /// Restores the display as it was unplugged, in its old place, but with another number in the
  /// window system if there is one; false when it is not unplugged, or another display has the
  /// number.
  bool plug(DisplayID display, std::optional<DisplayID> number = std::nullopt);
  /// Changes what the registry has of a display, plugged in or not.
  bool setRegistryEntries(DisplayID display, RegistryEntries entries);
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
