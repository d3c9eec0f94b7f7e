// The types of the private entry points. An AV service is a CoreFoundation object; the creating
// function returns ownership.
#include "Machines/Mac/EntryPoints.h"

#include <CoreGraphics/CoreGraphics.h>

#include <memory>
#include <vector>

#include "Machines/Mac/CoreFoundation/CFReference.h"
#include "Machines/Mac/Registry.h"

namespace brivane {
namespace {

using CreateWithService = CFTypeRef (*)(CFAllocatorRef allocator, io_service_t service);
using TransferI2C = IOReturn (*)(CFTypeRef service, std::uint32_t chip, std::uint32_t dataAddress,
                                 void* bytes, std::uint32_t length);
using GetBrightness = int (*)(CGDirectDisplayID display, float* level);
using SetBrightness = int (*)(CGDirectDisplayID display, float level);
using CanChangeBrightness = Boolean (*)(CGDirectDisplayID display);

class MacAVService : public AVService {
 public:
  explicit MacAVService(CFReference<CFTypeRef> ownedService) : service(std::move(ownedService)) {}

  CFTypeRef object() const { return service.get(); }

 private:
  const CFReference<CFTypeRef> service;
};

CreateAVServiceFunction createAt(void* address) {
  return [create = reinterpret_cast<CreateWithService>(address)](
             const RegistryEntry& proxy) -> std::shared_ptr<AVService> {
    const auto entry = static_cast<const MacRegistryEntry&>(proxy).object();
    CFReference service(create(kCFAllocatorDefault, entry));
    if (!service) return nullptr;
    return std::make_shared<MacAVService>(std::move(service));
  };
}

WriteI2CFunction writeAt(void* address) {
  return [write = reinterpret_cast<TransferI2C>(address)](AVService& service, std::uint32_t chip,
                                                          std::uint32_t dataAddress,
                                                          std::span<const std::uint8_t> bytes) {
    // The call only reads the bytes, but takes a non-const pointer.
    std::vector<std::uint8_t> copy(bytes.begin(), bytes.end());
    return write(static_cast<MacAVService&>(service).object(), chip, dataAddress, copy.data(),
                 static_cast<std::uint32_t>(copy.size()));
  };
}

ReadI2CFunction readAt(void* address) {
  return [read = reinterpret_cast<TransferI2C>(address)](AVService& service, std::uint32_t chip,
                                                         std::uint32_t dataAddress,
                                                         std::span<std::uint8_t> bytes) {
    return read(static_cast<MacAVService&>(service).object(), chip, dataAddress, bytes.data(),
                static_cast<std::uint32_t>(bytes.size()));
  };
}

GetBrightnessFunction getBrightnessAt(void* address) {
  return [get = reinterpret_cast<GetBrightness>(address)](DisplayID display, float& level) {
    return get(display, &level);
  };
}

CanChangeBrightnessFunction canChangeBrightnessAt(void* address) {
  return [canChange = reinterpret_cast<CanChangeBrightness>(address)](DisplayID display) {
    return canChange(display) != 0;
  };
}

}  // namespace

Symbol symbolAt(void* address, std::string_view name) {
  if (name == "IOAVServiceCreateWithService") return createAt(address);
  if (name == "IOAVServiceWriteI2C") return writeAt(address);
  if (name == "IOAVServiceReadI2C") return readAt(address);
  if (name == "DisplayServicesGetBrightness") return getBrightnessAt(address);
  if (name == "DisplayServicesSetBrightness") {
    return SetBrightnessFunction(reinterpret_cast<SetBrightness>(address));
  }
  if (name == "DisplayServicesCanChangeBrightness") return canChangeBrightnessAt(address);
  return {};
}

}  // namespace brivane
