#include <algorithm>
#include <chrono>

#include "Tests/Mac/Machine/AppKit/Program/MacWholeProgram.h"

namespace brivane {
namespace {

constexpr std::uint16_t keyF1 = 122;
constexpr std::uint16_t keyF2 = 120;
constexpr std::uint16_t keyF19 = 80;
constexpr std::uint16_t shiftKey = 56;
constexpr std::uint16_t optionKey = 58;
constexpr std::uint16_t controlKey = 59;

void pressBrightenHotkey() {
  for (const std::uint16_t key : {controlKey, optionKey, upArrow}) fake::input().press(key);
}

void releaseBrightenHotkey() {
  for (const std::uint16_t key : {upArrow, optionKey, controlKey}) fake::input().release(key);
}

long callsOf(const std::string& call) {
  const std::lock_guard lock(fake::mac().mutex);
  return std::ranges::count(fake::mac().calls, call);
}

TEST_F(MacWholeProgram, TheTapStartsOnceTheGrantHasCome) {
  fake::system().isTrusted = false;
  waitUntil([] { return callsOf("AX prompt") == 1; });
  then(0, [] {
    EXPECT_EQ(callsOf("tap on"), 0);
    EXPECT_TRUE(isTaken(keyF1, 0)) << "the keys that serve meanwhile";
    EXPECT_TRUE(isTaken(keyF2, 0));
    EXPECT_TRUE(hasItsHotkey());
    fake::system().isTrusted = true;
  });
  waitUntil([] { return callsOf("tap on") == 1; });
  then(0, [] {
    EXPECT_EQ(callsOf("AX prompt"), 1);
    EXPECT_FALSE(isTaken(keyF1, 0));
    EXPECT_FALSE(isTaken(keyF2, 0));
    EXPECT_TRUE(hasItsHotkey());
  });
  thenEnd(0.1);
  EXPECT_EQ(run(), 0);
}

TEST_F(MacWholeProgram, AWithdrawnGrantStallsNoInputAndTheTapComesBackWithTheGrant) {
  constexpr int brightnessUp = 2;
  waitUntil([this] { return callsOf("tap on") == 1 && hasSlider("Right"); });
  then(0.7, [] {
    fake::system().isTrusted = false;
    fake::input().specialKey(brightnessUp, 0x0A);
    pressBrightenHotkey();
  });
  waitUntil([this] { return levelShownOnRight() > 21; });
  then(0, [] {
    releaseBrightenHotkey();
    EXPECT_EQ(fake::input().passed.size(), 1U) << "the system has its key";
    EXPECT_TRUE(isTaken(keyF1, 0)) << "the keys that serve meanwhile";
    EXPECT_TRUE(isTaken(keyF2, 0));
    EXPECT_TRUE(hasItsHotkey());
    fake::system().isTrusted = true;
  });
  waitUntil([] { return callsOf("tap on") == 2 && !isTaken(keyF1, 0); });
  then(0, [] {
    EXPECT_EQ(callsOf("AX prompt"), 0) << "whoever withdraws it is not asked for it";
    fake::system().isTrusted = false;
    fake::input().disableTaps(kCGEventTapDisabledByUserInput, true);
  });
  waitUntil([] { return isTaken(keyF1, 0); });
  thenEnd(0.1);
  EXPECT_EQ(run(), 0);
}

TEST_F(MacWholeProgram, AHeldKeyRampsSlowlyWithShiftAndStopsWhenItIsLetGo) {
  using Clock = std::chrono::steady_clock;
  int before = 0;
  Clock::time_point start;
  const auto level = [this] { return levelShownOnRight() * 2; };
  waitUntil([this] { return hasSlider("Right") && mappedKeys() != 0; });
  // A read of the start that is still under way would give the level of before the drag.
  then(0.7, [this] { dragRightTo(0); });
  waitUntil([level] { return level() == 0; });
  then(0, [] { fake::input().press(keyF19); });
  waitUntil([level] { return level() > 0; });
  then(0, [level] { EXPECT_LE(level(), 6) << "one step at first"; });
  waitUntil([level] { return level() > 12; });
  then(0, [&, level] {
    // The system tells of a release when the modifiers change, too.
    fake::input().release(keyF19);
    fake::input().keysDown.insert(keyF19);
    before = level();
  });
  // The key itself is still down.
  waitUntil([&, level] { return level() > before + 10; });
  then(0, [this] {
    fake::input().press(shiftKey);
    desktop.modifiers = fake::input().modifierFlags();
  });
  then(0.3, [&, level] {
    before = level();
    start = Clock::now();
  });
  waitUntil([&, level] { return level() > before + 6; });
  then(0, [&, level] {
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    EXPECT_LT((level() - before) / seconds, 45) << "points per second: 17, and 83 without shift";
    fake::input().release(shiftKey);
    desktop.modifiers = 0;
    dragRightTo(0);
    fake::input().release(keyF19);
    fake::input().press(keyF19);
  });
  waitUntil([level] { return level() > 12 && level() < 60; });
  then(0, [] { fake::input().release(keyF19); });
  then(0.5, [&, level] { before = level(); });
  then(0.3, [&, level] {
    EXPECT_LT(before, 100);
    EXPECT_EQ(level(), before) << "nobody holds it";
  });
  thenEnd(0.1);
  EXPECT_EQ(run(), 0);
}

TEST_F(MacWholeProgram, AHotkeyActsAtOnceAndOnceWhileTheMenuIsOpen) {
  int before = 0;
  const auto pressOnce = [] {
    pressBrightenHotkey();
    releaseBrightenHotkey();
  };
  const auto remember = [&before, this] { before = levelShownOnRight(); };
  const auto isBrighter = [&before, this] { return levelShownOnRight() > before; };
  waitUntil([this] { return hasSlider("Right") && mappedKeys() != 0; });
  then(0.7, [=, this] {
    remember();
    desktop.open(desktop.statusItems[0].menu);
    pressOnce();
  });
  waitUntil(isBrighter);
  then(0.2, [=, this] {
    remember();
    desktop.close();
  });
  then(0.3, [=, &before, this] {
    EXPECT_EQ(levelShownOnRight(), before) << "it has acted";
    pressOnce();
  });
  waitUntil(isBrighter);
  then(0, [=, this] {
    remember();
    fake::system().preferences.stored["com.quorrel.brivane"]["HoldHotkeysWhileMenuIsOpen"] = {true};
    desktop.open(desktop.statusItems[0].menu);
    pressOnce();
  });
  then(0.3, [=, &before, this] {
    EXPECT_EQ(levelShownOnRight(), before) << "the setting leaves it to Carbon";
    desktop.close();
  });
  waitUntil(isBrighter);
  thenEnd(0.1);
  EXPECT_EQ(run(), 0);
}

}  // namespace
}  // namespace brivane
