// Light and dark as preferred in the desktop's settings portal.
#include "Tests/EndToEnd/Desktop/DesktopTest.h"
#include "Tests/Support/FakeSettingsPortal.h"

namespace brivane {
namespace {

class AppearanceOnDesktopTest : public DesktopTest {
 protected:
  void open() {
    ASSERT_TRUE(eventually([&] { return !host.items().empty(); }));
    host.click(host.items().back());
    ASSERT_TRUE(eventually([&] { return menu().has_value(); }));
  }
  /// The background of the open menu, 0 to 255.
  std::uint32_t ground() {
    const auto window = menu();
    if (!window) return 128;
    return testClient.pixel(window->box.x + 10, window->box.y + window->box.height - 4) & 0xff;
  }
  bool becomesDark() {
    return eventually([&] { return ground() < 80; });
  }
  bool becomesLight() {
    return eventually([&] { return ground() > 220; });
  }

  FakeTrayHost host{sessionBus.address()};
};

TEST_F(AppearanceOnDesktopTest, ADarkDesktopGetsADarkMenu) {
  const FakeSettingsPortal portal(sessionBus.address(), FakeSettingsPortal::prefersDark);
  start();
  open();
  EXPECT_TRUE(becomesDark()) << ground();
}

TEST_F(AppearanceOnDesktopTest, AnOpenMenuFollowsTheDesktop) {
  FakeSettingsPortal portal(sessionBus.address(), FakeSettingsPortal::prefersLight);
  start();
  open();
  EXPECT_TRUE(becomesLight()) << ground();
  portal.choose(FakeSettingsPortal::prefersDark);
  EXPECT_TRUE(becomesDark()) << ground();
  portal.changeSomethingElse();
  portal.choose(FakeSettingsPortal::prefersLight);
  EXPECT_TRUE(becomesLight()) << ground();
  portal.choose(FakeSettingsPortal::prefersDark);
  EXPECT_TRUE(becomesDark()) << ground();
  portal.choose(FakeSettingsPortal::noPreference);
  EXPECT_TRUE(becomesLight()) << "the toolkit's own colours: " << ground();
}

TEST_F(AppearanceOnDesktopTest, TheHUDFollowsTheDesktop) {
  FakeSettingsPortal portal(sessionBus.address(), FakeSettingsPortal::prefersDark);
  start();
  const auto cardBecomes = [&](bool isDark) {
    return eventually([&] {
      tapHotkey(xKey::down);
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
      const auto pixel = testClient.pixel(800, 720) & 0xff;
      return testClient.find("Brivane") && (isDark ? pixel > 0 && pixel < 90 : pixel > 180);
    });
  };
  EXPECT_TRUE(cardBecomes(true));
  portal.choose(FakeSettingsPortal::prefersLight);
  EXPECT_TRUE(cardBecomes(false));
}

TEST_F(AppearanceOnDesktopTest, APortalThatStartsLaterAppliesFromItsNextChange) {
  start();
  open();
  EXPECT_TRUE(becomesLight()) << "without a portal, as the toolkit is: " << ground();
  FakeSettingsPortal portal(sessionBus.address(), FakeSettingsPortal::prefersLight);
  portal.choose(FakeSettingsPortal::prefersDark);
  EXPECT_TRUE(becomesDark()) << ground();
}

}  // namespace
}  // namespace brivane
