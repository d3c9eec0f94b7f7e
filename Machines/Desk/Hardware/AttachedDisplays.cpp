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

bool AttachedDisplays::plug(DisplayID display) {
  return update([&](DisplaysState& displays) {
    const auto found = place(displays.unplugged, display);
    if (found == displays.unplugged.end()) return false;
    const auto index = std::min(found->place, displays.attached.size());
    displays.attached.insert(displays.attached.begin() + static_cast<std::ptrdiff_t>(index),
                             std::move(found->display));
    displays.unplugged.erase(found);
    return true;
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
