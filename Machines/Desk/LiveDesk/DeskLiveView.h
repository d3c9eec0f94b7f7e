#pragma once

#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "BrivaneCore/Support/LivenessAnchor.h"
#include "Machines/Common/Frame/LiveDesk.h"
#include "Machines/Common/Topic.h"
#include "Machines/Desk/LiveDesk/DeskMap.h"
#include "Machines/Desk/LiveDesk/PanelResponse.h"
#include "Machines/Desk/Machine/Machine.h"
#include "Machines/Desk/State/FolderWatch.h"

namespace brivane {

/// The values behind a desk's windows. Main thread; destroy it before the machine.
class DeskLiveView : public LiveDesk {
 public:
  explicit DeskLiveView(DeskMachine& deskMachine);
  ~DeskLiveView() override;
  DeskLiveView(const DeskLiveView&) = delete;
  DeskLiveView& operator=(const DeskLiveView&) = delete;

  Observation observe(Task handler) override;
  void setRoom(const LiveRoom& newRoom) override;
  std::vector<LiveMonitor> monitors() override;
  LiveControls machineControls() override;
  std::shared_ptr<const LivePicture> picture(DisplayID display, std::uint32_t width,
                                             std::uint32_t height) override;
  std::optional<LiveSpot> spotAt(Point point) override;
  void windowMoved(DisplayID display, int x, int y) override;
  void unplug(DisplayID display) override;
  void movePointer(const LiveSpot& spot) override;
  bool pressKey(std::uint16_t keyCode) override;
  void releaseKey(std::uint16_t keyCode) override;
  void pressBrightness(LiveBrightnessKey key) override;
  void releaseBrightness(LiveBrightnessKey key) override;
  std::optional<std::filesystem::path> pictureFile() override;

 private:
  struct Shown {
    PanelLight light;
    GammaTable table;
    SignalPicture signals;
    std::shared_ptr<const LivePicture> picture;
  };

  void announceSoon();
  const DeskMap& layOut();
  std::map<DisplayID, Rect> framesNow() const;

  DeskMachine& machine;
  DeskHardware& hardware;
  Topic changes;
  std::optional<LiveRoom> room;
  std::optional<DeskMap> map;
  /// The last place of each display, unplugged ones too.
  std::map<DisplayID, Rect> frames;
  std::map<DisplayID, Shown> shown;
  bool isKeyUnclaimed = false;
  bool isAnnouncedSoon = false;
  Observation notices;
  std::unique_ptr<FolderWatch> watch;
  LivenessAnchor anchor;
};

}  // namespace brivane
