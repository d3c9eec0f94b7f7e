#include "BrivaneApp/HUDAnnouncer.h"

#include <algorithm>
#include <utility>

#include "BrivaneUI/Strings.h"

namespace brivane {
namespace {

constexpr Microseconds quietTime = std::chrono::milliseconds(500);

HUDModel::State withoutCountdown(HUDModel::State state) {
  if (auto* const connecting = std::get_if<HUDModel::Connecting>(&state)) {
    connecting->secondsUntilRetry.reset();
  }
  return state;
}

}  // namespace

HUDAnnouncer::HUDAnnouncer(Runtime& machineRuntime, DisplaySystem& machineDisplays,
                           const StringCatalogue& hudStrings)
    : runtime(machineRuntime), displays(machineDisplays), strings(hudStrings) {}

HUDAnnouncer::~HUDAnnouncer() {
  hudHides();
}

void HUDAnnouncer::hudShows(const HUDModel::State& state, DisplayID displayID, HUDWindow& window) {
  const Shown now{withoutCountdown(state), displayID};
  if (shown == now) return;
  shown = now;
  runtime.cancel(timer);
  timer = runtime.after(quietTime, [this, now, &window] {
    if (const auto said = textOf(now)) window.announce(*said);
  });
}

void HUDAnnouncer::hudHides() {
  shown.reset();
  runtime.cancel(std::exchange(timer, 0));
}

/// Nothing for the level of a display that has gone meanwhile.
std::optional<std::string> HUDAnnouncer::textOf(const Shown& now) const {
  if (const auto* const connecting = std::get_if<HUDModel::Connecting>(&now.state)) {
    return strings.format(strings::hudAnnouncementConnecting, {connecting->displayName});
  }
  const auto screens = displays.screens();
  const auto found = std::ranges::find(screens, now.displayID, &Screen::number);
  if (found == screens.end()) return std::nullopt;
  const auto percent = std::to_string(std::get<HUDModel::Level>(now.state).percent);
  return strings.format(strings::hudAnnouncementLevel, {found->localizedName, percent});
}

}  // namespace brivane
