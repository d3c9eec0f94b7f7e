#include "Machines/Common/Keys/TapStream.h"

#include <algorithm>

namespace brivane {

TapEvent brightnessKeyEvent(bool isUpKey, bool isDown, bool isRepeat) {
  constexpr std::int16_t specialKeySubtype = 8;
  const std::int64_t type = isUpKey ? 2 : 3;
  const std::int64_t state = isDown ? 0x0A : 0x0B;
  const std::int64_t data = type << 16 | state << 8 | (isRepeat ? 1 : 0);
  return {TapEvent::systemDefined, TapEvent::SystemDefined{specialKeySubtype, data, -1}};
}

std::shared_ptr<TapStream::Tap> TapStream::add(EventTaps::Handler handler) {
  auto tap = std::make_shared<Tap>(Tap{std::move(handler)});
  std::erase_if(taps, [](const auto& earlier) { return earlier.expired(); });
  taps.push_back(tap);
  return tap;
}

bool TapStream::hasEnabledTap() {
  return std::ranges::any_of(tapsFromTheHead(), [](const auto& tap) { return tap->isEnabled; });
}

bool TapStream::send(const TapEvent& event) {
  return std::ranges::all_of(tapsFromTheHead(), [&](const auto& tap) {
    return !tap->isEnabled || tap->handler(event) == TapVerdict::passThrough;
  });
}

void TapStream::disableByTimeout() {
  for (const auto& tap : tapsFromTheHead()) {
    if (!tap->isEnabled) continue;
    tap->isEnabled = false;
    tap->handler({TapEvent::disabledByTimeout, std::nullopt});
  }
}

/// Strong references, so that a tap dropped by a handler outlives the delivery.
std::vector<std::shared_ptr<TapStream::Tap>> TapStream::tapsFromTheHead() {
  std::vector<std::shared_ptr<Tap>> living;
  for (const auto& tap : taps) {
    if (auto held = tap.lock()) living.push_back(std::move(held));
  }
  std::ranges::reverse(living);
  return living;
}

}  // namespace brivane
