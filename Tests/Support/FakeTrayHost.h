#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "Tests/Support/PrivateBus.h"

namespace brivane {

/// A desktop's place for status items: StatusNotifierWatcher and host in one. It is there as long
/// as this object is.
class FakeTrayHost {
 public:
  using Clock = std::chrono::steady_clock;

  explicit FakeTrayHost(const std::string& sessionBusAddress);

  /// The bus names of the items that have registered, those that are gone since included.
  std::vector<std::string> items();
  /// When the last item since the last call registered; nothing when none does for ten seconds.
  std::optional<Clock::time_point> awaitItem();
  bool isThere(const std::string& item) { return peer.isOnBus(item); }

  /// A text or a state of the item, such as "Title"; empty when it doesn't say.
  std::string property(const std::string& item, const char* name);
  /// The sides in pixels of the pictures that it offers of itself.
  std::vector<int> pictureSides(const std::string& item);

  /// A click that the item is told of: "Activate", "SecondaryActivate" or "ContextMenu".
  void click(const std::string& item, const char* kind = "Activate");

  /// For the bus's callbacks.
  void noteItem(const char* name);
  std::vector<std::string> registered;

 private:
  std::optional<Clock::time_point> itemTime;
  BusPeer peer;
};

}  // namespace brivane
