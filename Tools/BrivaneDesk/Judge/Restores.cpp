#include "Tools/BrivaneDesk/Judge/Restores.h"

namespace brivane::judge {
namespace {

/// After a wake or a change the program waits for monitors that answer late, almost to 180 s.
constexpr Microseconds patience{150'000'000};

}  // namespace

Restores::Restores(const KnownDesk& knownDesk, std::vector<Breach>& allBreaches,
                   const RestoreTimes& restoreTimes)
    : Checker(knownDesk, allBreaches, "stored levels are restored"), restores(restoreTimes) {}

void Restores::see(const TraceEvent& event) {
  if (event.as<ProgramStarted>() != nullptr) {
    forget(event.time);
  } else if (event.as<NoticeDelivered>() != nullptr) {
    if (restores.forgotAt() == event.time) forget(event.time);
  } else if (const auto* const set = event.as<BusSet>()) {
    if (!set->isAccepted) return;
    for (const auto display : desk.displaysOf(set->display)) {
      setAt[desk.find(display)->identity] = event.time;
    }
  } else if (const auto* const read = event.as<BusRead>()) {
    if (read->luminance) answeredAt.try_emplace(read->display, event.time);
  } else if (const auto* const moved = event.as<MenuMoved>()) {
    if (!moved->isOpen) look(event.time);
  }
}

void Restores::forget(Microseconds time) {
  forgotAt = time;
  answeredAt.clear();
  stored.clear();
  for (const auto& [identity, level] : desk.levels) stored.insert(identity);
}

void Restores::look(Microseconds time) {
  if (!isQuiet(time, forgotAt)) return;
  for (const auto& [number, display] : desk.displays) {
    if (!mustBeRestored(number, display)) continue;
    const auto set = setAt.find(display.identity);
    if (set == setAt.end() || set->second < forgotAt) {
      breach(time, nameOf(number) + " has not got its level");
    }
  }
}

/// Only a start doesn't wait for monitors that answer late. A monitor that has answered and then
/// refuses to be restored is not waited for.
bool Restores::mustBeRestored(DisplayNumber number, const KnownDisplay& display) const {
  const bool isExternal = !display.described->isBuiltIn && !display.serviceLevel;
  if (!display.isAttached || !isExternal || !stored.contains(display.identity)) return false;
  const auto bus = desk.answeringBusOf(number);
  if (!bus) return false;
  const Microseconds changedAt = desk.displays.at(*bus).changedAt;
  const auto answered = answeredAt.find(*bus);
  const bool isLost = answered != answeredAt.end() && answered->second < changedAt;
  const bool isStart = !restores.forgotAt();
  return !isLost && changedAt < (isStart ? desk.startedAt : forgotAt + patience);
}

}  // namespace brivane::judge
