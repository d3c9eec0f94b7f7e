#include "Tests/Support/FakeMachine.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "BrivaneCore/Support/Fatal.h"
#include "BrivaneCore/Support/Lookup.h"
#include "Machines/Desk/Hardware/GammaTable.h"
#include "Machines/Desk/Hardware/KeyboardLayouts.h"
#include "Machines/Desk/Hardware/Trace.h"
#include "Tests/Support/SystemLibraries.h"

namespace brivane {

namespace {

constexpr double screenSize = 100;

constexpr std::uint32_t monitorChip = 0x37;
constexpr std::int32_t nobodyAnswers = 1;
/// Where the checksums of requests and replies begin.
constexpr std::uint8_t requestSeed = 0x6E;
constexpr std::uint8_t replySeed = 0x50;

std::uint8_t checksum(std::uint8_t seed, std::span<const std::uint8_t> bytes) {
  for (const std::uint8_t byte : bytes) seed = static_cast<std::uint8_t>(seed ^ byte);
  return seed;
}

class ListIterator : public RegistryIterator {
 public:
  ListIterator(std::vector<std::shared_ptr<FakeRegistryEntry>> list, bool endsHalfway)
      : entries(std::move(list)), isCutShort(endsHalfway) {
    if (isCutShort) entries.resize(entries.size() / 2);
  }

  std::shared_ptr<const RegistryEntry> next() override {
    return position < entries.size() ? entries[position++] : nullptr;
  }
  bool wasCutShort() const override { return isCutShort; }

 private:
  std::vector<std::shared_ptr<FakeRegistryEntry>> entries;
  std::size_t position = 0;
  const bool isCutShort;
};

}  // namespace

void CallNotes::add(const std::string& what) {
  const std::lock_guard lock(mutex);
  const auto milliseconds =
      std::chrono::duration_cast<std::chrono::milliseconds>(runtime->now().time_since_epoch());
  lines.push_back("[" + std::to_string(milliseconds.count()) + "] " + what);
}

std::vector<std::string> CallNotes::take() {
  const std::lock_guard lock(mutex);
  return std::exchange(lines, {});
}

std::optional<std::uint32_t> FakeDisplaySystem::onlineDisplayCount() {
  if (refusesCount) return std::nullopt;
  return static_cast<std::uint32_t>(online.size());
}

std::optional<std::vector<DisplayID>> FakeDisplaySystem::onlineDisplayList(std::uint32_t maximum) {
  if (refusesList) return std::nullopt;
  std::vector<DisplayID> list;
  for (const FakeDisplay& display : online) {
    if (list.size() < maximum) list.push_back(display.id);
  }
  return list;
}

const FakeDisplay* FakeDisplaySystem::find(DisplayID id) const {
  const auto found = std::ranges::find(online, id, &FakeDisplay::id);
  return found == online.end() ? nullptr : &*found;
}

bool FakeDisplaySystem::isBuiltIn(DisplayID id) {
  const auto* display = find(id);
  return display != nullptr && display->isBuiltIn;
}

PanelIdentity FakeDisplaySystem::panelIdentity(DisplayID id) {
  const auto* display = find(id);
  if (display == nullptr) return {};
  return {display->vendor, display->model, display->serial};
}

void FakeDisplaySystem::add(const FakeDisplay& display, const std::string& name) {
  const double left = screenSize * static_cast<double>(allScreens.size());
  online.push_back(display);
  allScreens.push_back({display.id, {left, 0, screenSize, screenSize}, name, 1.0});
  if (!main) main = allScreens.front();
}

std::unique_ptr<RegistryIterator> FakeIORegistry::allServices() {
  if (refuses) return nullptr;
  ++walks;
  return std::make_unique<ListIterator>(entries, walksToCutShort-- > 0);
}

std::shared_ptr<FakeRegistryEntry> FakeIORegistry::add(const std::string& className,
                                                       const std::string& name,
                                                       std::shared_ptr<FakeRegistryEntry> parent) {
  auto entry = std::make_shared<FakeRegistryEntry>();
  entry->ownClass = className;
  entry->ownName = name;
  entry->above = std::move(parent);
  entries.push_back(entry);
  return entry;
}

std::shared_ptr<FakeRegistryEntry> FakeIORegistry::addPanel(const std::string& port,
                                                            std::int64_t vendor, std::int64_t model,
                                                            std::optional<std::int64_t> serial) {
  auto panel = add("AppleCLCD2", "panel", add("IOService", port));
  PropertyValue::Dictionary product{{"LegacyManufacturerID", {vendor}}, {"ProductID", {model}}};
  if (serial) product["SerialNumber"] = {*serial};
  panel->properties["DisplayAttributes"] = {
      PropertyValue::Dictionary{{"ProductAttributes", {product}}}};
  return panel;
}

std::shared_ptr<FakeRegistryEntry> FakeIORegistry::addProxy(const std::string& parentName) {
  auto proxy = add("DCPAVServiceProxy", "proxy", add("IOService", parentName));
  proxy->properties["Location"] = {std::string("External")};
  return proxy;
}

LibraryHandle FakeSymbolLoader::open(std::string_view path, int mode) {
  calls.push_back("open " + std::string(path) + " " + std::to_string(mode));
  if (!libraries.contains(std::string(path))) return 0;
  openPaths.emplace_back(path);
  return static_cast<LibraryHandle>(openPaths.size());
}

Symbol FakeSymbolLoader::find(LibraryHandle library, std::string_view name) {
  if (library == 0) return {};
  const std::string path =
      library == globalNamespace ? "" : openPaths.at(static_cast<std::size_t>(library - 1));
  calls.push_back("find " + (path.empty() ? "global" : path) + " " + std::string(name));
  return lookUp(libraries[path], std::string(name)).value_or(Symbol{});
}

struct FakeBus::Service : AVService {
  struct Turn : BusTurn {
    explicit Turn(Channel& takenChannel) : channel(takenChannel) {
      ++std::atomic_ref(channel.openTurns);
    }
    ~Turn() override { --std::atomic_ref(channel.openTurns); }
    Channel& channel;
  };

