#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "BrivaneCore/Seams/SystemLog.h"
#include "BrivaneCore/Seams/UserDefaults.h"
#include "Machines/Desk/Hardware/Trace.h"
#include "Machines/Desk/Machine/Faults.h"

namespace brivane {

/// A settings domain whose calls can be made to fail. A value that could not be stored stays in
/// force in this process.
class DeskDefaults : public UserDefaults {
 public:
  DeskDefaults(std::unique_ptr<UserDefaults> storedDomain, Faults& machineFaults,
               SystemLog& systemLog, const Tracer& hardwareTracer);

  std::optional<PropertyValue> object(std::string_view key) const override;
  void set(std::string_view key, const PropertyValue& value) override;
  void remove(std::string_view key) override;

 private:
  void change(std::string_view call, std::string_view key,
              const std::optional<PropertyValue>& value);

  const std::unique_ptr<UserDefaults> domain;
  Faults& faults;
  SystemLog& log;
  const Tracer& tracer;
  /// A value, or nothing for a removed key.
  std::map<std::string, std::optional<PropertyValue>, std::less<>> unstored;
};

}  // namespace brivane
