#pragma once

#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

#include <memory>

namespace brivane {

/// The used part of libxkbcommon, which reads keyboard layouts; loaded by the constructor.
class XkbLibrary {
 public:
  XkbLibrary();

  /// If false, nothing else may be called.
  bool isLoaded() const { return loaded; }

  using Context = std::shared_ptr<xkb_context>;
  using Keymap = std::shared_ptr<xkb_keymap>;
  using State = std::shared_ptr<xkb_state>;
  /// Null on failure.
  Context makeContext() const;
  Keymap readKeymap(const Context& context, xcb_connection_t* connection) const;
  /// The keyboard's current state, and the state with no key down.
  State readState(const Keymap& keymap, xcb_connection_t* connection) const;
  State makeState(const Keymap& keymap) const;

  decltype(&xkb_keymap_min_keycode) firstKey = nullptr;
  decltype(&xkb_keymap_max_keycode) lastKey = nullptr;
  decltype(&xkb_keymap_key_get_syms_by_level) symbolsOfKey = nullptr;
  decltype(&xkb_state_update_key) updateKey = nullptr;
  decltype(&xkb_state_update_mask) updateMask = nullptr;
  decltype(&xkb_state_serialize_mods) modifiers = nullptr;
  decltype(&xkb_state_serialize_layout) layout = nullptr;
  decltype(&xkb_state_key_get_one_sym) symbolOfKey = nullptr;
  decltype(&xkb_keysym_to_utf8) textOfSymbol = nullptr;

 private:
  bool load();

  decltype(&xkb_context_new) newContext = nullptr;
  decltype(&xkb_context_unref) dropContext = nullptr;
  decltype(&xkb_keymap_unref) dropKeymap = nullptr;
  decltype(&xkb_state_new) newState = nullptr;
  decltype(&xkb_state_unref) dropState = nullptr;
  decltype(&xkb_x11_setup_xkb_extension) setUpExtension = nullptr;
  decltype(&xkb_x11_get_core_keyboard_device_id) coreKeyboard = nullptr;
  decltype(&xkb_x11_keymap_new_from_device) keymapOfDevice = nullptr;
  decltype(&xkb_x11_state_new_from_device) stateOfDevice = nullptr;
  bool loaded = false;
};

}  // namespace brivane
