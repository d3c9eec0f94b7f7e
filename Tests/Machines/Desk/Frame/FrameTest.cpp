#include <gmock/gmock.h>

#include "Machines/Desk/Frame/Frame.h"
#include "Machines/Desk/Frame/Picture.h"
#include "Machines/Desk/Machine/VirtualRuntime.h"
#include "Tests/Support/TestDesk.h"

namespace brivane {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;

TextRun text(const std::string& words) {
  return {{}, words, 13, FontWeight::regular, false, TextAlignment::leading, Color{}};
}

class FrameBench : public ::testing::Test {
 public:
  std::vector<std::string> lines;
  VirtualRuntime runtime;
  DeskHardware hardware{deskFrom(R"({"displays": [{"identifier": 1}]})")};
  DeskFrame frame{runtime, hardware, [this](const std::string& line) { lines.push_back(line); }};
};

DisplayList levelPicture(const std::string& number, double fill) {
  return {SymbolImage{{}, "sun.min", Color{}},
          MaskedFill{{{0, 0, fill, 6}, 3}, {0, 0, 100, 6}, Paint{Color{}}},
          TextRun{{}, number, 15, FontWeight::regular, true, TextAlignment::trailing, Color{}}};
}

struct CountingDelegate : ApplicationDelegate {
  void applicationDidFinishLaunching() override { ++launches; }
  void applicationWasOpenedAgain() override { ++openings; }
  void applicationWillTerminate() override { ++terminations; }
  int launches = 0;
  int openings = 0;
  int terminations = 0;
};

using DeskApplicationTest = FrameBench;

TEST_F(DeskApplicationTest, LaunchingFinishesOnceTheMainQueueRuns) {
  CountingDelegate delegate;
  frame.application().setDelegate(&delegate);
  runtime.after(milliseconds(5), [&] { frame.application().terminate(); });
  EXPECT_EQ(delegate.launches, 0);
  EXPECT_EQ(frame.application().run(), 0);
  EXPECT_EQ(delegate.launches, 1);
  EXPECT_EQ(delegate.terminations, 1);
}

TEST_F(DeskApplicationTest, AnExitTellsTheDelegateNothingAndGivesItsStatus) {
  CountingDelegate delegate;
  frame.application().setDelegate(&delegate);
  runtime.after(milliseconds(5), [&] { frame.application().exit(3); });
  EXPECT_EQ(frame.application().run(), 3);
  EXPECT_EQ(delegate.terminations, 0);
}

TEST_F(DeskApplicationTest, TheDelegateHearsThatTheProgramWasOpenedAgain) {
  CountingDelegate delegate;
  frame.application().setDelegate(&delegate);
  frame.application().openAgain();
  EXPECT_EQ(delegate.openings, 1);
  EXPECT_EQ(lines, std::vector<std::string>{"application is opened again"});
}

TEST_F(DeskApplicationTest, ASecondTerminationTellsTheDelegateNothing) {
  CountingDelegate delegate;
  frame.application().setDelegate(&delegate);
  frame.application().terminate();
  frame.application().terminate();
  EXPECT_EQ(delegate.terminations, 1);
}

TEST_F(DeskApplicationTest, TheDesksAppearanceIsReportedUntilTheObservationIsDropped) {
  int changes = 0;
  auto observation = frame.application().observeEffectiveAppearance([&] { ++changes; });
  hardware.system.setAppearance(DeskAppearance::dark);
  runtime.settle();
  EXPECT_EQ(frame.application().effectiveAppearance(), Appearance::dark);
  EXPECT_EQ(changes, 1);
  observation.reset();
  hardware.system.setAppearance(DeskAppearance::light);
  runtime.settle();
  EXPECT_EQ(frame.application().effectiveAppearance(), Appearance::light);
  EXPECT_EQ(changes, 1);
}

TEST_F(DeskApplicationTest, EveryBeepIsCounted) {
  frame.application().beep();
  frame.application().beep();
  EXPECT_EQ(frame.application().beepCount(), 2);
  EXPECT_THAT(lines, ElementsAre("beep", "beep"));
}

class DeskHUDWindowTest : public FrameBench {
 public:
  std::unique_ptr<HUDWindow> window = frame.makeHUDWindow({{0, 0, 360, 54}});
  DeskHUDWindow& hud = *frame.hudWindow();
};

TEST_F(DeskHUDWindowTest, IsHiddenUntilItIsOrderedFront) {
  EXPECT_FALSE(hud.isVisible());
  window->orderFrontRegardless();
  EXPECT_TRUE(hud.isVisible());
  window->orderOut();
  EXPECT_FALSE(hud.isVisible());
}

TEST_F(DeskHUDWindowTest, AlphaMovesEvenlyInALinearAnimation) {
  window->setAlpha(0);
  window->animateAlpha(1, 0.4, AnimationTiming::linear, {});
  runtime.runFor(milliseconds(100));
  EXPECT_DOUBLE_EQ(hud.alphaNow(), 0.25);
  runtime.runFor(milliseconds(300));
  EXPECT_DOUBLE_EQ(hud.alphaNow(), 1);
}

TEST_F(DeskHUDWindowTest, ANewAnimationBeginsWhereTheAlphaIsAndTheOldCompletionStillRuns) {
  int completions = 0;
  window->orderFrontRegardless();
  window->animateAlpha(0, 0.28, AnimationTiming::easeIn, [&] { ++completions; });
  EXPECT_TRUE(hud.isFading());
  runtime.runFor(milliseconds(140));
  EXPECT_DOUBLE_EQ(hud.alphaNow(), 0.75);
  window->animateAlpha(1, 0, AnimationTiming::linear, {});
  EXPECT_DOUBLE_EQ(hud.alphaNow(), 1);
  EXPECT_FALSE(hud.isFading());
  runtime.runFor(milliseconds(139));
  EXPECT_EQ(completions, 0);
  runtime.runFor(milliseconds(1));
  EXPECT_EQ(completions, 1);
}

TEST_F(DeskHUDWindowTest, SettingTheAlphaEndsAnAnimationWhoseCompletionStillRuns) {
  int completions = 0;
  window->animateAlpha(0, 0.28, AnimationTiming::easeIn, [&] { ++completions; });
  runtime.runFor(milliseconds(140));
  window->setAlpha(1);
  EXPECT_DOUBLE_EQ(hud.alphaNow(), 1);
  EXPECT_FALSE(hud.isFading());
  runtime.runFor(milliseconds(140));
  EXPECT_DOUBLE_EQ(hud.alphaNow(), 1);
  EXPECT_EQ(completions, 1);
}

TEST_F(DeskHUDWindowTest, SaysWhatItShowsAsAPersonWouldReadIt) {
  window->updateContent(levelPicture("40", 46.66), ContentChange::animated);
  EXPECT_THAT(lines.back(),
              ::testing::StartsWith("hud shows level 40, sun.min, bar 46.7%, moving"));
  window->updateContent({Spinner{}, text("Connecting")}, ContentChange::immediate);
  EXPECT_THAT(lines.back(), ::testing::StartsWith("hud shows spinner \"Connecting\", at once"));
}

TEST_F(DeskHUDWindowTest, IsForgottenWhenTheProgramDropsIt) {
  window.reset();
  EXPECT_EQ(frame.hudWindow(), nullptr);
}

TEST(Picture, DigestTellsPicturesApartThatReadTheSame) {
  auto one = levelPicture("40", 40);
  auto other = one;
  std::get<SymbolImage>(other[0]).paint = Color{1, 0, 0, 1};
  EXPECT_EQ(pictureSummary(one), pictureSummary(other));
  EXPECT_NE(pictureDigest(one), pictureDigest(other));
  EXPECT_EQ(pictureDigest(one), pictureDigest(levelPicture("40", 40)));
}

TEST(Picture, ShowsALevelOnlyBesideOneSymbolAndWithoutASpinner) {
  EXPECT_EQ(shownLevel(readPicture(levelPicture("-7", 1))), -7);
  EXPECT_EQ(shownLevel(readPicture(levelPicture("much", 1))), std::nullopt);
  auto spinning = levelPicture("7", 1);
  spinning.emplace_back(Spinner{});
  EXPECT_EQ(shownLevel(readPicture(spinning)), std::nullopt);
  EXPECT_EQ(shownLevel(readPicture({text("7")})), std::nullopt);
}

struct NotingDelegate : MenuDelegate {
  void menuWillOpen() override {
    notes.emplace_back("will open");
    if (onOpen) onOpen();
  }
  void menuDidClose() override { notes.emplace_back("did close"); }
  std::vector<std::string> notes;
  std::function<void()> onOpen;
};

class DeskMenuTest : public FrameBench {
 public:
  DeskMenuTest() { menu.setDelegate(&delegate); }

