#pragma once

#include <string>
#include <vector>

namespace brivane::bench {

/// CPU time of this process so far, all threads, in seconds.
double cpuSeconds();

double median(std::vector<double> values);

void printHeader();

/// One line: what was measured, the floor taken in the same run, and their ratio. `unit` follows
/// both figures; `target` is what is aimed at.
void printRow(const std::string& what, double measured, double floor, const std::string& unit,
              const std::string& target);

}  // namespace brivane::bench
