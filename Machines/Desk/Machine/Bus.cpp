#include "Machines/Desk/Machine/Bus.h"

#include "Machines/Desk/Machine/Registry.h"

// What a real machine offers through entry points looked up by name: the I2C bus of each external
// panel, and the display services. The desk file says where each name is found.

namespace brivane {
namespace {

constexpr LibraryHandle ioKitHandle = 1;
constexpr LibraryHandle displayServicesHandle = 2;
constexpr std::int32_t success = 0;
constexpr std::int32_t failure = 1;

struct DeskAVService : AVService {
  explicit DeskAVService(DisplayID servedDisplay) : display(servedDisplay) {}
  const DisplayID display;
};

/// Display 0 (none) when the service is another machine's.
DisplayID displayOf(AVService& service) {
  const auto* const own = dynamic_cast<DeskAVService*>(&service);
  return own == nullptr ? 0 : own->display;
}

SymbolPlace placeOf(const LibraryDescription& library, std::string_view name) {
  const auto found = library.symbols.find(name);
  return found == library.symbols.end() ? SymbolPlace::library : found->second;
}

bool isAt(SymbolPlace place, SymbolPlace where) {
  return place == where || place == SymbolPlace::everywhere;
}

}  // namespace

LibraryHandle DeskSymbols::open(std::string_view path, int) {
  if (faults.strikes("SymbolLoader.open")) return 0;
  const auto& desk = hardware.description;
  if (path == "/System/Library/Frameworks/IOKit.framework/IOKit") {
    return desk.ioKit.canBeOpened ? ioKitHandle : 0;
  }
  if (path == "/System/Library/PrivateFrameworks/DisplayServices.framework/DisplayServices") {
    return desk.displayServicesLibrary.canBeOpened ? displayServicesHandle : 0;
  }
  return 0;
}

Symbol DeskSymbols::find(LibraryHandle library, std::string_view name) {
  if (faults.strikes("SymbolLoader.find")) return {};
  const auto& desk = hardware.description;
  const auto avService = avServiceSymbol(name);
  const bool isAVService = !std::holds_alternative<std::monostate>(avService);
  const auto place = placeOf(isAVService ? desk.ioKit : desk.displayServicesLibrary, name);
  const auto home = isAVService ? ioKitHandle : displayServicesHandle;
  const bool isFound = library == globalNamespace
                           ? isAt(place, SymbolPlace::global)
                           : library == home && isAt(place, SymbolPlace::library);
  if (!isFound) return {};
  return isAVService ? avService : displayServicesSymbol(name);
}

Symbol DeskSymbols::avServiceSymbol(std::string_view name) {
  if (name == "IOAVServiceCreateWithService") {
    return CreateAVServiceFunction([this](const RegistryEntry& proxy) {
      std::shared_ptr<AVService> service;
      if (faults.strikes("AVService.create")) return service;
      const auto display = DeskRegistry::displayOfProxy(proxy);
      if (display) service = std::make_shared<DeskAVService>(*display);
      return service;
    });
  }
  if (name == "IOAVServiceWriteI2C") {
    return WriteI2CFunction([this](AVService& service, std::uint32_t chip, std::uint32_t address,
                                   std::span<const std::uint8_t> bytes) {
      const auto what = [&] {
        return "bus " + std::to_string(displayOf(service)) + " write " + tracedBytes(bytes);
      };
      if (faults.strikes("AVService.writeI2C", what)) return failure;
      return hardware.monitors.writeI2C(displayOf(service), chip, address, bytes, runtime.now());
    });
  }
  if (name == "IOAVServiceReadI2C") {
    return ReadI2CFunction([this](AVService& service, std::uint32_t chip, std::uint32_t address,
                                  std::span<std::uint8_t> bytes) {
      if (faults.strikes("AVService.readI2C")) return failure;
      return hardware.monitors.readI2C(displayOf(service), chip, address, bytes, runtime.now());
    });
  }
  return {};
}

Symbol DeskSymbols::displayServicesSymbol(std::string_view name) {
  if (name == "DisplayServicesGetBrightness") {
    return GetBrightnessFunction([this](DisplayID display, float& level) {
      if (faults.strikes("DisplayServices.getBrightness")) return failure;
      const auto current = hardware.panels.level(hardware.displays.identifierOf(display));
      if (current) level = *current;
      return current ? success : failure;
    });
  }
  if (name == "DisplayServicesSetBrightness") {
    return SetBrightnessFunction([this](DisplayID display, float level) {
      const auto what = [&] {
        return "display-services " + std::to_string(hardware.displays.identifierOf(display)) +
               " level " + tracedNumber(level);
      };
      if (faults.strikes("DisplayServices.setBrightness", what)) return failure;
      return hardware.panels.setLevel(hardware.displays.identifierOf(display), level) ? success
                                                                                      : failure;
    });
  }
  if (name == "DisplayServicesCanChangeBrightness") {
    return CanChangeBrightnessFunction([this](DisplayID display) {
      if (faults.strikes("DisplayServices.canChangeBrightness")) return false;
      const auto described = hardware.displays.findNumbered(display);
      return described && described->displayServices && described->displayServices->canChange;
    });
  }
  return {};
}

}  // namespace brivane
