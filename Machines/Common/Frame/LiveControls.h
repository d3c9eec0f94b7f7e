#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <variant>
#include <vector>

// The texts and controls of one window of a simulated machine, for a toolkit to show. Created anew
// after every change of the hardware. Main thread.

namespace brivane {

struct LiveButton {
  std::string title;
  std::function<void()> press;
  /// A description for titles that are only a sign; else empty.
  std::string description;
};

/// A choice of one option, such as a monitor's mood.
struct LiveChoice {
  std::string title;
  std::vector<std::string> options;
  std::size_t chosen = 0;
  std::function<void(std::size_t option)> choose;
};

using LiveControl = std::variant<LiveButton, LiveChoice>;

struct LiveControls {
  /// The window's title.
  std::string title;
  /// Lines of text.
  std::vector<std::string> status;
  std::vector<LiveControl> controls;
};

}  // namespace brivane
