#pragma once

#include <mutex>
#include <optional>
#include <shared_mutex>

namespace brivane {

/// Blocks messages to monitors from just before the machine sleeps until it wakes. Any thread.
class SleepGate {
 public:
  using Passage = std::shared_lock<std::shared_mutex>;

  /// While the passage is held, `shut()` waits; nothing while the gate is shut.
  std::optional<Passage> enter() {
    Passage passage(passages);
    if (isShut) return std::nullopt;
    return passage;
  }

  /// Waits for held passages, each at most one message long.
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
