#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "BrivaneCore/Seams/DisplaySystem.h"
#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Support/Geometry.h"
#include "BrivaneCore/Support/Observation.h"
#include "Machines/Common/Frame/LiveControls.h"

// A simulated machine with a window on a real screen for each monitor: what a toolkit shows, and
// the user's input.

namespace brivane {

/// A rectangle on the real screen, in points, origin at the upper left, y downwards.
struct LivePlace {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  bool operator==(const LivePlace&) const = default;
};

/// The area for the monitors' windows.
struct LiveRoom {
  LivePlace area;
  /// The smallest window, at any scale.
  int smallestWidth = 1;
  int smallestHeight = 1;

  bool operator==(const LiveRoom&) const = default;
};

struct LiveMonitor {
  DisplayID display = 0;
  /// The window's place.
  LivePlace place;
  LiveControls controls;
};

/// A point on a monitor, as fractions of its width from the left and of its height from the top.
struct LiveSpot {
  DisplayID display = 0;
  double x = 0;
  double y = 0;
};

struct LivePicture {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  /// 0xFFRRGGBB, rows from the top.
  std::vector<std::uint32_t> pixels;
};

enum class LiveBrightnessKey { up, down };

/// Main thread.
class LiveDesk {
 public:
  virtual ~LiveDesk() = default;

  /// The handler is called when any value of this interface may have changed.
  virtual Observation observe(Task handler) = 0;

  /// Call it before the first `monitors()`, and whenever the room changes.
  virtual void setRoom(const LiveRoom& room) = 0;
  virtual std::vector<LiveMonitor> monitors() = 0;
  /// The controls of the machine itself.
  virtual LiveControls machineControls() = 0;
  /// The monitor's picture in pixels of the given size; the same object while it is unchanged. Null
  /// for monitors that are not plugged in.
  virtual std::shared_ptr<const LivePicture> picture(DisplayID display, std::uint32_t width,
                                                     std::uint32_t height) = 0;
  /// The monitor and spot at a point of the machine's screens; nothing when no screen has the
  /// point.
  virtual std::optional<LiveSpot> spotAt(Point point) = 0;

  /// The user has moved the window's upper left corner to this place of the real screen.
  virtual void windowMoved(DisplayID display, int x, int y) = 0;
  virtual void unplug(DisplayID display) = 0;
  virtual void movePointer(const LiveSpot& spot) = 0;

  /// Keys, by virtual key codes. False: the machine has consumed the press; no window may get it.
  virtual bool pressKey(std::uint16_t keyCode) = 0;
  virtual void releaseKey(std::uint16_t keyCode) = 0;
  virtual void pressBrightness(LiveBrightnessKey key) = 0;
  virtual void releaseBrightness(LiveBrightnessKey key) = 0;

  /// The file for a picture of all windows when there is no screen.
  virtual std::optional<std::filesystem::path> pictureFile() = 0;
};

}  // namespace brivane
