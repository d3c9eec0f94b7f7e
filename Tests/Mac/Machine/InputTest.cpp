// Hotkeys, event taps, the keyboard and what the system announces.
#include <gmock/gmock.h>

#include <csignal>

#include "Machines/Mac/EventTaps.h"
#include "Machines/Mac/Hotkeys.h"
#include "Machines/Mac/Keyboard.h"
#include "Machines/Mac/Notifications.h"
#include "Machines/Mac/Runtime/Runtime.h"
#include "Tests/Mac/Machine/FakeAppKitServices.h"
#include "Tests/Mac/Machine/MacBench.h"
#include "Tests/Support/SignalDispositions.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint16_t f19 = 80;
constexpr std::uint16_t leftShift = 56;

class MacInputTest : public MacTest {
 protected:
  MacInputTest() { appKit.convert = fake::detailsOf; }

  /// Whatever is to run already has its turn, however late the loop begins, and so has what waits
  /// when the time is over.
  void settle() {
    runtime.async([this] {
      runtime.after(std::chrono::milliseconds(2),
                    [this] { runtime.async([this] { runtime.stop(); }); });
    });
    runtime.run();
  }

  FakeAppKitServices appKit;
  MacRuntime runtime;
};

// Hotkeys

TEST_F(MacInputTest, AHotkeyCarriesItsSignatureAndNumberAndItsModifiersAsTheyAre) {
  MacHotkeys hotkeys;
  std::vector<HotkeyID> heard;
  hotkeys.installHandler([&](HotkeyEvent, HotkeyID hotkey) { heard.push_back(hotkey); });
  hotkeys.registerHotkey(f19, 512, {0x544C574E, 7});
  fake::input().press(leftShift);
  fake::input().press(f19);
  settle();
  EXPECT_THAT(heard, ElementsAre(HotkeyID{0x544C574E, 7}));
  EXPECT_EQ(fake::input().handlerStatus, 0);
  EXPECT_THAT(fake::mac().calls, ElementsAre("handler keyb 5 6", "hotkey 80 512 1414289230 7"));
}

TEST_F(MacInputTest, AHandlerThatTheSystemRefusesIsNotInstalled) {
  MacHotkeys hotkeys;
  fake::mac().failures["InstallEventHandler"] = -9860;
  EXPECT_FALSE(hotkeys.installHandler([](HotkeyEvent, HotkeyID) {}));
  fake::mac().failures.clear();
  EXPECT_TRUE(hotkeys.installHandler([](HotkeyEvent, HotkeyID) {}));
  EXPECT_EQ(fake::liveRegistrations(), 1u);
}

TEST_F(MacInputTest, ANewHandlerTakesThePlaceOfTheOneBeforeAndCarbonKnowsOne) {
  MacHotkeys hotkeys;
  hotkeys.installHandler([](HotkeyEvent, HotkeyID) {});
  hotkeys.installHandler([](HotkeyEvent, HotkeyID) {});
  EXPECT_EQ(fake::liveRegistrations(), 1u);
  hotkeys.removeHandler();
  hotkeys.removeHandler();
  EXPECT_EQ(fake::liveRegistrations(), 0u);
}

TEST_F(MacInputTest, AnEventWithoutAHotkeyInItIsNotHandedOnAndItsStatusIsTheSystems) {
  MacHotkeys hotkeys;
  int heard = 0;
  hotkeys.installHandler([&](HotkeyEvent, HotkeyID) { ++heard; });
  hotkeys.registerHotkey(f19, 0, {1, 2});
  fake::mac().failures["GetEventParameter"] = -9870;
  fake::input().press(f19);
  settle();
  EXPECT_EQ(heard, 0);
  EXPECT_EQ(fake::input().handlerStatus, -9870);
}

TEST_F(MacInputTest, ACallWithoutAnEventOrAnOwnerIsNoErrorAndNotHandedOn) {
  MacHotkeys hotkeys;
  int heard = 0;
  hotkeys.installHandler([&](HotkeyEvent, HotkeyID) { ++heard; });
  EXPECT_EQ(fake::input().callHandler(false, true), 0);
  EXPECT_EQ(fake::input().callHandler(true, false), 0);
  EXPECT_EQ(heard, 0);
}

TEST_F(MacInputTest, ARefusedHotkeyHasTheSystemsStatus) {
  MacHotkeys hotkeys;
  hotkeys.registerHotkey(f19, 0, {1, 2});
  EXPECT_EQ(std::get<HotkeyStatus>(hotkeys.registerHotkey(f19, 0, {1, 3})), -9878);
}

