#include "Machines/Desk/File/SystemSection.h"

#include <algorithm>
#include <limits>

#include "Machines/Desk/File/FaultCalls.h"

namespace brivane {
namespace {

constexpr std::size_t mostElements = 1000;
constexpr std::int64_t highestOccurrence = 1'000'000'000;
constexpr std::int64_t highestKeyCode = 127;
constexpr std::int64_t allModifiers = 256 + 512 + 2048 + 4096;
constexpr double shortestRepeat = 0.001;
constexpr double longestRepeat = 60;
constexpr double latestModification = 1e12;

template <typename Choice>
using Choices = std::vector<std::pair<std::string_view, Choice>>;

void readOptional(const JsonItem& item, std::optional<std::string>& text) {
  text.reset();
  if (!item.isNull()) item.to(text.emplace());
}

const Choices<ToolPresence>& toolPresences() {
  static const Choices<ToolPresence> choices = {{"present", ToolPresence::present},
                                                {"missing", ToolPresence::missing},
                                                {"refusing", ToolPresence::refusing},
                                                {"garbled", ToolPresence::garbled},
                                                {"slow", ToolPresence::slow}};
  return choices;
}

const Choices<DeskAppearance>& appearances() {
  static const Choices<DeskAppearance> choices = {{"light", DeskAppearance::light},
                                                  {"dark", DeskAppearance::dark}};
  return choices;
}

void readHotkeys(const JsonItem& item, std::vector<KeyCombination>& hotkeys) {
  for (const auto& element : item.elements(0, mostElements)) {
    auto section = element.section();
    auto& combination = hotkeys.emplace_back();
    section.require("keyCode", combination.keyCode, 0, highestKeyCode);
    section.read("modifiers", combination.modifiers, 0, allModifiers);
    if ((combination.modifiers & ~static_cast<std::uint32_t>(allModifiers)) != 0) {
      section.complain("expected \"modifiers\" to be a sum of 256, 512, 2048 and 4096, found " +
                       std::to_string(combination.modifiers));
    }
    section.finish();
  }
}

void readApplications(const JsonItem& item, std::vector<RunningApplication>& applications) {
  for (const auto& element : item.elements(0, mostElements)) {
    auto section = element.section();
    auto& application = applications.emplace_back();
    section.require("bundleIdentifier", application.bundleIdentifier);
    application.processID = static_cast<ProcessID>(1000 + applications.size());
    section.read("processID", application.processID, 1, std::numeric_limits<ProcessID>::max());
    if (const auto hotkeys = section.find("hotkeys")) readHotkeys(*hotkeys, application.hotkeys);
    section.finish();
  }
}

void readDomain(const JsonItem& item, DefaultsDescription& domain) {
  auto section = item.section();
  for (const auto& [key, member] : section.all()) member.to(domain.values[key]);
  domain.fingerprint = item.fingerprint();
}

void readDefaults(const JsonItem& item, DeskDescription& desk) {
  auto section = item.section();
  if (const auto own = section.find("com.quorrel.brivane")) readDomain(*own, desk.brivaneDefaults);
  if (const auto earlier = section.find("com.quorrel.tallowin")) {
    readDomain(*earlier, desk.tallowinDefaults.emplace());
  }
  section.finish();
}

void readGrants(const JsonItem& item, DeskDescription& desk) {
  auto section = item.section();
  section.read("accessibility", desk.isAccessibilityGranted);
  section.finish();
  desk.grantsFingerprint = item.fingerprint();
}

void readKeyboard(const JsonItem& item, KeyboardDescription& keyboard) {
  auto section = item.section();
  section.read("layout", keyboard.layout,
               Choices<KeyboardLayout>{{"us", KeyboardLayout::us},
                                       {"german", KeyboardLayout::german},
                                       {"french", KeyboardLayout::french},
                                       {"none", KeyboardLayout::none}});
  section.read("brightnessUsages", keyboard.brightnessUsages,
               Choices<BrightnessUsages>{{"consumer", BrightnessUsages::consumer},
                                         {"topCase", BrightnessUsages::topCase},
                                         {"vendor", BrightnessUsages::vendor}});
  section.read("repeatDelaySeconds", keyboard.repeatDelaySeconds, shortestRepeat, longestRepeat);
  section.read("repeatPeriodSeconds", keyboard.repeatPeriodSeconds, shortestRepeat, longestRepeat);
  section.finish();
}

void readLaunchAgent(const JsonItem& item, LaunchAgentDescription& agent) {
  auto section = item.section();
  section.read("installed", agent.isInstalled);
  section.read("enabled", agent.isEnabled);
  section.finish();
  agent.fingerprint = item.fingerprint();
}

void readTexts(const JsonItem& item, std::vector<std::string>& texts) {
  for (const auto& element : item.elements(0, mostElements)) element.to(texts.emplace_back());
}

void readProgram(const JsonItem& item, ProgramDescription& program) {
  auto section = item.section();
  if (const auto path = section.find("executable")) readOptional(*path, program.executablePath);
  if (const auto modified = section.find("modified")) {
    program.modificationSeconds.reset();
    if (!modified->isNull()) {
      modified->to(program.modificationSeconds.emplace(), 0, latestModification);
    }
  }
  if (const auto list = section.find("arguments")) readTexts(*list, program.arguments.emplace());
  section.finish();
}

void readLibrary(const JsonItem& item, LibraryDescription& library,
                 const std::vector<std::string_view>& names) {
  auto section = item.section();
  section.read("opens", library.canBeOpened);
  if (const auto symbols = section.find("symbols")) {
    auto places = symbols->section();
    for (const auto name : names) {
      auto& place = library.symbols.emplace(name, SymbolPlace::library).first->second;
      places.read(name, place,
                  Choices<SymbolPlace>{{"library", SymbolPlace::library},
                                       {"global", SymbolPlace::global},
                                       {"everywhere", SymbolPlace::everywhere},
                                       {"nowhere", SymbolPlace::nowhere}});
    }
    places.finish();
  }
  section.finish();
}

void readLibraries(const JsonItem& item, DeskDescription& desk) {
  auto section = item.section();
  if (const auto ioKit = section.find("IOKit")) {
    readLibrary(*ioKit, desk.ioKit,
                {"IOAVServiceCreateWithService", "IOAVServiceWriteI2C", "IOAVServiceReadI2C"});
  }
  if (const auto services = section.find("DisplayServices")) {
    readLibrary(*services, desk.displayServicesLibrary,
                {"DisplayServicesGetBrightness", "DisplayServicesSetBrightness",
                 "DisplayServicesCanChangeBrightness"});
  }
  section.finish();
}

void readFaults(const JsonItem& item, FaultPlan& plan) {
  auto section = item.section();
  for (const auto call : faultCalls()) {
    const auto occurrences = section.find(call);
    if (!occurrences) continue;
    for (const auto& element : occurrences->elements(0, mostElements)) {
      std::int64_t occurrence = 0;
      element.to(occurrence, 1, highestOccurrence);
      plan[std::string(call)].insert(occurrence);
    }
  }
  section.finish();
}

}  // namespace

void readHIDMapping(const JsonItem& item, HIDMapping& mapping) {
  mapping.clear();
  for (const auto& element : item.elements(0, mostElements)) {
    auto section = element.section();
    auto& entry = mapping.emplace_back();
    section.require("source", entry.source);
    section.require("destination", entry.destination);
    section.finish();
  }
}

void readTools(JsonSection& section, ToolsState& tools) {
  section.read("hidutil", tools.hidUtil, toolPresences());
  section.read("launchctl", tools.launchControl, toolPresences());
}

std::string_view toolPresenceName(ToolPresence presence) {
  using Name = std::pair<std::string_view, ToolPresence>;
  return std::ranges::find(toolPresences(), presence, &Name::second)->first;
}

std::optional<ToolPresence> toolPresenceOf(std::string_view name) {
  using Name = std::pair<std::string_view, ToolPresence>;
  const auto found = std::ranges::find(toolPresences(), name, &Name::first);
  return found == toolPresences().end() ? std::nullopt : std::optional(found->second);
}

void readAppearance(const JsonItem& item, DeskAppearance& appearance) {
  item.to(appearance, appearances());
}

std::string_view appearanceName(DeskAppearance appearance) {
  using Name = std::pair<std::string_view, DeskAppearance>;
  return std::ranges::find(appearances(), appearance, &Name::second)->first;
}

void readSystem(JsonSection& section, DeskDescription& desk) {
  if (const auto mapping = section.find("hidMapping")) {
    readHIDMapping(*mapping, desk.hidMapping);
    desk.hidMappingFingerprint = mapping->fingerprint();
  }
  readTools(section, desk.tools);
  if (const auto grants = section.find("grants")) readGrants(*grants, desk);
  if (const auto identifier = section.find("bundleIdentifier")) {
    readOptional(*identifier, desk.bundleIdentifier);
  }
  if (const auto list = section.find("applications")) readApplications(*list, desk.applications);
  if (const auto defaults = section.find("defaults")) readDefaults(*defaults, desk);
  section.read("language", desk.language);
  if (const auto appearance = section.find("appearance")) {
    readAppearance(*appearance, desk.appearance);
    desk.appearanceFingerprint = appearance->fingerprint();
  }
  if (const auto keyboard = section.find("keyboard")) readKeyboard(*keyboard, desk.keyboard);
  if (const auto agent = section.find("launchAgent")) readLaunchAgent(*agent, desk.launchAgent);
  if (const auto program = section.find("program")) readProgram(*program, desk.program);
  if (const auto missing = section.find("missingResources")) {
    std::vector<std::string> names;
    readTexts(*missing, names);
    desk.missingResources = {names.begin(), names.end()};
  }
  if (const auto libraries = section.find("libraries")) readLibraries(*libraries, desk);
  if (const auto faults = section.find("faults")) readFaults(*faults, desk.faults);
}

}  // namespace brivane
