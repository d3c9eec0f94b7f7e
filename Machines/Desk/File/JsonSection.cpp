#include "Machines/Desk/File/JsonSection.h"

#include <algorithm>

#include "Machines/Desk/File/Suggestion.h"

namespace brivane {

std::optional<JsonItem> JsonSection::find(std::string_view key) {
  known.push_back(key);
  const auto member = std::ranges::find(members, key, &JsonMember::key);
  if (error || member == members.end()) return std::nullopt;
  return JsonItem(member->value, childPath(path, key), error);
}

std::vector<std::pair<std::string, JsonItem>> JsonSection::all() const {
  std::vector<std::pair<std::string, JsonItem>> items;
  for (const auto& [key, value] : members) {
    items.emplace_back(key, JsonItem(value, childPath(path, key), error));
  }
  return items;
}

void JsonSection::complain(const std::string& what) const {
  note(error, path, what);
}

/// A misspelt member is reported as such, rather than as missing.
void JsonSection::complainOfMissing(std::string_view key) const {
  for (const auto& member : members) {
    const auto hint = suggestion(member.key, {key});
    const bool isOther = std::ranges::find(known, member.key) != known.end();
    if (!isOther && !hint.empty()) {
      return complain("unknown key " + jsonExcerpt({member.key}) + hint);
    }
  }
  complain("the key \"" + std::string(key) + "\" is missing");
}

void JsonSection::finish() const {
  for (const auto& member : members) {
    if (std::ranges::find(known, member.key) != known.end()) continue;
    complain("unknown key " + jsonExcerpt({member.key}) + suggestion(member.key, known));
  }
}

}  // namespace brivane
