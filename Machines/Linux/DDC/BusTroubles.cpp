#include "Machines/Linux/DDC/BusTroubles.h"

#include <algorithm>
#include <cerrno>

namespace brivane {
namespace {

BusTrouble troubleFor(std::int32_t error) {
  switch (error) {
    case EACCES:
    case EPERM:
      return BusTrouble::notPermitted;
    case ENOENT:
      return BusTrouble::noBus;
    case EBUSY:
      return BusTrouble::busy;
    case EHOSTDOWN:
      return BusTrouble::asleep;
    default:
      return BusTrouble::noAnswer;
  }
}

}  // namespace

void BusTroubles::note(const std::string& monitor, BusTrouble trouble) {
  const std::scoped_lock lock(mutex);
  troubles[monitor] = trouble;
}

void BusTroubles::noteResult(const std::string& monitor, std::int32_t error) {
  if (error != 0) return note(monitor, troubleFor(error));
  const std::scoped_lock lock(mutex);
  troubles.erase(monitor);
}

std::optional<BusTroubles::Trouble> BusTroubles::first() const {
  const std::scoped_lock lock(mutex);
  const auto found =
      std::ranges::min_element(troubles, {}, [](const auto& trouble) { return trouble.second; });
  if (found == troubles.end()) return std::nullopt;
  return Trouble{found->first, found->second};
}

}  // namespace brivane
