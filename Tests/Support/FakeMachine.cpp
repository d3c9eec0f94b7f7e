#include "Tests/Support/FakeMachine.h"

#include <algorithm>
#include <utility>

#include "BrivaneCore/Support/Fatal.h"
#include "Machines/Desk/Hardware/Trace.h"

namespace brivane {

namespace {

constexpr auto ioKitPath = "/System/Library/Frameworks/IOKit.framework/IOKit";
constexpr auto displayServicesPath =
    "/System/Library/PrivateFrameworks/DisplayServices.framework/DisplayServices";
constexpr double screenSize = 100;

class ListIterator : public RegistryIterator {
 public:
  explicit ListIterator(std::vector<std::shared_ptr<FakeRegistryEntry>> list)
      : entries(std::move(list)) {}

  std::shared_ptr<const RegistryEntry> next() override {
    return position < entries.size() ? entries[position++] : nullptr;
  }

 private:
  std::vector<std::shared_ptr<FakeRegistryEntry>> entries;
  std::size_t position = 0;
};

}  // namespace

void CallNotes::add(const std::string& what) {
  const auto milliseconds =
      std::chrono::duration_cast<std::chrono::milliseconds>(runtime->now().time_since_epoch());
  lines.push_back("[" + std::to_string(milliseconds.count()) + "] " + what);
}

std::vector<std::string> CallNotes::take() {
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
  const auto found = std::find_if(online.begin(), online.end(),
                                  [&](const FakeDisplay& display) { return display.id == id; });
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
}

std::optional<PropertyValue> FakeRegistryEntry::property(std::string_view key) const {
  const auto found = properties.find(key);
  if (found == properties.end()) return std::nullopt;
  return found->second;
}

std::unique_ptr<RegistryIterator> FakeIORegistry::allServices() {
  if (refuses) return nullptr;
  ++walks;
  return std::make_unique<ListIterator>(entries);
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
  const std::string path =
      library == globalNamespace ? "" : openPaths.at(static_cast<std::size_t>(library - 1));
  calls.push_back("find " + (path.empty() ? "global" : path) + " " + std::string(name));
  const auto& symbols = libraries[path];
  const auto found = symbols.find(std::string(name));
  return found == symbols.end() ? Symbol{} : found->second;
}

struct FakeBus::Service : AVService {
  Service(std::string portName, Channel& portChannel)
      : port(std::move(portName)), channel(portChannel) {}

