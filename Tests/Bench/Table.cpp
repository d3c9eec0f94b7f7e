#include "Tests/Bench/Table.h"

#include <algorithm>
#include <ctime>
#include <iomanip>
#include <iostream>
#include <sstream>

namespace brivane::bench {
namespace {

std::string figure(double value, const std::string& unit) {
  std::ostringstream text;
  const int digits = value < 1 ? 4 : value < 100 ? 2 : 0;
  text << std::fixed << std::setprecision(digits) << value << " " << unit;
  return text.str();
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

void printHeader() {
  std::cout << std::left << std::setw(58) << "what" << std::right << std::setw(14) << "measured"
            << std::setw(14) << "floor" << std::setw(12) << "ratio"
            << "  target\n"
            << std::string(112, '-') << "\n";
}

void printRow(const std::string& what, double measured, double floor, const std::string& unit,
              const std::string& target) {
  std::cout << std::left << std::setw(58) << what << std::right << std::setw(14)
            << figure(measured, unit) << std::setw(14) << figure(floor, unit) << std::setw(12)
            << figure(floor > 0 ? measured / floor : 0, "x") << "  " << target << std::endl;
}

}  // namespace brivane::bench
