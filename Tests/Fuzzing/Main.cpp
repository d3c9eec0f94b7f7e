// Feeds one parser with inputs that grow from the small files in Tests/Fuzzing/Seeds/<parser>:
//
//   brivane-fuzz PARSER                    the same inputs each time, as ./test fuzz has them
//   brivane-fuzz PARSER OPTION... [FOLDER] with options of libFuzzer's, such as -max_total_time=60;
//                                          inputs that reach something new are kept in the folder
//   brivane-fuzz PARSER FILE               one input
//
// To be run from the top of the tree.

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <set>

#include "Tests/Fuzzing/Parsers.h"

namespace {

using brivane::fuzzing::Parser;

const Parser* chosen = nullptr;

/// Kept: libFuzzer reads them until the end.
std::vector<std::string> words;
std::vector<char*> pointers;

std::filesystem::path seeds(const Parser& parser) {
  return std::filesystem::path("Tests/Fuzzing/Seeds") / parser.name;
}

const Parser* find(std::string_view name) {
  const auto all = brivane::fuzzing::parsers();
  const auto found = std::ranges::find(all, name, &Parser::name);
  return found == all.end() ? nullptr : &*found;
}

/// libFuzzer's option that names the parser's seeds, which stay as they are.
std::string seedOption(const Parser& parser) {
  std::set<std::string> files;
  for (const auto& file : std::filesystem::directory_iterator(seeds(parser))) {
    files.insert(file.path().string());
  }
  std::string option = "-seed_inputs=";
  for (const auto& file : files) option += file + ",";
  option.pop_back();
  return option;
}

int fail(const std::string& what) {
  std::cerr << "brivane-fuzz: " << what << std::endl;
  std::exit(2);
}

bool isFile(const std::string& word) {
  return std::filesystem::is_regular_file(word);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments) {
  const std::vector<std::string> given(*arguments + 1, *arguments + *count);
  for (const Parser& parser : brivane::fuzzing::parsers()) {
    if (!std::filesystem::is_directory(seeds(parser))) {
      fail("there is no folder " + seeds(parser).string());
    }
  }
  chosen = given.empty() ? nullptr : find(given.front());
  if (chosen == nullptr) fail("expected the name of a parser; Tests/Fuzzing/Seeds has them");
  // Files of theirs, if any, lie in memory.
  ::setenv("TMPDIR", "/dev/shm", 1);
  words = {(*arguments)[0], "-timeout=60"};
  if (given.size() == 1) {
    words.insert(words.end(), {"-seed=1", "-runs=" + std::to_string(chosen->runs)});
  }
  if (std::ranges::none_of(given, isFile)) words.push_back(seedOption(*chosen));
  words.insert(words.end(), given.begin() + 1, given.end());
  for (auto& word : words) pointers.push_back(word.data());
  *count = static_cast<int>(pointers.size());
  pointers.push_back(nullptr);
  *arguments = pointers.data();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  chosen->check({bytes, size});
  return 0;
}
