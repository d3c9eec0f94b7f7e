#pragma once

#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Seams/SystemLog.h"
#include "BrivaneCore/Seams/UserDefaults.h"

namespace brivane {

/// Settings domains of other applications, in files beside this program's.
class LinuxDefaultsSuite : public DefaultsSuite {
 public:
  /// Both must outlive this.
  LinuxDefaultsSuite(Runtime& machineRuntime, SystemLog& systemLog)
      : runtime(machineRuntime), log(systemLog) {}

  std::optional<PropertyValue::Dictionary> persistentDomain(std::string_view domain) override;

 private:
  Runtime& runtime;
  SystemLog& log;
};

}  // namespace brivane
