// The Linux machine in the conformance suite.
#include "Machines/Linux/Machine.h"
#include "Tests/Conformance/MachineUnderTest.h"
#include "Tests/EndToEnd/Linux/LinuxWorld.h"

namespace brivane {
namespace {

class LinuxUnderTest : public MachineUnderTest {
 public:
  LinuxUnderTest() {
    world.enter();
    linux = std::make_unique<LinuxMachine>();
  }

  Machine& machine() override { return *linux; }
  std::unique_ptr<Machine> secondProcess() override { return std::make_unique<LinuxMachine>(); }

  std::vector<ExpectedDisplay> expectedDisplays() override {
    // The primary display comes first, then the others from left to right. Its lower edge lies at
    // X's pixel row 1380, so that is where y is zero.
    constexpr std::uint32_t brv = 0x0A56;
    constexpr std::uint32_t xyz = 0x633A;
    return {{"Middle 24", false, {brv, 0x1002, 22}, {0, 0, 1920, 1080}, 255},
            {"Left 20", false, {brv, 0x1001, 11}, {-1600, 480, 1600, 900}, 100},
            {"Right 19", false, {xyz, 0x3003, 33}, {1920, -144, 1280, 1024}, 0}};
  }

  void movePointer(Point pixel) override {
    constexpr double mainLeft = 1600;
    constexpr double mainLowerEdge = 1380;
    world.screens.warpPointer(static_cast<int>(pixel.x + mainLeft),
                              static_cast<int>(mainLowerEdge - pixel.y - 1));
  }

  std::uint16_t shownLuminance(std::size_t index) override {
    return world.luminance(index == 0 ? "DP-1" : "HDMI-A-1");
  }

 private:
  LinuxWorld world;
  std::unique_ptr<LinuxMachine> linux;
};

}  // namespace

std::unique_ptr<MachineUnderTest> makeMachineUnderTest() {
  return std::make_unique<LinuxUnderTest>();
}

}  // namespace brivane
