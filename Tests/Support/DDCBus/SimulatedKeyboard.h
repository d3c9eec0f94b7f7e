#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "Tests/Support/DDCBus/WireLog.h"

namespace brivane {

/// One key of a keymap: what the keyboard sends for it and the key code that the kernel makes of
/// it.
struct SimulatedKey {
  std::vector<std::uint8_t> scancode;
  unsigned keycode = 0;
};

/// An input device's keymap, mirrored into the file "keymap" of its folder as lines
/// "<scancode in hex> <keycode>". A device without any key here has no keymap to ask for.
class SimulatedKeyboard {
 public:
  SimulatedKeyboard(std::string deviceName, std::filesystem::path deviceFolder,
                    std::vector<SimulatedKey> keys, const WireLog& wireLog);

  /// The key at a place of the keymap, or with a scancode; null when there is none.
  SimulatedKey* at(std::size_t index);
  SimulatedKey* with(const std::vector<std::uint8_t>& scancode);

  void set(SimulatedKey& key, unsigned keycode);

  /// The key codes that the device can send, as the kernel's "capabilities/key" puts them.
  std::string capabilities() const;

  void note(const std::string& event) const { log.add(name, event); }
  /// Its place in the keymap.
  std::size_t indexOf(const SimulatedKey& key) const;

 private:
  void mirror() const;

  const std::string name;
  const std::filesystem::path folder;
  std::vector<SimulatedKey> keymap;
  const WireLog& log;
};

/// Key codes as the kernel prints a bit set: words of 64 bits in hex, the highest first.
std::string capabilityText(const std::vector<unsigned>& keycodes);

}  // namespace brivane
