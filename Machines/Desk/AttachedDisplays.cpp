#include "Machines/Desk/AttachedDisplays.h"

#include <algorithm>

namespace brivane {
namespace {

using Displays = std::vector<DisplayDescription>;

auto place(Displays& displays, DisplayID display) {
  return std::ranges::find(displays, display, &DisplayDescription::identifier);
}

}  // namespace

AttachedDisplays::AttachedDisplays(Displays displays)
    : current(std::make_shared<const Displays>(std::move(displays))) {}

AttachedDisplays::Snapshot AttachedDisplays::all() const {
  const std::lock_guard lock(mutex);
  return current;
}

std::shared_ptr<const DisplayDescription> AttachedDisplays::find(DisplayID display) const {
  const auto snapshot = all();
  const auto found = std::ranges::find(*snapshot, display, &DisplayDescription::identifier);
  if (found == snapshot->end()) return nullptr;
  return {snapshot, &*found};
}

bool AttachedDisplays::update(const std::function<bool(Displays&)>& operation) {
  const std::lock_guard lock(mutex);
  auto changed = std::make_shared<Displays>(*current);
  if (!operation(*changed)) return false;
  current = std::move(changed);
  return true;
}

bool AttachedDisplays::plug(DisplayDescription display) {
  return update([&](Displays& displays) {
    if (place(displays, display.identifier) != displays.end()) return false;
    unplugged.erase(display.identifier);
    displays.push_back(std::move(display));
    return true;
  });
}

bool AttachedDisplays::unplug(DisplayID display) {
  return update([&](Displays& displays) {
    const auto found = place(displays, display);
    if (found == displays.end()) return false;
    const auto index = static_cast<std::size_t>(found - displays.begin());
    unplugged.insert_or_assign(display, Unplugged{std::move(*found), index});
    displays.erase(found);
    return true;
  });
}

bool AttachedDisplays::replug(DisplayID display) {
  return update([&](Displays& displays) {
    const auto found = unplugged.find(display);
    if (found == unplugged.end()) return false;
    const auto index = std::min(found->second.place, displays.size());
    displays.insert(displays.begin() + static_cast<std::ptrdiff_t>(index),
                    std::move(found->second.description));
    unplugged.erase(found);
    return true;
  });
}

bool AttachedDisplays::change(DisplayID display,
                              const std::function<void(DisplayDescription&)>& operation) {
  return update([&](Displays& displays) {
    const auto found = place(displays, display);
    if (found == displays.end()) return false;
    operation(*found);
    return true;
  });
}

bool AttachedDisplays::swapPorts(DisplayID one, DisplayID other) {
  return update([&](Displays& displays) {
    const auto first = place(displays, one);
    const auto second = place(displays, other);
    if (first == displays.end() || second == displays.end()) return false;
    std::swap(first->port, second->port);
    return true;
  });
}

}  // namespace brivane
