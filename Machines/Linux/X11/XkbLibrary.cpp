#include "Machines/Linux/X11/XkbLibrary.h"

#include "Machines/Linux/System/SharedLibrary.h"

namespace brivane {

XkbLibrary::XkbLibrary() : loaded(load()) {}

bool XkbLibrary::load() {
  const SharedLibrary common("libxkbcommon.so.0");
  const SharedLibrary x11("libxkbcommon-x11.so.0");
  return common.find("xkb_context_new", newContext) &&
         common.find("xkb_context_unref", dropContext) &&
         common.find("xkb_keymap_unref", dropKeymap) &&
         common.find("xkb_keymap_min_keycode", firstKey) &&
         common.find("xkb_keymap_max_keycode", lastKey) &&
         common.find("xkb_keymap_key_get_syms_by_level", symbolsOfKey) &&
         common.find("xkb_state_new", newState) && common.find("xkb_state_unref", dropState) &&
         common.find("xkb_state_update_key", updateKey) &&
         common.find("xkb_state_update_mask", updateMask) &&
         common.find("xkb_state_serialize_mods", modifiers) &&
         common.find("xkb_state_serialize_layout", layout) &&
         common.find("xkb_state_key_get_one_sym", symbolOfKey) &&
         common.find("xkb_keysym_to_utf8", textOfSymbol) &&
         x11.find("xkb_x11_setup_xkb_extension", setUpExtension) &&
         x11.find("xkb_x11_get_core_keyboard_device_id", coreKeyboard) &&
         x11.find("xkb_x11_keymap_new_from_device", keymapOfDevice) &&
         x11.find("xkb_x11_state_new_from_device", stateOfDevice);
}

XkbLibrary::Context XkbLibrary::makeContext() const {
  return {newContext(XKB_CONTEXT_NO_DEFAULT_INCLUDES), dropContext};
}

XkbLibrary::Keymap XkbLibrary::readKeymap(const Context& context,
                                          xcb_connection_t* connection) const {
  const bool canAsk =
      context &&
      setUpExtension(connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                     XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr) != 0;
  const auto keyboard = canAsk ? coreKeyboard(connection) : -1;
  if (keyboard < 0) return nullptr;
  return {keymapOfDevice(context.get(), connection, keyboard, XKB_KEYMAP_COMPILE_NO_FLAGS),
          dropKeymap};
}

XkbLibrary::State XkbLibrary::readState(const Keymap& keymap, xcb_connection_t* connection) const {
  const auto keyboard = coreKeyboard(connection);
  if (keyboard < 0) return nullptr;
  return {stateOfDevice(keymap.get(), connection, keyboard), dropState};
}

XkbLibrary::State XkbLibrary::makeState(const Keymap& keymap) const {
  return {newState(keymap.get()), dropState};
}

}  // namespace brivane