  Service(std::string portName, Channel& portChannel)
      : port(std::move(portName)), channel(portChannel) {}

  std::unique_ptr<BusTurn> takeTurn() override {
    return channel.isBusy ? nullptr : std::make_unique<Turn>(channel);
  }

  std::vector<std::uint8_t> standardReply() const {
    const auto high = [](std::uint16_t value) { return static_cast<std::uint8_t>(value >> 8); };
    const auto low = [](std::uint16_t value) { return static_cast<std::uint8_t>(value & 0xFF); };
    const std::uint8_t code = lastRequest.size() > 2 ? lastRequest[2] : 0;
    std::vector<std::uint8_t> reply = {0x6E, 0x88, 0x02, 0x00, code, 0x00};
    for (const std::uint16_t value : {channel.max, channel.current}) {
      reply.insert(reply.end(), {high(value), low(value)});
    }
    reply.push_back(checksum(replySeed, reply));
    return reply;
  }

  std::string port;
  Channel& channel;
  std::vector<std::uint8_t> lastRequest;
};

void FakeBus::noteTurn(Channel& channel) {
  if (std::atomic_ref(channel.openTurns) == 0) ++std::atomic_ref(channel.messagesOutsideTurns);
}

void FakeBus::install(FakeSymbolLoader& loader) {
  auto& symbols = loader.libraries[ioKit];
  symbols["IOAVServiceCreateWithService"] =
      CreateAVServiceFunction([this](const RegistryEntry& proxy) -> std::shared_ptr<AVService> {
        const auto parent = proxy.parent();
        const std::string name = parent ? parent->name().value_or("") : "";
        const std::string port = name.substr(0, name.find(':'));
        const auto channel = channels.find(port);
        if (channel == channels.end()) return nullptr;
        return std::make_shared<Service>(port, channel->second);
      });
  symbols["IOAVServiceWriteI2C"] = WriteI2CFunction(
      [this](AVService& service, std::uint32_t chip, std::uint32_t address, auto bytes) {
        return write(dynamic_cast<Service&>(service), chip, address, bytes);
      });
  symbols["IOAVServiceReadI2C"] = ReadI2CFunction(
      [this](AVService& service, std::uint32_t chip, std::uint32_t address, auto bytes) {
        return read(dynamic_cast<Service&>(service), chip, address, bytes);
      });
}

std::int32_t FakeBus::write(Service& service, std::uint32_t chip, std::uint32_t address,
                            std::span<const std::uint8_t> bytes) {
  noteTurn(service.channel);
  const std::lock_guard lock(mutex);
  Channel& channel = service.channel;
  notes.add("write " + service.port + " " + std::to_string(chip) + "/" + std::to_string(address) +
            ": " + tracedBytes(bytes));
  if (chip != monitorChip) return nobodyAnswers;
  std::int32_t status = channel.writeStatus;
  if (!channel.nextWriteStatuses.empty()) {
    status = channel.nextWriteStatuses.front();
    channel.nextWriteStatuses.erase(channel.nextWriteStatuses.begin());
  }
  if (checksum(requestSeed, bytes) != 0) return status;
  service.lastRequest.assign(bytes.begin(), bytes.end());
  if (bytes.size() > 1 && bytes[1] == 0x01) ++channel.getCount;
  if (bytes.size() == 6 && bytes[1] == 0x03) ++channel.setCount;
  if (status == 0 && bytes.size() == 6 && bytes[1] == 0x03) {
    channel.current = static_cast<std::uint16_t>(bytes[3] << 8 | bytes[4]);
  }
  return status;
}

std::int32_t FakeBus::read(Service& service, std::uint32_t chip, std::uint32_t address,
                           std::span<std::uint8_t> bytes) {
  noteTurn(service.channel);
  const std::lock_guard lock(mutex);
  Channel& channel = service.channel;
  notes.add("read " + service.port + " " + std::to_string(chip) + "/" + std::to_string(address) +
            ": " + std::to_string(bytes.size()));
  if (chip != monitorChip) return nobodyAnswers;
  if (channel.readStatus != 0) return channel.readStatus;
  if (!channel.answers) return 0;
  const auto reply = channel.reply ? channel.reply() : service.standardReply();
  std::copy_n(reply.begin(), std::min(reply.size(), bytes.size()), bytes.begin());
  return 0;
}

void FakeDisplayServices::install(FakeSymbolLoader& loader) {
  auto& symbols = loader.libraries[displayServices];
  symbols["DisplayServicesGetBrightness"] =
      GetBrightnessFunction([this](DisplayID display, float& level) {
        level = lookUp(levels, display).value_or(level);
        return getStatus;
      });
  symbols["DisplayServicesSetBrightness"] =
      SetBrightnessFunction([this](DisplayID display, float level) {
        if (setStatus == 0) levels[display] = level;
        return setStatus;
      });
  symbols["DisplayServicesCanChangeBrightness"] = CanChangeBrightnessFunction(
      [this](DisplayID display) { return lookUp(canChange, display).value_or(false); });
}

std::int32_t FakeGammaTables::readTable(DisplayID display, std::span<float> red,
                                        std::span<float> green, std::span<float> blue,
                                        std::uint32_t& returned) {
  calls.push_back("read " + std::to_string(display) + " " + std::to_string(red.size()));
  if (readStatus[display] != 0) return readStatus[display];
  const auto found = tables.find(display);
  if (found == tables.end()) return 1;
  const Table& table = found->second;
  returned = static_cast<std::uint32_t>(table.red.size());
  const auto fill = [](const std::vector<float>& from, std::span<float> to) {
    std::copy_n(from.begin(), std::min(from.size(), to.size()), to.begin());
  };
  fill(table.red, red);
  fill(table.green, green);
  fill(table.blue, blue);
  return 0;
}

std::int32_t FakeGammaTables::writeTable(DisplayID display, std::span<const float> red,
                                         std::span<const float> green,
                                         std::span<const float> blue) {
  calls.push_back("write " + std::to_string(display) + " " + std::to_string(red.size()));
  notes.add("gamma " + calls.back());
  if (writeStatus[display] != 0) return writeStatus[display];
  if (!tables.contains(display)) return 1;
  const Table& last = written[display] = {
      {red.begin(), red.end()}, {green.begin(), green.end()}, {blue.begin(), blue.end()}};
  const auto table = resampled({last.red, last.green, last.blue}, capacities[display]);
  tables[display] = {table[0], table[1], table[2]};
  return 0;
}

void FakeGammaTables::restoreCalibratedTables() {
  calls.emplace_back("restore all");
  notes.add("gamma restore all");
  for (const auto& [display, table] : calibrated) tables[display] = table;
}

void FakeGammaTables::add(DisplayID display, const std::vector<float>& curve) {
  capacities[display] = static_cast<std::uint32_t>(curve.size());
  tables[display] = calibrated[display] = {curve, curve, curve};
}

void FakeGammaTables::add(DisplayID display, std::uint32_t entries) {
  add(display, calibratedTable({.capacity = entries, .calibrated = {}})[0]);
}

void FakeUserDefaults::set(std::string_view key, const PropertyValue& value) {
  std::string note = "set " + std::string(key);
  if (std::holds_alternative<bool>(value.content)) {
    note += value.asBoolean() ? "=true" : "=false";
  } else if (value.text() == nullptr) {
    note += "=" + std::to_string(value.asInteger());
  }
  notes.add(note);
  values[std::string(key)] = value;
}

void FakeUserDefaults::remove(std::string_view key) {
  notes.add("remove " + std::string(key));
  values.erase(std::string(key));
}

ProcessResult FakeProcessRunner::run(const std::string& executable,
                                     const std::vector<std::string>& arguments) {
  std::vector<std::string> whole{executable};
  whole.insert(whole.end(), arguments.begin(), arguments.end());
  runs.push_back(whole);
  // The first arguments say what is done, the last one may be long.
  notes.add("run " + executable + (arguments.size() > 1 ? " " + arguments[1] : ""));
  if (const auto tool = lookUp(tools, executable)) return (*tool)(arguments);
  if (results.empty()) return ProcessNotStarted{"nothing to run"};
  ProcessResult result = results.front();
  if (results.size() > 1) results.erase(results.begin());
  return result;
}

std::vector<ProcessID> FakeApplications::runningApplications(const std::string& identifier) {
  auto processes = running[identifier];
  if (isAnnounced && identifier == bundle) processes.push_back(ownID);
  return processes;
}

void FakeSystemLog::write(std::string_view line) {
  const std::lock_guard lock(mutex);
  lines.emplace_back(line);
  notes.add("log " + std::string(line));
}

bool FakeHotkeys::installHandler(Handler newHandler) {
  notes.add("install hotkey handler");
  if (refusesHandler) return false;
  handler = std::move(newHandler);
  return true;
}

void FakeHotkeys::removeHandler() {
  notes.add("remove hotkey handler");
  handler = nullptr;
}

std::variant<HotkeyReference, HotkeyStatus> FakeHotkeys::registerHotkey(std::uint32_t keyCode,
                                                                        std::uint32_t modifiers,
                                                                        HotkeyID hotkey) {
  notes.add("register hotkey " + std::to_string(hotkey.id) + " key " + std::to_string(keyCode) +
            " modifiers " + std::to_string(modifiers));
  if (taken.contains({keyCode, modifiers})) return HotkeyTable::alreadyTaken;
  const auto result = table.add({keyCode, modifiers}, [this, hotkey](HotkeyEvent event) {
    // Copied: the handler may install another.
    if (const Handler current = handler) current(event, hotkey);
  });
  if (const auto* const reference = std::get_if<HotkeyReference>(&result)) {
    registrations[*reference] = {keyCode, modifiers, hotkey};
  }
  return result;
}

void FakeHotkeys::unregisterHotkey(HotkeyReference reference) {
  const auto found = registrations.find(reference);
  if (found == registrations.end()) fatal("a hotkey was unregistered that isn't registered");
  notes.add("unregister hotkey " + std::to_string(found->second.hotkey.id));
  table.retire(reference);
  registrations.erase(found);
}

bool FakeHotkeys::holds(std::uint32_t keyCode, std::uint32_t modifiers) const {
  return std::ranges::any_of(registrations, [&](const auto& entry) {
    return entry.second.keyCode == keyCode && entry.second.modifiers == modifiers;
  });
}

class FakeEventTaps::Tap : public EventTap {
 public:
  Tap(const FakeEventTaps& owningTaps, std::shared_ptr<TapStream::Tap> tapInStream,
      CallNotes& callNotes)
      : taps(owningTaps), tap(std::move(tapInStream)), notes(callNotes) {}
  ~Tap() override {
    notes.add("remove tap");
    tap->isEnabled = false;
  }

