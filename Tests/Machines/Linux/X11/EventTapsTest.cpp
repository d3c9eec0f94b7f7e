#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "Machines/Linux/X11/EventTaps.h"
#include "Machines/Linux/X11/Hotkeys.h"
#include "Tests/Machines/Linux/X11/XInput.h"

namespace brivane {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class NotedLog : public SystemLog {
 public:
  void write(std::string_view line) override { lines.emplace_back(line); }
  std::vector<std::string> lines;
};

class XEventTaps : public XInputTest {
 protected:
  std::unique_ptr<EventTap> tapFor(TapVerdict verdict) {
    auto tap = taps.createTap([this, verdict](const TapEvent& event) {
      seen.push_back(event.details->data1);
      return verdict;
    });
    tap->setEnabled(true);
    return tap;
  }

  NotedLog log;
  LinuxEventTaps taps{events, log};
  std::vector<std::int64_t> seen;
};

TEST_F(XEventTaps, ASwallowedKeyReachesNoOtherClient) {
  rig.takeTypedKeys();
  const auto swallowing = tapFor(TapVerdict::swallow);
  EXPECT_TRUE(swallowing->getsBrightnessKeys());
  tap(xKey::brightnessDown);
  EXPECT_THAT(seen, ElementsAre(0x30A00, 0x30B00));
  EXPECT_THAT(rig.takeTypedKeys(), IsEmpty());
}

TEST_F(XEventTaps, AForwardedKeyReachesItsNormalReceiver) {
  rig.takeTypedKeys();
  const auto passing = tapFor(TapVerdict::passThrough);
  tap(xKey::brightnessUp);
  EXPECT_THAT(seen, ElementsAre(0x20A00, 0x20B00));
  EXPECT_THAT(rig.takeTypedKeys(), ElementsAre("+233", "-233"));
}

TEST_F(XEventTaps, AKeyThatIsForwardedAfterItsReleaseIsReportedWithIt) {
  rig.takeTypedKeys();
  const auto passing = tapFor(TapVerdict::passThrough);
  for (int time = 0; time < 2; ++time) {
    seen.clear();
    rig.pressKey(xKey::brightnessUp);
    rig.releaseKey(xKey::brightnessUp);
    settle();
    EXPECT_THAT(seen, ElementsAre(0x20A00, 0x20B00));
    EXPECT_THAT(rig.takeTypedKeys(), ElementsAre("+233", "-233"));
  }
}

TEST_F(XEventTaps, RepeatsAreReportedAsRepeatsWhateverTheVerdict) {
  rig.repeatKeysSoon();
  for (const auto verdict : {TapVerdict::passThrough, TapVerdict::swallow}) {
    seen.clear();
    const auto either = tapFor(verdict);
    rig.pressKey(xKey::brightnessUp);
    ASSERT_TRUE(settleUntil([&] { return seen.size() >= 3; }));
    rig.releaseKey(xKey::brightnessUp);
    settle();
    EXPECT_EQ(seen[0], 0x20A00);
    EXPECT_EQ(seen[1], 0x20A01);
    EXPECT_EQ(seen.back(), 0x20B00);
    EXPECT_EQ(std::ranges::count(seen, 0x20B00), 1);
  }
}

TEST_F(XEventTaps, AReleaseIsReportedOnceWhenTheVerdictChangesWhileTheKeyIsHeld) {
  rig.takeTypedKeys();
  auto verdict = TapVerdict::passThrough;
  const auto changing = taps.createTap([&](const TapEvent& event) {
    seen.push_back(event.details->data1);
    return verdict;
  });
  changing->setEnabled(true);
  rig.repeatKeysSoon();
  for (const auto later : {TapVerdict::swallow, TapVerdict::passThrough}) {
    seen.clear();
    rig.pressKey(xKey::brightnessUp);
    settle();
    verdict = later;
    const auto before = seen.size();
    ASSERT_TRUE(settleUntil([&] { return seen.size() >= before + 2; }));
    rig.releaseKey(xKey::brightnessUp);
    settle();
    EXPECT_EQ(seen.back(), 0x20B00);
    EXPECT_EQ(std::ranges::count(seen, 0x20B00), 1);
  }
}

TEST_F(XEventTaps, KeysForOtherClientsCauseNoEventsOnceAHeldKeyWasSwallowedAndReleased) {
  auto verdict = TapVerdict::passThrough;
  const auto changing = taps.createTap([&](const TapEvent&) { return verdict; });
  changing->setEnabled(true);
  int woken = 0;
  const auto every = events.observe([&](const xcb_generic_event_t& event) {
    if (event.response_type < XCB_CLIENT_MESSAGE) ++woken;
  });
  rig.repeatKeysSoon();
  rig.pressKey(xKey::brightnessUp);
  settle();
  verdict = TapVerdict::swallow;
  ASSERT_GE(woken, 1);
  ASSERT_TRUE(settleUntil([&] { return woken >= 3; })) << "the key repeats";
  rig.releaseKey(xKey::brightnessUp);
  settle();
  woken = 0;
  tap(xKey::a);
  EXPECT_EQ(woken, 0);
}

TEST_F(XEventTaps, OtherKeysAreNotReported) {
  rig.takeTypedKeys();
  const auto passing = tapFor(TapVerdict::passThrough);
  rig.pressKey(xKey::brightnessUp);
  settle();
  tap(xKey::a);
  EXPECT_THAT(seen, ElementsAre(0x20A00));
  rig.releaseKey(xKey::brightnessUp);
  settle();
  EXPECT_THAT(seen, ElementsAre(0x20A00, 0x20B00));
}

TEST_F(XEventTaps, KeysThatAnotherProgramHasInOneLockVariantAreLeftToOthersAndOneLineSaysSo) {
  for (const auto key : {xKey::brightnessUp, xKey::brightnessDown}) {
    rig.grabKey(key, XCB_MOD_MASK_LOCK);
  }
  rig.takeTypedKeys();
  const auto swallowing = tapFor(TapVerdict::swallow);
  EXPECT_THAT(log.lines, ElementsAre(HasSubstr("another program has the keyboard's brightness")));
  EXPECT_FALSE(swallowing->getsBrightnessKeys());
  tap(xKey::brightnessUp);
  EXPECT_THAT(rig.takeTypedKeys(), ElementsAre("+233", "-233"));
  EXPECT_THAT(seen, IsEmpty());
}

TEST_F(XEventTaps, TheKeyboardGoesOnAfterEitherVerdictAndWhileASwallowedKeyIsHeld) {
  rig.takeTypedKeys();
  for (const auto verdict : {TapVerdict::swallow, TapVerdict::passThrough}) {
    const auto either = tapFor(verdict);
    tap(xKey::brightnessUp);
    rig.takeTypedKeys();
    tap(xKey::a);
    EXPECT_THAT(rig.takeTypedKeys(), ElementsAre("+38", "-38"));
  }
}

TEST_F(XEventTaps, WithAnyModifierTheKeysAreSeen) {
  const auto swallowing = tapFor(TapVerdict::swallow);
  rig.pressKey(xKey::shift);
  tap(xKey::brightnessUp);
  rig.releaseKey(xKey::shift);
  EXPECT_THAT(seen, ElementsAre(0x20A00, 0x20B00));
}

TEST_F(XEventTaps, TheVerdictOnAPressThatWasNotHeldBackDoesNotAffectTheNextOne) {
  LinuxHotkeys hotkeys(events, keymap, keyboard);
  constexpr std::uint32_t f19 = 80;
  hotkeys.registerHotkey(f19, 0, {7, 5});
  rig.takeTypedKeys();
  TapVerdict verdict = TapVerdict::passThrough;
  const auto changing = taps.createTap([&](const TapEvent& event) {
    seen.push_back(event.details->data1);
    return std::exchange(verdict, TapVerdict::swallow);
  });
  changing->setEnabled(true);
  rig.pressKey(xKey::f19);
  rig.pressKey(xKey::brightnessDown);  // sent here because F19 is held
  rig.releaseKey(xKey::brightnessDown);
  rig.releaseKey(xKey::f19);
  std::this_thread::sleep_for(std::chrono::milliseconds(5));
  rig.pressKey(xKey::brightnessUp);
  settle();
  rig.releaseKey(xKey::brightnessUp);
  settle();
  ASSERT_GE(seen.size(), 3u);
  EXPECT_EQ(seen[0], 0x30A00);
  EXPECT_EQ(seen[2], 0x20A00);
  EXPECT_THAT(rig.takeTypedKeys(), Not(Contains("+233")));
}

TEST_F(XEventTaps, ATapThatIsDroppedWithinItsHandlerLeavesTheKeyboardToOthers) {
  rig.takeTypedKeys();
  std::unique_ptr<EventTap> own;
  own = taps.createTap([&](const TapEvent&) {
    own.reset();
    return TapVerdict::passThrough;
  });
  own->setEnabled(true);
  tap(xKey::brightnessUp);
  EXPECT_EQ(own, nullptr);
  EXPECT_THAT(rig.takeTypedKeys(), ElementsAre("+233", "-233"));
  tap(xKey::brightnessUp);
  EXPECT_THAT(rig.takeTypedKeys(), ElementsAre("+233", "-233"));
}

TEST_F(XEventTaps, AKeyThatAnotherProgramHasIsLeftToItAndOneLineSaysSo) {
  rig.grabKey(xKey::brightnessUp, 0);
  const auto swallowing = tapFor(TapVerdict::swallow);
  ASSERT_NE(swallowing, nullptr);
  EXPECT_THAT(log.lines, ElementsAre(HasSubstr("another program has the keyboard's brightness")));
  tap(xKey::brightnessUp);
  EXPECT_THAT(seen, IsEmpty());
  EXPECT_THAT(rig.takeTypedKeys(), ElementsAre("+233", "-233"));
  tap(xKey::brightnessDown);
  EXPECT_THAT(seen, ElementsAre(0x30A00, 0x30B00));
}

TEST_F(XEventTaps, WithoutAServerThereAreNone) {
  XEvents nowhere("", runtime);
  LinuxEventTaps none(nowhere, log);
  EXPECT_EQ(none.createTap([](const TapEvent&) { return TapVerdict::swallow; }), nullptr);
}

}  // namespace
}  // namespace brivane
