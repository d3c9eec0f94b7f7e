#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string_view>
#include <utility>
#include <variant>

#include "BrivaneCore/Seams/DisplaySystem.h"
#include "BrivaneCore/Seams/IORegistry.h"

namespace brivane {

/// Use of a bus that no other program has; ends with the object.
class BusTurn {
 public:
  virtual ~BusTurn() = default;
};

/// The audio/video service of one connected panel, which carries its I2C channel. Holding the
/// pointer holds the service.
class AVService {
 public:
  virtual ~AVService() = default;

  /// Called before a request whose reply must not be taken by another program, and held until the
  /// reply is there. May block for 50 ms; null when another program still has the bus then. Turns
  /// of this process don't wait for each other. On machines whose buses have no turns there is
  /// nothing to wait for.
  virtual std::unique_ptr<BusTurn> takeTurn() { return std::make_unique<BusTurn>(); }
};

/// The service of a "DCPAVServiceProxy" registry entry; null when there is none.
using CreateAVServiceFunction =
    std::function<std::shared_ptr<AVService>(const RegistryEntry& proxy)>;

/// Sends `bytes` to the 7-bit `chip` address under `dataAddress`. 0 when the bus accepted them; any
/// other value is a failure. Blocks for the transfer only.
using WriteI2CFunction =
    std::function<std::int32_t(AVService& service, std::uint32_t chip, std::uint32_t dataAddress,
                               std::span<const std::uint8_t> bytes)>;

/// Fills `bytes` from the 7-bit `chip` address under `dataAddress`. 0 when the bus delivered.
using ReadI2CFunction =
    std::function<std::int32_t(AVService& service, std::uint32_t chip, std::uint32_t dataAddress,
                               std::span<std::uint8_t> bytes)>;

/// Stores the level, 0 to 1, in `level`. 0 on success.
using GetBrightnessFunction = std::function<std::int32_t(DisplayID display, float& level)>;

/// Sets the level, 0 to 1. 0 on success.
using SetBrightnessFunction = std::function<std::int32_t(DisplayID display, float level)>;

/// Whether the operating system can change the display's level.
using CanChangeBrightnessFunction = std::function<bool(DisplayID display)>;

/// What a name stands for; `std::monostate` when it stands for nothing.
using Symbol =
    std::variant<std::monostate, CreateAVServiceFunction, WriteI2CFunction, ReadI2CFunction,
                 GetBrightnessFunction, SetBrightnessFunction, CanChangeBrightnessFunction>;

/// An empty function when the symbol is nothing, or a function of another kind.
template <typename Function>
Function functionIn(Symbol symbol) {
  auto* const function = std::get_if<Function>(&symbol);
  return function == nullptr ? Function{} : std::move(*function);
}

/// An open library; 0 is none.
using LibraryHandle = std::intptr_t;

/// The handle of everything the process has loaded already.
inline constexpr LibraryHandle globalNamespace = -2;

/// Resolve symbols at their first use rather than on opening (the loader's mode 1).
inline constexpr int lazyBinding = 1;

/// Finds entry points that a machine may or may not have, by library path and name. The names and
/// paths are those of the Mac; other machines offer what they have under the same ones:
/// "IOAVServiceCreateWithService", "IOAVServiceWriteI2C", "IOAVServiceReadI2C" in
/// "/System/Library/Frameworks/IOKit.framework/IOKit"; "DisplayServicesGetBrightness",
/// "DisplayServicesSetBrightness", "DisplayServicesCanChangeBrightness" in
/// "/System/Library/PrivateFrameworks/DisplayServices.framework/DisplayServices".
///
/// Any thread. The functions found may be called on the main thread and the DDC queue at the same
/// time and stay valid as long as the machine.
class SymbolLoader {
 public:
  virtual ~SymbolLoader() = default;

  /// The library at `path`, opened with `mode` and never closed; 0 when it can't be opened.
  virtual LibraryHandle open(std::string_view path, int mode) = 0;

  /// The function called `name` in an open library or in `globalNamespace`.
  virtual Symbol find(LibraryHandle library, std::string_view name) = 0;
};

}  // namespace brivane
