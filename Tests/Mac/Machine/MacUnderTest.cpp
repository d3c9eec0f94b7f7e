// The Mac in both conformance suites: the real code over the stand-ins of the system's interfaces.
#include "Tests/Mac/Machine/MacUnderTest.h"

#include <stdlib.h>
#include <unistd.h>

#include "Tests/Mac/Machine/Fakes/FakeCoreFoundation.h"
#include "Tests/Mac/Machine/Fakes/FakeInput.h"
#include "Tests/Mac/Machine/Fakes/FakeRunLoop.h"
#include "Tests/Mac/Machine/Fakes/FakeSystem.h"
#include "Tests/ResidentConformance/ResidentUnderTest.h"

namespace brivane {
namespace {

constexpr auto identifier = "com.quorrel.brivane";

/// The system's tool for key mappings, as far as the program uses it.
constexpr auto hidutil = R"(#!/bin/sh
case "$1 $2" in
  "property --set")
    case $3 in '{"UserKeyMapping":['*']}') printf '%s' "$3" >"$BRIVANE_FAKE_MAPPING" ;; *) exit 1 ;; esac ;;
  "property --get")
    echo '('
    grep -o 'Src":[0-9]*,"HIDKeyboardModifierMappingDst":[0-9]*' "$BRIVANE_FAKE_MAPPING" |
      sed 's/Src":\([0-9]*\),.*Dst":\([0-9]*\)/    {\n        HIDKeyboardModifierMappingDst = \2;\n        HIDKeyboardModifierMappingSrc = \1;\n    },/'
    echo ')' ;;
  *) exit 1 ;;
esac
)";

fake::Node monitorNodes(const std::string& port, const PanelIdentity& panel,
                        const std::shared_ptr<fake::Monitor>& monitor) {
  const auto number = [](std::uint32_t value) { return PropertyValue{std::int64_t{value}}; };
  const PropertyValue::Dictionary product = {{"LegacyManufacturerID", number(panel.vendor)},
                                             {"ProductID", number(panel.model)},
                                             {"SerialNumber", number(panel.serial)}};
  const PropertyValue::Dictionary attributes = {{"ProductAttributes", {product}}};
  const fake::Node framebuffer{
      "IOMobileFramebufferShim", port + "-fb", {{"DisplayAttributes", {attributes}}}, {}, nullptr};
  const fake::Node proxy{"DCPAVServiceProxy",
                         "DCPAVServiceProxy-" + port,
                         {{"Location", {std::string("External")}}},
                         {},
                         monitor};
  const fake::Node parent{"IOService", port + ":dcpav", {}, {proxy}, nullptr};
  return {"AppleARMIODevice", port, {}, {framebuffer, parent}, nullptr};
}

/// A machine in a process of its own, which has a copy of the settings of its own.
class MacInAProcess : public MacMachine {
 public:
  MacInAProcess(std::unique_ptr<AppKitServices> services, int processNumber)
      : MacMachine(std::move(services)), number(processNumber) {}

  UserDefaults& defaults() override {
    fake::system().preferences.asking = number;
    return MacMachine::defaults();
  }

 private:
  const int number;
};

class MacUnderTest : public MachineUnderTest {
 public:
  Machine& machine() override { return *own; }
  std::unique_ptr<Machine> secondProcess() override { return world.makeMachine(); }
  std::vector<ExpectedDisplay> expectedDisplays() override { return world.expectedDisplays(); }

  void movePointer(Point pixel) override {
    // Screens own their top edges, so a pixel's own edge is its upper one.
    world.appKit->pointer = {pixel.x, pixel.y + 1};
  }

  std::uint16_t shownLuminance(std::size_t index) override {
    return world.monitors.at(index)->state.shownLevel;
  }

 private:
  MacWorld world;
  std::unique_ptr<MacMachine> own = world.makeMachine();
};

class MacResidentUnderTest : public ResidentUnderTest {
 public:
  MacResidentUnderTest() {
    fake::system().preferences.stored["com.quorrel.tallowin"] = {
        {"greeting", {std::string("hello")}}};
    fake::system().resourceFolder = (world.folder / "Resources").string();
    fake::system().executable = std::filesystem::read_symlink("/proc/self/exe").string();
  }

  ResidentMachine& machine() override { return *own; }

