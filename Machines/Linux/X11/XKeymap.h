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

/// The X server's keyboard layout: the keys' texts and the modifiers' bits. Read on first use, and
/// again after the server has announced a change. Main thread.
class XKeymap {
 public:
  /// `xEvents` must outlive this.
  explicit XKeymap(XEvents& xEvents) : events(xEvents) {}

  /// Whether there is a layout.
  bool exists();

  /// The text that the key types in the current group with no modifier but Num Lock; nothing for
  /// keys without text. Dead keys give their accent.
  std::optional<std::string> textOf(xcb_keycode_t key);

  /// X's conventional bits without a layout.
  XModifiers modifiers();

  /// Announced after a change of the layout, once it has been read; the new one may be equal.
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
