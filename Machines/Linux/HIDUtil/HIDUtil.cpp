// The kernel keeps a keymap per keyboard until it is unplugged, and can't report the original
// keymap. So every change is stored before it is made, and a later run can undo what a killed tool
// did.

#include "Machines/Linux/HIDUtil/HIDUtil.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <set>
#include <utility>

#include "Machines/Common/Files/FileLock.h"
#include "Machines/Linux/System/RuntimeFolder.h"

namespace brivane {
namespace {

using Relays = std::map<KeyCode, KeyCode>;

HIDUtil::Outcome failure(int status, const std::string& reason) {
  return {status, "", "brivane-hidutil: " + reason};
}

HIDUtil::Outcome denial(const std::string& node) {
  return failure(HIDUtil::notPermitted, "no permission to change the keymap of " + node);
}

bool isRecorded(const std::string& device, const std::vector<ChangedKey>& changedKeys) {
  return std::any_of(changedKeys.begin(), changedKeys.end(),
                     [&](const ChangedKey& key) { return key.device == device; });
}

/// The keyboard was unplugged or has no keymap: nothing to change.
bool isGone(int error) {
  return error == ENODEV || error == EINVAL;
}

}  // namespace

HIDUtil::Outcome HIDUtil::run(const std::vector<std::string>& arguments) {
  if (rights == Rights::lent) {
    return failure(notPermitted,
                   "its file lends it rights of another user or group, which any program of its "
                   "caller's could misuse; take them away (chmod ug-s, setcap -r) and run it as "
                   "root");
  }
  if (arguments.size() == 3 && arguments[0] == "property") {
    if (arguments[1] == "--get" && arguments[2] == "UserKeyMapping") return get();
    if (arguments[1] == "--set") {
      const auto mapping = parseKeyMapping(arguments[2]);
      return mapping ? set(*mapping) : failure(wrongUsage, "not a UserKeyMapping in JSON");
    }
  }
  return failure(wrongUsage,
                 "usage: brivane-hidutil property --get UserKeyMapping | property --set <JSON>");
}

HIDUtil::Outcome HIDUtil::get() const {
  if (!folder) return listed({});
  const auto loaded = KeymapStore(*folder).load();
  if (const auto* problem = std::get_if<std::string>(&loaded)) return failure(failed, *problem);
  return listed(std::get<KeymapState>(loaded));
}

HIDUtil::Outcome HIDUtil::listed(const KeymapState& state) {
  const Relays relays = relaysIn(state.mapping);
  const Keyboards keyboards = openKeyboards(state, relays);
  std::set<KeyCode> escaped;
  for (const Keyboard& keyboard : keyboards.open) {
    for (const PlannedKey& key : keyboard.keys) {
      if (key.current != key.wanted) escaped.insert(key.original);
    }
  }
  UserKeyMapping inForce;
  for (const KeyMappingEntry& entry : state.mapping) {
    const auto key = brightnessKeyCode(entry.source);
    const bool isFollowed = !key || (keyboards.denied.empty() && !escaped.contains(*key) &&
                                     relayKeyCode(entry.destination));
    if (isFollowed) inForce.push_back(entry);
  }
  return {done, keyMappingListing(inForce), ""};
}

HIDUtil::Outcome HIDUtil::set(const UserKeyMapping& mapping) {
  if (!folder || !makeRuntimeFolder(*folder)) {
    return failure(failed, "no folder of yours to keep the mapping in (is XDG_RUNTIME_DIR set?)");
  }
  const auto lock =
      FileLock::acquire(*folder / "key-mapping.lock", runtime, std::chrono::seconds(2));
  if (const auto* stuck = std::get_if<FileProblem>(&lock)) return failure(failed, stuck->reason);
  return setUnderLock(mapping, KeymapStore(*folder));
}

HIDUtil::Outcome HIDUtil::setUnderLock(const UserKeyMapping& mapping, const KeymapStore& store) {
  const auto loaded = store.load();
  if (const auto* problem = std::get_if<std::string>(&loaded)) return failure(failed, *problem);
  const auto& before = std::get<KeymapState>(loaded);
  const Keyboards keyboards = openKeyboards(before, relaysIn(mapping));
  if (!keyboards.denied.empty()) return denial(keyboards.denied.front());

  KeymapState intended = before;
  for (const Keyboard& keyboard : keyboards.open) {
    for (const PlannedKey& key : keyboard.keys) {
      if (key.wanted == key.original) continue;
      intended.changedKeys.push_back(
          {keyboard.device.device, key.scancode, key.original, key.wanted});
    }
  }
  const auto setAside = store.setAsideIfNotUnderstood();
  if (const auto problem = store.save(intended)) return failure(failed, *problem);

  KeymapState after{mapping, {}};
  std::string stubborn;
  for (const Keyboard& keyboard : keyboards.open) {
    if (!change(keyboard, after)) stubborn = keyboard.device.node.string();
  }
  if (const auto problem = store.save(after)) return failure(failed, *problem);
  if (!stubborn.empty()) return failure(failed, stubborn + " refuses to change its keymap");
  return {done, "UserKeyMapping:" + keyMappingListing(mapping),
          setAside ? "brivane-hidutil: " + *setAside : ""};
}

HIDUtil::Keyboards HIDUtil::openKeyboards(const KeymapState& state, const Relays& relays) {
  Keyboards keyboards;
  for (const InputDevice& device : inputDevices()) {
    const bool isToChange = device.hasBrightnessKeys && !relays.empty();
    if (!isToChange && !isRecorded(device.device, state.changedKeys)) continue;
    auto opened = DeviceKeymap::open(device.node);
    if (auto* keymap = std::get_if<DeviceKeymap>(&opened)) {
      auto keys = planKeymap(device.device, keymap->keys(), state.changedKeys, relays);
      keyboards.open.push_back({device, std::move(*keymap), std::move(keys)});
    } else if (const int error = std::get<int>(opened); error == EACCES || error == EPERM) {
      keyboards.denied.push_back(device.node.string());
    }
  }
  return keyboards;
}

bool HIDUtil::change(const Keyboard& keyboard, KeymapState& state) {
  bool isWell = true;
  for (const PlannedKey& key : keyboard.keys) {
    const std::string& device = keyboard.device.device;
    const int error =
        key.current == key.wanted ? 0 : keyboard.keymap.setKey(key.scancode, key.wanted);
    if (isGone(error)) continue;
    const KeyCode left = error == 0 ? key.wanted : key.current;
    if (left != key.original) {
      state.changedKeys.push_back({device, key.scancode, key.original, left});
    }
    isWell = isWell && error == 0;
  }
  return isWell;
}

}  // namespace brivane
