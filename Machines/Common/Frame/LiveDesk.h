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

// A simulated machine that people see and touch: each monitor is a window on a real screen. What a
// toolkit needs to show it, and what happens at its windows.

namespace brivane {

/// On the real screen: points, from its upper left, y downwards.
struct LivePlace {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  bool operator==(const LivePlace&) const = default;
};

/// Where the monitors' windows can be.
struct LiveRoom {
  LivePlace area;
  /// Of a window, whatever the scale.
  int smallestWidth = 1;
  int smallestHeight = 1;

  bool operator==(const LiveRoom&) const = default;
};

/// A monitor that is plugged in.
struct LiveMonitor {
  DisplayID display = 0;
  /// Its window's.
  LivePlace place;
  LiveControls controls;
};

/// A place on a monitor, in parts of its width from the left and of its height from the top.
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

/// The machine as its windows see it. Main thread.
class LiveDesk {
 public:
  virtual ~LiveDesk() = default;

  /// The handler is called when anything that is told here may have changed.
  virtual Observation observe(Task handler) = 0;

  /// For the first `monitors()`, and whenever the room changes.
  virtual void setRoom(const LiveRoom& room) = 0;
  virtual std::vector<LiveMonitor> monitors() = 0;
  /// What can be done at the machine itself.
  virtual LiveControls machineControls() = 0;
  /// What the monitor shows, in that many pixels; the same picture again as long as it shows the
  /// same. Null for monitors that are not plugged in.
  virtual std::shared_ptr<const LivePicture> picture(DisplayID display, std::uint32_t width,
                                                     std::uint32_t height) = 0;
  /// Where that point of the machine's screens is; nothing when it is on none.
  virtual std::optional<LiveSpot> spotAt(Point point) = 0;

  /// The window was moved by a person, its upper left to this place of the real screen.
  virtual void windowMoved(DisplayID display, int x, int y) = 0;
  virtual void unplug(DisplayID display) = 0;
  virtual void movePointer(const LiveSpot& spot) = 0;

  /// Keys, by virtual key codes. False: the machine has taken the press, and no window shall hear
  /// of it.
  virtual bool pressKey(std::uint16_t keyCode) = 0;
  virtual void releaseKey(std::uint16_t keyCode) = 0;
  virtual void pressBrightness(LiveBrightnessKey key) = 0;
  virtual void releaseBrightness(LiveBrightnessKey key) = 0;

  /// The file for a picture of all windows where no screen shows them.
  virtual std::optional<std::filesystem::path> pictureFile() = 0;
};

}  // namespace brivane
