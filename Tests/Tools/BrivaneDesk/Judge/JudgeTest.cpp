// Short traces that keep or break one rule each. That whole days of the program keep them all, the
// random days show.
#include <gmock/gmock.h>

#include "Tests/Support/TestDesk.h"
#include "Tools/BrivaneDesk/Judge/Judge.h"

namespace brivane::judge {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Lines = std::vector<std::string>;

const std::string get1 = "bus 1 write 82 01 10 FD";
const std::string reply75 = "bus 1 read 6E 88 02 00 10 00 00 64 00 4B 8B 00";
const std::string set40 = "bus 1 write 84 03 10 00 28 D1";
const std::string set101 = "bus 1 write 84 03 10 00 65 9C";
const std::string level40 = "setting brightness.8738.1.0 = 40";
const std::string straight = " takes 3 samples, such as 0 0.5 1 0 0.5 1 0 0.5 1";
const std::string deepest = " takes 3 samples, such as 0 0.09 0.18 0 0.09 0.18 0 0.09 0.18";

/// Two monitors, the pointer on the first.
DeskDescription twoMonitors() {
  return deskFrom(R"({"displays": [
      {"identifier": 1, "name": "One", "gamma": {"capacity": 3}},
      {"identifier": 2, "name": "Two", "gamma": {"capacity": 3}}]})");
}

Microseconds timeOf(const std::string& line) {
  return fromSeconds(std::stod(line));
}

/// The breaches on a day on which the program has started; each line begins with its seconds.
Lines breachesOf(const Lines& lines) {
  Judge judge(twoMonitors());
  for (const auto* const line :
       {"program started", "gamma of all displays calibrated", "setting ddcmax.8738.1.0 = 100",
        "setting ddcmax.8738.2.0 = 100"}) {
    judge.see(Microseconds(0), line);
  }
  judge.see(Microseconds(0), reply75);
  for (const auto& line : lines) judge.see(timeOf(line), line.substr(line.find(' ') + 1));
  Lines found;
  for (const auto& breach : judge.takeBreaches()) found.push_back(breach.found);
  return found;
}

/// A key's set of 40, whole.
Lines aSetOfTheKeys() {
  return {"1 hotkey 2 pressed",
          "1.01 " + set40,
          "1.02 " + set40,
          "1.02 " + level40,
          "1.02 hud shows level 40, sun.min, bar 40.0%, at once, picture 00000000",
          "1.05 hotkey 2 released"};
}

Lines without(Lines lines, std::size_t index) {
  lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(index));
  return lines;
}

Lines with(Lines lines, const Lines& more) {
  lines.insert(lines.end(), more.begin(), more.end());
  return lines;
}

TEST(Judge, ASetOfTheKeysKeepsAllRules) {
  EXPECT_THAT(breachesOf(aSetOfTheKeys()), IsEmpty());
}

TEST(Judge, ASetGoesOutTwiceWithItsWaits) {
  EXPECT_THAT(breachesOf(without(aSetOfTheKeys(), 2)),
              ElementsAre("a set that went out once", "brightness.8738.1.0 = 40"));
  EXPECT_THAT(breachesOf({"1 > request set 40", "1.005 " + set40, "1.015 " + set40}),
              ElementsAre("display 1 gets a set without the wait before it",
                          "display 1 gets 40, for which nobody asked"));
  EXPECT_THAT(breachesOf({"1 > request set 40", "1.01 " + set40 + ", refused"}), IsEmpty());
  EXPECT_THAT(breachesOf({"1 > request set 40", "1.01 bus 1 write 84 03 10 00 28 D0",
                          "1.02 bus 1 write 84 03 10 00 28 D0"}),
              ElementsAre("display 1 gets a set that is no message",
                          "display 1 gets a set that is no message"));
}

TEST(Judge, ASetIsAPercentOfItsMaximumAndTheOneThatIsStored) {
  EXPECT_THAT(breachesOf({"1 > request set 40", "1.01 " + set101, "1.02 " + set101}),
              ElementsAre("display 1 gets 101"));
  EXPECT_THAT(breachesOf({"1 > request set 40", "1.01 " + set40, "1.02 " + set40,
                          "1.02 setting brightness.8738.1.0 = 41"}),
              ElementsAre("display 1 got 40 and another level is stored"));
}

