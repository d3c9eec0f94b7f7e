#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Machines/Desk/File/JsonItem.h"
#include "Machines/Desk/File/JsonValue.h"

namespace brivane {

/// The members of one JSON object. Call `finish()` after the last read by name: it notes an error
/// for members that were never read.
class JsonSection {
 public:
  JsonSection(const JsonValue::Object& objectMembers, std::string sectionPath,
              JsonError& firstError)
      : members(objectMembers), path(std::move(sectionPath)), error(firstError) {}

  std::optional<JsonItem> find(std::string_view key);

  /// Like `JsonItem::to` for the member; leaves `target` as it is when the member is absent.
  template <typename Target, typename... Limits>
  void read(std::string_view key, Target& target, const Limits&... limits) {
    if (const auto item = find(key)) item->to(target, limits...);
  }

  /// The same for a member that must be there.
  template <typename Target, typename... Limits>
  void require(std::string_view key, Target& target, const Limits&... limits) {
    if (const auto item = find(key)) {
      item->to(target, limits...);
    } else {
      complainOfMissing(key);
    }
  }

  /// All members, in file order, for objects with arbitrary keys.
  std::vector<std::pair<std::string, JsonItem>> all() const;

  void complain(const std::string& what) const;
  void finish() const;

 private:
  void complainOfMissing(std::string_view key) const;

  const JsonValue::Object& members;
  std::string path;
  JsonError& error;
  std::vector<std::string_view> known;
};

}  // namespace brivane
