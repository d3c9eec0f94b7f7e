#include "Tests/Mac/Machine/Fakes/FakeMac.h"

#include <utility>

namespace brivane::fake {
namespace {

std::unique_ptr<Mac>& current() {
  static std::unique_ptr<Mac> only = std::make_unique<Mac>();
  return only;
}

}  // namespace

Mac& mac() {
  return *current();
}

void resetMac() {
  current() = std::make_unique<Mac>();
}

void Mac::note(std::string call) {
  const std::lock_guard lock(mutex);
  calls.push_back(std::move(call));
}

std::optional<std::int32_t> Mac::failureOf(const std::string& function) {
  const std::lock_guard lock(mutex);
  const auto found = failures.find(function);
  if (found == failures.end()) return std::nullopt;
  return found->second;
}

Display* Mac::find(DisplayID display) {
  for (Display& candidate : displays) {
    if (candidate.id == display) return &candidate;
  }
  return nullptr;
}

}  // namespace brivane::fake