TEST(Judge, ASetBelongsToSomebody) {
  EXPECT_THAT(breachesOf({"1.01 " + set40, "1.02 " + set40}),
              ElementsAre("display 1 gets 40, for which nobody asked"));
  const Lines menu = {"1 menu rebuilt, 2 items", "1 menu | text \"One — 75%\"",
                      "1 menu | slider \"Brightness of One\" at 75 of 0..100"};
  EXPECT_THAT(
      breachesOf(with(menu, {"1.2 slider 1 moved to 39.6", "1.21 " + set40, "1.22 " + set40})),
      IsEmpty());
  EXPECT_THAT(
      breachesOf(with(menu, {"1.2 slider 1 moved to 38.4", "1.21 " + set40, "1.22 " + set40})),
      ElementsAre("display 1 gets 40, for which nobody asked"));
}

TEST(Judge, ALevelIsStoredWhenItWasSetOrSeen) {
  EXPECT_THAT(breachesOf({"1 " + level40}), ElementsAre("brightness.8738.1.0 = 40"));
  EXPECT_THAT(breachesOf({"1 setting brightness.8738.1.0 = 75"}), IsEmpty());
}

TEST(Judge, ALevelThatAwaitsItsRestoreIsNotStored) {
  const Lines woken = {"1 " + reply75, "1 setting brightness.8738.1.0 = 75", "2 delivers did-wake",
                       "3 " + get1, "3.04 bus 1 read 6E 88 02 00 10 00 00 64 00 28 E8 00"};
  EXPECT_THAT(breachesOf(with(woken, {"3.04 " + level40})),
              ElementsAre("brightness.8738.1.0 = 40"));
}

TEST(Judge, AGammaTableIsACurveOfTheCapturedOne) {
  EXPECT_THAT(breachesOf({"1 gamma 1 is read", "1 gamma 1" + deepest, "1 gamma 1" + straight}),
              IsEmpty());
  EXPECT_THAT(breachesOf({"1 gamma 1 takes 3 samples, such as 0 0.25 0.5 0 0.5 1 0 0.5 1"}),
              ElementsAre("display 1 gets no curve of its captured table"));
  EXPECT_THAT(breachesOf({"1 gamma 1 is read", "1 gamma 1" + deepest, "2 gamma 1 is read"}),
              ElementsAre("display 1 has its changed table captured"));
}

TEST(Judge, ATableOfAnotherProcessOrProfileIsCapturedAsItIs) {
  const std::string squared = " takes 3 samples, such as 0 0.25 1 0 0.25 1 0 0.25 1";
  const std::string halved = " takes 3 samples, such as 0 0.125 0.5 0 0.125 0.5 0 0.125 0.5";
  const Lines changed = {"1 profile 1 exponent 2", "2 gamma 1 is read", "3 gamma 1" + squared};
  EXPECT_THAT(breachesOf(changed), IsEmpty());
  EXPECT_THAT(breachesOf(without(changed, 1)),
              ElementsAre("display 1 gets no curve of its captured table"));
  const Lines foreign = with(changed, {"4 foreign gamma 1 times 0.5", "5 gamma 1 is read"});
  EXPECT_THAT(breachesOf(with(foreign, {"6 gamma 1" + halved})), IsEmpty());
  EXPECT_THAT(breachesOf(with(foreign, {"6 gamma 1" + squared})),
              ElementsAre("display 1 gets no curve of its captured table"));
}

TEST(Judge, ASettingThatCouldNotBeSavedIsLostWithItsProgram) {
  const Lines lost =
      with(without(aSetOfTheKeys(), 3),
           {"1.02 fault UserDefaults.set: " + level40, "2 program killed", "4 program started",
            "4 gamma of all displays calibrated", "4.01 " + set40, "4.02 " + set40});
  EXPECT_THAT(breachesOf(lost), ElementsAre("display 1 gets 40, for which nobody asked"));
}

TEST(Judge, ASweepEndsWithItsKey) {
  const std::string shown = " hud shows level 70, sun.max, bar 70.0%, moving, picture 00000000";
  EXPECT_THAT(breachesOf({"1 hotkey 2 pressed", "1.41" + shown}), IsEmpty());
  EXPECT_THAT(breachesOf({"1 hotkey 2 pressed", "1.3" + shown}),
              ElementsAre("level 70 is shown before the sweep begins"));
  EXPECT_THAT(breachesOf({"1 hotkey 2 pressed", "1.4 hotkey 2 released", "1.5" + shown}),
              ElementsAre("level 70 is shown while no key sweeps"));
  EXPECT_THAT(breachesOf({"1 hotkey 2 pressed", "1.41" + shown,
                          "1.47 hud shows level 50, sun.min, bar 50.0%, moving, picture 00000000"}),
              ElementsAre("level 50 is shown after 70 in a sweep downwards"));
  EXPECT_THAT(breachesOf({"1 hotkey 2 pressed", "1.41" + shown,
                          "1.47 hud shows level 75, sun.max, bar 75.0%, moving, picture 00000000"}),
              ElementsAre("level 75 is shown after 70 in a sweep downwards"));
}

