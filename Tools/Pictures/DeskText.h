#pragma once

#include <string>

#include "BrivaneUI/Appearance.h"

namespace brivane {

/// The text of a desk file with that appearance and the other `members`.
inline std::string deskText(Appearance appearance, const std::string& members) {
  const std::string name = appearance == Appearance::dark ? "dark" : "light";
  return R"({"appearance": ")" + name + R"(", )" + members + "}";
}

}  // namespace brivane
