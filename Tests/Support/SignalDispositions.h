#pragma once

#include <array>
#include <csignal>

namespace brivane {

/// Gives the signals that ask a program to end their default actions, as in a program that a
/// terminal started, and restores the former actions when a test that observes them is over: a test
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