TEST(Judge, TheHUDShowsTheNewestStateForItsTime) {
  EXPECT_THAT(breachesOf(with(aSetOfTheKeys(), {"2.22 hud alpha to 0 in 0.28 s, easing in",
                                                "2.5 hud gone", "9 program killed"})),
              IsEmpty());
  EXPECT_THAT(breachesOf(with(aSetOfTheKeys(), {"2 hud alpha to 0 in 0.28 s, easing in"})),
              ElementsAre("the HUD fades before its time"));
  EXPECT_THAT(breachesOf(with(aSetOfTheKeys(), {"5 " + get1})),
              ElementsAre("the HUD shows an old state"));
  EXPECT_THAT(breachesOf(without(aSetOfTheKeys(), 4)), ElementsAre("level 40 is not shown"));
  EXPECT_THAT(breachesOf(with({"0.5 hud at {2700,130,360,54}"}, aSetOfTheKeys())),
              ElementsAre("level 40 is not shown over the pointer's display"));
}

TEST(Judge, TheHUDAppearsAtOnceOnAnotherDisplayAndSpeaksWhenItRests) {
  const auto shown = [](const std::string& how) {
    return Lines{"1.3 pointer 2880 540", "1.4 hotkey 2 pressed", "1.4 hud at {2700,130,360,54}",
                 "1.4 hud shows level 70, sun.max, bar 70.0%, " + how + ", picture 00000000",
                 "1.4 hotkey 2 released"};
  };
  EXPECT_THAT(breachesOf(with(aSetOfTheKeys(), shown("at once"))), IsEmpty());
  EXPECT_THAT(breachesOf(with(aSetOfTheKeys(), shown("moving"))),
              ElementsAre("level 70 moves from another display's"));
  EXPECT_THAT(breachesOf(with(aSetOfTheKeys(), {"1.52 hud says \"One: 40 %\""})), IsEmpty());
  EXPECT_THAT(breachesOf(with(aSetOfTheKeys(), {"1.3 hud says \"One: 40 %\""})),
              ElementsAre("the HUD speaks before it rests"));
}

TEST(Judge, AReadWaitsForItsReplyAndIsTriedThreeTimes) {
  const std::string request = " " + get1;
  const std::string silence = " bus 1 read 00 00 00 00 00 00 00 00 00 00 00 00";
  const Lines three = {"1" + request,    "1.04" + silence, "1.06" + request,  "1.1" + silence,
                       "1.14" + request, "1.18" + silence, "9 program killed"};
  EXPECT_THAT(breachesOf(three), IsEmpty());
  EXPECT_THAT(breachesOf({"1" + request, "1.04" + silence, "9 program killed"}), IsEmpty());
  EXPECT_THAT(breachesOf({"1" + request, "1.04" + silence, "9 > end"}),
              ElementsAre("display 1 is asked only 1 time"));
  EXPECT_THAT(breachesOf({"1" + request, "1.04 fault AVService.readI2C", "1.06" + request,
                          "1.1" + silence, "1.14" + request, "1.18" + silence, "9 > end"}),
              IsEmpty());
  EXPECT_THAT(breachesOf({"1" + request, "1.01 " + reply75}),
              ElementsAre("display 1 has its reply fetched too soon"));
}

TEST(Judge, DimmingBeginsAtZeroAndWhileItMay) {
  const auto dimmedAt = [](const std::string& level) {
    return Lines{"1 bus 1 read 6E 88 02 00 10 00 00 64 00 " + level, "1 gamma 1 is read",
                 "2 hotkey 2 pressed", "2 gamma 1" + deepest};
  };
  EXPECT_THAT(breachesOf(dimmedAt("00 C0 00")), IsEmpty());
  EXPECT_THAT(breachesOf(dimmedAt("4B 8B 00")), ElementsAre("display 1 is dimmed at 75"));
  EXPECT_THAT(breachesOf(with({"0.5 > setting SubZeroDimming = false"}, dimmedAt("00 C0 00"))),
              ElementsAre("display 1 is dimmed though the setting is off"));
}

