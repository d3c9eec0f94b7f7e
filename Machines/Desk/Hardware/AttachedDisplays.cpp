#include "Machines/Desk/Hardware/AttachedDisplays.h"

#include <algorithm>

namespace brivane {
namespace {

auto place(std::vector<AttachedDisplay>& displays, DisplayID display) {
  return std::ranges::find(displays, display, &AttachedDisplay::identifier);
}

auto place(std::vector<UnpluggedDisplay>& displays, DisplayID display) {
  return std::ranges::find(displays, display, [](const UnpluggedDisplay& unplugged) {
    return unplugged.display.identifier;
  });
}

/// Whether a display has the number in the window system, or will have it when it comes back.
bool hasNumber(const DisplaysState& displays, DisplayID number) {
  return std::ranges::find(displays.attached, number, &AttachedDisplay::number) !=
             displays.attached.end() ||
         std::ranges::any_of(displays.unplugged, [&](const UnpluggedDisplay& unplugged) {
           return unplugged.display.number == number;
         });
}

/// Over everything changeable that the desk file describes.
SectionFingerprint fingerprint(const DisplaysState& initial) {
  return jsonFingerprint(toJson(initial));
}

}  // namespace

AttachedDisplays::AttachedDisplays(const std::vector<DisplayDescription>& displays,
                                   StateFolder* folder)
    : state(initialDisplays(displays), folder, "displays", fingerprint(initialDisplays(displays))),
      current(displays) {
  for (const auto& display : displays) descriptions.emplace(display.identifier, display);
}

AttachedDisplays::Snapshot AttachedDisplays::all() const {
  const std::lock_guard lock(mutex);
  if (state.isOutdated()) showState();
  return current;
}

std::shared_ptr<const DisplayDescription> AttachedDisplays::find(DisplayID display) const {
  const auto snapshot = all();
  const auto found = std::ranges::find(snapshot, display, &DisplayDescription::identifier);
  return found == snapshot.end() ? nullptr : snapshot.share(*found);
}

std::shared_ptr<const DisplayDescription> AttachedDisplays::findNumbered(DisplayID number) const {
  const auto snapshot = all();
  const auto found = std::ranges::find(snapshot, number, &DisplayDescription::number);
  return found == snapshot.end() ? nullptr : snapshot.share(*found);
}

DisplayID AttachedDisplays::identifierOf(DisplayID number) const {
  if (const auto found = findNumbered(number)) return found->identifier;
  return find(number) ? 0 : number;
}

void AttachedDisplays::showState() const {
  std::vector<DisplayDescription> shown;
  for (const auto& attached : state.read().attached) {
    const auto found = descriptions.find(attached.identifier);
    if (found == descriptions.end()) continue;
    auto& display = shown.emplace_back(found->second);
    display.frame = attached.frame;
    display.port = attached.port;
    display.screen = attached.screen;
    display.headroom = attached.headroom;
    display.number = attached.number;
    display.registry.entries = attached.entries;
  }
  current = Snapshot(std::move(shown));
}

bool AttachedDisplays::update(const std::function<bool(DisplaysState&)>& operation) {
  const std::lock_guard lock(mutex);
  const bool happened = state.update(operation);
  showState();
  return happened;
}

bool AttachedDisplays::unplug(DisplayID display) {
  return update([&](DisplaysState& displays) {
    const auto found = place(displays.attached, display);
    if (found == displays.attached.end()) return false;
    const auto index = static_cast<std::size_t>(found - displays.attached.begin());
    displays.unplugged.push_back({std::move(*found), index});
    displays.attached.erase(found);
    return true;
  });
}

bool AttachedDisplays::plug(DisplayID display, std::optional<DisplayID> number) {
  return update([&](DisplaysState& displays) {
    const auto found = place(displays.unplugged, display);
    if (found == displays.unplugged.end()) return false;
    if (number && hasNumber(displays, *number)) return false;
    found->display.number = number.value_or(found->display.number);
    const auto index = std::min(found->place, displays.attached.size());
    displays.attached.insert(displays.attached.begin() + static_cast<std::ptrdiff_t>(index),
                             std::move(found->display));
    displays.unplugged.erase(found);
    return true;
  });
}

bool AttachedDisplays::setRegistryEntries(DisplayID display, RegistryEntries entries) {
  return update([&](DisplaysState& displays) {
    const auto attached = place(displays.attached, display);
    const auto unplugged = place(displays.unplugged, display);
    if (attached != displays.attached.end()) attached->entries = entries;
    if (unplugged != displays.unplugged.end()) unplugged->display.entries = entries;
    return attached != displays.attached.end() || unplugged != displays.unplugged.end();
  });
}

bool AttachedDisplays::change(DisplayID display,
                              const std::function<void(AttachedDisplay&)>& operation) {
  return update([&](DisplaysState& displays) {
    const auto found = place(displays.attached, display);
    if (found == displays.attached.end()) return false;
    operation(*found);
    return true;
  });
}

bool AttachedDisplays::swapPorts(DisplayID one, DisplayID other) {
  return update([&](DisplaysState& displays) {
    const auto first = place(displays.attached, one);
    const auto second = place(displays.attached, other);
    if (first == displays.attached.end() || second == displays.attached.end()) return false;
    std::swap(first->port, second->port);
    return true;
  });
}

}  // namespace brivane