TEST_F(MacInputTest, HotkeysEndWithTheirOwnerBeforeTheirHandlerDoes) {
  {
    MacHotkeys hotkeys;
    hotkeys.installHandler([](HotkeyEvent, HotkeyID) {});
    hotkeys.registerHotkey(f19, 0, {1, 2});
    hotkeys.registerHotkey(f19, 512, {1, 3});
    EXPECT_EQ(fake::liveRegistrations(), 3u);
    fake::mac().calls.clear();
  }
  EXPECT_EQ(fake::liveRegistrations(), 0u);
  EXPECT_THAT(fake::mac().calls,
              ElementsAre("hotkey unregistered", "hotkey unregistered", "handler removed"));
}

TEST_F(MacInputTest, AHotkeyReachesItsHandlerOnceAndAtOnceWhileAMenuIsOpen) {
  MacHotkeys hotkeys;
  std::vector<HotkeyEvent> heard;
  hotkeys.installHandler([&](HotkeyEvent event, HotkeyID) { heard.push_back(event); });
  hotkeys.registerHotkey(f19, 0, {1, 2});
  fake::input().setMenuTracking(true);
  hotkeys.setMenuOpen(true);
  fake::input().press(f19);
  settle();
  EXPECT_THAT(heard, ElementsAre(HotkeyEvent::pressed));
  fake::input().release(f19);
  settle();
  EXPECT_THAT(heard, ElementsAre(HotkeyEvent::pressed, HotkeyEvent::released));
  hotkeys.setMenuOpen(false);
  fake::input().setMenuTracking(false);
  settle();
  EXPECT_EQ(heard.size(), 2u);
  fake::input().press(f19);
  settle();
  EXPECT_EQ(heard.size(), 3u);
  EXPECT_THAT(fake::mac().calls, ElementsAre("handler keyb 5 6", "hotkey 80 0 1 2",
                                             "dispatcher's handler keyb 5 6", "handler removed"));
}

TEST_F(MacInputTest, WhatCarbonKeepsWhileAMenuIsOpenComesInItsOrderOnceTheMenuHasClosed) {
  MacHotkeys hotkeys;
  std::vector<HotkeyEvent> heard;
  hotkeys.installHandler([&](HotkeyEvent event, HotkeyID) { heard.push_back(event); });
  hotkeys.registerHotkey(f19, 0, {1, 2});
  fake::input().setMenuTracking(true);
  fake::input().press(f19);
  fake::input().release(f19);
  settle();
  EXPECT_THAT(heard, IsEmpty());
  fake::input().setMenuTracking(false);
  settle();
  EXPECT_THAT(heard, ElementsAre(HotkeyEvent::pressed, HotkeyEvent::released));
}

TEST_F(MacInputTest, AMenusHandlerIsInstalledOnceAndEndsWithItsOwner) {
  {
    MacHotkeys hotkeys;
    hotkeys.setMenuOpen(true);
    hotkeys.setMenuOpen(true);
    EXPECT_EQ(fake::liveRegistrations(), 1u);
    fake::mac().failures["InstallEventHandler"] = -9860;
    hotkeys.setMenuOpen(true);
    EXPECT_EQ(fake::liveRegistrations(), 0u) << "Carbon refuses it";
    fake::mac().failures.clear();
    hotkeys.setMenuOpen(true);
  }
  EXPECT_EQ(fake::liveRegistrations(), 0u);
}

// Taps

TEST_F(MacInputTest, ATapIsMadeAtTheHeadOfTheHardwaresStreamForSystemDefinedEventsAlone) {
  MacEventTaps taps(appKit);
  auto tap = taps.createTap([](const TapEvent&) { return TapVerdict::passThrough; });
  EXPECT_THAT(fake::mac().calls,
              ElementsAre("CGEventTapCreate 0 0 0 16384", "source", "source added"));
  fake::mac().calls.clear();
  tap->setEnabled(true);
  EXPECT_THAT(fake::mac().calls, ElementsAre("tap on"));
  fake::mac().calls.clear();
  tap->setEnabled(false);
  tap.reset();
  EXPECT_THAT(fake::mac().calls, ElementsAre("tap off", "port invalidated", "source removed"))
      << "disabled once, by whoever made it";
}

