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

  /// Runs main-queue tasks for that time, and then until the server's events so far, and the
  /// replies to the program's requests in answer, have arrived: a busy machine may be slow.
  void settle(Microseconds duration = std::chrono::milliseconds(30)) {
    runFor(duration);
    constexpr int questionsAndAnswers = 3;
    for (int round = 0; round < questionsAndAnswers; ++round) catchUp();
  }

  /// Runs tasks whatever has arrived by then.
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
  /// Waits for a message of the rig's behind all earlier events, and until the server has handled
  /// the program's requests.
  void catchUp() {
    xcb_connection_t* const connection = events.connection();
    if (connection == nullptr) return;
    if (ownWindow == XCB_NONE) makeOwnWindow(connection);
    bool hasArrived = false;
    const Observation observation = events.observe([&](const xcb_generic_event_t& event) {
      const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
      if (event.response_type != sentByClient || message.data.data32[0] != lastNumber) return;
      hasArrived = true;
      runtime.stop();
    });
    rig.sendMessage(ownWindow, ++lastNumber);
    runFor(std::chrono::minutes(1));
    EXPECT_TRUE(hasArrived) << "the server's events don't arrive";
    roundTrip(connection);
  }

  void makeOwnWindow(xcb_connection_t* connection) {
    ownWindow = xcb_generate_id(connection);
    xcb_create_window(connection, 0, ownWindow, events.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    roundTrip(connection);
  }

  static void roundTrip(xcb_connection_t* connection) {
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
  }

  static constexpr std::uint8_t sentByClient = XCB_CLIENT_MESSAGE | 0x80;

  xcb_window_t ownWindow = XCB_NONE;
  std::uint32_t lastNumber = 0;
};

}  // namespace brivane
