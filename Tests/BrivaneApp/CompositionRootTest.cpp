#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>

#include "BrivaneApp/CompositionRoot.h"
#include "Tests/Support/ResidentBench.h"
#include "Tests/Support/VirtualKeys.h"

namespace brivane {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::IsEmpty;

constexpr Adjustment brighter = {.delta = 5, .snapToStep = true};

struct CompositionRootTest : testing::Test, ResidentBench {
  void make() {
    root = std::make_unique<CompositionRoot>(machine, frame);
    takeNotes();
  }

  /// Makes the root and reads all monitors' levels.
  void makeWithLevels() {
    make();
    root->controller->restoreSavedBrightness({});
    run(1s);
    takeNotes();
  }

  std::vector<std::weak_ptr<void>> allObjects() {
    return {root->controller,
            root->keyMapping,
            root->hud,
            root->statusItem,
            root->hotkeyEditor,
            root->hotkeys,
            root->keyPress,
            root->systemBrightnessKeys,
            root->displayReconciler,
            root->accessibilityRetry,
            root->cacheResync,
            root->remoteController,
            root->keylessDesktopNotice};
  }

  void dragFirstSlider(double value) {
    auto& menu = frame.statusItem->ownMenu;
    const auto slider = std::ranges::find_if(
        menu.items, [](const MenuItem& item) { return std::holds_alternative<MenuSlider>(item); });
    ASSERT_NE(slider, menu.items.end());
    menu.drag(static_cast<std::size_t>(slider - menu.items.begin()), value);
  }

  /// From now on every object that can reach the monitors' buses, and every service of a bus, holds
  /// the returned value.
  std::weak_ptr<int> watchBusHolders() {
    auto& library = machine.loader.libraries["/System/Library/Frameworks/IOKit.framework/IOKit"];
    auto& symbol = library.at("IOAVServiceCreateWithService");
    auto holder = std::make_shared<int>(0);
    symbol = CreateAVServiceFunction(
        [holder, create = std::get<CreateAVServiceFunction>(symbol)](const RegistryEntry& proxy) {
          auto service = create(proxy);
          const auto address = service.get();
          auto held = std::make_shared<std::pair<std::shared_ptr<AVService>, std::shared_ptr<int>>>(
              std::move(service), holder);
          return std::shared_ptr<AVService>(std::move(held), address);
        });
    return holder;
  }

