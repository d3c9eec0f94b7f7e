#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

#include "Machines/Common/Keys/HotkeyTable.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr KeyCombination shiftF18{79, 512};
constexpr KeyCombination shiftF19{80, 512};

class HotkeyTableTest : public testing::Test {
 protected:
  HotkeyReference add(KeyCombination combination, const std::string& name) {
    const auto added = table.add(combination, [this, name](HotkeyEvent event) {
      heard.push_back((event == HotkeyEvent::pressed ? "+" : "-") + name);
      if (whenHeard) whenHeard();
    });
    return std::get<HotkeyReference>(added);
  }

  HotkeyTable table;
  std::vector<std::string> heard;
  std::function<void()> whenHeard;
};

TEST_F(HotkeyTableTest, ARetiredHotkeyGetsTheReleasesOfItsPressAndNothingElse) {
  table.retire(add(shiftF19, "idle"));
  const auto held = add(shiftF19, "held");
  table.press(shiftF19);
  table.retire(held);
  add(shiftF19, "new");
  table.keepModifiers(0);
  table.releaseKey(80);
  table.releaseKey(80);
  EXPECT_THAT(heard, ElementsAre("+held", "-held", "-held"));
  table.press(shiftF19);
  table.releaseKey(80);
  EXPECT_THAT(heard, ElementsAre("+held", "-held", "-held", "+new", "-new"));
}

TEST_F(HotkeyTableTest, ARemovedHotkeyGetsNoEvents) {
  const auto held = add(shiftF19, "held");
  table.press(shiftF19);
  heard.clear();
  table.retire(held);
  EXPECT_TRUE(table.remove(held));
  EXPECT_FALSE(table.remove(held));
  table.releaseKey(80);
  EXPECT_THAT(heard, IsEmpty());
}

TEST_F(HotkeyTableTest, OfTwoReleasedTogetherBothAreNotifiedThoughTheFirstRetiresBoth) {
  const std::vector<HotkeyReference> both = {add(shiftF18, "first"), add(shiftF19, "second")};
  table.press(shiftF18);
  table.press(shiftF19);
  heard.clear();
  whenHeard = [&] {
    for (const auto reference : both) table.retire(reference);
  };
  table.keepModifiers(0);
  EXPECT_THAT(heard, ElementsAre("-first", "-second"));
}

}  // namespace
}  // namespace brivane
