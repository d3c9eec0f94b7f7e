// The handlers run on one thread of the testbed for all devices, so none of them may wait.

#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <linux/input.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>

#include "Tests/Support/DDCBus/Testbed.h"

namespace brivane {
namespace {

/// Memory of the calling process, of a known size.
class Argument {
 public:
  Argument(UMockdevIoctlData* pointer, std::size_t offset, std::size_t size)
      : data(umockdev_ioctl_data_resolve(pointer, offset, size, nullptr)) {}
  ~Argument() { umockdev_ioctl_data_unref(data); }
  Argument(const Argument&) = delete;
  Argument& operator=(const Argument&) = delete;

  template <typename Value>
  Value* as() {
    return reinterpret_cast<Value*>(data->data);
  }

  UMockdevIoctlData* const data;
};

/// Answers with `result`, or with the error number when there is one.
void complete(UMockdevIoctlClient* client, long result, int error) {
  umockdev_ioctl_client_complete(client, error != 0 ? -1 : result, error);
}

int exchange(SimulatedMonitor& monitor, Argument& messages, std::size_t index) {
  const i2c_msg& message = messages.as<i2c_msg>()[index];
  Argument bytes(messages.data, index * sizeof(i2c_msg) + offsetof(i2c_msg, buf), message.len);
  if ((message.flags & I2C_M_RD) == 0) {
    return monitor.write(message.addr, {bytes.as<std::uint8_t>(), message.len});
  }
  std::vector<std::uint8_t> reply(message.len);
  const int error = monitor.read(message.addr, reply);
  if (error == 0) {
    umockdev_ioctl_data_update(bytes.data, 0, reply.data(), static_cast<gint>(reply.size()));
  }
  return error;
}

int exchangeAll(SimulatedMonitor& monitor, UMockdevIoctlData* argument) {
  Argument list(argument, 0, sizeof(i2c_rdwr_ioctl_data));
  const std::size_t count = list.as<i2c_rdwr_ioctl_data>()->nmsgs;
  Argument messages(list.data, 0, count * sizeof(i2c_msg));
  int error = 0;
  for (std::size_t index = 0; index < count && error == 0; ++index) {
    error = exchange(monitor, messages, index);
  }
  return error;
}

std::vector<std::uint8_t> scancodeOf(const input_keymap_entry& entry) {
  return {entry.scancode, entry.scancode + entry.len};
}

SimulatedKey* keyAskedFor(SimulatedKeyboard& keyboard, const input_keymap_entry& entry) {
  const bool isByIndex = (entry.flags & INPUT_KEYMAP_BY_INDEX) != 0;
  return isByIndex ? keyboard.at(entry.index) : keyboard.with(scancodeOf(entry));
}

void describeKey(UMockdevIoctlData* data, const SimulatedKey& key, std::size_t index) {
  input_keymap_entry answer{};
  answer.len = static_cast<std::uint8_t>(key.scancode.size());
  answer.index = static_cast<std::uint16_t>(index);
  answer.keycode = key.keycode;
  std::copy(key.scancode.begin(), key.scancode.end(), answer.scancode);
  umockdev_ioctl_data_update(data, 0, reinterpret_cast<guint8*>(&answer), sizeof(answer));
}

}  // namespace

gboolean Testbed::answerBusIoctl(UMockdevIoctlBase*, UMockdevIoctlClient* client, void* data) {
  auto& monitor = *static_cast<SimulatedMonitor*>(data);
  UMockdevIoctlData* argument = umockdev_ioctl_client_get_arg(client);
  const gulong request = umockdev_ioctl_client_get_request(client);
  if (request == I2C_RDWR) {
    const int refusal = monitor.refusal("rdwr");
    if (refusal != 0) monitor.note("refuse I2C_RDWR");
    complete(client, 1, refusal != 0 ? refusal : exchangeAll(monitor, argument));
  } else if (request == I2C_SLAVE) {
    const int refusal = monitor.refusal("slave");
    unsigned long chip = 0;
    std::memcpy(&chip, argument->data, sizeof(chip));
    monitor.note((refusal != 0 ? "refuse I2C_SLAVE " : "address ") + std::to_string(chip));
    if (refusal == 0) monitor.addressedChip = static_cast<unsigned>(chip);
    complete(client, 0, refusal);
  } else {
    monitor.note("unknown ioctl " + std::to_string(request));
    complete(client, 0, ENOTTY);
  }
  return TRUE;
}

gboolean Testbed::answerBusRead(UMockdevIoctlBase*, UMockdevIoctlClient* client, void* data) {
  UMockdevIoctlData* argument = umockdev_ioctl_client_get_arg(client);
  std::vector<std::uint8_t> reply(static_cast<std::size_t>(argument->data_len));
  auto& monitor = *static_cast<SimulatedMonitor*>(data);
  const int error = monitor.read(monitor.addressedChip, reply);
  if (error == 0) umockdev_ioctl_data_update(argument, 0, reply.data(), argument->data_len);
  complete(client, argument->data_len, error);
  return TRUE;
}

gboolean Testbed::answerBusWrite(UMockdevIoctlBase*, UMockdevIoctlClient* client, void* data) {
  UMockdevIoctlData* argument = umockdev_ioctl_client_get_arg(client);
  auto& monitor = *static_cast<SimulatedMonitor*>(data);
  const int error = monitor.write(monitor.addressedChip,
                                  {argument->data, static_cast<std::size_t>(argument->data_len)});
  complete(client, argument->data_len, error);
  return TRUE;
}

gboolean Testbed::answerInputIoctl(UMockdevIoctlBase*, UMockdevIoctlClient* client, void* data) {
  auto& input = *static_cast<Input*>(data);
  SimulatedKeyboard& keyboard = input.keyboard;
  const gulong request = umockdev_ioctl_client_get_request(client);
  const bool isChange = request == EVIOCSKEYCODE_V2;
  if (!isChange && request != EVIOCGKEYCODE_V2) {
    keyboard.note("unknown ioctl " + std::to_string(request));
    complete(client, 0, ENOTTY);
    return TRUE;
  }
  UMockdevIoctlData* pointer = umockdev_ioctl_client_get_arg(client);
  Argument entry(pointer, 0, sizeof(input_keymap_entry));
  SimulatedKey* key = keyAskedFor(keyboard, *entry.as<input_keymap_entry>());
  if (key == nullptr) {
    if (keyboard.at(0) == nullptr) keyboard.note("asked for its keymap");
  } else if (isChange) {
    keyboard.set(*key, entry.as<input_keymap_entry>()->keycode);
    umockdev_testbed_set_attribute(input.testbed, input.sysfsPath.c_str(), "capabilities/key",
                                   (keyboard.capabilities() + "\n").c_str());
  } else {
    describeKey(entry.data, *key, keyboard.indexOf(*key));
  }
  complete(client, 0, key == nullptr ? EINVAL : 0);
  return TRUE;
}

}  // namespace brivane
