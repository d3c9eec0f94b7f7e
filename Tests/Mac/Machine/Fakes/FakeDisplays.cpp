// CoreGraphics' displays and their transfer tables.
#include <CoreGraphics/CoreGraphics.h>

#include <algorithm>
#include <cmath>

#include "Tests/Mac/Machine/Fakes/FakeMac.h"

using namespace brivane;        // NOLINT
using namespace brivane::fake;  // NOLINT

namespace {

constexpr auto illegalArgument = static_cast<CGError>(1001);
constexpr std::uint32_t noMonitor = 0xFFFFFFFF;

CGError failed(const char* function) {
  return static_cast<CGError>(mac().failureOf(function).value_or(kCGErrorSuccess));
}

/// Channel values at `count` even places, found between the samples that there are.
std::vector<float> resampled(const std::vector<float>& curve, std::uint32_t count) {
  std::vector<float> result(count);
  for (std::uint32_t i = 0; i < count; ++i) {
    const double place =
        count < 2 ? 0
                  : static_cast<double>(i) / (count - 1) * static_cast<double>(curve.size() - 1);
    const auto low = static_cast<std::size_t>(std::floor(place));
    const std::size_t high = std::min(low + 1, curve.size() - 1);
    const double part = place - static_cast<double>(low);
    result[i] = static_cast<float>(curve[low] * (1 - part) + curve[high] * part);
  }
  return result;
}

Table tableOf(const Display& display) {
  const std::vector<float> linear = resampled({0.0F, 1.0F}, display.gammaCapacity);
  return display.table.red.empty() ? Table{linear, linear, linear} : display.table;
}

}  // namespace

extern "C" {

CGError CGGetOnlineDisplayList(uint32_t maximum, CGDirectDisplayID* displays, uint32_t* count) {
  const std::lock_guard lock(mac().mutex);
  if (const CGError error = failed("CGGetOnlineDisplayList"); error != 0) return error;
  const auto all = static_cast<std::uint32_t>(mac().displays.size());
  if (displays == nullptr || maximum == 0) {
    *count = all;
    return kCGErrorSuccess;
  }
  *count = std::min(all, maximum);
  for (std::uint32_t i = 0; i < *count; ++i) displays[i] = mac().displays[i].id;
  return kCGErrorSuccess;
}

boolean_t CGDisplayIsBuiltin(CGDirectDisplayID id) {
  const std::lock_guard lock(mac().mutex);
  const Display* const display = mac().find(id);
  return display != nullptr && display->isBuiltIn ? 1 : 0;
}

uint32_t CGDisplayVendorNumber(CGDirectDisplayID id) {
  const std::lock_guard lock(mac().mutex);
  const Display* const display = mac().find(id);
  return display == nullptr ? noMonitor : display->panel.vendor;
}

uint32_t CGDisplayModelNumber(CGDirectDisplayID id) {
  const std::lock_guard lock(mac().mutex);
  const Display* const display = mac().find(id);
  return display == nullptr ? noMonitor : display->panel.model;
}

uint32_t CGDisplaySerialNumber(CGDirectDisplayID id) {
  const std::lock_guard lock(mac().mutex);
  const Display* const display = mac().find(id);
  return display == nullptr ? noMonitor : display->panel.serial;
}

uint32_t CGDisplayGammaTableCapacity(CGDirectDisplayID id) {
  const Display* const display = mac().find(id);
  return display == nullptr ? 0 : display->gammaCapacity;
}

CGError CGGetDisplayTransferByTable(CGDirectDisplayID id, uint32_t capacity, CGGammaValue* red,
                                    CGGammaValue* green, CGGammaValue* blue,
                                    uint32_t* sampleCount) {
  if (const CGError error = failed("CGGetDisplayTransferByTable"); error != 0) return error;
  const Display* const display = mac().find(id);
  if (display == nullptr) return illegalArgument;
  const Table table = tableOf(*display);
  const std::size_t count = std::min<std::size_t>(capacity, table.red.size());
  std::copy_n(table.red.begin(), count, red);
  std::copy_n(table.green.begin(), count, green);
  std::copy_n(table.blue.begin(), count, blue);
  *sampleCount = static_cast<std::uint32_t>(count);
  return kCGErrorSuccess;
}

CGError CGSetDisplayTransferByTable(CGDirectDisplayID id, uint32_t tableSize,
                                    const CGGammaValue* red, const CGGammaValue* green,
                                    const CGGammaValue* blue) {
  mac().note("CGSetDisplayTransferByTable " + std::to_string(id) + " " + std::to_string(tableSize));
  if (const CGError error = failed("CGSetDisplayTransferByTable"); error != 0) return error;
  Display* const display = mac().find(id);
  if (display == nullptr) return illegalArgument;
  const auto put = [&](const CGGammaValue* samples) {
    return resampled({samples, samples + tableSize}, display->gammaCapacity);
  };
  display->table = {put(red), put(green), put(blue)};
  return kCGErrorSuccess;
}

void CGDisplayRestoreColorSyncSettings(void) {
  mac().note("CGDisplayRestoreColorSyncSettings");
  for (Display& display : mac().displays) display.table = {};
}
}
