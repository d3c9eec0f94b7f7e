// Where the status item is shown, what a click on it does, and what works without it.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "Tests/EndToEnd/Desktop/DesktopTest.h"
#include "Tests/Support/DesktopProcess.h"

namespace brivane {
namespace {

using testing::IsSupersetOf;

class TrayHostsTest : public DesktopTest {
 protected:
  /// Over the session bus.
  std::string itemOn(FakeTrayHost& host) {
    std::string item;
    EXPECT_TRUE(eventually([&] {
      const auto items = host.items();
      if (!items.empty()) item = items.back();
      return !item.empty() && host.isThere(item);
    }));
    return item;
  }

  void expectClickToOpenMenuAndQuitToEndAll(const std::function<void()>& clickOnItem) {
    clickOnItem();
    choose(menuLineFromLast::quit);
    expectCleanEnd();
  }

  /// The box of the new pixels in the app icon's orange and violet, if there are enough of both.
  std::optional<PixelBox> iconSince(const Picture& before, const PixelBox& place) {
    const Picture now = testClient.picture(place);
    int orange = 0;
    int violet = 0;
    PixelBox box{place.width, place.height, 0, 0};
    for (int y = 0; y < place.height; ++y) {
      for (int x = 0; x < place.width; ++x) {
        const auto pixel = now.at(x, y);
        if (pixel == before.at(x, y)) continue;
        const auto red = pixel >> 16;
        const auto green = pixel >> 8 & 0xff;
        const auto blue = pixel & 0xff;
        const bool isOrange = red > 150 && red > blue + 40;
        const bool isViolet = blue > 40 && blue > green + 15 && blue > red;
        if (!isOrange && !isViolet) continue;
        (isOrange ? orange : violet)++;
        box.width = std::max(box.width, x - box.x + 1);
        box.height = std::max(box.height, y - box.y + 1);
        box.x = std::min(box.x, x);
        box.y = std::min(box.y, y);
      }
    }
    if (orange < 8 || violet < 20) return std::nullopt;
    return PixelBox{place.x + box.x, place.y + box.y, 16, 16};
  }

  /// A picture of an empty place.
  static Picture black(const PixelBox& box) {
    const auto count = static_cast<std::size_t>(box.width) * static_cast<std::size_t>(box.height);
    return {box.width, box.height, std::vector<std::uint32_t>(count, 0)};
  }

  /// Waits for the icon in the place, clicks on it, and quits.
  void expectIconToWork(const Picture& before, const PixelBox& place) {
    ASSERT_TRUE(eventually([&] { return iconSince(before, place).has_value(); }));
    // A panel may move its icons when another is added.
    const auto icon = atRest([&] { return iconSince(before, place); });
    ASSERT_TRUE(icon);
    expectClickToOpenMenuAndQuitToEndAll([&] { click(*icon); });
    EXPECT_TRUE(eventually([&] { return !iconSince(before, place); })) << "the icon has gone";
  }
};

// Over the session bus

TEST_F(TrayHostsTest, OverTheBusTheItemHasItsNameAndItsPictureInSeveralSizes) {
  FakeTrayHost host(sessionBus.address());
  start();
  const std::string item = itemOn(host);
  EXPECT_EQ(host.property(item, "Title"), "Brivane");
  EXPECT_EQ(host.property(item, "Id"), "Brivane");
  EXPECT_EQ(host.property(item, "Status"), "Active");
  EXPECT_THAT(host.pictureSides(item), IsSupersetOf({16, 22, 24, 32, 48}));
}

TEST_F(TrayHostsTest, EveryKindOfClickOpensTheMenuWhereThePointerIsAndTheNextClosesIt) {
  FakeTrayHost host(sessionBus.address());
  start();
  const std::string item = itemOn(host);
  for (const auto* kind : {"Activate", "ContextMenu", "SecondaryActivate"}) {
    host.click(item, kind);
    EXPECT_TRUE(doesMenuOpen()) << kind;
    EXPECT_EQ(menu()->box.x, 800);
    EXPECT_EQ(menu()->box.y, 450);
    host.click(item, kind);
    EXPECT_TRUE(doesMenuClose()) << kind;
  }
}

TEST_F(TrayHostsTest, QuitInTheMenuEndsTheProgramAndItsItem) {
  FakeTrayHost host(sessionBus.address());
  start();
  const std::string item = itemOn(host);
  expectClickToOpenMenuAndQuitToEndAll([&] { host.click(item); });
  EXPECT_TRUE(eventually([&] { return !host.isThere(item); }));
}

TEST_F(TrayHostsTest, AHostThatStartsAfterTheProgramGetsTheItem) {
  start();
  EXPECT_TRUE(doHotkeysWork());
  FakeTrayHost host(sessionBus.address());
  const std::string item = itemOn(host);
  EXPECT_EQ(host.property(item, "Title"), "Brivane");
  expectClickToOpenMenuAndQuitToEndAll([&] { host.click(item); });
}

TEST_F(TrayHostsTest, AHostThatDiesAndReturnsGetsTheItemAgain) {
  auto host = std::make_unique<FakeTrayHost>(sessionBus.address());
  start();
  itemOn(*host);
  host = nullptr;
  EXPECT_TRUE(doHotkeysWork()) << "nobody needs a tray";
  host = std::make_unique<FakeTrayHost>(sessionBus.address());
  const std::string item = itemOn(*host);
  expectClickToOpenMenuAndQuitToEndAll([&] { host->click(item); });
}

// Real panels and trays

class PanelTest : public TrayHostsTest {
 protected:
  std::unique_ptr<DesktopProcess> startPanel() {
    const auto folder = world.home / ".config/lxqt";
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "panel.conf")
        << "[General]\npanels=panel1\n[panel1]\nplugins=tray\npanelSize=32\niconSize=22\n"
           "position=Bottom\ndesktop=0\n[tray]\ntype=statusnotifier\n";
    auto panel =
        std::make_unique<DesktopProcess>(std::vector<std::string>{"lxqt-panel"}, environment());
    EXPECT_TRUE(eventually([&] { return testClient.find("LXQt Panel").has_value(); }))
        << "package lxqt-panel";
    return panel;
  }

