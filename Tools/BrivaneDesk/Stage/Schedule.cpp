#include "Tools/BrivaneDesk/Stage/Schedule.h"

#include <utility>

namespace brivane {

/// Makes a step the current one, to which newly planned actions belong.
class Schedule::Turn {
 public:
  Turn(Schedule& owner, std::shared_ptr<Course> stepCourse)
      : schedule(owner), before(std::exchange(schedule.course, std::move(stepCourse))) {}
  ~Turn() {
    const auto current = std::exchange(schedule.course, before);
    if (current && --current->open == 0) current->ended();
  }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

 private:
  Schedule& schedule;
  const std::shared_ptr<Course> before;
};

void Schedule::addStep(Microseconds time, Action take, Action ended) {
  add(time, Rank::step, {std::move(take), std::make_shared<Course>(Course{std::move(ended)})});
}

void Schedule::addConsequence(Microseconds time, Action action) {
  add(time, Rank::consequence, {std::move(action), course});
}

void Schedule::add(Microseconds time, Rank rank, Plan plan) {
  if (isAbandoned) return;
  if (plan.course) ++plan.course->open;
  planned.emplace(Key{time, rank, nextSequence++}, std::move(plan));
}

void Schedule::abandon() {
  isAbandoned = true;
  planned.clear();
}

std::optional<Microseconds> Schedule::nextTime() const {
  if (planned.empty()) return std::nullopt;
  return planned.begin()->first.time;
}

void Schedule::takeNext() {
  const Plan next = std::move(planned.begin()->second);
  planned.erase(planned.begin());
  const Turn turn(*this, next.course);
  next.action();
}

}  // namespace brivane
