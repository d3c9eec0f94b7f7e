#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "Tools/BrivaneDesk/Language/Scenario.h"

namespace brivane {

/// The scenario, or the first error in one line: `fileName`, line number, what was expected there.
std::variant<Scenario, std::string> parseScenario(std::string_view text, std::string_view fileName);

/// The single step, without a time, or the error in one line that says what was expected.
std::variant<Step, std::string> parseStep(std::string_view line);

}  // namespace brivane
