#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "BrivaneCore/Input/CarbonHotkeyRegistrar.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct CarbonHotkeyRegistrarTest : testing::Test {
  HotkeyRegistering::Callback note(const std::string& what) {
    return [this, what](std::uint32_t id) { calls.push_back(what + " " + std::to_string(id)); };
  }

  FakeMachine machine;
  std::vector<std::string> calls;
  std::unique_ptr<CarbonHotkeyRegistrar> registrar =
      std::make_unique<CarbonHotkeyRegistrar>(machine.hotkeyGrabs, machine.systemLog);
};

TEST_F(CarbonHotkeyRegistrarTest, AHotkeyIsRegisteredUnderTheSignatureTLWNAndItsNumber) {
  EXPECT_TRUE(registrar->registerHotkey({126, 6144}, 1));
  ASSERT_EQ(machine.hotkeyGrabs.registrations.size(), 1u);
  EXPECT_EQ(machine.hotkeyGrabs.registrations.begin()->second,
            (FakeHotkeys::Registration{126, 6144, {0x544C574E, 1}}));
  EXPECT_TRUE(registrar->isRegistered(1));
  EXPECT_FALSE(registrar->isRegistered(2));
  EXPECT_THAT(machine.systemLog.lines, IsEmpty());
}

TEST_F(CarbonHotkeyRegistrarTest, AllModifierBitsGoToTheSystemAsTheyAre) {
  EXPECT_TRUE(registrar->registerHotkey({126, 0x80000500}, 1));
  EXPECT_TRUE(machine.hotkeyGrabs.holds(126, 0x80000500));
}

TEST_F(CarbonHotkeyRegistrarTest, ARefusalIsLoggedWithKeysAndStatusAndNotTriedAgain) {
  machine.hotkeyGrabs.taken = {{126, 6144}};
  EXPECT_FALSE(registrar->registerHotkey({126, 6144}, 1));
  EXPECT_FALSE(registrar->isRegistered(1));
  EXPECT_THAT(
      machine.notes.take(),
      ElementsAre("[0] register hotkey 1 key 126 modifiers 6144",
                  "[0] log Brivane: could not register hotkey ctrl+opt+key126 (status -9878) — "
                  "another app may own it"));
  machine.time.runFor(std::chrono::minutes(10));
  EXPECT_THAT(machine.notes.take(), IsEmpty());
}

TEST_F(CarbonHotkeyRegistrarTest, OneHandlerIsInstalledHoweverOftenTheCallbacksChange) {
  registrar->installHandler(note("old pressed"), note("old released"));
  registrar->installHandler(note("pressed"), note("released"));
  EXPECT_THAT(machine.notes.take(), ElementsAre("[0] install hotkey handler"));
  registrar->registerHotkey({126, 6144}, 1);
  registrar->registerHotkey({125, 6144}, 2);
  machine.hotkeyGrabs.press(126, 6144);
  machine.hotkeyGrabs.release(126);
  machine.hotkeyGrabs.press(125, 6144);
  EXPECT_THAT(calls, ElementsAre("pressed 1", "released 1", "pressed 2"));
}

TEST_F(CarbonHotkeyRegistrarTest,
       AHandlerThatTheSystemRefusedIsLoggedAndAskedForAgainNextTimeAndNeverGivenBack) {
  machine.hotkeyGrabs.refusesHandler = true;
  registrar->installHandler(note("pressed"), note("released"));
  registrar->unregisterAll();
  EXPECT_THAT(machine.notes.take(),
              ElementsAre("[0] install hotkey handler",
                          "[0] log Brivane: could not install the hotkey handler — hotkeys do "
                          "nothing"));
  machine.hotkeyGrabs.refusesHandler = false;
  registrar->installHandler(note("pressed"), note("released"));
  EXPECT_THAT(machine.notes.take(), ElementsAre("[0] install hotkey handler"));
  registrar->registerHotkey({126, 6144}, 1);
  machine.hotkeyGrabs.press(126, 6144);
  EXPECT_THAT(calls, ElementsAre("pressed 1"));
}

TEST_F(CarbonHotkeyRegistrarTest, TheSignatureOfAnEventIsNotChecked) {
  registrar->installHandler(note("pressed"), note("released"));
  machine.hotkeyGrabs.handler(HotkeyEvent::pressed, {0x41424344, 7});
  machine.hotkeyGrabs.handler(HotkeyEvent::released, {0, 42});
  EXPECT_THAT(calls, ElementsAre("pressed 7", "released 42"));
}

TEST_F(CarbonHotkeyRegistrarTest, EventsWithoutACallbackAreIgnored) {
  registrar->installHandler(nullptr, note("released"));
  machine.hotkeyGrabs.handler(HotkeyEvent::pressed, {0, 1});
  registrar->installHandler(note("pressed"), nullptr);
  machine.hotkeyGrabs.handler(HotkeyEvent::released, {0, 1});
  EXPECT_THAT(calls, IsEmpty());
}

TEST_F(CarbonHotkeyRegistrarTest, UnregisteringAllRemovesTheHandlerToo) {
  registrar->installHandler(note("pressed"), note("released"));
  registrar->registerHotkey({90, 0}, 6);
  registrar->registerHotkey({80, 0}, 5);
  machine.notes.take();
  registrar->unregisterAll();
  EXPECT_THAT(machine.notes.take(),
              ElementsAre("[0] unregister hotkey 6", "[0] unregister hotkey 5",
                          "[0] remove hotkey handler"));
  EXPECT_FALSE(registrar->isRegistered(5));
  EXPECT_FALSE(registrar->isRegistered(6));
  registrar->unregisterAll();
  EXPECT_THAT(machine.notes.take(), IsEmpty());
  registrar->installHandler(note("pressed"), note("released"));
  EXPECT_THAT(machine.notes.take(), ElementsAre("[0] install hotkey handler"));
}

TEST_F(CarbonHotkeyRegistrarTest, DroppingTheRegistrarUnregistersEverything) {
  registrar->installHandler(note("pressed"), note("released"));
  registrar->registerHotkey({126, 6144}, 1);
  machine.notes.take();
  registrar.reset();
  EXPECT_THAT(machine.notes.take(),
              ElementsAre("[0] unregister hotkey 1", "[0] remove hotkey handler"));
  EXPECT_THAT(machine.hotkeyGrabs.registrations, IsEmpty());
}

TEST_F(CarbonHotkeyRegistrarTest, ACallbackMayReplaceItself) {
  registrar->installHandler(
      [&](std::uint32_t) {
        registrar->unregisterAll();
        registrar->installHandler(note("second"), nullptr);
        calls.emplace_back("first");
      },
      nullptr);
  machine.hotkeyGrabs.registerHotkey(1, 0, {0, 1});
  machine.hotkeyGrabs.press(1, 0);
  machine.hotkeyGrabs.press(1, 0);
  EXPECT_THAT(calls, ElementsAre("first", "second 1"));
}

}  // namespace
}  // namespace brivane
