#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include "Machines/Linux/HIDUtil/KeymapPlan.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr std::uint64_t upSource = 51539607663;
constexpr std::uint64_t downSource = 51539607664;
constexpr std::uint64_t f18 = 30064771181;
constexpr std::uint64_t f19 = 30064771182;
constexpr std::uint64_t f20 = 30064771183;

const std::map<KeyCode, KeyCode> f19AndF20 = {{KEY_BRIGHTNESSUP, KEY_F19},
                                              {KEY_BRIGHTNESSDOWN, KEY_F24}};
const Scancode up = "up";
const Scancode down = "dn";

TEST(KeymapPlan, OnlyConsumerBrightnessKeysToRelayKeysHaveAPlaceInKeymaps) {
  EXPECT_THAT(
      relaysIn(
          {{280379760050208, f19}, {upSource, f19}, {0x700000039, 0x700000029}, {downSource, f20}}),
      ElementsAre(Pair(KEY_BRIGHTNESSDOWN, KEY_F24), Pair(KEY_BRIGHTNESSUP, KEY_F19)));
  EXPECT_THAT(relaysIn({{upSource, 0x700000004}}), IsEmpty());
  EXPECT_THAT(relaysIn({}), IsEmpty());
}

TEST(KeymapPlan, OfSeveralEntriesForOneKeyTheFirstCounts) {
  EXPECT_THAT(relaysIn({{upSource, f19}, {upSource, f18}}),
              ElementsAre(Pair(KEY_BRIGHTNESSUP, KEY_F19)));
  EXPECT_THAT(relaysIn({{upSource, 0x700000004}, {upSource, f18}}), IsEmpty());
}

TEST(KeymapPlan, EveryBrightnessKeyIsToHaveItsRelayKeysCode) {
  EXPECT_THAT(planKeymap("input1",
                         {{"a", KEY_A},
                          {up, KEY_BRIGHTNESSUP},
                          {down, KEY_BRIGHTNESSDOWN},
                          {"u2", KEY_BRIGHTNESSUP}},
                         {}, f19AndF20),
              ElementsAre(PlannedKey{up, KEY_BRIGHTNESSUP, KEY_BRIGHTNESSUP, KEY_F19},
                          PlannedKey{down, KEY_BRIGHTNESSDOWN, KEY_BRIGHTNESSDOWN, KEY_F24},
                          PlannedKey{"u2", KEY_BRIGHTNESSUP, KEY_BRIGHTNESSUP, KEY_F19}));
}

TEST(KeymapPlan, AChangedKeyGetsItsOwnCodeBackWhenItIsNoLongerMapped) {
  EXPECT_THAT(
      planKeymap("input1", {{up, KEY_F19}}, {{"input1", up, KEY_BRIGHTNESSUP, KEY_F19}}, {}),
      ElementsAre(PlannedKey{up, KEY_BRIGHTNESSUP, KEY_F19, KEY_BRIGHTNESSUP}));
}

TEST(KeymapPlan, AChangedKeyCanGoToAnotherRelayKeyAtOnce) {
  EXPECT_THAT(
      planKeymap("input1", {{up, KEY_F13}}, {{"input1", up, KEY_BRIGHTNESSUP, KEY_F13}}, f19AndF20),
      ElementsAre(PlannedKey{up, KEY_BRIGHTNESSUP, KEY_F13, KEY_F19}));
}

TEST(KeymapPlan, AChangedKeyGetsItsOwnCodeBackWhetherTheChangeWasMadeOrOnlyStored) {
  const std::vector<ChangedKey> madeThenIntended = {{"input1", up, KEY_BRIGHTNESSUP, KEY_F13},
                                                    {"input1", up, KEY_BRIGHTNESSUP, KEY_F19}};
  for (const int code : {KEY_F13, KEY_F19, KEY_BRIGHTNESSUP}) {
    const auto current = static_cast<KeyCode>(code);
    EXPECT_THAT(planKeymap("input1", {{up, current}}, madeThenIntended, {}),
                ElementsAre(PlannedKey{up, KEY_BRIGHTNESSUP, current, KEY_BRIGHTNESSUP}));
  }
}

TEST(KeymapPlan, ARealRelayKeyAndOthersChangesAreLeftAlone) {
  const std::vector<ChangedKey> changed = {{"input1", up, KEY_BRIGHTNESSUP, KEY_F19}};
  EXPECT_THAT(planKeymap("input1", {{"f19", KEY_F19}}, changed, {}), IsEmpty());
  EXPECT_THAT(planKeymap("input1", {{up, KEY_MUTE}}, changed, {}), IsEmpty());
  EXPECT_THAT(planKeymap("input2", {{up, KEY_F19}}, changed, {}), IsEmpty());
}

}  // namespace
}  // namespace brivane