  void pressKey(std::uint16_t keyCode) override { fake::input().press(keyCode); }
  void releaseKey(std::uint16_t keyCode) override { fake::input().release(keyCode); }
  void pressBrightnessUp() override { fake::input().specialKey(2, 0x0A); }
  void releaseBrightnessUp() override { fake::input().specialKey(2, 0x0B); }
  void occupyAlone(std::uint32_t keyCode, std::uint32_t modifiers) override {
    fake::input().hotkeys.add({keyCode, modifiers}, nullptr);
  }
  /// Nobody has seen Carbon do it.
  bool reportsUnregisteredHotkeys() const override { return false; }

  void changeScreens() override { world.appKit->screenParameters.announce(); }
  void sleepAndWake() override {
    world.appKit->didWake.announce();
    world.appKit->screensDidWake.announce();
  }

  void addResource(const std::string& bundle, const std::string& path,
                   const std::string& content) override {
    const auto file = std::filesystem::path("Resources") / bundle / path;
    std::filesystem::create_directories(world.folder.path / file.parent_path());
    world.folder.write(file, content);
  }

  /// Whatever is to run already has its turn, however late the loop begins.
  void settle() override {
    own->runtime().async([this] {
      own->runtime().after(std::chrono::milliseconds(2),
                           [this] { own->runtime().async([this] { own->runtime().stop(); }); });
    });
    own->runtime().run();
  }

 private:
  MacWorld world;
  std::unique_ptr<MacMachine> own = world.makeMachine();
};

}  // namespace

MacWorld::MacWorld() {
  fake::resetMac();
  fake::resetSystem();
  fake::resetInput();
  objectsBefore = fake::liveObjects();
  for (const ExpectedDisplay& display : expectedDisplays()) {
    const auto id = static_cast<DisplayID>(fake::mac().displays.size() + 1);
    fake::mac().displays.push_back(
        {.id = id, .isBuiltIn = display.isBuiltIn, .panel = display.panel});
    std::shared_ptr<fake::Monitor> monitor;
    if (display.ddcMaximum != 0) {
      FirmwareDescription firmware;
      firmware.maximum = display.ddcMaximum;
      firmware.level = 21;
      monitor = std::make_shared<fake::Monitor>(firmware);
      auto& nodes = fake::mac().registry.children;
      nodes.push_back(
          monitorNodes("dispext" + std::to_string(nodes.size()), display.panel, monitor));
    }
    monitors.push_back(monitor);
  }
  fake::mac().displays.front().level = 0.5F;
  fake::system().temporaryFolder = folder.path.string() + "/";
  const auto tool = folder.write("hidutil", hidutil);
  std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
  fake::system().programs["/usr/bin/hidutil"] = tool;
  setenv("BRIVANE_FAKE_MAPPING", (folder / "mapping").c_str(), 1);
}

MacWorld::~MacWorld() {
  fake::drainMainQueue();
  EXPECT_EQ(fake::liveRegistrations(), 0u) << "handlers, hotkeys and taps";
  EXPECT_EQ(fake::liveDispatchObjects(), 0u) << "queues and sources";
  EXPECT_EQ(fake::liveObjects(), objectsBefore) << "CoreFoundation objects";
  EXPECT_EQ(fake::liveIOObjects(), 0u) << "objects of the I/O registry";
}

std::unique_ptr<MacMachine> MacWorld::makeMachine() {
  auto services = std::make_unique<FakeAppKitServices>();
  FakeAppKitServices& made = *services;
  if (appKit == nullptr) appKit = services.get();
  const auto displays = expectedDisplays();
  for (std::size_t i = 0; i < displays.size(); ++i) {
    made.screenList.push_back({.number = static_cast<DisplayID>(i + 1),
                               .frame = displays[i].frame,
                               .localizedName = displays[i].name});
  }
  made.modifiers = [] { return fake::input().modifierFlags(); };
  made.convert = fake::detailsOf;
  made.whenBecomingApplication = [&made] { made.applications[identifier] = {getpid()}; };
  return std::make_unique<MacInAProcess>(std::move(services), ++processes);
}

std::vector<ExpectedDisplay> MacWorld::expectedDisplays() const {
  return {{"Built-in", true, {1552, 9, 0}, {0, 0, 1512, 982}, 0},
          {"Upper", false, {2, 3, 4}, {-200, 982, 1920, 1080}, 7000},
          {"Right", false, {2, 5, 0}, {1512, -98, 2560, 1080}, 50}};
}

std::unique_ptr<MachineUnderTest> makeMachineUnderTest() {
  return std::make_unique<MacUnderTest>();
}

std::unique_ptr<ResidentUnderTest> makeResidentUnderTest() {
  return std::make_unique<MacResidentUnderTest>();
}

}  // namespace brivane
