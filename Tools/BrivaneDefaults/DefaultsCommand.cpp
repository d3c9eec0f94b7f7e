#include "Tools/BrivaneDefaults/DefaultsCommand.h"

#include <algorithm>
#include <optional>
#include <ostream>

#include "BrivaneCore/KeyRelay/RelaySettings.h"
#include "BrivaneCore/Support/Lookup.h"
#include "Machines/Common/Files/PropertyJson.h"
#include "Machines/Common/Files/SettingsFile.h"
#include "Tools/BrivaneDefaults/HiddenSettings.h"

namespace brivane {
namespace {

using Values = PropertyValue::Dictionary;

struct Request {
  /// Null for all settings, which can only be read.
  const HiddenSetting* setting = nullptr;
  bool isChange = false;
  /// The new value of a change; nothing to remove the setting.
  std::optional<PropertyValue> value;
};

const HiddenSetting* findSetting(std::string_view key) {
  const auto found = std::ranges::find(hiddenSettings(), key, &HiddenSetting::key);
  return found == hiddenSettings().end() ? nullptr : &*found;
}

/// In quotation marks, on one line.
std::string quoted(const std::string& word) {
  return jsonOfProperty({word});
}

std::string unknownSetting(const std::string& name) {
  std::string known;
  for (const auto& setting : hiddenSettings()) {
    known += (known.empty() ? "" : ", ") + std::string(setting.key);
  }
  return "there is no setting " + quoted(name) + "; there are " + known;
}

/// The request, or what is wrong with the words.
std::variant<Request, std::string> understood(const std::vector<std::string>& words) {
  const std::string action = words.empty() ? "" : words.front();
  if (action != "read" && action != "write" && action != "delete") {
    return "expected read, write or delete; --help says more";
  }
  if (action == "read" && words.size() == 1) return Request{};
  if (action == "write" && words.size() != 3) {
    return "write takes a name and a value, such as: write SubZeroDimming false";
  }
  if (action != "write" && words.size() != 2) {
    return action + " takes one name, such as: " + action + " SubZeroDimming";
  }
  const auto* const setting = findSetting(words[1]);
  if (setting == nullptr) return unknownSetting(words[1]);
  if (action != "write") return Request{setting, action == "delete", std::nullopt};
  auto value = settingValue(*setting, words[2]);
  if (!value) return words[1] + " takes " + takenBy(*setting) + ", not " + quoted(words[2]);
  return Request{setting, true, std::move(value)};
}

/// What is wrong; nothing when all is well.
using Complaint = std::optional<std::string>;

Complaint printAll(const Values& values, std::ostream& out) {
  for (const auto& setting : hiddenSettings()) {
    const auto found = values.find(setting.key);
    if (found == values.end()) continue;
    out << setting.key << " " << jsonOfProperty(found->second) << "\n";
  }
  return std::nullopt;
}

Complaint printOne(const Values& values, const HiddenSetting& setting, std::ostream& out) {
  const auto found = values.find(setting.key);
  if (found == values.end()) return std::string(setting.key) + " is not set";
  out << jsonOfProperty(found->second) << "\n";
  return std::nullopt;
}

Complaint unusable(const SettingsFile& file, const std::string& what, const FileProblem& problem) {
  return "the settings in " + file.path.string() + " can't be " + what + " (" + problem.reason +
         "), and stay as they are";
}

/// The program refuses to relay both brightness keys as one.
Complaint sameRelayKeys(const Values& values, const Request& request) {
  if (request.setting->kind != HiddenSetting::Kind::relayKey) return std::nullopt;
  const auto up = RelaySettings::upKeyOf(lookUp(values, RelaySettings::brightnessKeyRelayUpKey));
  const auto down =
      RelaySettings::downKeyOf(lookUp(values, RelaySettings::brightnessKeyRelayDownKey));
  if (up != down) return std::nullopt;
  return "brightness up and down can't become the same key, " + std::to_string(up.virtualKeyCode) +
         " (" + std::string(up.name) + "); nothing was changed";
}

Complaint change(const SettingsFile& file, const Request& request, Runtime& runtime) {
  const auto lock = file.lock(runtime, SettingsFile::lockPatience);
  if (const auto* stuck = std::get_if<FileProblem>(&lock)) return unusable(file, "changed", *stuck);
  auto loaded = file.read();
  if (const auto* problem = std::get_if<FileProblem>(&loaded)) {
    return unusable(file, "read", *problem);
  }
  const auto& before = std::get<Values>(loaded);
  auto values = before;
  values.erase(std::string(request.setting->key));
  if (request.value) values.emplace(request.setting->key, *request.value);
  if (values == before) return std::nullopt;
  if (auto same = sameRelayKeys(values, request)) return same;
  if (const auto problem = file.write(values, PowerCut::keepsFile)) {
    return unusable(file, "changed", *problem);
  }
  syncFileToDisk(file.path);
  return std::nullopt;
}

Complaint carryOut(const Request& request, const SettingsFile& file, Runtime& runtime,
                   std::ostream& out) {
  if (request.isChange) {
    auto complaint = change(file, request, runtime);
    const auto after = request.setting->afterChange;
    if (!complaint && !after.empty()) out << after << "\n";
    return complaint;
  }
  const auto loaded = file.read();
  if (const auto* problem = std::get_if<FileProblem>(&loaded)) {
    return unusable(file, "read", *problem);
  }
  const auto& values = std::get<Values>(loaded);
  return request.setting == nullptr ? printAll(values, out)
                                    : printOne(values, *request.setting, out);
}

}  // namespace

int changeDefaults(const std::vector<std::string>& words,
                   const std::function<FileOrProblem()>& findFile, Runtime& runtime,
                   std::ostream& out, std::ostream& errors) {
  const auto complain = [&errors](const std::string& what, int status) {
    errors << "brivane-defaults: " << what << std::endl;
    return status;
  };
  const auto request = understood(words);
  constexpr int wrongUsage = 64;  // from sysexits.h
  if (const auto* mistake = std::get_if<std::string>(&request)) {
    return complain(*mistake, wrongUsage);
  }
  const auto found = findFile();
  if (const auto* problem = std::get_if<std::string>(&found)) return complain(*problem, 1);
  const SettingsFile file(std::get<std::filesystem::path>(found));
  const auto complaint = carryOut(std::get<Request>(request), file, runtime, out);
  return complaint ? complain(*complaint, 1) : 0;
}

std::string defaultsHelp() {
  std::string text = R"(brivane-defaults read [NAME]
    prints the hidden settings that are set, or the value of one

brivane-defaults write NAME VALUE
brivane-defaults delete NAME
    sets one, or returns it to its default

brivane-defaults --help, brivane-defaults --version

With BRIVANE_DESK set, the settings are those of that desk. The settings:

)";
  for (const auto& setting : hiddenSettings()) {
    text += "    " + std::string(setting.key) + "\n        " + std::string(setting.meaning) + ": " +
            takenBy(setting) + "\n";
  }
  return text;
}

}  // namespace brivane
