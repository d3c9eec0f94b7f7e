#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace brivane {

/// "NAME.transcript" beside "NAME.scenario".
std::filesystem::path transcriptFileOf(const std::filesystem::path& scenario);

/// What is wrong when the file doesn't hold exactly these lines: the first line that differs, with
/// the lines before it, in several lines for a person. Nothing when all is well.
std::optional<std::string> compareTranscript(const std::filesystem::path& file,
                                             const std::vector<std::string>& lines);

/// False when the file can't be written.
bool writeTranscript(const std::filesystem::path& file, const std::vector<std::string>& lines);

}  // namespace brivane
