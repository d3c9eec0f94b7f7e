#include "Tests/Fuzzing/Parsers.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>

namespace brivane::fuzzing {

std::span<const Parser> parsers() {
  static constexpr std::array<Parser, 17> all = {{
      {"vcp-reply", checkVCPReply, 25'000},
      {"edid", checkEDID, 20'000},
      {"icc-profile", checkICCProfile, 20'000},
      {"hidutil-output", checkPrintedMapping, 1'500},
      {"mapping-payload", checkMappingPayload, 1'200},
      {"keymap-state", checkKeymapState, 1'000},
      {"settings", checkSettings, 2'000},
      {"strings", checkStrings, 15'000},
      {"launchctl-output", checkPrintedAgents, 500},
      {"autostart-entry", checkAutostartEntry, 5'000},
      {"desk", checkDesk, 1'500},
      {"scenario", checkScenario, 500},
      {"step", checkStep, 400},
      {"brivane-arguments", checkProgramArguments, 4'000},
      {"brivane-ctl-arguments", checkControlArguments, 15'000},
      {"brivane-defaults-arguments", checkDefaultsArguments, 3'000},
      {"brivane-desk-arguments", checkDeskArguments, 400},
  }};
  return all;
}

void require(bool holds, std::string_view claim) {
  if (holds) return;
  std::cerr << "not so: " << claim << std::endl;
  std::abort();
}

void requireOneLine(std::string_view sentence) {
  // An input, of 4 KiB at most, may be quoted whole, with six characters for one.
  constexpr std::size_t longestSentence = 26'000;
  const auto isControl = [](unsigned char byte) { return byte < 0x20 && byte != '\t'; };
  if (sentence.empty() || sentence.size() > longestSentence ||
      std::ranges::any_of(sentence, isControl)) {
    std::cerr << "said: " << sentence << "\n";
    require(false, "what is said is one line, without control characters");
  }
}

std::string textOf(Input input) {
  return {input.begin(), input.end()};
}

std::vector<std::string> wordsOf(Input input) {
  std::vector<std::string> words;
  for (auto rest = textOf(input); !rest.empty();) {
    const auto end = std::min(rest.find('\0'), rest.size());
    words.push_back(rest.substr(0, end));
    rest.erase(0, end + 1);
  }
  return words;
}

}  // namespace brivane::fuzzing