  MenuSlider slider(double value) {
    return {-100, 200, value, "Brightness of Halden", [this](double moved) {
              moves.push_back(moved);
              if (onMove) onMove();
            }};
  }

  std::unique_ptr<StatusItem> item = frame.makeStatusItem();
  DeskMenu& menu = frame.statusItem()->menu();
  NotingDelegate delegate;
  std::vector<double> moves;
  std::function<void()> onMove;
};

TEST_F(DeskMenuTest, AChosenCommandRunsAfterTheMenuHasClosed) {
  menu.setItems({MenuCommand{"Quit", false, "q", [this] { delegate.notes.emplace_back("quit"); }}});
  menu.open();
  EXPECT_TRUE(menu.choose("Quit"));
  EXPECT_THAT(delegate.notes, ElementsAre("will open", "did close", "quit"));
  EXPECT_FALSE(menu.choose("Quitt"));
}

TEST_F(DeskMenuTest, ItemsMayBeReplacedFromWithinAClosureOfOne) {
  menu.setItems({slider(0)});
  onMove = [this] { menu.setItems({MenuText{"gone"}}); };
  const auto found = menu.findSlider("Brightness of Halden", 1);
  ASSERT_TRUE(found);
  EXPECT_TRUE(menu.move(*found, 10));
  EXPECT_FALSE(menu.move(*found, 20));
  EXPECT_THAT(moves, ElementsAre(10));
}

TEST_F(DeskMenuTest, ASliderIsFoundByItsHeaderAndBySecondPlace) {
  menu.setItems({MenuText{"Halden: 40 %"}, slider(40), MenuText{"Halden: 60 %"}, slider(60)});
  EXPECT_EQ(menu.value(*menu.findSlider("Halden", 1)), 40);
  EXPECT_EQ(menu.value(*menu.findSlider("Halden", 2)), 60);
  EXPECT_FALSE(menu.findSlider("Halden", 3));
  EXPECT_FALSE(menu.findSlider("Norvik", 1));
}

TEST_F(DeskMenuTest, ADragStopsAtTheEndOfTheSlider) {
  menu.setItems({slider(0)});
  menu.move(*menu.findSlider("Brightness of Halden", 1), 500);
  EXPECT_THAT(moves, ElementsAre(200));
}

TEST_F(DeskMenuTest, TheProgramsOwnMovesOfASliderCallNothing) {
  menu.setItems({slider(0)});
  menu.setSliderValue(0, 50);
  EXPECT_EQ(menu.sliderValue(0), 50);
  EXPECT_TRUE(moves.empty());
}

TEST_F(DeskMenuTest, OnlyVisibleChangesAreTraced) {
  menu.setItems({MenuText{"A"}, slider(5), MenuCommand{"B", false, "", {}}});
  lines.clear();
  menu.setTitle(0, "A");
  menu.setSliderValue(1, 5);
  menu.setChecked(2, false);
  EXPECT_TRUE(lines.empty());
  menu.setTitle(0, "C");
  menu.setChecked(2, true);
  EXPECT_THAT(lines, ElementsAre("menu item 0: text \"C\"", "menu item 2: command \"B\", ticked"));
}

class Field : public CustomView {
 public:
  void setHost(CustomViewHost* newHost) override { host = newHost; }
  bool acceptsFirstResponder() const override { return true; }
  void mouseDown() override { host->makeFirstResponder(); }
  bool keyDown(const KeyPress& press) override {
    keys.push_back(press.keyCode);
    host->setNeedsDisplay();
    host->setNeedsDisplay();
    return true;
  }
  bool resignFirstResponder() override { return mayResign; }
  DisplayList draw() const override { return {}; }
  std::string accessibilityText() const override { return std::to_string(keys.size()); }

