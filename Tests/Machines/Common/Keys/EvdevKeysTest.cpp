#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include "BrivaneCore/KeyRelay/RelayKey.h"
#include "Machines/Common/Keys/EvdevKeys.h"
#include "Machines/Linux/HIDUtil/HIDUsages.h"

namespace brivane {
namespace {

TEST(EvdevKeys, NameTheSamePlacesOfTheKeyboard) {
  EXPECT_EQ(evdevCodeOfKey(0), KEY_A);
  EXPECT_EQ(evdevCodeOfKey(126), KEY_UP);
  EXPECT_EQ(evdevCodeOfKey(122), KEY_F1);
  EXPECT_EQ(evdevCodeOfKey(58), KEY_LEFTALT);
  EXPECT_EQ(evdevCodeOfKey(0x1'0000), std::nullopt);
  EXPECT_EQ(keyOfEvdevCode(KEY_F20), std::nullopt);
  EXPECT_EQ(keyOfEvdevCode(KEY_BRIGHTNESSUP), std::nullopt);
}

TEST(EvdevKeys, ArePairedOneToOneAndFitIntoAnXServersKeyCodes) {
  int count = 0;
  for (std::uint32_t keyCode = 0; keyCode < 0x1'0000; ++keyCode) {
    const auto evdevCode = evdevCodeOfKey(keyCode);
    if (!evdevCode) continue;
    ++count;
    EXPECT_EQ(keyOfEvdevCode(*evdevCode), keyCode);
    EXPECT_LE(*evdevCode + firstXKeyCode, 255U);
  }
  EXPECT_EQ(count, 114);
}

TEST(EvdevKeys, OfTheRelayAreTheOnesThatTheKeyboardsAreMappedTo) {
  constexpr std::uint64_t keyboardPage = 0x7'0000'0000;
  for (const RelayKey& key : relayKeys) {
    EXPECT_EQ(evdevCodeOfKey(key.virtualKeyCode), relayKeyCode(keyboardPage + key.hidUsage))
        << key.name;
  }
}

}  // namespace
}  // namespace brivane
