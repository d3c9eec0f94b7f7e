#pragma once

#include <xcb/xproto.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "BrivaneCore/Support/Observation.h"
#include "Machines/Common/Topic.h"
#include "Machines/Linux/X11/XEvents.h"
#include "Machines/Linux/X11/XModifiers.h"
#include "Machines/Linux/X11/XkbLibrary.h"

namespace brivane {

/// The X server's keyboard layout: what its keys give, and which bits its modifiers are. It is read
/// when it is first asked for, and again after the server has announced a change. Main thread.
class XKeymap {
 public:
  /// `itsEvents` must outlive this.
  explicit XKeymap(XEvents& itsEvents) : events(itsEvents) {}

  /// Whether there is a layout.
  bool exists();

  /// What the key gives in the current group with no modifier but Num Lock; nothing for keys that
  /// give no text. Dead keys give their accent.
  std::optional<std::string> textOf(xcb_keycode_t key);

  /// X's conventions where there is no layout.
  XModifiers modifiers();

  /// Announced after changes of a layout that has been asked for, though it may be the same again.
  Observation observeChanges(Task handler) { return changed.observe(std::move(handler)); }

 private:
  struct Layout {
    XkbLibrary::Keymap keymap;
    XModifiers modifiers;
  };

  const Layout* current();
  XkbLibrary::Keymap read();
  void listen(xcb_connection_t* connection);
  std::uint16_t bitsOfKey(const XkbLibrary::Keymap& keymap, xkb_keysym_t symbol,
                          std::uint16_t otherwise) const;

  XEvents& events;
  std::unique_ptr<const XkbLibrary> library;
  XkbLibrary::Context context;
  std::optional<Layout> layout;
  Topic changed;
  Observation announcements;
};

}  // namespace brivane