  CustomViewHost* host = nullptr;
  std::vector<int> keys;
  bool mayResign = true;
};

class DeskEditorWindowTest : public FrameBench {
 public:
  DeskEditorWindowTest() {
    window->setContent({WindowView{{}, &brighten, "Brighten"}, WindowView{{}, &dim, "Dim"},
                        WindowButton{{}, "Reset", [this] { ++resets; }}});
    window->makeKeyAndOrderFront();
    lines.clear();
  }

  Field brighten;
  Field dim;
  int resets = 0;
  std::unique_ptr<EditorWindow> window =
      frame.makeEditorWindow({340, 150, 3, 2, false, false, "Hotkeys"});
  DeskEditorWindow& editor = *frame.editorWindow();
};

TEST_F(DeskEditorWindowTest, KeysGoToTheFieldThatWasClicked) {
  EXPECT_FALSE(editor.press({126, 0}));
  EXPECT_TRUE(editor.click("Dim"));
  EXPECT_EQ(editor.focusedField(), "Dim");
  EXPECT_TRUE(editor.press({126, 0}));
  EXPECT_THAT(dim.keys, ElementsAre(126));
  EXPECT_TRUE(brighten.keys.empty());
  EXPECT_FALSE(editor.click("Dimm"));
}

TEST_F(DeskEditorWindowTest, AFieldThatDoesNotResignKeepsTheKeys) {
  brighten.mayResign = false;
  editor.click("Brighten");
  editor.click("Dim");
  EXPECT_EQ(editor.focusedField(), "Brighten");
}

TEST_F(DeskEditorWindowTest, AFieldThatAsksTwiceIsDrawnOnce) {
  editor.click("Dim");
  lines.clear();
  editor.press({126, 0});
  runtime.settle();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_THAT(lines.front(), ::testing::StartsWith("editor | field \"Dim\" reads \"1\""));
}

TEST_F(DeskEditorWindowTest, ReplacedViewsLoseTheirHost) {
  window->setContent({WindowView{{}, &dim, "Dim"}});
  EXPECT_EQ(brighten.host, nullptr);
  EXPECT_NE(dim.host, nullptr);
}

TEST_F(DeskEditorWindowTest, ViewsOutliveTheWindowWithoutAHost) {
  window.reset();
  EXPECT_EQ(brighten.host, nullptr);
  EXPECT_EQ(dim.host, nullptr);
}

TEST_F(DeskEditorWindowTest, ButtonsArePressedByTheirTitle) {
  EXPECT_TRUE(editor.pressButton("Reset"));
  EXPECT_FALSE(editor.pressButton("Resett"));
  EXPECT_EQ(resets, 1);
}

TEST_F(DeskEditorWindowTest, TheProgramMayDropTheWindowWhileItCloses) {
  window->onWillClose([this] { window.reset(); });
  editor.close();
  EXPECT_EQ(frame.editorWindow(), nullptr);
}

}  // namespace
}  // namespace brivane
