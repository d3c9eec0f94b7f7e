// Everything is put into the testbed in the text form that it also records devices in: "P:" path,
// "N:" device file, "E:" property, "A:" attribute, "H:" binary attribute in hex, "L:" link.

#include "Tests/Support/DDCBus/Testbed.h"

#include <linux/input-event-codes.h>
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <iostream>

namespace brivane {
namespace {

const std::string graphicsCard = "/devices/pci0000:00/0000:00:02.0";
const std::string mainBoard = "/devices/pci0000:00/0000:00:1f.4";
const std::string card = graphicsCard + "/drm/card0";

std::string hexDigits(const std::vector<std::uint8_t>& bytes) {
  std::string text;
  for (const char digit : hexText(bytes)) {
    if (digit != ' ') text += digit;
  }
  return text;
}

/// Ordinary users must be able to reach the devices; who may open one is then up to its own mode.
void openToEveryone(const std::filesystem::path& root) {
  using std::filesystem::perms;
  std::filesystem::permissions(root, perms::owner_all | perms::group_exec | perms::group_read |
                                         perms::others_exec | perms::others_read);
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root / "ioctl")) {
    if (entry.is_socket()) std::filesystem::permissions(entry.path(), perms::all);
  }
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root / "dev")) {
    if (entry.is_character_file()) ::chmod(entry.path().c_str(), 0666);
  }
}

}  // namespace

Testbed::Testbed(const WorldDescription& world, std::filesystem::path stateFolder)
    : folder(std::move(stateFolder)), log(folder / "wire.log"), testbed(umockdev_testbed_new()) {
  std::ofstream(folder / "wire.log").flush();
  add("P: " + graphicsCard + "\nE: SUBSYSTEM=pci\nA: class=0x030000\\n\n");
  add("P: " + card +
      "\nN: dri/card0\nE: SUBSYSTEM=drm\nE: DEVNAME=/dev/dri/card0\nA: dev=226:0\\n\n");
  for (const auto& connector : world.connectors) addConnector(connector);
  add("P: " + mainBoard + "\nE: SUBSYSTEM=pci\nA: class=0x0c0500\\n\n");
  for (const auto& adapter : world.adapters) addAdapter(adapter);
  for (const auto& backlight : world.backlights) addBacklight(backlight);
  for (const auto& input : world.inputs) addInput(input);
  gchar* root = umockdev_testbed_get_root_dir(testbed);
  openToEveryone(root);
  g_free(root);
  ::mkfifo((folder / "uevents").c_str(), 0600);
  announcer = std::thread([this] { announceDevices(); });
}

Testbed::~Testbed() {
  std::ofstream(folder / "uevents") << "end end\n";
  announcer.join();
  for (UMockdevIoctlBase* handler : handlers) g_object_unref(handler);
  g_object_unref(testbed);
}

void Testbed::addConnector(const ConnectorDescription& connector) {
  const std::string path = card + "/card0-" + connector.name;
  const bool isOn = connector.isConnected;
  std::string text = "P: " + path + "\nE: SUBSYSTEM=drm\nE: DEVTYPE=drm_connector\nA: status=" +
                     (isOn ? "connected" : "disconnected") +
                     "\\n\nA: enabled=" + (isOn ? "enabled" : "disabled") +
                     "\\n\nA: dpms=" + (isOn ? "On" : "Off") +
                     "\\n\nA: connector_id=" + std::to_string(connector.number) + "\\n\n";
  if (!connector.edid.empty()) text += "H: edid=" + hexDigits(connector.edid) + "\n";
  if (connector.linkedBus) {
    text += "L: ddc=../../../i2c-" + std::to_string(*connector.linkedBus) + "\n";
  }
  add(text);
  if (connector.ownBus) addBus(*connector.ownBus, path, connector);
  // The bus that carries DDC/CI is the connector's own; a linked one beside it leads nowhere.
  ConnectorDescription nowhere{.name = connector.name + "-pins",
                               .edid = {},
                               .ownBus = {},
                               .linkedBus = {},
                               .mood = "wire:ENXIO"};
  if (connector.linkedBus) {
    addBus(*connector.linkedBus, graphicsCard, connector.ownBus ? nowhere : connector);
  }
}

void Testbed::addAdapter(const AdapterDescription& adapter) {
  addBus(adapter.bus, adapter.isOnMainBoard ? mainBoard : graphicsCard,
         {.name = adapter.name, .edid = adapter.edid, .ownBus = {}, .linkedBus = {}, .mood = {}});
}

