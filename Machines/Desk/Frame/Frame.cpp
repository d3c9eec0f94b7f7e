#include "Machines/Desk/Frame/Frame.h"

#include <utility>

namespace brivane {
namespace {

/// A part of the frame that clears `slot` when the program destroys the part.
template <typename Part>
class Kept : public Part {
 public:
  template <typename... Arguments>
  explicit Kept(Part*& frameSlot, Arguments&&... arguments)
      : Part(std::forward<Arguments>(arguments)...), slot(frameSlot) {
    slot = this;
  }
  ~Kept() override {
    if (slot == this) slot = nullptr;
  }
  Kept(const Kept&) = delete;
  Kept& operator=(const Kept&) = delete;

 private:
  Part*& slot;
};

Trace orNobody(const Trace& trace) {
  return trace ? trace : [](const std::string&) {};
}

Appearance appearanceOf(DeskHardware& hardware) {
  return hardware.system.appearance() == DeskAppearance::dark ? Appearance::dark
                                                              : Appearance::light;
}

}  // namespace

DeskFrame::DeskFrame(Runtime& frameRuntime, DeskHardware& deskHardware, const Trace& frameTrace)
    : runtime(frameRuntime),
      trace(orNobody(frameTrace)),
      ownApplication(frameRuntime, appearanceOf(deskHardware), trace),
      hardwareNotices(
          deskHardware.events.observe<HardwareNotice>([this, &deskHardware](HardwareNotice notice) {
            if (notice == HardwareNotice::appearance) {
              ownApplication.changeAppearance(appearanceOf(deskHardware));
            }
          })) {}

std::unique_ptr<StatusItem> DeskFrame::makeStatusItem() {
  return std::make_unique<Kept<DeskStatusItem>>(ownStatusItem, trace);
}

std::unique_ptr<HUDWindow> DeskFrame::makeHUDWindow(const HUDWindowAttributes& attributes) {
  return std::make_unique<Kept<DeskHUDWindow>>(ownHUDWindow, attributes, runtime, trace);
}

std::unique_ptr<EditorWindow> DeskFrame::makeEditorWindow(
    const EditorWindowAttributes& attributes) {
  return std::make_unique<Kept<DeskEditorWindow>>(ownEditorWindow, attributes, runtime,
                                                  ownApplication, trace);
}

}  // namespace brivane
