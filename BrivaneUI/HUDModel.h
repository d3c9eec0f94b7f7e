#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>

#include "BrivaneCore/Support/Observers.h"

namespace brivane {

/// What the HUD shows. Main thread.
class HUDModel {
 public:
  struct Level {
    /// On the joint scale of -100 to 200.
    std::int64_t percent = 0;

    bool operator==(const Level&) const = default;
  };

  struct Connecting {
    std::string displayName;
    /// Absent while a retry is running.
    std::optional<std::int64_t> secondsUntilRetry;

    bool operator==(const Connecting&) const = default;
  };

  using State = std::variant<Level, Connecting>;

  /// Whether views may animate from the previous state to the new one.
  enum class Animations { enabled, disabled };

  HUDModel() = default;
  HUDModel(const HUDModel&) = delete;
  HUDModel& operator=(const HUDModel&) = delete;
  ~HUDModel() = default;

  const State& state() const { return currentState; }

  /// Notifies all observers, also of an equal state.
  void setState(State newState, Animations animations = Animations::enabled) {
    currentState = std::move(newState);
    observers.announce(animations);
  }

  /// The observer is called after each assignment.
  [[nodiscard]] Observation observe(Observers<Animations>::Handler observer) {
    return observers.observe(std::move(observer));
  }

 private:
  State currentState = Level{100};
  Observers<Animations> observers;
};

}  // namespace brivane
