#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// What must hold of each parser, whatever it is given. A function ends the process when it doesn't.

namespace brivane::fuzzing {

using Input = std::span<const std::uint8_t>;

struct Parser {
  std::string_view name;
  void (*check)(Input);
  /// How many inputs `./test fuzz` tries: some two seconds' worth.
  int runs;
};

/// All of them.
std::span<const Parser> parsers();

/// Ends the process, naming what should hold, if it doesn't.
void require(bool holds, std::string_view claim);

/// The sentence is one line of a sensible length, for people.
void requireOneLine(std::string_view sentence);

std::string textOf(Input input);

/// The arguments of a command, separated by zeros.
std::vector<std::string> wordsOf(Input input);

// What monitors and displays send. The first byte is the VCP code, or how many samples are asked
// for.
void checkVCPReply(Input input);
void checkEDID(Input input);
void checkICCProfile(Input input);

// The key mapping. The first byte of what `hidutil` prints chooses the relay keys.
void checkPrintedMapping(Input input);
void checkMappingPayload(Input input);
void checkKeymapState(Input input);

// Files and outputs that are text.
void checkSettings(Input input);
void checkStrings(Input input);
void checkPrintedAgents(Input input);
void checkAutostartEntry(Input input);

void checkDesk(Input input);
void checkScenario(Input input);
void checkStep(Input input);

// Command lines.
void checkProgramArguments(Input input);
void checkControlArguments(Input input);
void checkDefaultsArguments(Input input);
void checkDeskArguments(Input input);

}  // namespace brivane::fuzzing
