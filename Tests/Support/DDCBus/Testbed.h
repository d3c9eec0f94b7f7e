#pragma once

#include <umockdev.h>

#include <filesystem>
#include <list>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "Tests/Support/DDCBus/SimulatedKeyboard.h"
#include "Tests/Support/DDCBus/SimulatedMonitor.h"
#include "Tests/Support/DDCBus/WireLog.h"
#include "Tests/Support/DDCBus/WorldDescription.h"

namespace brivane {

/// The world as a process started under "umockdev-wrapper" sees it: sysfs and device files, with
/// the simulated monitors and keyboards behind them. Each device's knobs and mirrors lie in a
/// folder of its name below `stateFolder`, and "wire.log" beside them. A line "<action> <path>" in
/// the named pipe "uevents" lets udev announce the device with that path below "/sys".
class Testbed {
 public:
  Testbed(const WorldDescription& world, std::filesystem::path stateFolder);
  ~Testbed();
  Testbed(const Testbed&) = delete;
  Testbed& operator=(const Testbed&) = delete;

 private:
  /// What the handlers of an input device's file need.
  struct Input {
    SimulatedKeyboard keyboard;
    UMockdevTestbed* testbed;
    std::string sysfsPath;
  };

  void addConnector(const ConnectorDescription& connector);
  void addAdapter(const AdapterDescription& adapter);
  void addBus(unsigned bus, const std::string& parent, const ConnectorDescription& connector);
  void addBacklight(const BacklightDescription& backlight);
  void addInput(const InputDescription& input);
  void add(const std::string& description);
  void attach(const std::string& node, UMockdevIoctlBase* handler);
  void announceDevices() const;
  std::filesystem::path folderOf(const std::string& device) const;

  static gboolean answerBusIoctl(UMockdevIoctlBase*, UMockdevIoctlClient* client, void* monitor);
  static gboolean answerBusRead(UMockdevIoctlBase*, UMockdevIoctlClient* client, void* monitor);
  static gboolean answerBusWrite(UMockdevIoctlBase*, UMockdevIoctlClient* client, void* monitor);
  static gboolean answerInputIoctl(UMockdevIoctlBase*, UMockdevIoctlClient* client, void* input);

  const std::filesystem::path folder;
  const WireLog log;
  UMockdevTestbed* const testbed;
  std::list<SimulatedMonitor> monitors;
  std::list<Input> inputs;
  std::vector<UMockdevIoctlBase*> handlers;
  std::thread announcer;
};

}  // namespace brivane
