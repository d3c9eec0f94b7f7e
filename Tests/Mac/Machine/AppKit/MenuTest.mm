#include <gmock/gmock.h>

#include "Machines/Mac/Frame/SliderRow.h"
#include "Machines/Mac/Frame/StatusItem.h"
#include "Tests/Mac/Machine/AppKit/AppKitBench.h"
#include "Tests/Mac/Machine/AppKit/FakeFoundation.h"

/// What a command of the menu sends.
@interface NSObject (MenuHands)
- (void)chose:(NSMenuItem*)item;
@end

namespace brivane {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class MacMenuTest : public AppKitTest, public MenuDelegate {
 protected:
  MacMenuTest() { item->menu().setDelegate(this); }
  ~MacMenuTest() override {
    item.reset();
    desktop.endProcess();
  }

  void menuWillOpen() override { notes.emplace_back("will open"); }
  void menuDidClose() override { notes.emplace_back("did close"); }

  NSStatusItem* systemItem() { return desktop.statusItems[0]; }
  NSMenu* systemMenu() { return systemItem().menu; }
  NSMenuItem* systemItem(NSUInteger index) { return itemsOf(systemMenu())[index]; }
  NSSlider* slider(NSUInteger index) {
    return static_cast<NSSlider*>([systemItem(index).view fakeSubviews][0]);
  }

