// The Linux machine in the resident program's conformance suite: a real X server and its keyboard.
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <map>

#include "Machines/Common/Files/ResourceFolder.h"
#include "Machines/Common/Keys/EvdevKeys.h"
#include "Machines/Linux/Machine.h"
#include "Tests/ResidentConformance/ResidentUnderTest.h"
#include "Tests/Support/FakeLogind.h"
#include "Tests/Support/SignalDispositions.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/X11Rig.h"
#include "Tests/Support/XKeys.h"

namespace brivane {
namespace {

using xKey::brightnessUp;

class X11UnderTest : public ResidentUnderTest {
 public:
  X11UnderTest() {
    rig.useEvdevKeymap();
    std::filesystem::create_directories(home / ".config/brivane");
    home.write(".config/brivane/com.quorrel.tallowin.json", R"({"greeting": "hello"})");
    enter();
    linux = std::make_unique<LinuxMachine>();
  }

  ~X11UnderTest() override {
    linux.reset();
    for (const auto& bundle : addedBundles) std::filesystem::remove_all(bundle);
  }

  ResidentMachine& machine() override { return *linux; }

  void pressKey(std::uint16_t keyCode) override { rig.pressKey(xKey(keyCode)); }
  void releaseKey(std::uint16_t keyCode) override { rig.releaseKey(xKey(keyCode)); }
  void pressBrightnessUp() override { rig.pressKey(brightnessUp); }
  void releaseBrightnessUp() override { rig.releaseKey(brightnessUp); }
  void occupyAlone(std::uint32_t keyCode, std::uint32_t modifiers) override {
    rig.grabKey(xKey(keyCode), xModifiers({}, modifiers));
  }

  void changeScreens() override { rig.move(0, 0, ++top); }
  /// Once the program has asked for an inhibitor: by then it hears of sleep.
  void sleepAndWake() override {
    constexpr int patience = 1000;
    for (int round = 0; round < patience && logind.inhibitors().empty(); ++round) settle();
    logind.announceSleep(true);
    logind.announceSleep(false);
  }

  void addResource(const std::string& bundle, const std::string& path,
                   const std::string& content) override {
    addedBundles.push_back(resourceFolder() / bundle);
    const auto file = addedBundles.back() / path;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
  }

  /// The bus's signals have arrived long before; and the server, which may be late on a busy
  /// machine, answers the program behind all earlier events.
  void settle() override {
    linux->runtime().after(std::chrono::milliseconds(30), [this] { linux->runtime().stop(); });
    linux->runtime().run();
    constexpr int questionsAndAnswers = 3;
    for (int round = 0; round < questionsAndAnswers; ++round) {
      linux->keyboard().modifierFlags();
      linux->runtime().async([this] { linux->runtime().stop(); });
      linux->runtime().run();
    }
  }

 private:
  static xcb_keycode_t xKey(std::uint32_t keyCode) {
    return static_cast<xcb_keycode_t>(evdevCodeOfKey(keyCode).value() + firstXKeyCode);
  }

  void enter() const {
    setenv("DISPLAY", rig.display().c_str(), 1);
    setenv("HOME", home.path.c_str(), 1);
    setenv("DBUS_SYSTEM_BUS_ADDRESS", logind.address().c_str(), 1);
    unsetenv("XDG_CONFIG_HOME");
    unsetenv("XAUTHORITY");
  }

  const SignalDispositions dispositions;
  const TemporaryFolder home;
  X11Rig rig;
  FakeLogind logind;
  int top = 0;
  std::vector<std::filesystem::path> addedBundles;
  std::unique_ptr<LinuxMachine> linux;
};

}  // namespace

std::unique_ptr<ResidentUnderTest> makeResidentUnderTest() {
  return std::make_unique<X11UnderTest>();
}

}  // namespace brivane