TEST(Judge, ABoostGoesIntoTheHeadroom) {
  const Lines boost = {
      "1 bus 1 read 6E 88 02 00 10 00 00 64 00 64 A4 00", "1 gamma 1 is read", "3 hotkey 1 pressed",
      "3 gamma 1 takes 3 samples, such as 0 0.6803951 1 0 0.6803951 1 0 0.6803951 1",
      "3 hotkey 1 released"};
  EXPECT_THAT(breachesOf(boost), IsEmpty());
  EXPECT_THAT(breachesOf(with({"0.5 display 1 headroom 2"}, boost)), IsEmpty());
  EXPECT_THAT(breachesOf(with({"0.5 display 1 headroom 2", "0.6 delivers did-wake"}, boost)),
              ElementsAre("display 1 is boosted beside its headroom"));
}

TEST(Judge, ASliderIsTheUsersAndEndsEffects) {
  const Lines menu = {"1 menu rebuilt, 2 items", "1 menu | text \"One — 75%\"",
                      "1 menu | slider \"Brightness of One\" at 75 of 0..100",
                      "1.2 slider 1 moved to 40"};
  const std::string follows = " menu item 1: slider \"Brightness of One\" at 75 of 0..100";
  EXPECT_THAT(breachesOf(with(menu, {"1.7" + follows})), IsEmpty());
  EXPECT_THAT(breachesOf(with(menu, {"1.5" + follows})),
              ElementsAre("item 1 moves under the user's hand"));
  const Lines atItsEnd(menu.begin(), menu.end() - 1);
  EXPECT_THAT(breachesOf(with(atItsEnd, {"1.2 slider 1 moved to -5", "1.5" + follows})), IsEmpty());
  const Lines dimmed = {"0.5 gamma 1 is read", "0.5 gamma 1" + deepest};
  const Lines set = {"1.21 " + set40, "1.22 " + set40};
  EXPECT_THAT(breachesOf(with(with(dimmed, menu), with({"1.2 gamma 1" + straight}, set))),
              IsEmpty());
  EXPECT_THAT(breachesOf(with(with(dimmed, menu), set)),
              Contains("display 1 is set by its slider and keeps its effect"));
}

TEST(Judge, ABrightnessKeyIsRelayedAsItself) {
  EXPECT_THAT(breachesOf({"1 > hold brightness-down for 1s", "1 hotkey 6 pressed"}), IsEmpty());
  EXPECT_THAT(breachesOf({"1 > hold brightness-down for 1s", "1 hotkey 5 pressed"}),
              ElementsAre("a brightness key arrives as hotkey 5"));
  EXPECT_THAT(breachesOf({"0.5 > setting BrightnessKeyRelayDown = 80",
                          "1 > hold brightness-down for 1s", "1 hotkey 5 pressed"}),
              IsEmpty());
  const std::string off = "1 setting SystemBrightnessKeysEnabled = false";
  EXPECT_THAT(breachesOf({"1 hotkey key 80 modifiers 0 is taken", off}), IsEmpty());
  EXPECT_THAT(breachesOf({"1 run /usr/bin/hidutil property, status 1", off}), IsEmpty());
  EXPECT_THAT(breachesOf({"1 > hidutil garbled", off}), IsEmpty());
  EXPECT_THAT(breachesOf({"0.5 > setting SystemBrightnessKeysEnabled = false", "0.6 program killed",
                          "0.7 program started", "0.7 gamma of all displays calibrated", off}),
              IsEmpty());
  EXPECT_THAT(breachesOf({off}),
              ElementsAre("the brightness keys are given back though nothing has failed"));
}

TEST(Judge, TheHUDStaysAsLongAsTheMainThreadStalls) {
  const Lines shown = {"1 hotkey 2 pressed",
                       "1 hud shows level 40, sun.min, bar 40.0%, at once, picture 00000000"};
  const Lines late = {"4 hud alpha to 0 in 0.28 s, easing in", "4.28 hud gone"};
  EXPECT_THAT(breachesOf(with(with(shown, {"2 > stall 2s"}), late)), IsEmpty());
  EXPECT_THAT(breachesOf(with(shown, late)), ElementsAre("the HUD shows an old state"));
}

TEST(Judge, AnOfflineDisplayGetsQueuedReadsAtMost) {
  const Lines gone = {"1 display 1 unplugged", "1 delivers screen-parameters"};
  EXPECT_THAT(breachesOf(with(gone, {"1.05 " + get1 + ", refused"})), IsEmpty());
  EXPECT_THAT(breachesOf(with(gone, {"5 " + get1 + ", refused"})),
              ElementsAre("display 1 is read"));
  EXPECT_THAT(breachesOf(with(gone, {"4.99 > request set 40", "5 " + set40 + ", refused"})),
              ElementsAre("display 1 gets a set"));
}

