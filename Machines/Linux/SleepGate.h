#pragma once

#include <mutex>
#include <optional>
#include <shared_mutex>

namespace brivane {

/// Whether messages may go out to monitors: not from when the machine is about to sleep until it
/// woke. Any thread.
class SleepGate {
 public:
  using Passage = std::shared_lock<std::shared_mutex>;

  /// As long as the passage is held the machine doesn't sleep; none when it is about to, or does.
  std::optional<Passage> enter() {
    Passage passage(passages);
    if (isShut) return std::nullopt;
    return passage;
  }

  /// Waits for those who have entered, a message's time at most.
  void shut() {
    const std::unique_lock alone(passages);
    isShut = true;
  }

  void open() {
    const std::unique_lock alone(passages);
    isShut = false;
  }

 private:
  std::shared_mutex passages;
  bool isShut = false;
};

}  // namespace brivane
