// The machine of the unit tests in both conformance suites. CMakeLists.txt leaves out the two tests
// of signals: a fake receives none.
#include "BrivaneApp/HotkeyCaptureField.h"
#include "Tests/Conformance/MachineUnderTest.h"
#include "Tests/ResidentConformance/ResidentUnderTest.h"
#include "Tests/Support/ResidentBench.h"

namespace brivane {
namespace {

/// A fake is hardware and settings as well, and so the same for every process.
class OtherProcess : public Machine {
 public:
  explicit OtherProcess(Machine& sharedMachine) : machine(sharedMachine) {}

  Runtime& runtime() override { return machine.runtime(); }
  DisplaySystem& displays() override { return machine.displays(); }
  IORegistry& ioRegistry() override { return machine.ioRegistry(); }
  SymbolLoader& symbols() override { return machine.symbols(); }
  GammaTables& gammaTables() override { return machine.gammaTables(); }
  UserDefaults& defaults() override { return machine.defaults(); }
  AccessibilityAccess& accessibility() override { return machine.accessibility(); }
  ProcessRunner& processes() override { return machine.processes(); }
  Applications& applications() override { return machine.applications(); }
  SystemLog& log() override { return machine.log(); }

 private:
  Machine& machine;
};

class FakeMachineUnderTest : public MachineUnderTest, public ResidentUnderTest {
 public:
  FakeMachineUnderTest() {
    fake.displaySystem.add({1, 1552, 9, 0, true}, "Built-in");
    fake.addMonitor(7, "Middle", "disp0", 2, 3, 4).max = 7000;
    fake.addMonitor(5, "Right", "disp1", 2, 5, 0).max = 80;
    for (const DisplayID display : {1u, 7u, 5u}) fake.gamma.add(display, 256);
    fake.access.trusted = true;
    fake.suites["com.quorrel.tallowin"] = {{"greeting", {std::string("hello")}}};
  }

  FakeMachine& machine() override { return fake; }
  std::unique_ptr<Machine> secondProcess() override { return std::make_unique<OtherProcess>(fake); }

  std::vector<ExpectedDisplay> expectedDisplays() override {
    return {{"Built-in", true, {1552, 9, 0}, {0, 0, 100, 100}, 0},
            {"Middle", false, {2, 3, 4}, {100, 0, 100, 100}, 7000},
            {"Right", false, {2, 5, 0}, {200, 0, 100, 100}, 80}};
  }

  void movePointer(Point pixel) override {
    // Screens own their top edges, so a pixel's own edge is its upper one.
    fake.displaySystem.pointer = {pixel.x, pixel.y + 1};
  }

  std::uint16_t shownLuminance(std::size_t index) override {
    return fake.bus.channels.at("disp" + std::to_string(index - 1)).current;
  }

  void pressKey(std::uint16_t keyCode) override {
    fake.keys.keysDown.insert(keyCode);
    toggleModifier(keyCode);
    fake.hotkeyGrabs.press(keyCode, modifiers());
  }
  void releaseKey(std::uint16_t keyCode) override {
    fake.keys.keysDown.erase(keyCode);
    toggleModifier(keyCode);
    fake.hotkeyGrabs.keepModifiers(modifiers());
    fake.hotkeyGrabs.release(keyCode);
  }
  void pressBrightnessUp() override { fake.taps.sendKey(2); }
  void releaseBrightnessUp() override { fake.taps.sendKey(2, 0x0B); }
  void occupyAlone(std::uint32_t keyCode, std::uint32_t modifiers) override {
    fake.hotkeyGrabs.taken.insert({keyCode, modifiers});
  }

  void changeScreens() override { announceSoon(fake.announcements.screens); }
  void sleepAndWake() override {
    announceSoon(fake.announcements.wake);
    announceSoon(fake.announcements.screensWake);
  }

  void addResource(const std::string& bundle, const std::string& path,
                   const std::string& content) override {
    fake.bundles.files[bundle + "/" + path] = content;
  }

  void settle() override { fake.time.settle(); }

 private:
  void toggleModifier(std::uint16_t keyCode) {
    static const std::map<std::uint16_t, std::uint64_t> flags = {{55, modifierFlag::command},
                                                                 {56, modifierFlag::shift},
                                                                 {58, modifierFlag::option},
                                                                 {59, modifierFlag::control}};
    fake.keys.flags ^= lookUp(flags, keyCode).value_or(0);
  }

  std::uint32_t modifiers() const { return HotkeyCaptureField::carbonModifiers(fake.keys.flags); }

  void announceSoon(FakeNotifications::Topic& topic) {
    fake.time.async([&topic] { topic.announce(); });
  }

  ResidentBench bench;
  FakeMachine& fake = bench.machine;
};

}  // namespace

std::unique_ptr<MachineUnderTest> makeMachineUnderTest() {
  return std::make_unique<FakeMachineUnderTest>();
}

std::unique_ptr<ResidentUnderTest> makeResidentUnderTest() {
  return std::make_unique<FakeMachineUnderTest>();
}

}  // namespace brivane
