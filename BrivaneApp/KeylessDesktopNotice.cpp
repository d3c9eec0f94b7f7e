// What is missing is asked for, not the desktop's name: a desktop with the same keys may have a
// tray, and other desktops may have taken the same keys.

#include "BrivaneApp/KeylessDesktopNotice.h"

#include <utility>

#include "BrivaneApp/Strings.h"

namespace brivane {
namespace {

constexpr auto noticeName = "keyless-desktop";

/// At login a panel starts beside this program, on a slow disk many seconds later.
constexpr Microseconds patienceWithTrays = std::chrono::seconds(30);

}  // namespace

KeylessDesktopNotice::KeylessDesktopNotice(ResidentMachine& machine,
                                           const HotkeyManager& hotkeyManager,
                                           const StatusItemController& statusItemController,
                                           const StringCatalogue& stringCatalogue, Task openEditor)
    : hotkeys(hotkeyManager),
      statusItem(statusItemController),
      catalogue(stringCatalogue),
      editHotkeys(std::move(openEditor)),
      runtime(machine.runtime()),
      keyboard(machine.keyboard()),
      bindings(machine.defaults()),
      notices(machine.userNotices()) {}

KeylessDesktopNotice::~KeylessDesktopNotice() {
  runtime.cancel(timer);
}

void KeylessDesktopNotice::start() {
  if (notices == nullptr || notices->remembers(noticeName)) return;
  timer = runtime.after(patienceWithTrays, [this] { tellIfNeeded(); });
}

void KeylessDesktopNotice::tellIfNeeded() {
  const bool hasKeys = !hotkeys.areUserBindingsRefused() || hotkeys.hasBrightnessKeys();
  if (hasKeys || statusItem.isInStatusBar()) return;
  notices->post(
      notice(), [seen = notices] { seen->remember(noticeName); }, editHotkeys);
}

UserNotice KeylessDesktopNotice::notice() const {
  const std::string command = catalogue.text(strings::menuChangeHotkeys);
  return {catalogue.text(strings::noticeKeylessDesktopTitle),
          catalogue.format(strings::noticeKeylessDesktopText,
                           {bindings.brightnessUpBinding().displayName(keyboard),
                            bindings.brightnessDownBinding().displayName(keyboard), command}),
          command};
}

}  // namespace brivane
