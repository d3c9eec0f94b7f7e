#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>

#include "BrivaneCore/Support/Time.h"

namespace brivane {

/// The planned actions of a scenario by their time: steps and their consequences. At one moment,
/// consequences come first, then the others in the order of planning.
class Schedule {
 public:
  using Action = std::function<void()>;

  /// `ended` is called after the step and all that it has planned.
  void addStep(Microseconds time, Action take, Action ended);
  /// Plans a consequence of the current step, or of its current consequence.
  void addConsequence(Microseconds time, Action action);
  /// Drops all planned actions, and later ones.
  void abandon();

  /// The time of the next action; nothing when none is planned.
  std::optional<Microseconds> nextTime() const;
  /// Runs the next action.
  void takeNext();

 private:
  class Turn;
  enum class Rank { consequence, step };
  struct Key {
    Microseconds time;
    Rank rank;
    std::uint64_t sequence;

    auto operator<=>(const Key&) const = default;
  };
  /// A planned or running step.
  struct Course {
    Action ended;
    /// The number of its actions that are planned or running.
    int open = 0;
  };
  struct Plan {
    Action action;
    std::shared_ptr<Course> course;
  };

  void add(Microseconds time, Rank rank, Plan plan);

  std::map<Key, Plan> planned;
  std::uint64_t nextSequence = 1;
  /// The current step's.
  std::shared_ptr<Course> course;
  bool isAbandoned = false;
};

}  // namespace brivane
