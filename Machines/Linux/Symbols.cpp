#include "Machines/Linux/Symbols.h"

namespace brivane {
namespace {

constexpr LibraryHandle avServices = 1;
constexpr LibraryHandle displayServices = 2;

}  // namespace

LibraryHandle LinuxSymbolLoader::open(std::string_view path, int /*mode*/) {
  if (path == "/System/Library/Frameworks/IOKit.framework/IOKit") {
    bus.noteDeviceFiles();
    return avServices;
  }
  if (path == "/System/Library/PrivateFrameworks/DisplayServices.framework/DisplayServices") {
    return displayServices;
  }
  return 0;
}

Symbol LinuxSymbolLoader::find(LibraryHandle library, std::string_view name) {
  const bool isGlobal = library == globalNamespace;
  Symbol symbol;
  if (library == avServices || isGlobal) symbol = findAVService(name);
  if (!std::holds_alternative<std::monostate>(symbol)) return symbol;
  return library == displayServices || isGlobal ? findDisplayServices(name) : Symbol();
}

Symbol LinuxSymbolLoader::findAVService(std::string_view name) const {
  if (name == "IOAVServiceCreateWithService") {
    return CreateAVServiceFunction(
        [this](const RegistryEntry& proxy) { return bus.createService(proxy); });
  }
  if (name == "IOAVServiceWriteI2C") {
    return WriteI2CFunction([this](AVService& service, std::uint32_t chip, std::uint32_t address,
                                   std::span<const std::uint8_t> bytes) {
      return bus.write(service, chip, address, bytes);
    });
  }
  if (name == "IOAVServiceReadI2C") {
    return ReadI2CFunction(
        [this](AVService& service, std::uint32_t chip, std::uint32_t /*address*/,
               std::span<std::uint8_t> bytes) { return bus.read(service, chip, bytes); });
  }
  return {};
}

Symbol LinuxSymbolLoader::findDisplayServices(std::string_view name) const {
  if (name == "DisplayServicesGetBrightness") {
    return GetBrightnessFunction(
        [this](DisplayID display, float& level) { return backlight.get(display, level); });
  }
  if (name == "DisplayServicesSetBrightness") {
    return SetBrightnessFunction(
        [this](DisplayID display, float level) { return backlight.set(display, level); });
  }
  if (name == "DisplayServicesCanChangeBrightness") {
    return CanChangeBrightnessFunction(
        [this](DisplayID display) { return backlight.canChange(display); });
  }
  return {};
}

}  // namespace brivane
