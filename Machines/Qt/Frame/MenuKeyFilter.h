#pragma once

#include <xcb/xproto.h>

#include <QAbstractNativeEventFilter>
#include <QWidget>
#include <cstdint>
#include <optional>
#include <set>

#include "Machines/Common/Frame/SharedWindowSystem.h"

namespace brivane {

/// Hands on, before Qt acts on them, the keys that X sends to a popup which has the keyboard. Main
/// thread.
class MenuKeyFilter : public QAbstractNativeEventFilter {
 public:
  /// Both must outlive this. The popup is never given the focus, so it has no keys but those.
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
  void tellRelease();

  SharedWindowSystem& system;
  const QWidget& popup;
  /// The keys that are down and nothing to the popup.
  std::set<xcb_keycode_t> takenKeys;
  /// Of one of them, and not told yet.
  std::optional<xcb_key_press_event_t> doubtfulRelease;
  /// The number of the message that went out with it.
  std::uint32_t lastMessage = 0;
};

}  // namespace brivane
