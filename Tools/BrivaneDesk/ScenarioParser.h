#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "Tools/BrivaneDesk/Language/Scenario.h"

namespace brivane {

/// The scenario that the text describes; or what is wrong with it, in one line that begins with
/// `fileName` and the line's number and says what was expected there.
std::variant<Scenario, std::string> parseScenario(std::string_view text, std::string_view fileName);

/// The one step that the line describes, without a time; or what is wrong with it, in one line that
/// says what was expected.
std::variant<Step, std::string> parseStep(std::string_view line);

}  // namespace brivane
