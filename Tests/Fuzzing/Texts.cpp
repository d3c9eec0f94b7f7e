// Settings, localised texts, and what tells whether the program starts at login.

#include <algorithm>
#include <cstdlib>

#include "BrivaneApp/LoginItem.h"
#include "BrivaneCore/Input/HotkeyBindingStore.h"
#include "BrivaneCore/KeyRelay/RelaySettings.h"
#include "BrivaneCore/Levels/BrightnessSettings.h"
#include "BrivaneCore/Levels/BrightnessStore.h"
#include "BrivaneCore/Support/Fatal.h"
#include "BrivaneCore/Support/UTF8.h"
#include "BrivaneUI/StringCatalogue.h"
#include "BrivaneUI/StringsFile.h"
#include "Machines/Common/Files/PropertyJson.h"
#include "Machines/Linux/AutostartEntry.h"
#include "Tests/Fuzzing/Parsers.h"
#include "Tests/Support/FakeMachine.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane::fuzzing {
namespace {

/// A number that is no key code ends the program, with one line.
void readBindings(UserDefaults& defaults) {
  struct Ended {};
  const FatalErrorHandler handler([](const std::string& line) {
    requireOneLine(line);
    throw Ended();
  });
  try {
    HotkeyBindingStore store(defaults);
    const auto up = store.brightnessUpBinding();
    const auto down = store.brightnessDownBinding();
    store.setBrightnessUpBinding(up);
    store.setBrightnessDownBinding(down);
    require(store.brightnessUpBinding() == up && store.brightnessDownBinding() == down,
            "key combinations that are stored read the same");
  } catch (const Ended&) {
  }
}

void readLevels(FakeMachine& machine) {
  BrightnessStore store(machine.settings, machine.displaySystem);
  const auto percent = store.load(1);
  const auto maximum = store.nativeMax(1);
  require(!percent || (*percent >= 0 && *percent <= 100), "a saved level is one of the hardware");
  require(!maximum || *maximum >= 1, "a saved maximum is above 0");
  if (percent) store.save(*percent, 1);
  if (maximum) store.saveNativeMax(*maximum, 1);
  require(store.load(1) == percent && store.nativeMax(1) == maximum,
          "levels that are saved read the same");
  require(store.supportsDDC(1).value_or(true), "only a positive answer lasts");
}

void readSettings(const PropertyValue::Dictionary& values) {
  static FakeMachine machine;
  if (machine.displaySystem.online.empty()) machine.displaySystem.add({1, 2, 3, 4, false}, "M");
  machine.settings.values = values;
  const auto range = BrightnessSettings(machine.settings).levelRange();
  require((range.lower == -100 || range.lower == 0) && (range.upper == 100 || range.upper == 200),
          "the scale has one of its four ranges");
  const RelaySettings relay(machine.settings);
  for (const auto& key : {relay.relayUpKey(), relay.relayDownKey()}) {
    require(relayKeyForVirtualKeyCode(key.virtualKeyCode) == key, "keys are relayed to relay keys");
  }
  readBindings(machine.settings);
  readLevels(machine);
}

/// As a translator could write it.
std::string quotedText(std::string_view text) {
  std::string quoted = "\"";
  for (const char letter : text) {
    if (letter == '"' || letter == '\\') quoted += '\\';
    quoted += letter;
  }
  return quoted + '"';
}

std::string stringsFile(const StringTable& table) {
  std::string text;
  for (const auto& [key, value] : table) {
    text += quotedText(key) + " = " + quotedText(value) + ";\n";
  }
  return text;
}

/// A line number from 1 to the number of lines, as "line 3: ...".
void requirePlace(std::string_view sentence, std::string_view text) {
  require(sentence.starts_with("line "), "a refusal says where");
  const long line = std::strtol(sentence.data() + 5, nullptr, 10);
  require(line >= 1 && line <= std::ranges::count(text, '\n') + 1, "a refusal's line exists");
}

constexpr std::string_view agent = "com.quorrel.brivane";

struct PrintedAgents {
  bool isEnabled(const std::string& printed) {
    machine.processRunner.results = {FinishedProcess{0, printed}};
    return LoginItem(machine).isEnabled();
  }

  FakeMachine machine;
};

}  // namespace

void checkSettings(Input input) {
  const auto read = dictionaryFromJson(textOf(input));
  if (const auto* problem = std::get_if<JsonProblem>(&read)) return requireOneLine(problem->reason);
  const auto& values = std::get<PropertyValue::Dictionary>(read);
  const auto again = dictionaryFromJson(jsonOfDictionary(values));
  const auto* same = std::get_if<PropertyValue::Dictionary>(&again);
  require(same != nullptr && *same == values, "settings that are written read the same");
  requireOneLine(jsonOfProperty({values}));
  readSettings(values);
}

void checkStrings(Input input) {
  const std::string text = textOf(input);
  const auto read = parseStringsFile(text);
  if (const auto* error = std::get_if<StringsFileError>(&read)) {
    requireOneLine(error->sentence);
    return requirePlace(error->sentence, text);
  }
  const auto& table = std::get<StringTable>(read);
  const auto again = parseStringsFile(stringsFile(table));
  const auto* same = std::get_if<StringTable>(&again);
  require(same != nullptr && *same == table, "texts that are written read the same");
  for (const auto& [key, value] : table) {
    require(isValidUTF8(key) && isValidUTF8(value), "texts are UTF-8");
    const auto filled = fillPlaceholders(value, {"first", "2"});
    require(isValidUTF8(filled) && filled.size() <= value.size() * 5,
            "a filled placeholder is no longer than its argument");
  }
}

void checkPrintedAgents(Input input) {
  static PrintedAgents agents;
  agents.machine.userSession.files[FakeSession::launchAgentFile] = 0;
  const std::string printed = textOf(input);
  const bool isEnabled = agents.isEnabled(printed);
  if (!isValidUTF8(printed)) return require(isEnabled, "what is no text says nothing of the agent");
  const bool isListed = printed.find(agent) != std::string::npos;
  require(isListed || isEnabled, "an agent that isn't listed is enabled");
  require(agents.isEnabled("disabled services = {\n\t\"another\" => true\n" + printed) == isEnabled,
          "other agents' lines say nothing of this one");
  const std::string off = "\n\t\"" + std::string(agent) + "\" => disabled\n";
  require(agents.isEnabled(printed + off) == (isListed && isEnabled),
          "the agent's first line counts");
  agents.machine.processRunner.runs.clear();
}

void checkAutostartEntry(Input input) {
  static const TemporaryFolder folder;
  const auto file = folder.write("com.quorrel.brivane.desktop", textOf(input));
  const AutostartEntry entry({folder.path});
  require(entry.isInstalled(), "an entry is there");
  require(entry.setEnabled(false), "an entry can be changed");
  const auto off = folder.read(file);
  const auto isEnabled = entry.isEnabled();
  require(!isEnabled || !*isEnabled, "an entry that was disabled is");
  require(entry.setEnabled(true) && entry.setEnabled(false) && folder.read(file) == off,
          "an entry that was changed twice is as before");
  require(off.size() <= input.size() * 2 + 100, "an entry grows by its lines alone");
}

}  // namespace brivane::fuzzing
