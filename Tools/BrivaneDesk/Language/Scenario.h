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

// A scenario as it was read: a desk and steps. docs/scenarios.md describes the text form.

namespace brivane {

/// The names of keys that go down together, in the order written: "control", "up", "brightness-up".
struct Keys {
  std::vector<std::string> names;

  bool operator==(const Keys&) const = default;
};

/// Words handed on as they are, such as a command's arguments.
struct Words {
  std::vector<std::string> words;

  bool operator==(const Words&) const = default;
};

/// What stands in one slot of a step's form.
using Argument = std::variant<std::int64_t, double, Microseconds, std::string, Point, Keys, Words,
                              PropertyValue>;

/// How long the step "key" keeps its keys down.
inline constexpr Microseconds keyTapDuration{50'000};

struct Step {
  /// Of the scenario file, from 1.
  int line = 0;
  /// As written, without its time.
  std::string text;
  /// From the start of the scenario; or, where it doesn't say, `pause` after the end of the step
  /// before.
  std::optional<Microseconds> time;
  Microseconds pause{0};
  /// What the step says it takes; 0 for most.
  Microseconds duration{0};
  /// The form that it was written in, from the table of forms.
  std::string_view form;
  std::vector<Argument> arguments;
  /// The identifiers of the displays that it names.
  std::vector<std::int64_t> displays;
};

enum class DeskOrigin { defaultDesk, file, text };

struct Scenario {
  DeskOrigin origin = DeskOrigin::defaultDesk;
  /// The path, relative to the scenario, or the desk's JSON.
  std::string desk;
  int deskLine = 0;
  /// How many characters stand before the desk's JSON in its first line.
  std::size_t deskColumn = 0;
  /// In the order in which they are to be taken.
  std::vector<Step> steps;
};

}  // namespace brivane