  std::vector<std::string> notes;
  std::unique_ptr<StatusItem> item = frame.makeStatusItem();
};

TEST_F(MacMenuTest, TheItemIsSquareAndKeepsThePlaceThatItsUserGaveIt) {
  EXPECT_THAT(desktop.notes, ElementsAre("status item of length -2"));
  EXPECT_EQ(textOf(systemItem().autosaveName), "com.quorrel.brivane.status");
}

TEST_F(MacMenuTest, TheItemLeavesTheStatusBarAsItGoes) {
  item.reset();
  EXPECT_EQ(desktop.statusItems.count, 0U);
}

TEST_F(MacMenuTest, ThePlaceThatTheUserGaveTheItemOutlivesTheApplication) {
  desktop.storedPositions = {"com.quorrel.brivane.status"};
  frame.application().exit(0);
  NSStatusItem* __weak left = nil;
  @autoreleasepool {
    left = systemItem();
  }
  item.reset();
  EXPECT_NE(left, nil);
  EXPECT_THAT(desktop.storedPositions, ElementsAre("com.quorrel.brivane.status"));
}

/// A bar on the left of a picture of 100 by 60 points, which has a margin of ten all around.
StatusButton barOnTheLeft(const std::string& toolTip, const Color& color = {}) {
  return {
      {FilledRectangle{{{10, 10, 20, 40}, 0}, Paint{color}}}, 100, 60, toolTip, {10, 10, 80, 40}};
}

TEST_F(MacMenuTest, TheButtonShowsThePictureWithoutItsMarginAsLargeAsOtherMarks) {
  item->configureButton(barOnTheLeft("It"));
  NSStatusBarButton* const button = systemItem().button;
  EXPECT_EQ(textOf(button.toolTip), "It");
  EXPECT_EQ(textOf([button accessibilityLabel]), "It");
  EXPECT_EQ(button.image.size.width, 32);
  EXPECT_EQ(button.image.size.height, 16);
}

TEST_F(MacMenuTest, ThePictureIsDrawnForEachScaleWithItsEdgesBetweenPixels) {
  item->configureButton(barOnTheLeft("It"));
  NSImage* const image = systemItem().button.image;
  [image fakeDrawAtScale:1];
  [image fakeDrawAtScale:2];
  EXPECT_THAT(desktop.drawn, ElementsAre("save", "fill rgb(0 0 0)*1: rect 0,0 8x16", "restore",
                                         "save", "fill rgb(0 0 0)*1: rect 0,0 16x32", "restore"));
}

TEST_F(MacMenuTest, TheImageIsMadeOnceAndAgainOnlyWhenItChanges) {
  item->configureButton(barOnTheLeft("It"));
  NSImage* const first = systemItem().button.image;
  item->configureButton(barOnTheLeft("It"));
  item->configureButton(barOnTheLeft("Itself"));
  EXPECT_THAT(desktop.statusItemChanges, ElementsAre("image", "tool tip", "tool tip"));
  EXPECT_EQ(systemItem().button.image, first);
  EXPECT_EQ(textOf(systemItem().button.toolTip), "Itself");
  EXPECT_EQ(textOf([systemItem().button accessibilityLabel]), "Itself");
  item->configureButton(barOnTheLeft("Itself", {1, 0, 0, 1}));
  EXPECT_THAT(desktop.statusItemChanges, Contains("image").Times(2));
}

TEST_F(MacMenuTest, AppKitIsNotAskedWhichItemsCanBeChosen) {
  EXPECT_FALSE(systemMenu().autoenablesItems);
}

TEST_F(MacMenuTest, LinesToReadCannotBeChosenAndHaveTheirTone) {
  item->menu().setItems({MenuText{"a", MenuTone::label}, MenuText{"b", MenuTone::secondaryLabel},
                         MenuText{"c", MenuTone::tertiaryLabel}});
  std::vector<std::string> looks;
  for (NSMenuItem* line in itemsOf(systemMenu())) {
    EXPECT_FALSE(line.enabled);
    NSDictionary* const attributes = [line.attributedTitle fakeAttributes];
    looks.push_back(textOf(line.attributedTitle.string) + " " +
                    textOfColor(attributes[NSForegroundColorAttributeName]) + " " +
                    textOfFont(attributes[NSFontAttributeName]));
  }
  EXPECT_THAT(looks,
              ElementsAre("a label*0.8 menu 13 weight 0", "b secondaryLabel*0.5 menu 13 weight 0",
                          "c tertiaryLabel*0.25 menu 13 weight 0"));
}

TEST_F(MacMenuTest, ALinesNewTitleKeepsItsTone) {
  item->menu().setItems({MenuText{"a", MenuTone::tertiaryLabel}});
  item->menu().setTitle(0, "b");
  NSMenuItem* const line = systemItem(0);
  EXPECT_EQ(textOf(line.attributedTitle.string), "b");
  EXPECT_EQ(textOfColor([line.attributedTitle fakeAttributes][NSForegroundColorAttributeName]),
            "tertiaryLabel*0.25");
}

TEST_F(MacMenuTest, CommandsHaveTheirTickAndKey) {
  item->menu().setItems({MenuCommand{"Start at login", true, "", {}},
                         MenuCommand{"Quit", false, "q", {}}, MenuSeparator{}});
  EXPECT_TRUE(systemItem(0).enabled);
  EXPECT_EQ(systemItem(0).state, NSControlStateValueOn);
  EXPECT_EQ(textOf([systemItem(0) fakeKeyEquivalent]), "");
  EXPECT_EQ(systemItem(1).state, NSControlStateValueOff);
  EXPECT_EQ(textOf([systemItem(1) fakeKeyEquivalent]), "q");
  EXPECT_TRUE([systemItem(2) fakeIsSeparator]);
}

TEST_F(MacMenuTest, ASliderIsContinuousAndGrowsWithTheMenu) {
  item->menu().setItems({MenuSlider{-100, 200, 42, "Halden", {}}});
  NSView* const row = systemItem(0).view;
  EXPECT_EQ(row.autoresizingMask, static_cast<NSUInteger>(NSViewWidthSizable));
  auto* const slider = static_cast<NSSlider*>([row fakeSubviews][0]);
  EXPECT_EQ(slider.minValue, -100);
  EXPECT_EQ(slider.maxValue, 200);
  EXPECT_EQ(slider.doubleValue, 42);
  EXPECT_TRUE(slider.continuous);
  EXPECT_EQ(slider.autoresizingMask, static_cast<NSUInteger>(NSViewWidthSizable));
  EXPECT_EQ(textOf([slider accessibilityLabel]), "Halden");
}

TEST_F(MacMenuTest, ASlidersRowComesFromNoArchive) {
  const id archive = [NSObject new];
  EXPECT_DEATH((void)[[BrivaneSliderRow alloc] initWithCoder:archive],
               "init\\(coder:\\) is not used");
}

TEST_F(MacMenuTest, AReplacedSliderCallsNothing) {
  item->menu().setItems(
      {MenuSlider{0, 100, 50, "a", [this](double) { notes.emplace_back("old"); }}});
  auto* const old = slider(0);
  desktop.open(systemMenu());
  notes.clear();
  desktop.hold();
  item->menu().setItems(
      {MenuSlider{0, 100, 50, "a", [this](double) { notes.emplace_back("new"); }}});
  desktop.drag(old, 60);
  EXPECT_THAT(notes, IsEmpty()) << "though it looks the same, another display may be meant";
  desktop.letGo();
  desktop.close();
}

/// What the program shows of two displays.
std::vector<MenuItem> listOf(const std::string& first, const std::string& second) {
  return {MenuText{first}, MenuSlider{0, 100, 50, "First", {}}, MenuText{second},
          MenuSeparator{}, MenuCommand{"Retry", false, "", {}}, MenuCommand{"Tick", true, "", {}},
          MenuSeparator{}, MenuCommand{"Quit", false, "q", {}}};
}

TEST_F(MacMenuTest, AListThatSaysTheSameTouchesNoItemOfAnOpenMenu) {
  item->menu().setItems(listOf("First 50 %", "Second"));
  desktop.open(systemMenu());
  item->menu().setItems(listOf("First 50 %", "Second"));
  item->menu().setTitle(0, "First 50 %");
  item->menu().setTitle(4, "Retry");
  item->menu().setChecked(5, true);
  EXPECT_THAT(desktop.menuChanges, IsEmpty());
  desktop.close();
}

TEST_F(MacMenuTest, AListThatIsChangedInPlaceTouchesOnlyTheItemsThatChanged) {
  item->menu().setItems(listOf("First 50 %", "Second"));
  desktop.open(systemMenu());
  auto longer = listOf("First 50 %", "Second 40 %");
  longer.insert(longer.begin() + 3, MenuSlider{0, 100, 40, "Second", {}});
  item->menu().setItems(longer);
  EXPECT_THAT(desktop.menuChanges, ElementsAre("add Second 40 %", "add row", "remove Second"));
  EXPECT_EQ(itemsOf(systemMenu()).count, longer.size());
  desktop.menuChanges.clear();
  item->menu().setItems(listOf("First 50 %", "Second 40 %"));
  EXPECT_THAT(desktop.menuChanges, ElementsAre("remove row"));
  desktop.close();
}

TEST_F(MacMenuTest, WhatWasChangedBeforeTheListIsWhatTheListIsComparedWith) {
  item->menu().setItems(listOf("First 50 %", "Second"));
  desktop.open(systemMenu());
  item->menu().setTitle(0, "First 60 %");
  item->menu().setSliderValue(1, 60);
  item->menu().setTitle(4, "Once more");
  item->menu().setChecked(5, false);
  EXPECT_THAT(desktop.menuChanges, ElementsAre("title of First 60 %", "look of First 60 %",
                                               "title of Once more", "tick of Tick"));
  desktop.menuChanges.clear();
  item->menu().setItems(listOf("First 50 %", "Second"));
  EXPECT_THAT(desktop.menuChanges,
              ElementsAre("add First 50 %", "add row", "remove row", "remove First 60 %",
                          "add Retry", "add Tick", "remove Tick", "remove Once more"));
  EXPECT_EQ(item->menu().sliderValue(1), 50);
  desktop.close();
}

TEST_F(MacMenuTest, ALineKeepsItsHighlightAndIsChosenAsTheNewestListSays) {
  const auto listWith = [this](const std::string& first, const std::string& what) {
    auto list = listOf(first, "Second");
    std::get<MenuCommand>(list[4]).chosen = [this, what] { notes.push_back(what); };
    return list;
  };
  item->menu().setItems(listWith("First 50 %", "the old one"));
  desktop.open(systemMenu());
  desktop.pressArrowDown();
  item->menu().setItems(listWith("First 60 %", "the new one"));
  EXPECT_NE(desktop.highlighted, nil);
  desktop.choose("Retry");
  EXPECT_THAT(notes, ElementsAre("will open", "did close", "the new one"));
}

TEST_F(MacMenuTest, ArrowKeysPassSlidersWhichShowNoHighlight) {
  item->menu().setItems(listOf("First 50 %", "Second"));
  desktop.open(systemMenu());
  std::vector<std::string> reached;
  for (int presses = 0; presses < 3; ++presses) {
    desktop.pressArrowDown();
    reached.push_back(textOf(desktop.highlighted.title));
  }
  EXPECT_THAT(reached, ElementsAre("Retry", "Tick", "Quit"));
  desktop.close();
}

TEST_F(MacMenuTest, ASliderBeginsWhereTitlesDoWhetherALineIsTickedOrNot) {
  desktop.tickColumnWidth = 11;
  item = frame.makeStatusItem();
  item->menu().setItems(listOf("First 50 %", "Second"));
  desktop.open(systemMenu());
  const auto edge = [this] { return slider(1).frame.origin.x + [slider(1) fakeInset]; };
  const auto rightEdge = [this] {
    return slider(1).frame.origin.x + slider(1).frame.size.width - [slider(1) fakeInset];
  };
  EXPECT_EQ(edge(), 25);
  EXPECT_EQ(edge(), titleEdgeOf(systemMenu()));
  EXPECT_EQ(rightEdge(), 246);
  item->menu().setChecked(5, false);
  EXPECT_EQ(edge(), 14);
  EXPECT_EQ(edge(), titleEdgeOf(systemMenu()));
  EXPECT_EQ(rightEdge(), 246);
  desktop.close();
}

TEST_F(MacMenuTest, AClosureLivesUntilItReturnsThoughItsItemIsReplaced) {
  const std::string ownName(100, 'x');
  const auto replace = [this, ownName] {
    item->menu().setItems({});
    notes.push_back(ownName);
  };
  item->menu().setItems({MenuSlider{0, 100, 50, "a", [replace](double) { replace(); }}});
  desktop.drag(static_cast<NSSlider*>([systemItem(0).view fakeSubviews][0]), 60);
  item->menu().setItems({MenuCommand{"Go", false, "", replace}});
  desktop.open(systemMenu());
  desktop.choose("Go");
  EXPECT_THAT(notes, ElementsAre(ownName, "will open", "did close", ownName));
}

TEST_F(MacMenuTest, ASliderThatIsReplacedWhileTheMouseHoldsItStaysUntilTheMenuCloses) {
  NSSlider* __weak held = nil;
  @autoreleasepool {
    item->menu().setItems(
        {MenuSlider{0, 100, 50, "a", [this](double) { item->menu().setItems({}); }}});
    desktop.open(systemMenu());
    held = static_cast<NSSlider*>([systemItem(0).view fakeSubviews][0]);
  }
  desktop.drag(held, 60);
  EXPECT_NE(held, nil);
  desktop.close();
  EXPECT_EQ(held, nil) << "nobody needs it any more";
}

TEST_F(MacMenuTest, WhatAClosedMenuReplacesGoesAtOnce) {
  NSMenuItem* __weak old = nil;
  @autoreleasepool {
    item->menu().setItems({MenuText{"a", MenuTone::label}});
    old = systemItem(0);
  }
  ASSERT_NE(old, nil);
  @autoreleasepool {
    item->menu().setItems({});
  }
  EXPECT_EQ(old, nil);
}

TEST_F(MacMenuTest, AMenuThatIsFilledOnlyWhenItOpensCanBeOpened) {
  desktop.open(systemMenu());
  EXPECT_THAT(notes, ElementsAre("will open"));
  EXPECT_FALSE(systemItem(0).enabled) << "what stands there meanwhile";
  item->menu().setItems({MenuText{"a", MenuTone::label}});
  EXPECT_EQ(itemsOf(systemMenu()).count, 1U) << "nothing but what the program shows";
  desktop.close();
}

TEST_F(MacMenuTest, AMenuThatHasLostAllItsItemsCanBeOpened) {
  item->menu().setItems({MenuText{"a", MenuTone::label}});
  item->menu().setItems({});
  desktop.open(systemMenu());
  EXPECT_THAT(notes, ElementsAre("will open"));
}

TEST_F(MacMenuTest, AnOpenMenuThatIsDestroyedClosesAndReportsItOnce) {
  desktop.open(systemMenu());
  item.reset();
  EXPECT_THAT(notes, ElementsAre("will open", "did close"));
  EXPECT_THAT(desktop.notes, ElementsAre("status item of length -2", "tracking ends at once",
                                         "the status item is removed"));
}

TEST_F(MacMenuTest, AnOpenMenuDoesNotKeepTheApplicationFromEnding) {
  desktop.open(systemMenu());
  desktop.takeNotes();
  bench.runtime.async([this] { frame.application().exit(3); });
  EXPECT_EQ(frame.application().run(), 3);
  EXPECT_THAT(notes, ElementsAre("will open", "did close"));
  EXPECT_THAT(desktop.notes, ElementsAre("tracking ends at once", "post 15 first"));
  EXPECT_EQ(desktop.openMenu, nil);
}

TEST_F(MacMenuTest, ASliderThatTheMouseStillHoldsAfterTheEndMovesNothing) {
  item->menu().setItems(
      {MenuSlider{0, 100, 50, "a", [this](double) { notes.emplace_back("moved"); }},
       MenuCommand{"Go", false, "", [this] { notes.emplace_back("chosen"); }}});
  desktop.open(systemMenu());
  NSSlider* const slider = static_cast<NSSlider*>([systemItem(0).view fakeSubviews][0]);
  NSMenuItem* const command = systemItem(1);
  desktop.hold();
  bench.runtime.async([this] { frame.application().exit(0); });
  bench.runtime.after(fromSeconds(0.2), [this, slider, command] {
    EXPECT_EQ(desktop.openMenu, systemMenu()) << "the mouse is still followed";
    desktop.drag(slider, 60);
    [command.target chose:command];
    desktop.letGo();
  });
  frame.application().run();
  EXPECT_THAT(notes, ElementsAre("will open", "did close"));
}

TEST_F(MacMenuTest, ASliderThatWasReplacedStaysAsLongAsTheMouseHoldsItAfterTheEnd) {
  NSSlider* __weak held = nil;
  @autoreleasepool {
    item->menu().setItems(
        {MenuSlider{0, 100, 50, "a", [this](double) { item->menu().setItems({}); }}});
    desktop.open(systemMenu());
    held = static_cast<NSSlider*>([systemItem(0).view fakeSubviews][0]);
  }
  desktop.hold();
  desktop.drag(held, 60);
  frame.application().exit(0);
  desktop.drag(held, 70);
  desktop.letGo();
}

TEST_F(MacMenuTest, ADestroyedMenuIgnoresAppKitsCalls) {
  item->menu().setItems({MenuText{"a", MenuTone::label}});
  NSMenu* const system = systemMenu();
  const id hands = system.delegate;
  item.reset();
  EXPECT_EQ(system.delegate, nil) << "whoever keeps what was the delegate";
  [hands menuWillOpen:system];
  EXPECT_THAT(notes, IsEmpty());
}

TEST_F(MacMenuTest, ItPopsUpWhereThePointerIsOnceTheProgramHasAnswered) {
  desktop.takeNotes();
  desktop.pointer = NSMakePoint(300, 40);
  item->menu().popUp();
  EXPECT_THAT(notes, IsEmpty());
  bench.pass(0);
  EXPECT_THAT(desktop.notes, ElementsAre("menu at 300,40"));
  EXPECT_THAT(notes, ElementsAre("will open"));
}

TEST_F(MacMenuTest, AMenuThatTheUserOpensMeanwhileDoesNotPopUpNorAgainWhenItHasClosed) {
  item->menu().popUp();
  desktop.open(systemMenu());
  bench.pass(0);
  desktop.close();
  bench.pass(0);
  EXPECT_THAT(desktop.notes, testing::Not(Contains(testing::StartsWith("menu at"))));
  EXPECT_THAT(notes, ElementsAre("will open", "did close"));
}

TEST_F(MacMenuTest, NonePopsUpOnceTheApplicationEndsOrTheItemHasGone) {
  item->menu().popUp();
  frame.application().exit(0);
  bench.pass(0);
  EXPECT_EQ(desktop.openMenu, nil);
  item->menu().popUp();
  item.reset();
  bench.pass(0);
  EXPECT_THAT(notes, IsEmpty());
}

TEST_F(MacMenuTest, AClosedMenuHasNoTrackingToCancel) {
  frame.application().exit(0);
  item.reset();
  EXPECT_THAT(notes, IsEmpty());
  EXPECT_THAT(desktop.notes, testing::Not(Contains("tracking ends at once")));
}

}  // namespace
}  // namespace brivane
