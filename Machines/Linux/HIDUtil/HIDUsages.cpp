#include "Machines/Linux/HIDUtil/HIDUsages.h"

#include <linux/input-event-codes.h>

namespace brivane {
namespace {

constexpr std::uint64_t consumerPage = 0xC'0000'0000;
constexpr std::uint64_t keyboardPage = 0x7'0000'0000;

}  // namespace

std::optional<KeyCode> brightnessKeyCode(std::uint64_t usage) {
  if (usage == consumerPage + 0x6F) return KEY_BRIGHTNESSUP;
  if (usage == consumerPage + 0x70) return KEY_BRIGHTNESSDOWN;
  return std::nullopt;
}

std::optional<KeyCode> relayKeyCode(std::uint64_t usage) {
  constexpr std::uint64_t f13 = keyboardPage + 0x68;
  constexpr std::uint64_t f20 = keyboardPage + 0x6F;
  if (usage >= f13 && usage < f20) return static_cast<KeyCode>(KEY_F13 + (usage - f13));
  if (usage == f20) return KEY_F24;
  return std::nullopt;
}

}  // namespace brivane
