#include "Machines/Mac/Machine.h"

#include <utility>

namespace brivane {

MacMachine::MacMachine(std::unique_ptr<AppKitServices> services) : appKit(std::move(services)) {}

std::unique_ptr<DefaultsSuite> MacMachine::openDefaultsSuite(const std::string& name) {
  if (name == MacDefaults::domain) return nullptr;
  return std::make_unique<MacDefaultsSuite>();
}

}  // namespace brivane
