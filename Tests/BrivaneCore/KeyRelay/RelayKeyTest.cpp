#include <gtest/gtest.h>

#include <vector>

#include "BrivaneCore/KeyRelay/RelayKey.h"

namespace brivane {
namespace {

TEST(RelayKey, F13ToF20AreFoundByTheirVirtualKeyCodes) {
  const std::vector<RelayKey> expected = {
      {0x68, 105, "F13"}, {0x69, 107, "F14"}, {0x6A, 113, "F15"}, {0x6B, 106, "F16"},
      {0x6C, 64, "F17"},  {0x6D, 79, "F18"},  {0x6E, 80, "F19"},  {0x6F, 90, "F20"},
  };
  EXPECT_EQ(std::vector(relayKeys.begin(), relayKeys.end()), expected);
  for (const auto& key : expected) {
    EXPECT_EQ(relayKeyForVirtualKeyCode(key.virtualKeyCode), key) << key.name;
  }
}

TEST(RelayKey, OtherCodesNameNone) {
  for (const std::uint32_t code : {0U, 12U, 0x6EU, 122U, 0xFFFFFFFFU}) {
    EXPECT_EQ(relayKeyForVirtualKeyCode(code), std::nullopt) << code;
  }
}

}  // namespace
}  // namespace brivane
