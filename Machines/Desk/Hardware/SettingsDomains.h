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
  /// The domain's file, for a program that changes it without a machine; nothing when the desk has
  /// no such domain, or keeps it in memory.
  std::optional<std::filesystem::path> file(const std::string& name);

 private:
  struct Domain {
    DefaultsDescription description;
    PropertyValue::Dictionary valuesInMemory;
  };

  StateFolder* const folder;
  std::map<std::string, Domain> domains;
};

}  // namespace brivane
