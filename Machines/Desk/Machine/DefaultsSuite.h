#pragma once

#include <string>

#include "BrivaneCore/Seams/UserDefaults.h"
#include "Machines/Desk/Hardware/DeskHardware.h"
#include "Machines/Desk/Machine/Faults.h"

namespace brivane {

/// Another application's settings on the desk.
class DeskDefaultsSuite : public DefaultsSuite {
 public:
  DeskDefaultsSuite(DeskHardware& deskHardware, Faults& machineFaults)
      : hardware(deskHardware), faults(machineFaults) {}

  std::optional<PropertyValue::Dictionary> persistentDomain(std::string_view domain) override;

 private:
  DeskHardware& hardware;
  Faults& faults;
};

}  // namespace brivane
