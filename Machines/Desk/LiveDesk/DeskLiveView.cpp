// The map is kept while all displays fit, so that moving a window doesn't resize all others. It is
// computed again when another arrangement no longer fits.
#include "Machines/Desk/LiveDesk/DeskLiveView.h"

#include <utility>

#include "Machines/Desk/LiveDesk/DeskControls.h"

namespace brivane {
namespace {

/// The distance at which a moved window snaps to another, in points of the real screen.
constexpr double snappingReach = 10;

BrightnessKey asBrightnessKey(LiveBrightnessKey key) {
  return key == LiveBrightnessKey::up ? BrightnessKey::up : BrightnessKey::down;
}

std::vector<Rect> valuesOf(const std::map<DisplayID, Rect>& frames) {
  std::vector<Rect> values;
  values.reserve(frames.size());
  for (const auto& [display, frame] : frames) values.push_back(frame);
  return values;
}

std::vector<Rect> framesExcept(const AttachedDisplays::Snapshot& displays, DisplayID exception) {
  std::vector<Rect> frames;
  for (const auto& display : displays) {
    if (display.identifier != exception) frames.push_back(display.frame);
  }
  return frames;
}

}  // namespace

DeskLiveView::DeskLiveView(DeskMachine& deskMachine)
    : machine(deskMachine), hardware(deskMachine.hardware()) {
  machine.keyboard().onUnclaimedKey = [this](const UnclaimedKey&) { isKeyUnclaimed = true; };
  if (const auto& folder = hardware.folder) {
    watch = std::make_unique<FolderWatch>(folder->path, "", machine.runtime(),
                                          [this] { changes.announce(); });
  }
  // Announced changes are shown on a desk without a folder, too.
  notices = hardware.events.observe<HardwareNotice>([this](HardwareNotice) { announceSoon(); });
}

DeskLiveView::~DeskLiveView() {
  anchor.kill();
  machine.keyboard().onUnclaimedKey = nullptr;
}

/// As a task: the caller that made the change may not be finished.
void DeskLiveView::announceSoon() {
  if (std::exchange(isAnnouncedSoon, true)) return;
  machine.runtime().async([this, alive = anchor.watch()] {
    if (!alive.isAlive()) return;
    isAnnouncedSoon = false;
    changes.announce();
  });
}

Observation DeskLiveView::observe(Task handler) {
  return changes.observe(std::move(handler));
}

void DeskLiveView::setRoom(const LiveRoom& newRoom) {
  if (room == newRoom) return;
  room = newRoom;
  map.reset();
}

std::map<DisplayID, Rect> DeskLiveView::framesNow() const {
  auto now = frames;
  for (const auto& display : hardware.displays.all()) now[display.identifier] = display.frame;
  return now;
}

const DeskMap& DeskLiveView::layOut() {
  auto now = framesNow();
  const bool isSame = now == frames;
  frames = std::move(now);
  if (map && (isSame || map->fits(valuesOf(frames)))) return *map;
  return map.emplace(DeskMap::fitting(valuesOf(frames), room.value_or(LiveRoom{})));
}

std::vector<LiveMonitor> DeskLiveView::monitors() {
  const DeskMap& now = layOut();
  std::vector<LiveMonitor> all;
  for (const auto& display : hardware.displays.all()) {
    all.push_back({display.identifier, now.window(display.frame),
                   monitorControls(hardware, display.identifier, machine.runtime())});
  }
  return all;
}

LiveControls DeskLiveView::machineControls() {
  return brivane::machineControls(hardware, machine.runtime());
}

std::shared_ptr<const LivePicture> DeskLiveView::picture(DisplayID display, std::uint32_t width,
                                                         std::uint32_t height) {
  const auto light = panelLight(hardware, display);
  if (!light) {
    shown.erase(display);
    return nullptr;
  }
  GammaTable table = hardware.gamma.table(display).value_or(GammaTable{});
  Shown& now = shown[display];
  const bool hasSize = now.signals.width == width && now.signals.height == height;
  if (now.picture && hasSize && now.light == *light && now.table == table) return now.picture;
  if (!hasSize) now.signals = testPicture(width, height);
  now.light = *light;
  now.table = std::move(table);
  now.picture = std::make_shared<const LivePicture>(
      LivePicture{width, height, PanelResponse(now.light, now.table).shown(now.signals)});
  return now.picture;
}

std::optional<LiveSpot> DeskLiveView::spotAt(Point point) {
  for (const auto& display : hardware.displays.all()) {
    const Rect& frame = display.frame;
    if (!mouseInRect(point, frame)) continue;
    return LiveSpot{display.identifier, (point.x - frame.x) / frame.width,
                    (frame.y + frame.height - point.y) / frame.height};
  }
  return std::nullopt;
}

void DeskLiveView::windowMoved(DisplayID display, int x, int y) {
  const auto moved = hardware.displays.find(display);
  if (!moved || !map) return;
  const LivePlace place = map->window(moved->frame);
  if (place.x == x && place.y == y) return;
  const auto others = framesExcept(hardware.displays.all(), display);
  const Rect frame =
      snapped(map->movedFrame(moved->frame, x, y), others, snappingReach / map->pointsPerPoint());
  // Stored before the change is announced.
  frames[display] = frame;
  hardware.changes.setFrame(display, frame);
}

void DeskLiveView::unplug(DisplayID display) {
  hardware.changes.unplug(display);
}

void DeskLiveView::movePointer(const LiveSpot& spot) {
  const auto display = hardware.displays.find(spot.display);
  if (!display) return;
  const Point point = pointIn(display->frame, spot.x, spot.y);
  if (hardware.system.pointer() != point) hardware.system.movePointer(point);
}

bool DeskLiveView::pressKey(std::uint16_t keyCode) {
  isKeyUnclaimed = false;
  machine.keyboard().pressKey(keyCode);
  return isKeyUnclaimed || modifierOfKey(keyCode) != 0 || !usageOfKey(keyCode);
}

void DeskLiveView::releaseKey(std::uint16_t keyCode) {
  machine.keyboard().releaseKey(keyCode);
}

void DeskLiveView::pressBrightness(LiveBrightnessKey key) {
  machine.keyboard().pressBrightness(asBrightnessKey(key));
}

void DeskLiveView::releaseBrightness(LiveBrightnessKey key) {
  machine.keyboard().releaseBrightness(asBrightnessKey(key));
}

std::optional<std::filesystem::path> DeskLiveView::pictureFile() {
  if (!hardware.folder) return std::nullopt;
  auto path = hardware.folder->path;
  // "my-desk.json.state" lies beside "my-desk.json". No other extension is removed, so that the
  // picture can't replace the desk file.
  path.replace_extension();
  if (path.extension() == ".json") path.replace_extension();
  return path += ".png";
}

}  // namespace brivane
