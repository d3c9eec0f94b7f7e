#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace brivane {

/// "NAME.transcript" beside "NAME.scenario".
std::filesystem::path transcriptFileOf(const std::filesystem::path& scenario);

/// Nothing when the file holds exactly these lines; else a message of several lines with the first
/// difference and the lines before it.
std::optional<std::string> compareTranscript(const std::filesystem::path& file,
                                             const std::vector<std::string>& lines);

/// False when the file can't be written.
bool writeTranscript(const std::filesystem::path& file, const std::vector<std::string>& lines);

}  // namespace brivane
