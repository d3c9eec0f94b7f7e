#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "BrivaneCore/Seams/UserDefaults.h"
#include "Machines/Desk/File/DeskDescription.h"
#include "Machines/Desk/State/StateFolder.h"

namespace brivane {

/// The settings domains of a desk's user. Main thread.
class SettingsDomains {
 public:
  SettingsDomains(const DeskDescription& desk, StateFolder* stateFolder);

  /// Null when the desk has no such domain. Destroy the result before the hardware and before the
  /// folder's Runtime.
  std::unique_ptr<UserDefaults> open(const std::string& name);
  /// Everything in the domain; nothing when the desk has no such domain.
  std::optional<PropertyValue::Dictionary> contents(const std::string& name);
  /// The file of a domain that the desk has, on a desk with a state folder; what the desk file says
  /// of the domain is in it.
  std::filesystem::path file(const std::string& name);

 private:
  struct Domain {
    DefaultsDescription description;
    PropertyValue::Dictionary valuesInMemory;
  };

  StateFolder* const folder;
  std::map<std::string, Domain> domains;
};

}  // namespace brivane
