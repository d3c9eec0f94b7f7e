#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <functional>

#include "Machines/Common/Processes/ThreadRuntime.h"
#include "Machines/Linux/X11/Keyboard.h"
#include "Machines/Linux/X11/XEvents.h"
#include "Machines/Linux/X11/XKeymap.h"
#include "Tests/Support/X11Rig.h"
#include "Tests/Support/XKeys.h"

namespace brivane {

/// A real X server with a PC's keyboard, and the program's connection for its events.
class XInputTest : public testing::Test {
 protected:
  XInputTest() { rig.useEvdevKeymap(); }

  /// Runs main-queue tasks for so long, and then until the server has told everything that happened
  /// so far, and what the program has asked of it in answer: a busy machine takes its time.
  void settle(Microseconds duration = std::chrono::milliseconds(30)) {
    runFor(duration);
    constexpr int questionsAndAnswers = 3;
    for (int round = 0; round < questionsAndAnswers; ++round) catchUp();
  }

  /// Whatever has been told by then.
  void runFor(Microseconds duration) {
    const TimerID timer = runtime.after(duration, [this] { runtime.stop(); });
    runtime.run();
    runtime.cancel(timer);
  }

  /// Settles until it holds; false after a minute.
  bool settleUntil(const std::function<bool()>& holds) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!holds()) {
      if (std::chrono::steady_clock::now() > deadline) return false;
      settle();
    }
    return true;
  }

  void tap(xcb_keycode_t key) {
    rig.pressKey(key);
    settle();
    rig.releaseKey(key);
    settle();
  }

  X11Rig rig;
  ThreadRuntime runtime;
  XEvents events{rig.display(), runtime};
  XKeymap keymap{events};
  LinuxKeyboard keyboard{events, keymap};

 private:
  /// Until a word of the rig's has come behind all that the server had to tell before, and the
  /// server has done what the program asked of it.
  void catchUp() {
    xcb_connection_t* const connection = events.connection();
    if (connection == nullptr) return;
    if (ear == XCB_NONE) makeEar(connection);
    bool isHeard = false;
    const Observation word = events.observe([&](const xcb_generic_event_t& event) {
      const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
      if (event.response_type != toldByClient || message.data.data32[0] != lastWord) return;
      isHeard = true;
      runtime.stop();
    });
    rig.tell(ear, ++lastWord);
    runFor(std::chrono::minutes(1));
    EXPECT_TRUE(isHeard) << "what the server says doesn't arrive";
    roundTrip(connection);
  }

  void makeEar(xcb_connection_t* connection) {
    ear = xcb_generate_id(connection);
    xcb_create_window(connection, 0, ear, events.root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    roundTrip(connection);
  }

  static void roundTrip(xcb_connection_t* connection) {
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
  }

  static constexpr std::uint8_t toldByClient = XCB_CLIENT_MESSAGE | 0x80;

  xcb_window_t ear = XCB_NONE;
  std::uint32_t lastWord = 0;
};

}  // namespace brivane