  std::unique_ptr<CompositionRoot> root;
};

TEST_F(CompositionRootTest, ConstructionStartsNothingAndTouchesNoDisplay) {
  addMonitor();
  make();
  EXPECT_EQ(machine.time.timerCount(), 0u);
  EXPECT_THAT(machine.hotkeyGrabs.registrations, IsEmpty());
  EXPECT_THAT(machine.processRunner.runs, IsEmpty());
  EXPECT_THAT(machine.gamma.calls, IsEmpty());
  EXPECT_EQ(machine.announcements.screens.observerCount(), 0u);
  EXPECT_EQ(machine.announcements.wake.observerCount(), 0u);
  EXPECT_EQ(frame.hudWindow, nullptr);
  EXPECT_EQ(frame.editorWindow, nullptr);
  EXPECT_NE(frame.statusItem, nullptr);
}

TEST_F(CompositionRootTest, AHotkeyChangesTheDisplayUnderThePointerAndShowsItsLevel) {
  auto& monitor = addMonitor();
  makeWithLevels();
  root->hotkeys->start();
  machine.hotkeyGrabs.press(upArrow, controlAndOption);
  EXPECT_EQ(monitor.current, 55);
  EXPECT_EQ(root->hud->model().state(), HUDModel::State(HUDModel::Level{55}));
  machine.hotkeyGrabs.release(upArrow);
  machine.hotkeyGrabs.press(downArrow, controlAndOption);
  EXPECT_EQ(monitor.current, 50);
}

TEST_F(CompositionRootTest, ABrightnessKeyIsSwallowedOnlyWhenADisplayTakesIt) {
  addMonitor();
  machine.access.trusted = true;
  makeWithLevels();
  root->hotkeys->start();
  EXPECT_EQ(machine.taps.sendKey(2), TapVerdict::swallow);
  machine.displaySystem.pointer = {-1, -1};
  EXPECT_EQ(machine.taps.sendKey(2), TapVerdict::passThrough);
}

TEST_F(CompositionRootTest, APressAfterTheCoordinatorIsGonePassesThrough) {
  addMonitor();
  machine.access.trusted = true;
  makeWithLevels();
  root->hotkeys->start();
  root->keyPress.reset();
  EXPECT_EQ(machine.taps.sendKey(2), TapVerdict::passThrough);
}

TEST_F(CompositionRootTest, BoostingUsesAGainOfAtMostFourAndTablesOf256Entries) {
  addMonitor().current = 100;
  machine.gamma.add(2, 1024);
  machine.displaySystem.allScreens[0].potentialHeadroom = 16;
  makeWithLevels();
  EXPECT_TRUE(root->controller->setLevel(200, 2));
  const auto& boosted = machine.gamma.written.at(2);
  EXPECT_EQ(boosted.red.size(), 256u);
  EXPECT_FLOAT_EQ(boosted.red.back(), 4.0F);
}

TEST_F(CompositionRootTest, ChoosingToChangeTheHotkeysShowsTheEditor) {
  make();
  frame.statusItem->ownMenu.open();
  frame.statusItem->ownMenu.choose("menu.changeHotkeys");
  ASSERT_NE(frame.editorWindow, nullptr);
  EXPECT_TRUE(frame.editorWindow->visible);
}

TEST_F(CompositionRootTest, AChangedHotkeyIsRegisteredAndThenTheMenuRefreshed) {
  make();
  root->hotkeys->start();
  machine.settings.values["BrightnessUpKeyCode"] = {std::int64_t{115}};
  takeNotes();
  const int configurations = frame.statusItem->configurations;
  root->hotkeyEditor->resetDefaults();
  const auto notes = takeNotes();
  EXPECT_THAT(notes, Contains("register hotkey 1 key 126 modifiers 6144"));
  EXPECT_EQ(notes.back(), "task for main") << "the menu's refresh";
  machine.time.settle();
  EXPECT_GT(frame.statusItem->configurations, configurations);
}

TEST_F(CompositionRootTest, TheTwoHotkeysCanBeExchanged) {
  make();
  root->hotkeys->start();
  root->hotkeyEditor->show();
  FakeEditorWindow& editor = *frame.editorWindow;
  const std::uint64_t flags = modifierFlag::control | modifierFlag::option;
  editor.click(0);
  EXPECT_FALSE(machine.hotkeyGrabs.holds(downArrow, controlAndOption));
  editor.press({downArrow, flags});
  editor.click(1);
  EXPECT_THAT(machine.hotkeyGrabs.registrations, testing::SizeIs(2)) << "F1 and F2";
  editor.press({upArrow, flags});
  std::map<std::uint32_t, std::uint32_t> idOfKey;
  for (const auto& [reference, registration] : machine.hotkeyGrabs.registrations) {
    idOfKey[registration.keyCode] = registration.hotkey.id;
  }
  EXPECT_EQ(idOfKey[downArrow], 1u);
  EXPECT_EQ(idOfKey[upArrow], 2u);
}

TEST_F(CompositionRootTest, AFieldThatCapturesAtTheEndRegistersNothing) {
  make();
  root->hotkeys->start();
  root->hotkeyEditor->show();
  frame.editorWindow->click(0);
  root->hotkeys->stop();
  frame.editorWindow->close();
  root.reset();
  EXPECT_THAT(machine.hotkeyGrabs.registrations, IsEmpty());
}

TEST_F(CompositionRootTest, TheMenuSwitchesTheRelay) {
  machine.settings.values["SystemBrightnessKeysEnabled"] = {false};
  make();
  auto& menu = frame.statusItem->ownMenu;
  menu.open();
  menu.choose("menu.useSystemBrightnessKeys");
  EXPECT_THAT(takeNotes(), Contains("log Brivane: system brightness keys relayed through F19/F20"));
  menu.open();
  menu.choose("menu.useSystemBrightnessKeys");
  EXPECT_THAT(takeNotes(), Contains("log Brivane: system brightness keys released back to macOS"));
}

TEST_F(CompositionRootTest, HotkeysActWhileTheMenuIsOpen) {
  make();
  auto& menu = frame.statusItem->ownMenu;
  menu.open();
  EXPECT_TRUE(machine.hotkeyGrabs.isMenuOpen);
  menu.close();
  EXPECT_FALSE(machine.hotkeyGrabs.isMenuOpen);
}

TEST_F(CompositionRootTest, ANoticeOfTheTapsEndHasTheGrantCheckedAfterTheCallback) {
  machine.access.trusted = true;
  make();
  root->hotkeys->start();
  machine.access.trusted = false;
  machine.taps.disable(TapEvent::disabledByTimeout);
  EXPECT_TRUE(machine.taps.isEnabled()) << "at once, whatever the grant";
  machine.time.settle();
  EXPECT_FALSE(machine.taps.exists());
}

TEST_F(CompositionRootTest, WithoutANoticeTheGrantIsCheckedWithEachResynchronisation) {
  machine.access.trusted = true;
  make();
  root->hotkeys->start();
  root->cacheResync->start();
  machine.access.trusted = false;
  run(4999ms);
  EXPECT_TRUE(machine.taps.exists());
  run(1ms);
  EXPECT_FALSE(machine.taps.exists());
}

TEST_F(CompositionRootTest, TheRelayHasTheKeysDriveTheBuiltInPanel) {
  machine.displayServices.install(machine.loader);
  machine.displayServices.levels[1] = 0.5F;
  machine.displayServices.canChange[1] = true;
  machine.displaySystem.add({1, 1552, 1, 0, true}, "Built-in");
  machine.pointAt(1);
  make();
  EXPECT_FALSE(root->keyPress->handle(brighter));
  root->systemBrightnessKeys->setEnabled(true);
  EXPECT_TRUE(root->keyPress->handle(brighter));
  EXPECT_FLOAT_EQ(machine.displayServices.levels[1], 0.55F);
}

TEST_F(CompositionRootTest, ChangesAreComparedWithTheArrangementAtConstruction) {
  addMonitor();
  make();
  root->displayReconciler->observeDisplayChanges();
  machine.announcements.screens.announce();
  EXPECT_EQ(machine.time.timerCount(), 0u);
}

TEST_F(CompositionRootTest, NothingKeepsTheGraphAliveOnceTheRootIsDropped) {
  machine.access.trusted = false;
  addMonitor(2);
  auto& silent = addMonitor(3);
  silent.answers = false;
  machine.settings.values["ddc.1.3.1"] = {true};
  machine.pointAt(2);
  const auto busHolder = watchBusHolders();
  const auto holdersBefore = busHolder.use_count();
  makeWithLevels();
  EXPECT_GT(busHolder.use_count(), holdersBefore);
  // Start everything that can run.
  root->hotkeys->start();
  root->systemBrightnessKeys->setEnabled(true);
  root->accessibilityRetry->start();
  root->displayReconciler->observeDisplayChanges();
  root->displayReconciler->observeWake();
  root->cacheResync->start();
  machine.announcements.wake.announce();
  root->controller->setLevel(-30, 2);
  root->hotkeyEditor->show();
  frame.statusItem->ownMenu.open();
  machine.hotkeyGrabs.press(upArrow, controlAndOption);
  run(500ms);
  machine.displaySystem.allScreens[0].frame.height += 1;
  machine.announcements.screens.announce();
  run(500ms);
  machine.pointAt(3);
  EXPECT_TRUE(root->keyPress->handle(brighter));
  dragFirstSlider(40);
  dragFirstSlider(41);
  // The grant, the relay, the resynchronisation, the recovery, the open menu, the connecting HUD.
  EXPECT_GE(machine.notingRuntime.periodicTimerCount(), 6u);
  // The restore after the change, the retry of the silent monitor, the slider's second write.
  EXPECT_GE(machine.time.timerCount(), 6u + 3u);
  const auto objects = allObjects();
  root.reset();
  for (const auto& object : objects) EXPECT_TRUE(object.expired());
  EXPECT_EQ(frame.statusItem, nullptr);
  EXPECT_EQ(frame.hudWindow, nullptr);
  EXPECT_EQ(frame.editorWindow, nullptr);
  EXPECT_EQ(machine.announcements.screens.observerCount(), 0u);
  EXPECT_EQ(machine.announcements.wake.observerCount(), 0u);
  EXPECT_EQ(machine.announcements.screensWake.observerCount(), 0u);
  EXPECT_EQ(frame.app.appearanceTopic.observerCount(), 0u);
  EXPECT_THAT(machine.hotkeyGrabs.registrations, IsEmpty());
  EXPECT_EQ(machine.hotkeyGrabs.handler, nullptr);
  EXPECT_EQ(machine.time.timerCount(), 0u);
  machine.notes.take();
  run(10s);
  EXPECT_EQ(machine.time.timerCount(), 0u);
  EXPECT_THAT(machine.notes.take(), IsEmpty());
  EXPECT_EQ(busHolder.use_count(), holdersBefore) << "no task of the DDC queue holds a bus";
}

}  // namespace
}  // namespace brivane