TEST_F(MacInputTest, WithoutTheGrantThereIsNoTapAndNothingIsLeftOfOneThatCannotBeListenedTo) {
  MacEventTaps taps(appKit);
  const auto pass = [](const TapEvent&) { return TapVerdict::passThrough; };
  fake::system().isTrusted = false;
  EXPECT_EQ(taps.createTap(pass), nullptr);
  fake::system().isTrusted = true;
  fake::mac().failures["CFMachPortCreateRunLoopSource"] = 1;
  EXPECT_EQ(taps.createTap(pass), nullptr);
}

TEST_F(MacInputTest, WhatIsSwallowedDoesNotReachTheSystemAndWhatPassesDoes) {
  MacEventTaps taps(appKit);
  const auto tap = taps.createTap([](const TapEvent& event) {
    const bool isUp = (event.details->data1 >> 16 & 0xFFFF) == 2;
    return isUp ? TapVerdict::swallow : TapVerdict::passThrough;
  });
  tap->setEnabled(true);
  fake::input().specialKey(2, 0x0A);
  fake::input().specialKey(3, 0x0A);
  settle();
  ASSERT_EQ(fake::input().passed.size(), 1u);
  EXPECT_EQ(fake::input().passed.front().data1, 0x30A00);
}

TEST_F(MacInputTest,
       ATapThatTheSystemDisabledIsNotifiedWithOrWithoutAnEventAndMayEnableItselfAgain) {
  MacEventTaps taps(appKit);
  std::vector<std::uint32_t> types;
  std::unique_ptr<EventTap> tap;
  tap = taps.createTap([&](const TapEvent& event) {
    types.push_back(event.type);
    if (event.type != TapEvent::systemDefined) {
      EXPECT_FALSE(event.details.has_value());
      tap->setEnabled(true);
    }
    return TapVerdict::passThrough;
  });
  tap->setEnabled(true);
  for (const auto& [reason, withEvent] : {std::pair(kCGEventTapDisabledByTimeout, false),
                                          std::pair(kCGEventTapDisabledByUserInput, true)}) {
    fake::input().disableTaps(reason, withEvent);
    fake::input().specialKey(2, 0x0A);
  }
  settle();
  EXPECT_EQ(fake::input().noticesReturned, 1);
  EXPECT_THAT(types, ElementsAre(TapEvent::disabledByTimeout, TapEvent::systemDefined,
                                 TapEvent::disabledByUserInput, TapEvent::systemDefined));
}

TEST_F(MacInputTest, AHandlerThatDropsItsTapStillHasAllThatItHolds) {
  MacEventTaps taps(appKit);
  std::unique_ptr<EventTap> own;
  std::string heard;
  own = taps.createTap([&, held = std::string(100, 'x')](const TapEvent&) {
    own.reset();
    heard = held;
    return TapVerdict::swallow;
  });
  own->setEnabled(true);
  fake::input().specialKey(2, 0x0A);
  settle();
  EXPECT_EQ(heard.size(), 100u);
}

TEST_F(MacInputTest, InputThatStallsBehindATapWithoutItsGrantGoesOnOnceTheTapIsOffOrGone) {
  MacEventTaps taps(appKit);
  auto tap = taps.createTap([](const TapEvent&) { return TapVerdict::passThrough; });
  tap->setEnabled(true);
  fake::system().isTrusted = false;
  fake::input().specialKey(2, 0x0A);
  settle();
  EXPECT_THAT(fake::input().passed, IsEmpty());
  tap->setEnabled(false);
  settle();
  EXPECT_EQ(fake::input().passed.size(), 1u);
  tap->setEnabled(true);
  fake::input().specialKey(2, 0x0B);
  tap.reset();
  settle();
  EXPECT_EQ(fake::input().passed.size(), 2u);
}

TEST_F(MacInputTest, AnEventThatCannotBeConvertedIsSeenWithoutItsContent) {
  appKit.convert = [](CGEventRef) { return std::nullopt; };
  MacEventTaps taps(appKit);
  std::vector<bool> haveDetails;
  const auto tap = taps.createTap([&](const TapEvent& event) {
    haveDetails.push_back(event.details.has_value());
    return TapVerdict::passThrough;
  });
  tap->setEnabled(true);
  fake::input().specialKey(2, 0x0A);
  settle();
  EXPECT_THAT(haveDetails, ElementsAre(false));
}

TEST_F(MacInputTest, WhatTapAndHotkeyAutoreleaseGoesWhenTheyAreThrough) {
  MacEventTaps taps(appKit);
  MacHotkeys hotkeys;
  std::vector<std::size_t> pools;
  const auto tap = taps.createTap([&](const TapEvent&) {
    pools.push_back(fake::openPools());
    return TapVerdict::passThrough;
  });
  tap->setEnabled(true);
  hotkeys.installHandler([&](HotkeyEvent, HotkeyID) { pools.push_back(fake::openPools()); });
  hotkeys.registerHotkey(f19, 0, {1, 2});
  fake::input().specialKey(2, 0x0A);
  fake::input().press(f19);
  settle();
  EXPECT_THAT(pools, ElementsAre(1u, 1u));
  EXPECT_EQ(fake::openPools(), 0u);
}

