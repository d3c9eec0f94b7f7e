// The notice for users whose desktop has taken every key and shows no tray.
#include <gmock/gmock.h>

#include <filesystem>

#include "Tests/EndToEnd/Desktop/DesktopTest.h"
#include "Tests/Support/FakeNotificationHost.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

constexpr auto stateFile = ".local/state/brivane/keyless-desktop";

class KeylessDesktopTest : public DesktopTest {
 protected:
  KeylessDesktopTest() {
    constexpr std::uint16_t controlAndOptionMask = 4 | 8;
    for (const auto key : {xKey::up, xKey::down}) world.screens.grabKey(key, controlAndOptionMask);
    for (const auto key : {xKey::brightnessUp, xKey::brightnessDown}) world.screens.grabKey(key, 0);
  }

  /// A user's program, which has asked for its keys when this returns.
  std::unique_ptr<RunningProgram> startFor(const TemporaryFolder& home, const PrivateBus& bus) {
    // As root the relay would bring the brightness keys.
    std::filesystem::create_directories(home / ".config/brivane");
    home.write(".config/brivane/com.quorrel.brivane.json",
               R"({"SystemBrightnessKeysEnabled": false})");
    auto all = environment();
    all["HOME"] = all["XDG_RUNTIME_DIR"] = home.path;
    all["XDG_STATE_HOME"] = "";
    all["DBUS_SESSION_BUS_ADDRESS"] = bus.address();
    all["LANG"] = "de_DE.UTF-8";
    auto user = std::make_unique<RunningProgram>("Brivane", std::vector<std::string>{}, all,
                                                 ProgramLimits{.hasTerminal = true});
    EXPECT_TRUE(user->waitForError("Brivane: input path"));
    return user;
  }

  static void end(RunningProgram& user) {
    user.signal(SIGTERM);
    EXPECT_EQ(user.wait().exitStatus, 0);
  }
};

TEST_F(KeylessDesktopTest, IsToldOfOnceWithAButtonForTheEditorAndNotWhereThereIsATray) {
  const TemporaryFolder homeOfOneWithTray;
  const PrivateBus busWithTray;
  FakeTrayHost tray(busWithTray.address());
  FakeNotificationHost hostBesideTray(busWithTray.address());
  const auto oneWithTray = startFor(homeOfOneWithTray, busWithTray);
  FakeNotificationHost host(sessionBus.address());
  const TemporaryFolder homeOfOneWhoKnows;
  std::filesystem::create_directories((homeOfOneWhoKnows / stateFile).parent_path());
  homeOfOneWhoKnows.write(stateFile, "");
  const auto oneWhoKnows = startFor(homeOfOneWhoKnows, sessionBus);

  program = startFor(world.home, sessionBus);
  ASSERT_TRUE(eventually([&] { return std::filesystem::exists(world.home / stateFile); }))
      << "after the wait for trays";
  const auto notifications = host.notifications();
  ASSERT_THAT(notifications, SizeIs(1)) << "the others started, and decided, before";
  EXPECT_EQ(notifications[0].title, "Brivane bekommt auf diesem Desktop keine Tasten");
  EXPECT_THAT(notifications[0].text,
              testing::StartsWith("Dieser Desktop behält die Helligkeitstasten, ⌃⌥↑ und ⌃⌥↓ für "
                                  "sich"));
  EXPECT_THAT(notifications[0].actions, ElementsAre(Pair("button", "Tastenkurzbefehle ändern …"),
                                                    Pair("default", testing::_)));
  EXPECT_THAT(hostBesideTray.notifications(), IsEmpty());

  constexpr auto editor = "Tastenkurzbefehle für die Helligkeit";
  EXPECT_FALSE(testClient.find(editor));
  host.press(1, "button");
  EXPECT_TRUE(eventually([&] { return testClient.find(editor).has_value(); }));
  end(*oneWithTray);
  end(*oneWhoKnows);
}

}  // namespace
}  // namespace brivane
