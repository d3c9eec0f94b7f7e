#include "Machines/Linux/HIDUtil/InputDevices.h"

#include <fcntl.h>
#include <linux/input.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <sstream>

#include "Machines/Linux/System/Sysfs.h"

namespace brivane {
namespace {

/// Whether a bit is set in the kernel's text form: machine words in hexadecimal, the highest first.
bool hasBit(const std::string& text, unsigned bit) {
  constexpr unsigned wordBits = sizeof(unsigned long) * CHAR_BIT;
  std::vector<unsigned long> words;
  std::istringstream stream(text);
  for (unsigned long word = 0; stream >> std::hex >> word;) words.push_back(word);
  const std::size_t index = bit / wordBits;
  return index < words.size() && (words[words.size() - 1 - index] >> (bit % wordBits) & 1) != 0;
}

InputDevice describe(const std::string& name) {
  std::error_code gone;
  const auto event = std::filesystem::canonical("/sys/class/input/" + name, gone);
  const auto device = event.parent_path();
  const std::string keys = readTextAttribute(device / "capabilities/key").value_or("");
  return {"/dev/input/" + name, device.filename().string(),
          hasBit(keys, KEY_BRIGHTNESSUP) || hasBit(keys, KEY_BRIGHTNESSDOWN)};
}

}  // namespace

std::vector<InputDevice> inputDevices() {
  std::vector<InputDevice> devices;
  for (const std::string& name : namesIn("/sys/class/input")) {
    if (numberBehind("event", name)) devices.push_back(describe(name));
  }
  return devices;
}

std::variant<DeviceKeymap, int> DeviceKeymap::open(const std::filesystem::path& node) {
  FileDescriptor descriptor(::open(node.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!descriptor.isOpen()) return errno;
  return DeviceKeymap(std::move(descriptor));
}

std::vector<KeymapKey> DeviceKeymap::keys() const {
  std::vector<KeymapKey> keys;
  for (std::uint16_t index = 0; index < UINT16_MAX; ++index) {
    input_keymap_entry entry{};
    entry.flags = INPUT_KEYMAP_BY_INDEX;
    entry.index = index;
    if (::ioctl(descriptor.get(), EVIOCGKEYCODE_V2, &entry) < 0) break;
    const std::size_t length = std::min<std::size_t>(entry.len, sizeof(entry.scancode));
    keys.push_back({{entry.scancode, entry.scancode + length}, entry.keycode});
  }
  return keys;
}

int DeviceKeymap::setKey(const Scancode& scancode, KeyCode keycode) const {
  input_keymap_entry entry{};
  entry.len = static_cast<std::uint8_t>(std::min(scancode.size(), sizeof(entry.scancode)));
  std::copy_n(scancode.begin(), entry.len, entry.scancode);
  entry.keycode = keycode;
  return ::ioctl(descriptor.get(), EVIOCSKEYCODE_V2, &entry) < 0 ? errno : 0;
}

}  // namespace brivane
