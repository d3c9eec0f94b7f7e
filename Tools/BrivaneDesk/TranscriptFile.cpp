#include "Tools/BrivaneDesk/TranscriptFile.h"

#include <algorithm>
#include <fstream>

namespace brivane {
namespace {

std::string lineOr(const std::vector<std::string>& lines, std::size_t index) {
  return index < lines.size() ? lines[index] : "(the end)";
}

std::string describeDifference(const std::string& file, const std::vector<std::string>& expected,
                               const std::vector<std::string>& found, std::size_t index) {
  constexpr std::size_t context = 3;
  std::string text = file + ": line " + std::to_string(index + 1) + " differs\n";
  for (std::size_t before = index - std::min(index, context); before < index; ++before) {
    text += "      " + expected[before] + "\n";
  }
  text += "    - " + lineOr(expected, index) + "\n";
  return text + "    + " + lineOr(found, index);
}

}  // namespace

std::filesystem::path transcriptFileOf(const std::filesystem::path& scenario) {
  return std::filesystem::path(scenario).replace_extension(".transcript");
}

std::optional<std::string> compareTranscript(const std::filesystem::path& file,
                                             const std::vector<std::string>& lines) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) {
    return file.string() +
           " is missing; once the scenario says what it should, write it with "
           "--regenerate";
  }
  std::vector<std::string> expected;
  for (std::string line; std::getline(stream, line);) expected.push_back(line);
  if (expected == lines) return std::nullopt;
  const auto [difference, ignored] = std::ranges::mismatch(expected, lines);
  const auto index = static_cast<std::size_t>(difference - expected.begin());
  return describeDifference(file.string(), expected, lines, index);
}

bool writeTranscript(const std::filesystem::path& file, const std::vector<std::string>& lines) {
  std::ofstream stream(file, std::ios::binary | std::ios::trunc);
  for (const auto& line : lines) stream << line << '\n';
  stream.flush();
  return stream.good();
}

}  // namespace brivane
