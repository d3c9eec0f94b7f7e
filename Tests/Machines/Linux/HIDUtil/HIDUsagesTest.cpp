#include <gtest/gtest.h>

#include "Machines/Linux/HIDUtil/HIDUsages.h"

namespace brivane {
namespace {

TEST(HIDUsages, TheConsumerPagesBrightnessKeysHaveKeyCodes) {
  EXPECT_EQ(brightnessKeyCode(51539607663), 225U);
  EXPECT_EQ(brightnessKeyCode(51539607664), 224U);
}

TEST(HIDUsages, VendorsBrightnessUsagesAndOtherKeysHaveNoKeyCode) {
  for (const std::uint64_t usage : {280379760050208ULL, 1095216660484ULL, 280379760050209ULL,
                                    1095216660485ULL, 0x7'0000'0039ULL, 0ULL, 0x6FULL}) {
    EXPECT_EQ(brightnessKeyCode(usage), std::nullopt) << usage;
  }
}

TEST(HIDUsages, RelayKeysF13ToF19HaveTheirOwnKeyCodes) {
  for (unsigned index = 0; index < 7; ++index) {
    EXPECT_EQ(relayKeyCode(0x700000068 + index), 183 + index);
  }
}

TEST(HIDUsages, F20IsRelayedByTheKeyCodeOfF24) {
  EXPECT_EQ(relayKeyCode(30064771183), 194U);
}

TEST(HIDUsages, NeighboursOfTheRelayKeysHaveNoKeyCode) {
  for (const std::uint64_t usage : {0x700000067ULL, 0x700000070ULL, 0x68ULL, 0xC00000068ULL}) {
    EXPECT_EQ(relayKeyCode(usage), std::nullopt) << usage;
  }
}

}  // namespace
}  // namespace brivane
