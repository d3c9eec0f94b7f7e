#pragma once

#include "BrivaneCore/Seams/SystemLog.h"
#include "Machines/Desk/Machine/Faults.h"

namespace brivane {

/// Standard error, the system log of a desk.
class StandardErrorLog : public SystemLog {
 public:
  void write(std::string_view line) override;
};

/// A log whose lines can be made to get lost.
class DeskLog : public SystemLog {
 public:
  DeskLog(SystemLog& systemLog, Faults& machineFaults, const Tracer& hardwareTracer)
      : target(systemLog), faults(machineFaults), tracer(hardwareTracer) {}

  void write(std::string_view line) override;

 private:
  SystemLog& target;
  Faults& faults;
  const Tracer& tracer;
};

}  // namespace brivane
