// The desk in the resident program's conformance suite: real time and a state folder.
#include "Machines/Common/Processes/ThreadRuntime.h"
#include "Machines/Desk/File/DeskFile.h"
#include "Tests/ResidentConformance/ResidentUnderTest.h"
#include "Tests/Support/SignalDispositions.h"
#include "Tests/Support/TestDesk.h"

namespace brivane {
namespace {

constexpr auto residentDesk = R"({
  "displays": [{"identifier": 1, "builtIn": true}, {"identifier": 2}],
  "defaults": {"com.quorrel.tallowin": {"greeting": "hello"}}})";

class DeskResidentUnderTest : public ResidentUnderTest {
 public:
  DeskResidentUnderTest() {
    auto runtime = std::make_unique<ThreadRuntime>();
    auto log = std::make_unique<LineLog>(std::make_shared<std::vector<std::string>>());
    auto hardware = std::make_shared<DeskHardware>(
        deskFrom(residentDesk), std::make_unique<StateFolder>(folder / "state", *runtime, *log));
    desk = std::make_unique<DeskMachine>(std::move(runtime), std::move(log), std::move(hardware),
                                         DeskProcess{true, folder / "bundles"});
  }

  ResidentMachine& machine() override { return *desk; }

  void pressKey(std::uint16_t keyCode) override { desk->keyboard().pressKey(keyCode); }
  void releaseKey(std::uint16_t keyCode) override { desk->keyboard().releaseKey(keyCode); }
  void pressBrightnessUp() override { desk->keyboard().pressBrightness(BrightnessKey::up); }
  void releaseBrightnessUp() override { desk->keyboard().releaseBrightness(BrightnessKey::up); }
  void occupyAlone(std::uint32_t keyCode, std::uint32_t modifiers) override {
    desk->hardware().input.hotkeys.add({keyCode, modifiers}, nullptr);
  }

  void changeScreens() override { desk->hardware().changes.setFrame(2, {1920, 0, 800, 600}); }
  void sleepAndWake() override {
    desk->hardware().changes.sleepSystem();
    desk->hardware().changes.wakeSystem(desk->runtime().now());
  }

  void addResource(const std::string& bundle, const std::string& path,
                   const std::string& content) override {
    const auto file = std::filesystem::path("bundles") / bundle / path;
    std::filesystem::create_directories(folder.path / file.parent_path());
    folder.write(file, content);
  }

  /// What was announced is on the main queue already, but for signals: a thread brings them.
  void settle() override {
    desk->runtime().after(std::chrono::milliseconds(20), [this] { desk->runtime().stop(); });
    desk->runtime().run();
  }

 private:
  const SignalDispositions dispositions;
  TemporaryFolder folder;
  std::unique_ptr<DeskMachine> desk;
};

}  // namespace

std::unique_ptr<ResidentUnderTest> makeResidentUnderTest() {
  return std::make_unique<DeskResidentUnderTest>();
}

}  // namespace brivane