  std::string port;
  Channel& channel;
  std::vector<std::uint8_t> lastRequest;
};

void FakeBus::install(FakeSymbolLoader& loader) {
  auto& symbols = loader.libraries[ioKitPath];
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
  Channel& channel = service.channel;
  notes.add("write " + service.port + " " + std::to_string(chip) + "/" + std::to_string(address) +
            ": " + tracedBytes(bytes));
  std::int32_t status = channel.writeStatus;
  if (!channel.nextWriteStatuses.empty()) {
    status = channel.nextWriteStatuses.front();
    channel.nextWriteStatuses.erase(channel.nextWriteStatuses.begin());
  }
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
  Channel& channel = service.channel;
  notes.add("read " + service.port + " " + std::to_string(chip) + "/" + std::to_string(address) +
            ": " + std::to_string(bytes.size()));
  if (channel.readStatus != 0) return channel.readStatus;
  if (!channel.answers) return 0;
  const std::uint8_t code = service.lastRequest.size() > 2 ? service.lastRequest[2] : 0;
  const auto high = [](std::uint16_t value) { return static_cast<std::uint8_t>(value >> 8); };
  const auto low = [](std::uint16_t value) { return static_cast<std::uint8_t>(value & 0xFF); };
  const std::vector<std::uint8_t> reply = channel.reply
                                              ? channel.reply()
                                              : std::vector<std::uint8_t>{0x6E,
                                                                          0x88,
                                                                          0x02,
                                                                          0x00,
                                                                          code,
                                                                          0x00,
                                                                          high(channel.max),
                                                                          low(channel.max),
                                                                          high(channel.current),
                                                                          low(channel.current),
                                                                          0,
                                                                          0};
  std::copy_n(reply.begin(), std::min(reply.size(), bytes.size()), bytes.begin());
  return 0;
}

void FakeDisplayServices::install(FakeSymbolLoader& loader) {
  auto& symbols = loader.libraries[displayServicesPath];
  symbols["DisplayServicesGetBrightness"] =
      GetBrightnessFunction([this](DisplayID display, float& level) {
        if (const auto found = levels.find(display); found != levels.end()) level = found->second;
        return getStatus;
      });
  symbols["DisplayServicesSetBrightness"] =
      SetBrightnessFunction([this](DisplayID display, float level) {
        if (setStatus == 0) levels[display] = level;
        return setStatus;
      });
  symbols["DisplayServicesCanChangeBrightness"] =
      CanChangeBrightnessFunction([this](DisplayID display) {
        const auto found = canChange.find(display);
        return found != canChange.end() && found->second;
      });
}

std::uint32_t FakeGammaTables::capacity(DisplayID display) {
  calls.push_back("capacity " + std::to_string(display));
  return capacities[display];
}

std::int32_t FakeGammaTables::readTable(DisplayID display, std::span<float> red,
                                        std::span<float> green, std::span<float> blue,
                                        std::uint32_t& returned) {
  calls.push_back("read " + std::to_string(display) + " " + std::to_string(red.size()));
  if (readStatus[display] != 0) return readStatus[display];
  const auto table = tables.find(display);
  if (table == tables.end()) return 1;
  returned = static_cast<std::uint32_t>(table->second.red.size());
  const auto fill = [](const std::vector<float>& from, std::span<float> to) {
    std::copy_n(from.begin(), std::min(from.size(), to.size()), to.begin());
  };
  fill(table->second.red, red);
  fill(table->second.green, green);
  fill(table->second.blue, blue);
  return 0;
}

std::int32_t FakeGammaTables::writeTable(DisplayID display, std::span<const float> red,
                                         std::span<const float> green,
                                         std::span<const float> blue) {
  calls.push_back("write " + std::to_string(display) + " " + std::to_string(red.size()));
  notes.add("gamma " + calls.back());
  if (writeStatus[display] != 0) return writeStatus[display];
  tables[display] = {
      {red.begin(), red.end()}, {green.begin(), green.end()}, {blue.begin(), blue.end()}};
  return 0;
}

void FakeGammaTables::restoreCalibratedTables() {
  calls.emplace_back("restore all");
  notes.add("gamma restore all");
}

void FakeGammaTables::add(DisplayID display, std::uint32_t entries) {
  std::vector<float> curve(entries);
  for (std::uint32_t i = 0; i < entries; ++i) {
    curve[i] = static_cast<float>(static_cast<double>(i) / (entries - 1));
  }
  capacities[display] = entries;
  tables[display] = {curve, curve, curve};
}

std::optional<PropertyValue> FakeUserDefaults::object(std::string_view key) const {
  const auto found = values.find(key);
  if (found == values.end()) return std::nullopt;
  return found->second;
}

void FakeUserDefaults::set(std::string_view key, const PropertyValue& value) {
  notes.add("set " + std::string(key));
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
  if (tool) return tool(arguments);
  if (results.empty()) return ProcessNotStarted{"nothing to run"};
  ProcessResult result = results.front();
  if (results.size() > 1) results.erase(results.begin());
  return result;
}

std::vector<ProcessID> FakeApplications::runningApplications(const std::string& identifier) {
  return running[identifier];
}

void FakeSystemLog::write(std::string_view line) {
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
  if (taken.contains({keyCode, modifiers}) || holds(keyCode, modifiers)) return takenStatus;
  registrations[nextReference] = {keyCode, modifiers, hotkey};
  return nextReference++;
}

void FakeHotkeys::unregisterHotkey(HotkeyReference reference) {
  const auto found = registrations.find(reference);
  if (found == registrations.end()) fatal("a hotkey was unregistered that isn't registered");
  notes.add("unregister hotkey " + std::to_string(found->second.hotkey.id));
  if (down.erase(reference) != 0) unregisteredWhileDown.push_back(found->second);
  registrations.erase(found);
}

bool FakeHotkeys::press(std::uint32_t keyCode, std::uint32_t modifiers) {
  return send(HotkeyEvent::pressed, keyCode, modifiers);
}

bool FakeHotkeys::release(std::uint32_t keyCode, std::uint32_t modifiers) {
  const auto late = std::ranges::find_if(unregisteredWhileDown, [&](const Registration& former) {
    return former.keyCode == keyCode && former.modifiers == modifiers;
  });
  if (late == unregisteredWhileDown.end()) {
    return send(HotkeyEvent::released, keyCode, modifiers);
  }
  const HotkeyID hotkey = late->hotkey;
  unregisteredWhileDown.erase(late);
  return tell(HotkeyEvent::released, hotkey);
}

bool FakeHotkeys::holds(std::uint32_t keyCode, std::uint32_t modifiers) const {
  return std::ranges::any_of(registrations, [&](const auto& entry) {
    return entry.second.keyCode == keyCode && entry.second.modifiers == modifiers;
  });
}

bool FakeHotkeys::send(HotkeyEvent event, std::uint32_t keyCode, std::uint32_t modifiers) {
  for (const auto& [reference, registration] : registrations) {
    if (registration.keyCode != keyCode || registration.modifiers != modifiers) continue;
    if (event == HotkeyEvent::pressed) {
      down.insert(reference);
    } else {
      down.erase(reference);
    }
    return tell(event, registration.hotkey);
  }
  return false;
}

bool FakeHotkeys::tell(HotkeyEvent event, HotkeyID hotkey) const {
  // What hears of it may install another.
  const Handler own = handler;
  if (own) own(event, hotkey);
  return own != nullptr;
}

class FakeEventTaps::Tap : public EventTap {
 public:
  explicit Tap(FakeEventTaps& eventTaps) : port(eventTaps) { port.exists = true; }
  ~Tap() override {
    port.notes.add("remove tap");
    port.exists = port.isEnabled = false;
    port.handler = nullptr;
  }
  Tap(const Tap&) = delete;
  Tap& operator=(const Tap&) = delete;

