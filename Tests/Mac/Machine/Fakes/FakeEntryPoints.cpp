// The dynamic loader, and the private functions that it finds. The Mac's code is built so that it
// calls these in place of the real loader.
#include <dlfcn.h>

#include <algorithm>
#include <cstring>

#include "Tests/Mac/Machine/Fakes/FakeCoreFoundation.h"
#include "Tests/Mac/Machine/Fakes/FakeIOKit.h"

namespace brivane::fake {
namespace {

constexpr CFTypeID avServiceKind = 200;
int ioKitHandle = 0;
int displayServicesHandle = 0;

std::map<CFTypeRef, std::shared_ptr<Monitor>>& services() {
  static std::map<CFTypeRef, std::shared_ptr<Monitor>> all;
  return all;
}

Instant moment() {
  return Instant(std::chrono::duration_cast<Microseconds>(
      std::chrono::steady_clock::now().time_since_epoch()));
}

CFTypeRef createWithService(CFAllocatorRef allocator, io_service_t entry) {
  const std::lock_guard lock(mac().mutex);
  const auto monitor = registryNode(entry).monitor;
  if (allocator != kCFAllocatorDefault || !monitor) return nullptr;
  FakeObject* const service = makeObject(avServiceKind);
  services()[service] = monitor;
  return service;
}

std::shared_ptr<Monitor> monitorOf(CFTypeRef service) {
  return objectAt(service).kind == avServiceKind ? services().at(service) : nullptr;
}

kern_return_t writeI2C(CFTypeRef service, std::uint32_t chip, std::uint32_t address, void* bytes,
                       std::uint32_t length) {
  const std::lock_guard lock(mac().mutex);
  const auto monitor = monitorOf(service);
  return monitor->firmware.write(monitor->state, chip, address,
                                 {static_cast<const std::uint8_t*>(bytes), length}, moment());
}

kern_return_t readI2C(CFTypeRef service, std::uint32_t chip, std::uint32_t address, void* bytes,
                      std::uint32_t length) {
  const std::lock_guard lock(mac().mutex);
  const auto monitor = monitorOf(service);
  return monitor->firmware.read(monitor->state, chip, address,
                                {static_cast<std::uint8_t*>(bytes), length}, moment());
}

int getBrightness(std::uint32_t id, float* level) {
  const std::lock_guard lock(mac().mutex);
  const Display* const display = mac().find(id);
  if (display == nullptr || !display->level) return -1;
  *level = *display->level;
  return 0;
}

int setBrightness(std::uint32_t id, float level) {
  const std::lock_guard lock(mac().mutex);
  Display* const display = mac().find(id);
  if (display == nullptr || !display->level) return -1;
  display->level = level;
  return 0;
}

/// Any answer but 0 is yes.
Boolean canChangeBrightness(std::uint32_t id) {
  const std::lock_guard lock(mac().mutex);
  const Display* const display = mac().find(id);
  return display != nullptr && display->level.has_value() ? 2 : 0;
}

struct EntryPoint {
  const char* name;
  const void* library;
  void* address;
};

template <typename Function>
void* addressOf(Function* function) {
  return reinterpret_cast<void*>(function);
}

std::vector<EntryPoint> entryPoints() {
  return {
      {"IOAVServiceCreateWithService", &ioKitHandle, addressOf(createWithService)},
      {"IOAVServiceWriteI2C", &ioKitHandle, addressOf(writeI2C)},
      {"IOAVServiceReadI2C", &ioKitHandle, addressOf(readI2C)},
      {"DisplayServicesGetBrightness", &displayServicesHandle, addressOf(getBrightness)},
      {"DisplayServicesSetBrightness", &displayServicesHandle, addressOf(setBrightness)},
      {"DisplayServicesCanChangeBrightness", &displayServicesHandle,
       addressOf(canChangeBrightness)},
      {"SomethingElse", &ioKitHandle, addressOf(getBrightness)},
  };
}

}  // namespace
}  // namespace brivane::fake

using namespace brivane::fake;  // NOLINT

extern "C" {

void* fake_dlopen(const char* path, int mode) noexcept {
  mac().note("dlopen " + std::string(path) + " " + std::to_string(mode));
  if (std::strcmp(path, "/System/Library/Frameworks/IOKit.framework/IOKit") == 0) {
    return mac().hasIOKitLibrary ? &ioKitHandle : nullptr;
  }
  if (std::strcmp(path,
                  "/System/Library/PrivateFrameworks/DisplayServices.framework/DisplayServices") ==
      0) {
    return mac().hasDisplayServices ? &displayServicesHandle : nullptr;
  }
  return nullptr;
}

void* fake_dlsym(void* library, const char* name) noexcept {
  void* const everything = reinterpret_cast<void*>(-2);
  const auto& globals = mac().globalOnly;
  const bool isGlobal = std::find(globals.begin(), globals.end(), name) != globals.end();
  for (const EntryPoint& entry : entryPoints()) {
    const void* const home = isGlobal ? everything : entry.library;
    if (home == library && std::strcmp(entry.name, name) == 0) return entry.address;
  }
  return nullptr;
}
}