// The keyboard

TEST_F(MacInputTest, AKeyWithoutTextAndALayoutWithoutDataGiveNoCharacter) {
  MacKeyboard keyboard(appKit);
  fake::input().layout = {{0, u"é"}, {1, u"\xD83D\xDE00x"}};
  EXPECT_EQ(keyboard.baseCharacter(0), "é");
  EXPECT_EQ(keyboard.baseCharacter(1), "😀x");
  EXPECT_EQ(keyboard.baseCharacter(2), std::nullopt);
  fake::mac().failures["UCKeyTranslate"] = -50;
  EXPECT_EQ(keyboard.baseCharacter(0), std::nullopt) << "whatever text a failure leaves";
  fake::input().layout.reset();
  EXPECT_FALSE(keyboard.hasLayout());
  EXPECT_EQ(keyboard.baseCharacter(0), std::nullopt);
  fake::input().hasInputSource = false;
  EXPECT_FALSE(keyboard.hasLayout());
  EXPECT_EQ(keyboard.baseCharacter(0), std::nullopt);
}

// Announcements

TEST_F(MacInputTest, TheThreeSignalsAreIgnoredBeforeTheyAreListenedTo) {
  const SignalDispositions dispositions;
  MacNotifications notifications(appKit, runtime);
  const auto observation = notifications.observeTermination([] {});
  EXPECT_THAT(fake::mac().calls,
              ElementsAre("ignore signal 15", "source of signal 15", "resume signal 15",
                          "ignore signal 2", "source of signal 2", "resume signal 2",
                          "ignore signal 1", "source of signal 1", "resume signal 1"));
}

TEST_F(MacInputTest, ASignalThatIsListenedToAgainAfterAnEndWasNotIgnoredFromTheStart) {
  const SignalDispositions dispositions;
  MacNotifications notifications(appKit, runtime);
  int heard = 0;
  notifications.observeTermination([] {});
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) raise(signal);
  const auto observation = notifications.observeTermination([&] { ++heard; });
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) raise(signal);
  settle();
  EXPECT_EQ(heard, 3);
}

TEST_F(MacInputTest, TwoMayObserveTheTerminationAndTheLastToLeaveEndsTheListening) {
  const SignalDispositions dispositions;
  MacNotifications notifications(appKit, runtime);
  int first = 0;
  int second = 0;
  auto one = notifications.observeTermination([&] { ++first; });
  auto two = notifications.observeTermination([&] { ++second; });
  EXPECT_EQ(fake::liveDispatchObjects(), 3u);
  raise(SIGTERM);
  settle();
  one.reset();
  raise(SIGTERM);
  settle();
  two.reset();
  EXPECT_EQ(fake::liveDispatchObjects(), 0u);
  raise(SIGTERM);
  settle();
  EXPECT_EQ(first, 1);
  EXPECT_EQ(second, 2);
}

TEST_F(MacInputTest, EachAnnouncementReachesItsOwnObserversOnly) {
  MacNotifications notifications(appKit, runtime);
  std::vector<std::string> heard;
  const auto note = [&](const char* what) { return [&heard, what] { heard.emplace_back(what); }; };
  const auto one = notifications.observeDidWake(note("machine"));
  const auto two = notifications.observeScreensDidWake(note("screens"));
  const auto three = notifications.observeScreenParameters(note("parameters"));
  const std::vector<std::pair<Topic*, std::string>> announced = {
      {&appKit.didWake, "machine"},
      {&appKit.screensDidWake, "screens"},
      {&appKit.screenParameters, "parameters"}};
  for (const auto& [topic, who] : announced) {
    heard.clear();
    topic->announce();
    settle();
    EXPECT_THAT(heard, ElementsAre(who));
  }
}

TEST_F(MacInputTest, AnObserverThatEndsBeforeTheTasksTurnIsNotCalled) {
  MacNotifications notifications(appKit, runtime);
  int heard = 0;
  auto observation = notifications.observeDidWake([&] { ++heard; });
  appKit.didWake.announce();
  observation.reset();
  settle();
  EXPECT_EQ(heard, 0);
}

}  // namespace
}  // namespace brivane
