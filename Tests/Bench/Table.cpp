#include "Tests/Bench/Table.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <iomanip>
#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>

namespace brivane::bench {
namespace {

std::string figure(double value, const std::string& unit) {
  std::ostringstream text;
  const int digits = value < 1 ? 4 : value < 100 ? 2 : 0;
  text << std::fixed << std::setprecision(digits) << value << " " << unit;
  return text.str();
}

/// To two digits, as people are shown it: a target is met when it reads so.
std::optional<double> ratio(const Row& row) {
  if (!row.floor || *row.floor <= 0) return std::nullopt;
  return std::round(row.value / *row.floor * 100) / 100;
}

std::string words(const Row& row) {
  std::ostringstream text;
  switch (row.target.kind) {
    case Target::Kind::none:
      return {};
    case Target::Kind::atMost:
      text << "<= " << row.target.limit << " " << row.unit;
      break;
    case Target::Kind::atLeast:
      text << ">= " << row.target.limit << " " << row.unit;
      break;
    case Target::Kind::ratioAtMost:
      text << "<= " << row.target.limit << " x";
      break;
  }
  return text.str();
}

/// Nothing for a row without a target, or without the floor that its target is about.
std::optional<bool> isMet(const Row& row) {
  switch (row.target.kind) {
    case Target::Kind::none:
      return std::nullopt;
    case Target::Kind::atMost:
      return row.value <= row.target.limit;
    case Target::Kind::atLeast:
      return row.value >= row.target.limit;
    case Target::Kind::ratioAtMost:
      if (const auto known = ratio(row)) return *known <= row.target.limit;
  }
  return std::nullopt;
}

void printText(const Row& row) {
  const auto times = ratio(row);
  std::cout << std::left << std::setw(58) << row.name << std::right << std::setw(14)
            << figure(row.value, row.unit) << std::setw(14)
            << (row.floor ? figure(*row.floor, row.unit) : "") << std::setw(12)
            << (times ? figure(*times, "x") : "") << "  " << words(row)
            << (isMet(row).value_or(true) ? "" : "  MISSED") << std::endl;
}

template <typename Value>
nlohmann::json valueOrNull(const std::optional<Value>& value) {
  return value ? nlohmann::json(*value) : nlohmann::json();
}

void printJson(const Row& row) {
  const std::string target = words(row);
  const nlohmann::ordered_json line = {{"name", row.name},
                                       {"value", row.value},
                                       {"floor", valueOrNull(row.floor)},
                                       {"ratio", valueOrNull(ratio(row))},
                                       {"unit", row.unit},
                                       {"target", target},
                                       {"isMet", valueOrNull(isMet(row))}};
  std::cout << line.dump() << std::endl;
}

}  // namespace

double cpuSeconds() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

Target atMost(double limit) {
  return {Target::Kind::atMost, limit};
}

Target atLeast(double limit) {
  return {Target::Kind::atLeast, limit};
}

Target ratioAtMost(double limit) {
  return {Target::Kind::ratioAtMost, limit};
}

void FigureTable::printHeader() const {
  if (format == Format::json) return;
  std::cout << std::left << std::setw(58) << "what" << std::right << std::setw(14) << "measured"
            << std::setw(14) << "floor" << std::setw(12) << "ratio"
            << "  target\n"
            << std::string(118, '-') << "\n";
}

void FigureTable::print(const Row& row) const {
  if (format == Format::json) {
    printJson(row);
  } else {
    printText(row);
  }
}

}  // namespace brivane::bench
