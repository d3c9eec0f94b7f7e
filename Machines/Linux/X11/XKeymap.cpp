// Reading a layout takes some ten requests and milliseconds: acceptable for drawing a menu, too
// slow for every key. So it is kept until the server announces another one.
#include "Machines/Linux/X11/XKeymap.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "Machines/Linux/X11/XkbProtocol.h"

namespace brivane {
namespace {

struct Accent {
  xkb_keysym_t symbol;
  std::string_view text;
};

constexpr std::array accents = {
    Accent{XKB_KEY_dead_grave, "`"},      Accent{XKB_KEY_dead_acute, "´"},
    Accent{XKB_KEY_dead_circumflex, "^"}, Accent{XKB_KEY_dead_tilde, "~"},
    Accent{XKB_KEY_dead_macron, "¯"},     Accent{XKB_KEY_dead_breve, "˘"},
    Accent{XKB_KEY_dead_abovedot, "˙"},   Accent{XKB_KEY_dead_diaeresis, "¨"},
    Accent{XKB_KEY_dead_abovering, "˚"},  Accent{XKB_KEY_dead_doubleacute, "˝"},
    Accent{XKB_KEY_dead_caron, "ˇ"},      Accent{XKB_KEY_dead_cedilla, "¸"},
    Accent{XKB_KEY_dead_ogonek, "˛"}};

std::string textOfSymbol(const XkbLibrary& library, xkb_keysym_t symbol) {
  const auto* const accent = std::ranges::find(accents, symbol, &Accent::symbol);
  if (accent != accents.end()) return std::string(accent->text);
  std::array<char, 8> text{};
  library.textOfSymbol(symbol, text.data(), text.size());
  return text.data();
}

/// Whether the server announces another layout.
bool announcesLayout(xcb_connection_t* connection, const xcb_generic_event_t& event) {
  constexpr std::uint8_t sent = 0x80;
  const int type = event.response_type & ~sent;
  const auto* xkb = xcb_get_extension_data(connection, &xcb_xkb_id);
  if (xkb == nullptr || type != xkb->first_event) return false;
  // The second byte of this extension's events is their type.
  return event.pad0 == XCB_XKB_NEW_KEYBOARD_NOTIFY || event.pad0 == XCB_XKB_MAP_NOTIFY;
}

}  // namespace

bool XKeymap::exists() {
  return current() != nullptr;
}

std::optional<std::string> XKeymap::textOf(xcb_keycode_t key) {
  const Layout* const known = current();
  const auto state =
      known != nullptr ? library->readState(known->keymap, events.connection()) : nullptr;
  if (!state) return std::nullopt;
  const auto group = library->layout(state.get(), XKB_STATE_LAYOUT_EFFECTIVE);
  library->updateMask(state.get(), 0, 0, known->modifiers.numLock, 0, 0, group);
  std::string text = textOfSymbol(*library, library->symbolOfKey(state.get(), key));
  if (text.empty()) return std::nullopt;
  return text;
}

XModifiers XKeymap::modifiers() {
  const Layout* const known = current();
  return known != nullptr ? known->modifiers : XModifiers();
}

const XKeymap::Layout* XKeymap::current() {
  // Each time: the server may be lost, or have announced a change.
  if (events.connection() == nullptr) return nullptr;
  if (layout) return &*layout;
  const auto keymap = read();
  if (!keymap) return nullptr;
  constexpr XModifiers usual;
  layout = Layout{keymap,
                  {.option = bitsOfKey(keymap, XKB_KEY_Alt_L, usual.option),
                   .command = bitsOfKey(keymap, XKB_KEY_Super_L, usual.command),
                   .numLock = bitsOfKey(keymap, XKB_KEY_Num_Lock, usual.numLock)}};
  return &*layout;
}

XkbLibrary::Keymap XKeymap::read() {
  if (!library) library = std::make_unique<const XkbLibrary>();
  if (!library->isLoaded()) return nullptr;
  if (!context) context = library->makeContext();
  xcb_connection_t* const connection = events.connection();
  if (connection == nullptr) return nullptr;
  listen(connection);
  return library->readKeymap(context, connection);
}

void XKeymap::listen(xcb_connection_t* connection) {
  if (announcements) return;
  constexpr std::uint16_t wanted =
      XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
  constexpr std::uint16_t everyPart = 0xFF;
  xcb_xkb_select_events(connection, XCB_XKB_ID_USE_CORE_KBD, wanted, 0, wanted, everyPart,
                        everyPart, nullptr);
  announcements = events.observe([this](const xcb_generic_event_t& event) {
    // The server may be lost since it sent the event.
    xcb_connection_t* const asked = events.connection();
    if (asked == nullptr || !announcesLayout(asked, event)) return;
    layout.reset();
    changed.announce();
  });
}

/// The modifier bits set by the key with that symbol; `otherwise` when there is none.
std::uint16_t XKeymap::bitsOfKey(const XkbLibrary::Keymap& keymap, xkb_keysym_t symbol,
                                 std::uint16_t otherwise) const {
  const auto state = library->makeState(keymap);
  const xkb_keycode_t last = library->lastKey(keymap.get());
  for (xkb_keycode_t key = library->firstKey(keymap.get()); state && key <= last; ++key) {
    const xkb_keysym_t* symbols = nullptr;
    if (library->symbolsOfKey(keymap.get(), key, 0, 0, &symbols) != 1 || *symbols != symbol) {
      continue;
    }
    library->updateKey(state.get(), key, XKB_KEY_DOWN);
    constexpr unsigned everyBit = 0xFF;
    const auto bits = library->modifiers(state.get(), XKB_STATE_MODS_EFFECTIVE) & everyBit;
    if (bits != 0) return static_cast<std::uint16_t>(bits);
  }
  return otherwise;
}

}  // namespace brivane