TEST(Judge, AHotkeyIsRegisteredAndReleasedOnce) {
  const std::string registered = "1 hotkey key 126 modifiers 6144 registered as 1";
  const std::string released = "2 hotkey key 126 modifiers 6144 unregistered";
  const std::string ended = "3 program ended with status 0";
  EXPECT_THAT(breachesOf({registered, released, ended}), IsEmpty());
  EXPECT_THAT(breachesOf({registered, ended}), ElementsAre("1 are left at the end"));
  EXPECT_THAT(breachesOf({registered, "3 program killed", ended}), IsEmpty());
  EXPECT_THAT(breachesOf({registered, "1 hotkey key 125 modifiers 6144 registered as 1"}),
              ElementsAre("hotkey 1 is registered twice"));
  EXPECT_THAT(breachesOf({released}), ElementsAre("a hotkey is released that is not registered"));
}

TEST(Judge, AnEndLeavesNothingBehind) {
  EXPECT_THAT(breachesOf({"1 gamma 1 is read", "1 gamma 1" + deepest, "1 tap created",
                          "1 hid-mapping C0000006F to 70000006E", "2 program ended with status 0"}),
              ElementsAre("display 1 is not calibrated", "1 taps are left",
                          "the keyboard's mapping is not what others made it"));
}

TEST(Judge, AStartAfterAKillIsLikeOneAfterAnEnd) {
  const Lines firstRun = {"0.1 hotkey key 126 modifiers 6144 registered as 1", "1 program killed",
                          "2 > start", "2 program started"};
  const std::string cleared = "2 gamma of all displays calibrated";
  const std::string again = "2 hotkey key 126 modifiers 6144 registered as 1";
  EXPECT_THAT(breachesOf(with(firstRun, {cleared, again, "3 > end"})), IsEmpty());
  EXPECT_THAT(breachesOf(with(firstRun, {again, cleared})),
              ElementsAre("the effects of an earlier run are not cleared first"));
  EXPECT_THAT(breachesOf(with(firstRun, {cleared, "3 > end"})),
              ElementsAre("other hotkeys than in the run before"));
  // What a refused call left out is no measure.
  EXPECT_THAT(breachesOf({"0.1 fault Hotkeys.registerHotkey: 1 registered", "1 program killed",
                          "2 > start", "2 program started", cleared, again, "3 > end"}),
              IsEmpty());
}

/// A look at the menu after quiet seconds. Both monitors answer 75, and the second is shown so.
Lines quietMenu(const std::string& status, const std::string& slider) {
  Lines lines = {"55 " + reply75,
                 "55 bus 2 read 6E 88 02 00 10 00 00 64 00 4B 8B 00",
                 "60 > menu open",
                 "60 menu opens",
                 "60 menu rebuilt, 9 items",
                 "60 menu | text \"One — " + status + "\"",
                 "60 menu | text \"Two — 75%\"",
                 "60 menu | slider \"Brightness of Two\" at 75 of 0..100",
                 "62 menu closes"};
  if (!slider.empty()) lines.insert(lines.begin() + 6, "60 menu | slider " + slider);
  return lines;
}

TEST(Judge, AfterQuietLevelGammaAndHardwareAgree) {
  EXPECT_THAT(breachesOf(quietMenu("75%", "\"Brightness of One\" at 75 of 0..100")), IsEmpty());
  EXPECT_THAT(breachesOf(quietMenu("70%", "\"Brightness of One\" at 75 of 0..100")),
              ElementsAre("display 1 shows 70, and its slider 75.000000",
                          "display 1 shows 70, and has 75"));
  EXPECT_THAT(breachesOf(quietMenu("-20%", "\"Brightness of One\" at 0 of 0..100")),
              ElementsAre("display 1 shows -20, and has another gamma table"));
  EXPECT_THAT(
      breachesOf(with({"20 > buttons 1 75"},
                      without(quietMenu("75%", "\"Brightness of One\" at 75 of 0..100"), 0))),
      ElementsAre("display 1 is not read any more"));
  EXPECT_THAT(breachesOf(with({"40 > buttons 1 75"},
                              quietMenu("70%", "\"Brightness of One\" at 70 of 0..100"))),
              IsEmpty());
}