  void setEnabled(bool enabled) override {
    notes.add(enabled ? "enable tap" : "disable tap");
    tap->isEnabled = enabled;
  }

  bool getsBrightnessKeys() const override { return !taps.areKeysElsewhere; }

 private:
  const FakeEventTaps& taps;
  const std::shared_ptr<TapStream::Tap> tap;
  CallNotes& notes;
};

std::unique_ptr<EventTap> FakeEventTaps::createTap(Handler handler) {
  notes.add("create tap");
  if (refuses || !access.trusted) return nullptr;
  auto tap = stream.add(std::move(handler));
  latest = tap;
  return std::make_unique<Tap>(*this, std::move(tap), notes);
}

TapVerdict FakeEventTaps::send(const TapEvent& event) {
  return stream.send(event) ? TapVerdict::passThrough : TapVerdict::swallow;
}

void FakeEventTaps::disable(std::uint32_t notice) {
  const auto tap = latest.lock();
  if (tap == nullptr) return;
  tap->isEnabled = false;
  tap->handler({notice, std::nullopt});
}

TapVerdict FakeEventTaps::sendKey(std::uint32_t keyType, std::uint32_t state) {
  constexpr std::int16_t auxiliaryControlButtons = 8;
  const std::int64_t data1 = (std::int64_t{keyType} << 16) | (std::int64_t{state} << 8);
  return send({.type = TapEvent::systemDefined,
               .details = TapEvent::SystemDefined{auxiliaryControlButtons, data1, -1}});
}

std::optional<std::string> FakeKeyboard::baseCharacter(std::uint16_t keyCode) {
  if (auto character = lookUp(characters, keyCode)) return character;
  return characterOfKey(layout ? KeyboardLayout::us : KeyboardLayout::none, keyCode);
}

FakeMachine::FakeMachine() : notes(&time), systemLog(notes), bus(notes) {}

FakeBus::Channel& FakeMachine::addMonitor(DisplayID id, const std::string& name,
                                          const std::string& port, std::uint32_t vendor,
                                          std::uint32_t model, std::uint32_t serial) {
  bus.install(loader);
  displaySystem.add({id, vendor, model, serial, false}, name);
  registry.addPanel(port, vendor, model, serial);
  registry.addProxy(port);
  return bus.channels[port];
}

void FakeMachine::pointAt(DisplayID display) {
  for (const Screen& screen : displaySystem.allScreens) {
    if (screen.number != display) continue;
    displaySystem.pointer = {screen.frame.x + screen.frame.width / 2,
                             screen.frame.y + screen.frame.height / 2};
  }
}

void FakeMachine::noteEverything() {
  for (OptionalNotes* optional :
       {&gamma.notes, &settings.notes, &access.notes, &processRunner.notes, &apps.notes,
        &announcements.notes, &suiteNotes}) {
    optional->target = &notes;
  }
}

}  // namespace brivane
