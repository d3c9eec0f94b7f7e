#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <variant>
#include <vector>

// What a person can read and do at a part of a simulated machine, for a toolkit to show. Each is
// made anew whenever the hardware has changed. Main thread.

namespace brivane {

struct LiveButton {
  std::string title;
  std::function<void()> press;
  /// In more words, where the title is a sign; empty where it says enough.
  std::string description;
};

/// One of several, such as a monitor's mood.
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
  /// Lines to read.
  std::vector<std::string> status;
  std::vector<LiveControl> controls;
};

}  // namespace brivane
