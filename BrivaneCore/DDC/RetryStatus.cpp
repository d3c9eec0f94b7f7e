#include "BrivaneCore/DDC/RetryStatus.h"

namespace brivane {

RetryStatus::DisplayState RetryStatus::displayState() const {
  if (!isRetrying) return DisplayState::noDDC();
  if (secondsUntilNextAttempt.value_or(0) < 1) return DisplayState::retryingNow();
  return DisplayState::nextTry(*secondsUntilNextAttempt);
}

}  // namespace brivane
