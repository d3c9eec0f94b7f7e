#pragma once

#include <string>

#include "BrivaneCore/Seams/UserDefaults.h"
#include "Machines/Desk/Hardware/SettingsDomains.h"
#include "Machines/Desk/Machine/Faults.h"

namespace brivane {

/// Another application's settings on the desk.
class DeskDefaultsSuite : public DefaultsSuite {
 public:
  DeskDefaultsSuite(SettingsDomains& settingsDomains, Faults& machineFaults)
      : domains(settingsDomains), faults(machineFaults) {}

  std::optional<PropertyValue::Dictionary> persistentDomain(std::string_view domain) override;

 private:
  SettingsDomains& domains;
  Faults& faults;
};

}  // namespace brivane
