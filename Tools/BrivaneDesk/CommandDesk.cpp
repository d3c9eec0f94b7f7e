#include "Tools/BrivaneDesk/CommandDesk.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <system_error>

#include "Machines/Common/Files/ResourceFolder.h"
#include "Machines/Desk/Machine/OpenDesk.h"
#include "Tools/BrivaneDesk/Steps/StepTable.h"

namespace brivane {
namespace {

/// The programs are in `build/bin`, their resources in `build/share/brivane`.
std::filesystem::path deskOfRun() {
  const auto build = resourceFolder().parent_path().parent_path();
  return (build / "desk" / "desk.json").lexically_proximate(std::filesystem::current_path());
}

std::filesystem::path usualDesk() {
  const char* const named = std::getenv("BRIVANE_DESK");
  if (named != nullptr && !std::string_view(named).empty()) return named;
  return deskOfRun();
}

bool beginsStep(std::string_view word) {
  word = word.substr(0, word.find(' '));
  return std::ranges::any_of(stepForms(), [word](std::string_view form) {
    return form.substr(0, form.find(' ')) == word;
  });
}

bool namesDesk(const std::string& word) {
  std::error_code failed;
  if (beginsStep(word)) return false;
  return word.ends_with(".json") || std::filesystem::is_regular_file(word, failed);
}

}  // namespace

DeskWords deskWords(std::vector<std::string> words) {
  if (words.empty() || !namesDesk(words.front())) return {usualDesk(), std::move(words)};
  std::filesystem::path desk = words.front();
  words.erase(words.begin());
  return {std::move(desk), std::move(words)};
}

std::variant<std::unique_ptr<DeskMachine>, std::string> openLiveDesk(
    const std::filesystem::path& file) {
  std::error_code failed;
  if (!std::filesystem::exists(file, failed) && file == deskOfRun()) {
    return "there is no desk in " + file.string() + " yet; ./run makes it";
  }
  return openDesk(file);
}

}  // namespace brivane