void Testbed::addBus(unsigned bus, const std::string& parent,
                     const ConnectorDescription& connector) {
  const std::string name = "i2c-" + std::to_string(bus);
  const std::string number = std::to_string(bus);
  add("P: " + parent + "/" + name + "\nE: SUBSYSTEM=i2c\nE: DEVTYPE=i2c_adapter\n");
  add("P: " + parent + "/" + name + "/i2c-dev/" + name + "\nN: " + name +
      "\nE: SUBSYSTEM=i2c-dev\nE: DEVNAME=/dev/" + name + "\nA: dev=89:" + number + "\\n\n");
  const auto knobs = folderOf(connector.name);
  std::ofstream(knobs / "maximum") << connector.maximum << "\n";
  std::ofstream(knobs / "level") << connector.level << "\n";
  std::ofstream(knobs / "mood") << connector.mood << "\n";
  std::ofstream(knobs / "edid", std::ios::binary)
      << std::string(connector.edid.begin(), connector.edid.end());
  SimulatedMonitor& monitor = monitors.emplace_back(connector.name, knobs, log);
  UMockdevIoctlBase* handler = umockdev_ioctl_base_new();
  g_signal_connect(handler, "handle-ioctl", G_CALLBACK(answerBusIoctl), &monitor);
  g_signal_connect(handler, "handle-read", G_CALLBACK(answerBusRead), &monitor);
  g_signal_connect(handler, "handle-write", G_CALLBACK(answerBusWrite), &monitor);
  attach("/dev/" + name, handler);
}

void Testbed::addBacklight(const BacklightDescription& backlight) {
  add("P: /devices/virtual/backlight/" + backlight.name + "\nE: SUBSYSTEM=backlight\nA: type=" +
      backlight.type + "\\n\nA: max_brightness=" + std::to_string(backlight.maximum) +
      "\\n\nA: brightness=" + std::to_string(backlight.level) + "\\n\n");
}

void Testbed::addInput(const InputDescription& description) {
  const std::string number = description.name.substr(std::string("event").size());
  const std::string path = "/devices/virtual/input/input1" + number;
  Input& input = inputs.emplace_back(
      Input{{description.name, folderOf(description.name), description.keys, log},
            testbed,
            "/sys" + path});
  const std::string capabilities = description.keys.empty()
                                       ? capabilityText(description.otherKeycodes)
                                       : input.keyboard.capabilities();
  add("P: " + path + "\nE: SUBSYSTEM=input\nA: capabilities/key=" + capabilities + "\\n\n");
  const bool hasKeys = description.otherKeycodes.empty() || description.otherKeycodes[0] < BTN_MISC;
  add("P: " + path + "/" + description.name + "\nN: input/" + description.name +
      "\nE: SUBSYSTEM=input\nE: " + (hasKeys ? "ID_INPUT_KEY" : "ID_INPUT_MOUSE") +
      "=1\nE: DEVNAME=/dev/input/" + description.name + "\nA: dev=13:6" + number + "\\n\n");
  UMockdevIoctlBase* handler = umockdev_ioctl_base_new();
  g_signal_connect(handler, "handle-ioctl", G_CALLBACK(answerInputIoctl), &input);
  attach("/dev/input/" + description.name, handler);
}

void Testbed::add(const std::string& description) {
  GError* error = nullptr;
  if (umockdev_testbed_add_from_string(testbed, description.c_str(), &error)) return;
  std::cerr << error->message << "\n" << description;
  std::abort();
}

void Testbed::attach(const std::string& node, UMockdevIoctlBase* handler) {
  handlers.push_back(handler);
  GError* error = nullptr;
  if (umockdev_testbed_attach_ioctl(testbed, node.c_str(), handler, &error)) return;
  std::cerr << node << ": " << error->message << "\n";
  std::abort();
}

void Testbed::announceDevices() const {
  // Opened for writing, too, so that it doesn't end with its first writer.
  std::fstream requests(folder / "uevents", std::ios::in | std::ios::out);
  std::string action;
  std::string device;
  while (requests >> action >> device && action != "end") {
    umockdev_testbed_uevent(testbed, device.c_str(), action.c_str());
  }
}

std::filesystem::path Testbed::folderOf(const std::string& device) const {
  std::filesystem::create_directories(folder / device);
  return folder / device;
}

}  // namespace brivane
