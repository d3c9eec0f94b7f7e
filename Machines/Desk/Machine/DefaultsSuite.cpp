#include "Machines/Desk/Machine/DefaultsSuite.h"

namespace brivane {

std::optional<PropertyValue::Dictionary> DeskDefaultsSuite::persistentDomain(
    std::string_view domain) {
  if (faults.strikes("DefaultsSuite.persistentDomain")) return std::nullopt;
  return domains.contents(std::string(domain));
}

}  // namespace brivane
