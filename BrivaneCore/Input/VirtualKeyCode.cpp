#include "BrivaneCore/Input/VirtualKeyCode.h"

#include <limits>
#include <string>

#include "BrivaneCore/Support/Fatal.h"

namespace brivane {

std::uint16_t keyboardKeyCode(std::uint32_t keyCode) {
  if (keyCode > std::numeric_limits<std::uint16_t>::max()) {
    fatal("key code " + std::to_string(keyCode) + " does not fit the 16 bits of a keyboard's keys");
  }
  return static_cast<std::uint16_t>(keyCode);
}

}  // namespace brivane
