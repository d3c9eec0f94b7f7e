#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "BrivaneCore/Support/Observation.h"

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

  /// Whether the views may animate from the state before to the one that is assigned.
  enum class Animations { enabled, disabled };

  using Observer = std::function<void(Animations animations)>;

  HUDModel() = default;
  HUDModel(const HUDModel&) = delete;
  HUDModel& operator=(const HUDModel&) = delete;
  ~HUDModel() = default;

  const State& state() const { return currentState; }

  /// Tells all observers, whether or not the state is another one.
  void setState(State newState, Animations animations = Animations::enabled);

  /// The observer is called after each assignment.
  [[nodiscard]] Observation observe(Observer observer);

 private:
  State currentState = Level{100};
  std::vector<std::weak_ptr<Observer>> observers;
};

}  // namespace brivane