TEST(Judge, TheUserIsAskedForTheGrantOnce) {
  EXPECT_THAT(breachesOf({"1 accessibility prompt"}), IsEmpty());
  EXPECT_THAT(
      breachesOf({"1 accessibility prompt", "1 > setting PromptedForAccessibilityBuild removed",
                  "2 accessibility prompt"}),
      IsEmpty());
  EXPECT_THAT(breachesOf({"1 accessibility prompt", "2 accessibility prompt"}),
              ElementsAre("the user is asked for the grant again"));
}

TEST(Judge, AfterQuietTheMenuIsRightFromItsFirstLine) {
  EXPECT_THAT(breachesOf({"55 " + reply75, "60 menu opens", "60 menu rebuilt, 1 items",
                          "60 menu | text \"One — 70%\""}),
              Contains("display 1 shows 70, and has 75"));
}

TEST(Judge, AfterQuietTheMaximumIsStored) {
  EXPECT_THAT(breachesOf(with({"0.5 setting ddcmax.8738.1.0 = 50"},
                              quietMenu("75%", "\"Brightness of One\" at 75 of 0..100"))),
              ElementsAre("the maximum of display 1 is not stored"));
}

TEST(Judge, AMonitorAnswersAgainOnlyAfterAnOutage) {
  const std::string stopped = "1 log Brivane: [1] One stopped answering DDC";
  const std::string again = "2 log Brivane: [1] One answering again after 1s";
  EXPECT_THAT(breachesOf({stopped, again}), IsEmpty());
  EXPECT_THAT(breachesOf({stopped, again, again}),
              ElementsAre("display 1 is said to answer again, and was not silent"));
}

TEST(Judge, AStoredLevelIsRestored) {
  const Lines woken = {"0.5 setting brightness.8738.1.0 = 75", "1 delivers did-wake"};
  const auto menu = quietMenu("75%", "\"Brightness of One\" at 75 of 0..100");
  EXPECT_THAT(breachesOf(with(woken, menu)), ElementsAre("display 1 has not got its level"));
  const std::string set75 = "bus 1 write 84 03 10 00 4B B2";
  EXPECT_THAT(breachesOf(with(with(woken, {"1.5 " + set75, "1.51 " + set75}), menu)), IsEmpty());
}

TEST(Judge, AfterThirtyQuietSecondsTheMenuShowsALevel) {
  EXPECT_THAT(breachesOf(quietMenu("Retrying now…", "")),
              ElementsAre("display 1 shows \"Retrying now…\""));
  EXPECT_THAT(breachesOf(with({"1 monitor 1 mood silent"}, quietMenu("Retrying now…", ""))),
              IsEmpty());
}

TEST(Judge, ADisplayIsReachedByWhatTheRegistrySaysOfItSinceAWake) {
  const Lines gone = {"1 display 1 registry none", "2 delivers did-wake"};
  EXPECT_THAT(breachesOf(with(gone, quietMenu("Retrying now…", ""))), IsEmpty());
  EXPECT_THAT(breachesOf(with(with(gone, {"3 display 1 registry all", "4 delivers did-wake"}),
                              quietMenu("Retrying now…", ""))),
              ElementsAre("display 1 shows \"Retrying now…\""));
}

TEST(Judge, ADisplayThatIsGoneMayLeaveALevelOfTheOnlyBus) {
  EXPECT_THAT(breachesOf({"1 setting brightness.0.0.0 = 75"}),
              ElementsAre("brightness.0.0.0 = 75"));
  EXPECT_THAT(breachesOf({"1 display 2 unplugged", "1 delivers screen-parameters",
                          "2 setting brightness.0.0.0 = 75"}),
              IsEmpty());
}

TEST(Judge, WhatOthersMapStaysUnlessTheToolIsGarbled) {
  const Lines lost = {"1 > mapping f5 to f6", "1 hid-mapping 70000003E to 70000003F",
                      "2 hid-mapping empty", "3 program ended with status 0"};
  EXPECT_THAT(breachesOf(lost), ElementsAre("the keyboard's mapping is not what others made it"));
  EXPECT_THAT(breachesOf(with({"1 > hidutil garbled"}, lost)), IsEmpty());
}

TEST(Judge, ACommandRunsAheadOfTheProgram) {
  EXPECT_THAT(
      breachesOf({"1 > request set 40", "1 second program begins", "1.3 second program ends",
                  "1.01 " + set40, "1.02 " + set40, "1.02 " + level40}),
      IsEmpty());
}

}  // namespace
}  // namespace brivane::judge
