#include "Machines/Desk/File/Suggestion.h"

#include <algorithm>
#include <optional>

#include "Machines/Desk/File/JsonValue.h"

namespace brivane {
namespace {

std::string lowercase(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), [](char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A'))
                                                : character;
  });
  return result;
}

/// The number of insertions, deletions, changes and swaps of neighbours (Damerau-Levenshtein).
std::size_t editDistance(const std::string& left, const std::string& right) {
  std::vector<std::vector<std::size_t>> steps(left.size() + 1,
                                              std::vector<std::size_t>(right.size() + 1));
  for (std::size_t i = 0; i <= left.size(); ++i) {
    for (std::size_t j = 0; j <= right.size(); ++j) {
      if (i == 0 || j == 0) {
        steps[i][j] = i + j;
        continue;
      }
      steps[i][j] = std::min({steps[i - 1][j] + 1, steps[i][j - 1] + 1,
                              steps[i - 1][j - 1] + (left[i - 1] == right[j - 1] ? 0U : 1U)});
      if (i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1]) {
        steps[i][j] = std::min(steps[i][j], steps[i - 2][j - 2] + 1);
      }
    }
  }
  return steps[left.size()][right.size()];
}

std::optional<std::string_view> nearMiss(std::string_view word,
                                         const std::vector<std::string_view>& words) {
  constexpr std::size_t longestWord = 64;
  constexpr std::size_t mostEdits = 2;
  if (word.size() > longestWord) return std::nullopt;
  std::optional<std::string_view> nearest;
  std::size_t fewestEdits = std::min(mostEdits, word.size() / 2) + 1;
  for (const auto candidate : words) {
    const auto edits = editDistance(lowercase(word), lowercase(candidate));
    if (edits >= fewestEdits) continue;
    fewestEdits = edits;
    nearest = candidate;
  }
  return nearest;
}

}  // namespace

std::string suggestion(std::string_view word, const std::vector<std::string_view>& words) {
  const auto meant = nearMiss(word, words);
  return meant ? ", did you mean " + jsonExcerpt({std::string(*meant)}) + "?" : "";
}

}  // namespace brivane