  void setEnabled(bool enabled) override {
    port.notes.add(enabled ? "enable tap" : "disable tap");
    port.isEnabled = enabled;
  }

 private:
  FakeEventTaps& port;
};

std::unique_ptr<EventTap> FakeEventTaps::createTap(Handler newHandler) {
  notes.add("create tap");
  if (refuses) return nullptr;
  handler = std::move(newHandler);
  return std::make_unique<Tap>(*this);
}

TapVerdict FakeEventTaps::send(const TapEvent& event) {
  if (!handler) return TapVerdict::passThrough;
  const bool isNotice = event.type != TapEvent::systemDefined;
  if (!isEnabled && !isNotice) return TapVerdict::passThrough;
  const Handler own = handler;
  return own(event);
}

TapVerdict FakeEventTaps::sendKey(std::uint32_t keyType, std::uint32_t state) {
  constexpr std::int16_t auxiliaryControlButtons = 8;
  const std::int64_t data1 = (std::int64_t{keyType} << 16) | (std::int64_t{state} << 8);
  return send({.type = TapEvent::systemDefined,
               .details = TapEvent::SystemDefined{auxiliaryControlButtons, data1, -1}});
}

std::optional<std::string> FakeKeyboard::baseCharacter(std::uint16_t keyCode) {
  const auto found = characters.find(keyCode);
  if (found == characters.end()) return std::nullopt;
  return found->second;
}

Observation FakeNotifications::Topic::add(const Task& handler) {
  auto observer = std::make_shared<Task>(handler);
  observers.push_back(observer);
  return observer;
}

void FakeNotifications::Topic::announce() const {
  for (const auto& observer : std::vector(observers)) {
    if (const auto handler = observer.lock()) (*handler)();
  }
}

std::size_t FakeNotifications::Topic::observerCount() const {
  return static_cast<std::size_t>(
      std::ranges::count_if(observers, [](const auto& observer) { return !observer.expired(); }));
}

std::optional<double> FakeSession::modificationSeconds(const std::string& path) {
  const auto found = files.find(path);
  return found == files.end() ? std::nullopt : found->second;
}

std::optional<std::string> FakeResources::read(const std::string& bundle, const std::string& path) {
  const auto found = files.find(bundle + "/" + path);
  if (found == files.end()) return std::nullopt;
  return found->second;
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

std::unique_ptr<DefaultsSuite> FakeMachine::openDefaultsSuite(const std::string& name) {
  suiteNotes.add("open suite " + name);
  const auto found = suites.find(name);
  if (found == suites.end()) return nullptr;
  return std::make_unique<FakeDefaultsSuite>(found->second);
}

}  // namespace brivane
