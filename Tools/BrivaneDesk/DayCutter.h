#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "Machines/Desk/File/JsonValue.h"

namespace brivane {

/// Cuts a failing day down: takes away steps, displays with the steps that name them, and members
/// of the desk, as long as the day still fails.
class DayCutter {
 public:
  using StillFails = std::function<bool(const std::string& day)>;

  /// The day is a scenario with its desk in it; one that can't be read is not cut.
  DayCutter(const std::string& failingDay, StillFails whetherStillFails);

  /// The day without all that it can do without, one at a time; the whole day if that doesn't fail.
  std::string shortest();

 private:
  struct Line {
    std::string text;
    /// The identifiers of the displays that the step names.
    std::vector<std::int64_t> displays;
  };

  bool fails() const { return stillFails(text()); }
  std::string text() const;
  void cutSteps();
  bool tryWithoutSteps(std::size_t first, std::size_t count);
  void cutDisplays();
  void tryWithoutDisplay(JsonValue::Array& displays, std::size_t index);
  void cutInside(JsonValue& value);

  const std::string whole;
  const StillFails stillFails;
  JsonValue desk;
  std::vector<Line> steps;
};

}  // namespace brivane
