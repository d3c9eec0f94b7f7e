#pragma once

#include <array>
#include <csignal>

namespace brivane {

/// Has the signals that ask a program to end do what they do in a program that a terminal started,
/// and gives them back what they did when a test is over that had a program listen to them: a test
/// that hangs later must be stoppable.
class SignalDispositions {
 public:
  SignalDispositions() {
    struct sigaction standard {};
    standard.sa_handler = SIG_DFL;
    for (std::size_t i = 0; i < signals.size(); ++i) sigaction(signals[i], &standard, &actions[i]);
  }
  ~SignalDispositions() {
    for (std::size_t i = 0; i < signals.size(); ++i) sigaction(signals[i], &actions[i], nullptr);
  }
  SignalDispositions(const SignalDispositions&) = delete;
  SignalDispositions& operator=(const SignalDispositions&) = delete;

 private:
  static constexpr std::array<int, 3> signals = {SIGTERM, SIGINT, SIGHUP};

  std::array<struct sigaction, signals.size()> actions{};
};

}  // namespace brivane
