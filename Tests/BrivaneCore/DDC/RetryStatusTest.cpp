#include <gtest/gtest.h>

#include <set>

#include "BrivaneCore/DDC/RetryStatus.h"

namespace brivane {
namespace {

using State = RetryStatus::DisplayState;

TEST(RetryStatus, ShowsWhatItsFieldsSay) {
  const std::pair<RetryStatus, State> cases[] = {
      {{true, 4, 1}, State::nextTry(1)},
      {{true, 4, 5}, State::nextTry(5)},
      {{true, 0, 3}, State::nextTry(3)},
      {{true, 4, 0}, State::retryingNow()},
      {{true, 4, -1}, State::retryingNow()},
      {{true, 4, std::nullopt}, State::retryingNow()},
      {{false, 0, std::nullopt}, State::noDDC()},
      {{false, 4, 5}, State::noDDC()},
      {{false, 4, 0}, State::noDDC()},
  };
  for (const auto& [status, expected] : cases) {
    EXPECT_EQ(status.displayState(), expected)
        << status.isRetrying << " " << status.secondsUntilNextAttempt.value_or(-99);
  }
}

TEST(RetryStatus, EqualWhenAllFieldsAreEqual) {
  const RetryStatus status{true, 2, 3};
  EXPECT_EQ(status, (RetryStatus{true, 2, 3}));
  EXPECT_NE(status, (RetryStatus{false, 2, 3}));
  EXPECT_NE(status, (RetryStatus{true, 1, 3}));
  EXPECT_NE(status, (RetryStatus{true, 2, std::nullopt}));
}

TEST(RetryStatus, CountdownsOfDifferentLengthsDiffer) {
  EXPECT_NE(State::nextTry(1), State::nextTry(2));
  EXPECT_NE(State::noDDC(), State::retryingNow());
}

TEST(RetryStatus, StatesCanBeKeysOfASet) {
  const std::set<State> states = {State::nextTry(1), State::nextTry(2), State::nextTry(1),
                                  State::noDDC(), State::retryingNow()};
  EXPECT_EQ(states.size(), 4u);
}

}  // namespace
}  // namespace brivane
