// A user's languages are tags with script and region ("zh-Hans-CN"), while translations are named
// as generally as possible ("zh-Hans", "fr"); most of this file matches them.
#include "BrivaneUI/StringCatalogue.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "BrivaneCore/Support/Lookup.h"

namespace brivane {
namespace {

/// Nothing when the bundle lacks the language, or its file has a mistake.
std::optional<StringTable> readLanguage(Resources& resources, SystemLog& log,
                                        const std::string& bundle, const std::string& language) {
  const std::string path = language + ".lproj/Localizable.strings";
  const auto bytes = resources.read(bundle, path);
  if (!bytes) return std::nullopt;
  auto parsed = parseStringsFile(*bytes);
  if (const auto* error = std::get_if<StringsFileError>(&parsed)) {
    log.write("Brivane: " + bundle + "/" + path + ", " + error->sentence);
    return std::nullopt;
  }
  return std::get<StringTable>(std::move(parsed));
}

/// The region decides the script of a Chinese tag without one.
bool impliesSimplifiedChinese(std::string_view tag) {
  constexpr std::array<std::string_view, 4> tags = {"zh", "zh-CN", "zh-SG", "zh-MY"};
  return std::ranges::find(tags, tag) != tags.end();
}

/// Traditional Chinese must not fall back to "zh".
bool isTraditionalChinese(std::string_view tag) {
  return tag.starts_with("zh-") && !tag.starts_with("zh-Hans") && !impliesSimplifiedChinese(tag);
}

struct Placeholder {
  /// Includes the percent sign.
  std::size_t length = 0;
  /// From 1; absent for the next in order.
  std::optional<std::size_t> number;
};

/// The placeholder at the start of `text`, whose first character is a percent sign.
std::optional<Placeholder> readPlaceholder(std::string_view text) {
  Placeholder placeholder;
  std::size_t kind = 1;
  std::size_t number = 0;
  const auto* const end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data() + 1, end, number);
  if (parsed.ec == std::errc{} && parsed.ptr != end && *parsed.ptr == '$') {
    placeholder.number = number;
    kind = static_cast<std::size_t>(parsed.ptr - text.data()) + 1;
  }
  if (kind >= text.size() || (text[kind] != '@' && text[kind] != 'd')) return std::nullopt;
  placeholder.length = kind + 1;
  return placeholder;
}

}  // namespace

StringCatalogue::StringCatalogue(Resources& resources, SystemLog& log, std::string_view bundle) {
  const std::string name(bundle);
  english = readLanguage(resources, log, name, "en").value_or(StringTable{});
  for (const std::string& tag : resources.preferredLanguages()) {
    for (const std::string& language : languagesServing(tag)) {
      if (language == "en") return;
      if (auto table = readLanguage(resources, log, name, language)) {
        localized = *std::move(table);
        return;
      }
    }
  }
}

std::string StringCatalogue::text(std::string_view key) const {
  if (auto text = lookUp(localized, key)) return *std::move(text);
  if (auto text = lookUp(english, key)) return *std::move(text);
  return std::string(key);
}

std::string StringCatalogue::format(std::string_view key,
                                    const std::vector<std::string>& arguments) const {
  return fillPlaceholders(text(key), arguments);
}

std::string fillPlaceholders(std::string_view text, const std::vector<std::string>& arguments) {
  std::string filled;
  std::size_t next = 1;
  while (!text.empty()) {
    const auto percent = std::min(text.find('%'), text.size());
    filled += text.substr(0, percent);
    text.remove_prefix(percent);
    if (text.empty()) break;
    std::size_t length = 1;
    if (text.starts_with("%%")) {
      filled += '%';
      length = 2;
    } else if (const auto placeholder = readPlaceholder(text)) {
      const std::size_t number = placeholder->number ? *placeholder->number : next++;
      length = placeholder->length;
      const bool exists = number >= 1 && number <= arguments.size();
      filled += exists ? arguments[number - 1] : text.substr(0, length);
    } else {
      filled += '%';
    }
    text.remove_prefix(length);
  }
  return filled;
}

std::vector<std::string> languagesServing(std::string_view tag) {
  std::vector<std::string> languages = {std::string(tag)};
  if (impliesSimplifiedChinese(tag)) languages.emplace_back("zh-Hans");
  if (isTraditionalChinese(tag)) return languages;
  for (auto end = tag.rfind('-'); end != std::string_view::npos; end = tag.rfind('-')) {
    tag = tag.substr(0, end);
    languages.emplace_back(tag);
  }
  return languages;
}

}  // namespace brivane
