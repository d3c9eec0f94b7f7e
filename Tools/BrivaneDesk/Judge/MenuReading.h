#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Tools/BrivaneDesk/Judge/KnownDesk.h"

namespace brivane::judge {

/// What the menu shows, read from the lines of its items. It takes each event before the checkers.
class MenuReading {
 public:
  explicit MenuReading(const KnownDesk& knownDesk) : desk(knownDesk) {}

  void see(const TraceEvent& event);

  bool isOpen() const { return isShown; }
  /// Whether the event is one at which a person looks at the whole menu: all lines have just been
  /// written, or it closes.
  bool isLook() const { return isLookedAt; }

  /// What the menu says of one display.
  struct Entry {
    /// Behind the name and the dash: "45%", "Retrying now…".
    std::string status;
    /// The level before the percent sign; nothing for other texts.
    std::optional<std::int64_t> level;
    /// The slider's value; nothing without one.
    std::optional<double> slider;
    double lowest = 0;
    double highest = 0;

    /// Where the slider stands at a level, which may be outside its range.
    double onSlider(std::int64_t percent) const;
  };
  /// Nothing when no line begins with the display's name, or several do.
  std::optional<Entry> entryOf(DisplayNumber display) const;

  std::optional<DisplayNumber> displayOfSlider(std::size_t index) const;

 private:
  std::optional<std::size_t> headerOf(DisplayNumber display) const;

  const KnownDesk& desk;
  bool isShown = false;
  bool isLookedAt = false;
  /// How many items a menu that is being rebuilt will have.
  std::size_t wanted = 0;
  std::vector<std::string> items;
};

}  // namespace brivane::judge