  /// Waits until the panel has stopped moving.
  PixelBox place() {
    const auto box = atRest([&] {
      const auto panel = testClient.find("LXQt Panel");
      return panel ? panel->box : PixelBox{};
    });
    atRest([&] { return testClient.picture(box); });
    return box;
  }
};

TEST_F(PanelTest, ThePictureIsOnThePanelAndAClickOnItOpensTheMenu) {
  const auto panel = startPanel();
  const PixelBox box = place();
  const Picture before = testClient.picture(box);
  start();
  expectIconToWork(before, box);
}

TEST_F(PanelTest, APanelThatStartsAfterTheProgramShowsIt) {
  start();
  const auto panel = startPanel();
  const PixelBox box = place();
  expectIconToWork(black(box), box);
}

TEST_F(PanelTest, APanelThatWasEndedAndStartedAgainShowsIt) {
  auto panel = startPanel();
  const PixelBox box = place();
  const Picture before = testClient.picture(box);
  start();
  EXPECT_TRUE(eventually([&] { return iconSince(before, box).has_value(); }));
  panel = nullptr;
  ASSERT_TRUE(eventually([&] { return !testClient.find("LXQt Panel"); }));
  panel = startPanel();
  expectIconToWork(black(box), box);
}

class XEmbedTrayTest : public TrayHostsTest {
 protected:
  static constexpr PixelBox place{0, 0, 200, 24};

  std::unique_ptr<DesktopProcess> startTray() {
    auto tray = std::make_unique<DesktopProcess>(
        std::vector<std::string>{"trayer", "--edge", "top", "--align", "left", "--widthtype",
                                 "pixel", "--width", "200", "--heighttype", "pixel", "--height",
                                 "24"},
        environment());
    EXPECT_TRUE(eventually([&] { return isTrayThere(); })) << "package trayer";
    return tray;
  }
  bool isTrayThere() { return testClient.hasSelectionOwner("_NET_SYSTEM_TRAY_S0"); }
};

TEST_F(XEmbedTrayTest, ThePictureIsInTheTrayAndAClickOnItOpensTheMenu) {
  const auto tray = startTray();
  start();
  expectIconToWork(black(place), place);
}

TEST_F(XEmbedTrayTest, TheOtherButtonsOpenTheMenuToo) {
  const auto tray = startTray();
  start();
  ASSERT_TRUE(eventually([&] { return iconSince(black(place), place).has_value(); }));
  const auto icon = atRest([&] { return iconSince(black(place), place); });
  ASSERT_TRUE(icon);
  for (const std::uint8_t button : {std::uint8_t{2}, std::uint8_t{3}}) {
    click(*icon, button);
    EXPECT_TRUE(doesMenuOpen()) << int{button};
    tap(xKey::escape);
    EXPECT_TRUE(doesMenuClose()) << int{button};
  }
}

TEST_F(XEmbedTrayTest, ATrayThatStartsAfterTheProgramShowsIt) {
  start();
  EXPECT_TRUE(doHotkeysWork());
  const auto tray = startTray();
  expectIconToWork(black(place), place);
}

TEST_F(XEmbedTrayTest, ATrayThatWasEndedAndStartedAgainShowsIt) {
  auto tray = startTray();
  start();
  ASSERT_TRUE(eventually([&] { return iconSince(black(place), place).has_value(); }));
  tray = nullptr;
  ASSERT_TRUE(eventually([&] { return !isTrayThere(); }));
  EXPECT_TRUE(doHotkeysWork());
  tray = startTray();
  expectIconToWork(black(place), place);
}

// No tray at all

TEST_F(TrayHostsTest, WithoutAnyTrayTheHotkeysAndTheHUDWorkAndItEndsCleanly) {
  start();
  EXPECT_TRUE(doHotkeysWork());
  EXPECT_TRUE(eventually([&] { return testClient.find("Brivane").has_value(); })) << "the HUD";
  program->signal(SIGTERM);
  expectCleanEnd();
}

TEST_F(TrayHostsTest, WithoutASessionBusTheHotkeysAndTheHUDWorkAndItEndsCleanly) {
  start({{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nobody"}});
  EXPECT_TRUE(doHotkeysWork());
  EXPECT_TRUE(eventually([&] { return testClient.find("Brivane").has_value(); })) << "the HUD";
  program->signal(SIGTERM);
  expectCleanEnd();
}

TEST_F(TrayHostsTest, WithoutASessionBusOneLineSaysWhatIsMissingAndWhatWorks) {
  start({{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nobody"}}, {.hasTerminal = true});
  EXPECT_TRUE(program->waitForError(
      "Brivane has no session bus: only an XEmbed tray can show its status item, and the "
      "desktop's choice of light or dark isn't heard, and brivane-ctl doesn't reach it; everything "
      "else works."));
}

}  // namespace
}  // namespace brivane
