#include <gtest/gtest.h>

#include "BrivaneApp/StatusMenuText.h"
#include "Tests/Support/ApplicationTexts.h"

namespace brivane {
namespace {

struct StatusMenuTextTest : testing::Test {
  FakeMachine machine;
  StringCatalogue catalogue = applicationTexts(machine);
  StatusMenuText texts{catalogue};
};

TEST_F(StatusMenuTextTest, ARetryStatusIsAWaitATryOrNoDDC) {
  struct Case {
    RetryStatus status;
    std::string text;
  };
  for (const auto& [status, text] : std::vector<Case>{
           {{false, 0, std::nullopt}, "menu.display.noDDC"},
           {{false, 3, 5}, "menu.display.noDDC"},
           {{true, 3, 5}, "menu.display.nextTry (5)"},
           {{true, 3, 1}, "menu.display.nextTry (1)"},
           {{true, 3, 0}, "menu.display.retryingNow"},
           {{true, 0, std::nullopt}, "menu.display.retryingNow"},
       }) {
    EXPECT_EQ(texts.retryStatus(status), text);
  }
}

TEST_F(StatusMenuTextTest, TitlesNameTheDisplayFirst) {
  EXPECT_EQ(texts.levelTitle("Studio", -20), "menu.display.levelTitle (Studio, -20)");
  EXPECT_EQ(texts.statusTitle("Studio", texts.builtInStatus()),
            "menu.display.statusTitle (Studio, menu.display.builtIn)");
  EXPECT_EQ(texts.hotkeysSummary("⌃⌥↑", "⌃⌥↓"), "menu.hotkeys.summary (⌃⌥↑, ⌃⌥↓)");
}

TEST_F(StatusMenuTextTest, ADisplaysNameIsNoTemplate) {
  EXPECT_EQ(texts.levelTitle("100%@ %d", 5), "menu.display.levelTitle (100%@ %d, 5)");
}

}  // namespace
}  // namespace brivane
