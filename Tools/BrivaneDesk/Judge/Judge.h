#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Tools/BrivaneDesk/Judge/Checker.h"
#include "Tools/BrivaneDesk/Judge/MenuReading.h"
#include "Tools/BrivaneDesk/Judge/RestoreTimes.h"

namespace brivane::judge {

/// All checkers over one day's trace. They share no code with the program that they judge.
class Judge {
 public:
  explicit Judge(const DeskDescription& deskDescription);

  /// A line of the trace or a detail, as it happens.
  void see(Microseconds time, const std::string& line);
  /// Takes the breaches found since the last call.
  std::vector<Breach> takeBreaches();

 private:
  const DeskDescription description;
  KnownDesk desk;
  MenuReading menu{desk};
  RestoreTimes restores{desk};
  std::vector<Breach> breaches;
  std::vector<std::unique_ptr<Checker>> checkers;
};

}  // namespace brivane::judge
