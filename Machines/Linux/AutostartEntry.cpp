// An entry is text: a line "[Desktop Entry]", then "key=value" lines up to the next line in
// brackets. The user's own entry hides a system entry of the same name.
#include "Machines/Linux/AutostartEntry.h"

#include <unistd.h>

#include <sstream>
#include <string_view>
#include <utility>
#include <variant>

#include "Machines/Common/Files/WholeFile.h"
#include "Machines/Linux/System/Environment.h"

namespace brivane {
namespace {

constexpr auto fileName = "com.quorrel.brivane.desktop";
constexpr std::string_view group = "[Desktop Entry]";
constexpr std::string_view hiddenKey = "Hidden";
constexpr std::size_t largestEntryBytes = 1 << 20;

/// The value, if the line is about the key. Blanks around the equals sign are ignored.
std::optional<std::string_view> valueIn(std::string_view line, std::string_view key) {
  if (!line.starts_with(key)) return std::nullopt;
  const auto sign = line.find_first_not_of(' ', key.size());
  if (sign == std::string_view::npos || line[sign] != '=') return std::nullopt;
  const auto value = line.find_first_not_of(' ', sign + 1);
  return value == std::string_view::npos ? "" : line.substr(value);
}

/// The entry's lines without the key "Hidden", whose last value goes into `hidden`.
std::vector<std::string> linesWithout(const std::string& text, std::optional<bool>& hidden) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  bool isInGroup = false;
  for (std::string line; std::getline(stream, line);) {
    if (line.starts_with('[')) isInGroup = line.starts_with(group);
    const auto value = isInGroup ? valueIn(line, hiddenKey) : std::nullopt;
    if (value) {
      hidden = value->starts_with("true");
    } else {
      lines.push_back(line);
    }
  }
  return lines;
}

std::string withHidden(const std::string& text, bool isHidden) {
  std::optional<bool> before;
  std::string changed;
  for (const std::string& line : linesWithout(text, before)) {
    changed += line + "\n";
    if (!line.starts_with(group)) continue;
    changed += std::string(hiddenKey) + (isHidden ? "=true" : "=false") + "\n";
  }
  return changed;
}

}  // namespace

AutostartEntry::AutostartEntry(std::vector<std::filesystem::path> autostartFolders)
    : folders(std::move(autostartFolders)) {}

std::vector<std::filesystem::path> AutostartEntry::usualFolders() {
  std::vector<std::filesystem::path> folders = {userSettingsFolder() / "autostart"};
  const std::string announced = environmentText("XDG_CONFIG_DIRS");
  std::istringstream shared(announced.empty() ? "/etc/xdg" : announced);
  for (std::string folder; std::getline(shared, folder, ':');) {
    if (folder.starts_with('/')) folders.push_back(std::filesystem::path(folder) / "autostart");
  }
  return folders;
}

bool AutostartEntry::isInstalled() const {
  return read().has_value();
}

std::optional<bool> AutostartEntry::isEnabled() const {
  std::optional<bool> hidden;
  linesWithout(read().value_or(""), hidden);
  if (!hidden) return std::nullopt;
  return !*hidden;
}

bool AutostartEntry::setEnabled(bool enabled) const {
  const auto text = read();
  return text && !writeWholeFile(folders.front() / fileName, withHidden(*text, !enabled));
}

LaunchAgent AutostartEntry::asLaunchAgent() const {
  return {"gui/" + std::to_string(::getuid()), launchAgentFile(), isInstalled(), isEnabled(),
          [this](bool enabled) { return setEnabled(enabled); }};
}

std::optional<std::string> AutostartEntry::read() const {
  for (const auto& folder : folders) {
    const auto file = folder / fileName;
    auto content = readWholeFile(file, largestEntryBytes);
    if (auto* const text = std::get_if<std::string>(&content)) return std::move(*text);
    // An unreadable entry still hides those of later folders.
    std::error_code ignored;  // no such folder, or no permission
    if (std::filesystem::exists(std::filesystem::symlink_status(file, ignored))) break;
  }
  return std::nullopt;
}

std::filesystem::path launchAgentFile() {
  return userHomeFolder() / "Library/LaunchAgents/com.quorrel.brivane.plist";
}

}  // namespace brivane
