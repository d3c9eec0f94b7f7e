// The desk in the conformance suite: in real time, with its state in a folder, as `Brivane` has it.
#include <gtest/gtest.h>

#include "Machines/Desk/Machine/OpenDesk.h"
#include "Tests/Conformance/MachineUnderTest.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

constexpr auto conformanceDesk = R"({
  "displays": [
    {"identifier": 1, "name": "Built-in", "builtIn": true, "vendor": 1552, "model": 9, "serial": 0,
     "frame": {"x": 0, "y": 0, "width": 1512, "height": 982}, "headroom": 4,
     "displayServices": {"level": 0.5}},
    {"identifier": 7, "name": "Upper", "vendor": 2, "model": 3, "serial": 4,
     "frame": {"x": -200, "y": 982, "width": 1920, "height": 1080},
     "firmware": {"maximum": 7000, "level": 2100}},
    {"identifier": 5, "name": "Right", "vendor": 2, "model": 5, "serial": 0,
     "frame": {"x": 1512, "y": -98, "width": 2560, "height": 1080},
     "firmware": {"maximum": 50, "level": 40}, "gamma": {"capacity": 256}}
  ]
})";

class DeskUnderTest : public MachineUnderTest {
 public:
  DeskUnderTest() : desk(open()) {}

  Machine& machine() override { return *desk; }
  std::unique_ptr<Machine> secondProcess() override { return open(); }

  std::vector<ExpectedDisplay> expectedDisplays() override {
    return {{"Built-in", true, {1552, 9, 0}, {0, 0, 1512, 982}, 0},
            {"Upper", false, {2, 3, 4}, {-200, 982, 1920, 1080}, 7000},
            {"Right", false, {2, 5, 0}, {1512, -98, 2560, 1080}, 50}};
  }

  void movePointer(Point pixel) override {
    // Screens own their top edges, so a pixel's own edge is its upper one.
    desk->hardware().system.movePointer({pixel.x, pixel.y + 1});
  }

  std::uint16_t shownLuminance(std::size_t index) override {
    constexpr std::array<DisplayID, 3> identifiers = {1, 7, 5};
    return desk->hardware().monitors.state(identifiers.at(index))->shownLevel;
  }

 private:
  std::unique_ptr<DeskMachine> open() {
    return std::get<std::unique_ptr<DeskMachine>>(openDesk(file));
  }

  TemporaryFolder folder;
  std::filesystem::path file = folder.write("desk.json", conformanceDesk);
  std::unique_ptr<DeskMachine> desk;
};

}  // namespace

std::unique_ptr<MachineUnderTest> makeMachineUnderTest() {
  return std::make_unique<DeskUnderTest>();
}

}  // namespace brivane
