#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "BrivaneCore/Support/PropertyValue.h"

namespace brivane::fake {

/// The settings' server, and each process's copy of what it holds.
struct Preferences {
  using Domains = std::map<std::string, PropertyValue::Dictionary>;
  struct Process {
    Domains copied;
    /// What the process has set and not yet synchronised; nothing for a key that was removed.
    std::map<std::string, std::map<std::string, std::optional<PropertyValue>>> waiting;
  };
  Domains stored;
  std::map<int, Process> processes;
  /// The process that asks now.
  int asking = 0;
  bool canBeSaved = true;
};

/// What is the process's and the user's.
struct System {
  Preferences preferences;
  bool hasMainBundle = true;
  std::optional<std::string> bundleIdentifier = "com.quorrel.brivane";
  std::optional<std::string> executable = "/Applications/Brivane.app/Contents/MacOS/Brivane";
  std::optional<std::string> resourceFolder = "/Applications/Brivane.app/Contents/Resources";
  std::optional<std::vector<std::string>> languages = std::vector<std::string>{"en-US"};
  std::vector<std::string> arguments = {"Brivane"};
  /// The home folder in the user's account; absent: there is no such account.
  std::optional<std::string> accountFolder = "/Users/someone";
  /// The user's folder for temporary files, with a slash at its end; absent: there is none.
  std::optional<std::string> temporaryFolder;
  /// The Accessibility grant.
  bool isTrusted = true;
  std::vector<std::string> log;
  /// Programs that are started in place of others, by path.
  std::map<std::string, std::string> programs;
};

System& system();
void resetSystem();

}  // namespace brivane::fake
