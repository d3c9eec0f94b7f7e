#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>

#include "BrivaneCore/Support/Time.h"

namespace brivane {

/// What is to happen in a scenario, by its time: steps, and their consequences. Of what is planned
/// for one moment, consequences come first, and then whatever was planned first.
class Schedule {
 public:
  using Action = std::function<void()>;

  /// `ended` is called when the step is over, with all its consequences.
  void addStep(Microseconds time, Action take, Action ended);
  /// A consequence of the step that is being taken, or of one of its consequences.
  void addConsequence(Microseconds time, Action action);
  /// Nothing of what is planned happens any more, nor of what will be.
  void abandon();

  /// The time of what happens next; nothing when nothing is planned.
  std::optional<Microseconds> nextTime() const;
  /// Carries out what happens next.
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
  /// A step that is planned or goes on.
  struct Course {
    Action ended;
    /// How much of it is planned or goes on.
    int open = 0;
  };
  struct Plan {
    Action action;
    std::shared_ptr<Course> course;
  };

  void add(Microseconds time, Rank rank, Plan plan);

  std::map<Key, Plan> planned;
  std::uint64_t nextSequence = 1;
  /// Of the step that is being taken, or one of whose consequences is.
  std::shared_ptr<Course> course;
  bool isAbandoned = false;
};

}  // namespace brivane
