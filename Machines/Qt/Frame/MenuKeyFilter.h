#pragma once

#include <xcb/xproto.h>

#include <QAbstractNativeEventFilter>
#include <QWidget>
#include <cstdint>
#include <optional>
#include <set>

#include "Machines/Common/Frame/SharedWindowSystem.h"

namespace brivane {

/// Passes the key events of a popup that has grabbed the keyboard to the machine, before Qt handles
/// them. Main thread.
class MenuKeyFilter : public QAbstractNativeEventFilter {
 public:
  /// Both must outlive this. The popup never has the focus, so it gets no other key events.
  MenuKeyFilter(SharedWindowSystem& sharedSystem, const QWidget& openPopup);
  ~MenuKeyFilter() override;
  MenuKeyFilter(const MenuKeyFilter&) = delete;
  MenuKeyFilter& operator=(const MenuKeyFilter&) = delete;

  /// The popup has closed.
  void giveKeyboardBack();

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

 private:
  bool take(const xcb_key_press_event_t& event);
  void pressed(const xcb_key_press_event_t& event);
  void released(const xcb_key_press_event_t& event);
  bool isOwnMessage(const xcb_client_message_event_t& event) const;
  void forwardRelease();

  SharedWindowSystem& system;
  const QWidget& popup;
  /// Held keys that the machine has used.
  std::set<xcb_keycode_t> takenKeys;
  /// The release of a used key, until it is known to be no part of a repeat.
  std::optional<xcb_key_press_event_t> heldBackRelease;
  /// The number of the message sent for the held-back release.
  std::uint32_t lastMessage = 0;
};

}  // namespace brivane
