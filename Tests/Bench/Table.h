#pragma once

#include <optional>
#include <string>
#include <vector>

namespace brivane::bench {

/// CPU time of this process so far, all threads, in seconds.
double cpuSeconds();

double median(std::vector<double> values);

/// What is aimed at: of the value itself, or of its ratio to the floor.
struct Target {
  enum class Kind { none, atMost, atLeast, ratioAtMost };
  Kind kind = Kind::none;
  double limit = 0;
};

Target atMost(double limit);
Target atLeast(double limit);
Target ratioAtMost(double limit);

/// What was measured, and the floor taken in the same run, if there is one. `unit` is that of both.
struct Row {
  std::string name;
  double value = 0;
  std::optional<double> floor;
  std::string unit;
  Target target{};
};

/// Prints each row as soon as it is known, because the next one may take a minute.
class FigureTable {
 public:
  enum class Format {
    /// Columns for people.
    text,
    /// One JSON object in each line.
    json
  };

  explicit FigureTable(Format tableFormat) : format(tableFormat) {}

  /// Nothing in JSON.
  void printHeader() const;
  void print(const Row& row) const;

 private:
  const Format format;
};

}  // namespace brivane::bench
