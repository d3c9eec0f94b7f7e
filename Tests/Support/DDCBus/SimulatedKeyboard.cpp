#include "Tests/Support/DDCBus/SimulatedKeyboard.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <ios>
#include <iterator>
#include <sstream>

namespace brivane {

SimulatedKeyboard::SimulatedKeyboard(std::string deviceName, std::filesystem::path deviceFolder,
                                     std::vector<SimulatedKey> keys, const WireLog& wireLog)
    : name(std::move(deviceName)),
      folder(std::move(deviceFolder)),
      keymap(std::move(keys)),
      log(wireLog) {
  mirror();
}

SimulatedKey* SimulatedKeyboard::at(std::size_t index) {
  return index < keymap.size() ? &keymap[index] : nullptr;
}

SimulatedKey* SimulatedKeyboard::with(const std::vector<std::uint8_t>& scancode) {
  const auto found = std::find_if(keymap.begin(), keymap.end(), [&](const SimulatedKey& key) {
    return key.scancode == scancode;
  });
  return found == keymap.end() ? nullptr : &*found;
}

void SimulatedKeyboard::set(SimulatedKey& key, unsigned keycode) {
  note("remap " + hexText(key.scancode) + " " + std::to_string(key.keycode) + " -> " +
       std::to_string(keycode));
  key.keycode = keycode;
  mirror();
}

std::string SimulatedKeyboard::capabilities() const {
  std::vector<unsigned> keycodes;
  std::transform(keymap.begin(), keymap.end(), std::back_inserter(keycodes),
                 [](const SimulatedKey& key) { return key.keycode; });
  return capabilityText(keycodes);
}

std::size_t SimulatedKeyboard::indexOf(const SimulatedKey& key) const {
  return static_cast<std::size_t>(&key - keymap.data());
}

void SimulatedKeyboard::mirror() const {
  std::ofstream file(folder / "keymap");
  for (const SimulatedKey& key : keymap) {
    file << hexText(key.scancode) << " " << key.keycode << "\n";
  }
}

std::string capabilityText(const std::vector<unsigned>& keycodes) {
  std::array<std::uint64_t, 12> words{};
  for (const unsigned keycode : keycodes) {
    words.at(keycode / 64) |= std::uint64_t{1} << (keycode % 64);
  }
  std::ostringstream text;
  text << std::hex;
  for (auto word = words.rbegin(); word != words.rend(); ++word) {
    if (*word != 0 || text.tellp() > 0) text << (text.tellp() > 0 ? " " : "") << *word;
  }
  return text.str();
}

}  // namespace brivane
