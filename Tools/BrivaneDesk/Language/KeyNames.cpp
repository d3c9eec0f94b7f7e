// Keys are named by their labels on a US keyboard; the codes are positions, the same for every
// layout.
#include "Tools/BrivaneDesk/Language/KeyNames.h"

#include <algorithm>
#include <array>

#include "BrivaneCore/Seams/Keyboard.h"

namespace brivane {
namespace {

struct NamedKey {
  std::string_view name;
  std::uint16_t code;
};

constexpr auto namedKeys = std::to_array<NamedKey>({
    {"a", 0},        {"s", 1},          {"d", 2},         {"f", 3},
    {"h", 4},        {"g", 5},          {"z", 6},         {"x", 7},
    {"c", 8},        {"v", 9},          {"b", 11},        {"q", 12},
    {"w", 13},       {"e", 14},         {"r", 15},        {"y", 16},
    {"t", 17},       {"1", 18},         {"2", 19},        {"3", 20},
    {"4", 21},       {"6", 22},         {"5", 23},        {"equal", 24},
    {"9", 25},       {"7", 26},         {"minus", 27},    {"8", 28},
    {"0", 29},       {"o", 31},         {"u", 32},        {"i", 34},
    {"p", 35},       {"return", 36},    {"l", 37},        {"j", 38},
    {"k", 40},       {"semicolon", 41}, {"comma", 43},    {"slash", 44},
    {"n", 45},       {"m", 46},         {"period", 47},   {"tab", 48},
    {"space", 49},   {"grave", 50},     {"delete", 51},   {"escape", 53},
    {"f17", 64},     {"f18", 79},       {"f19", 80},      {"f20", 90},
    {"f5", 96},      {"f6", 97},        {"f7", 98},       {"f3", 99},
    {"f8", 100},     {"f9", 101},       {"f11", 103},     {"f13", 105},
    {"f16", 106},    {"f14", 107},      {"f10", 109},     {"f12", 111},
    {"f15", 113},    {"home", 115},     {"page-up", 116}, {"forward-delete", 117},
    {"f4", 118},     {"end", 119},      {"f2", 120},      {"page-down", 121},
    {"f1", 122},     {"left", 123},     {"right", 124},   {"down", 125},
    {"up", 126},     {"command", 55},   {"shift", 56},    {"option", 58},
    {"control", 59},
});

constexpr auto otherNames = std::to_array<std::string_view>({"brightness-up", "brightness-down"});

struct OtherName {
  std::string_view word;
  std::string_view name;
};

constexpr auto namesElsewhere = std::to_array<OtherName>({{"ctrl", "control"},
                                                          {"alt", "option"},
                                                          {"opt", "option"},
                                                          {"cmd", "command"},
                                                          {"super", "command"}});

}  // namespace

std::optional<std::uint16_t> keyCodeOf(std::string_view name) {
  const auto* const found = std::ranges::find(namedKeys, name, &NamedKey::name);
  if (found == namedKeys.end()) return std::nullopt;
  return found->code;
}

std::uint64_t modifierFlagOf(std::string_view name) {
  if (name == "control") return modifierFlag::control;
  if (name == "option") return modifierFlag::option;
  if (name == "shift") return modifierFlag::shift;
  if (name == "command") return modifierFlag::command;
  return 0;
}

std::optional<std::string_view> keyKnownAs(std::string_view word) {
  const auto* const found = std::ranges::find(namesElsewhere, word, &OtherName::word);
  if (found == namesElsewhere.end()) return std::nullopt;
  return found->name;
}

bool isKeyName(std::string_view name) {
  return std::ranges::find(keyNames(), name) != keyNames().end();
}

const std::vector<std::string_view>& keyNames() {
  static const std::vector<std::string_view> names = [] {
    std::vector<std::string_view> all(otherNames.begin(), otherNames.end());
    for (const auto& key : namedKeys) all.push_back(key.name);
    return all;
  }();
  return names;
}

}  // namespace brivane
