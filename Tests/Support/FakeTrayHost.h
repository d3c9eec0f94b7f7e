#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "Tests/Support/PrivateBus.h"

namespace brivane {

/// A desktop's place for status items: StatusNotifierWatcher and host in one, on the session bus as
/// long as this object lives.
class FakeTrayHost {
 public:
  using Clock = std::chrono::steady_clock;

  explicit FakeTrayHost(const std::string& sessionBusAddress);

  /// The bus names of the items that have registered, including those that have gone since.
  std::vector<std::string> items();
  /// When the last item since the last call registered; nothing when none does for ten seconds.
  std::optional<Clock::time_point> awaitItem();
  bool isThere(const std::string& item) { return peer.isOnBus(item); }

  /// A text or a state of the item, such as "Title"; empty when it has none.
  std::string property(const std::string& item, const char* name);
  /// The sides in pixels of the item's pictures.
  std::vector<int> pictureSides(const std::string& item);

  /// Sends the item a click: "Activate", "SecondaryActivate" or "ContextMenu".
  void click(const std::string& item, const char* kind = "Activate");

  /// For the bus's callbacks.
  void noteItem(const char* name);
  std::vector<std::string> registered;

 private:
  std::optional<Clock::time_point> itemTime;
  BusPeer peer;
};

}  // namespace brivane
