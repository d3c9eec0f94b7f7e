#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "BrivaneCore/Support/Geometry.h"
#include "BrivaneCore/Support/PropertyValue.h"
#include "BrivaneCore/Support/Time.h"

// A parsed scenario: a desk and steps. docs/scenarios.md describes the text form.

namespace brivane {

/// The names of keys pressed together, in the written order: "control", "up", "brightness-up".
struct Keys {
  std::vector<std::string> names;

  bool operator==(const Keys&) const = default;
};

/// Words passed on unchanged, such as a command's arguments.
struct Words {
  std::vector<std::string> words;

  bool operator==(const Words&) const = default;
};

/// The value of one slot of a step's form.
using Argument = std::variant<std::int64_t, double, Microseconds, std::string, Point, Keys, Words,
                              PropertyValue>;

/// How long the step "key" holds its keys.
inline constexpr Microseconds keyTapDuration{50'000};

struct Step {
  /// The line of the scenario file, from 1.
  int line = 0;
  /// As written, without its time.
  std::string text;
  /// The time from the scenario's start; if absent, the step begins `pause` after the end of the
  /// previous one.
  std::optional<Microseconds> time;
  Microseconds pause{0};
  /// The step's own duration; 0 for most.
  Microseconds duration{0};
  /// The step's form, from the table of forms.
  std::string_view form;
  std::vector<Argument> arguments;
  /// The step may be impossible, and does nothing then.
  bool isTried = false;
  /// The identifiers of the displays that the step names.
  std::vector<std::int64_t> displays;
};

enum class DeskOrigin { defaultDesk, file, text };

struct Scenario {
  DeskOrigin origin = DeskOrigin::defaultDesk;
  /// The path, relative to the scenario, or the desk's JSON.
  std::string desk;
  int deskLine = 0;
  /// The number of characters before the desk's JSON in its first line.
  std::size_t deskColumn = 0;
  /// In the order of their execution.
  std::vector<Step> steps;
};

}  // namespace brivane
