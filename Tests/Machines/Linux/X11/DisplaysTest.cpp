#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "Machines/Linux/X11/Displays.h"
#include "Machines/Linux/X11/XOutputs.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/X11Rig.h"

namespace brivane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using standardMonitor::left;
using standardMonitor::middle;
using standardMonitor::right;

class Displays : public ::testing::Test {
 protected:
  std::vector<DisplayID> list(std::uint32_t maximum = 100) {
    const auto online = displays.onlineDisplayList(maximum);
    EXPECT_TRUE(online.has_value());
    return online.value_or(std::vector<DisplayID>{});
  }

  std::vector<std::string> names() {
    std::vector<std::string> all;
    for (const Screen& screen : displays.screens()) all.push_back(screen.localizedName);
    return all;
  }

  std::vector<Rect> frames() {
    std::vector<Rect> all;
    for (const Screen& screen : displays.screens()) all.push_back(screen.frame);
    return all;
  }

  /// The screen that the pointer is on; 0 for none.
  DisplayID displayUnderPointer() {
    const Point pointer = displays.pointerPosition();
    for (const Screen& screen : displays.screens()) {
      if (mouseInRect(pointer, screen.frame)) return screen.number.value_or(0);
    }
    return 0;
  }

  X11Rig rig;
  XConnection connection{rig.display()};
  TemporaryFolder drm;
  Connectors connectors{drm.path};
  LinuxDisplays displays{connection, connectors};
};

TEST_F(Displays, AreListedPrimaryFirstThenFromLeftToRight) {
  EXPECT_EQ(displays.onlineDisplayCount(), 3U);
  EXPECT_THAT(list(), ElementsAre(rig.output(middle), rig.output(left), rig.output(right)));
}

TEST_F(Displays, AreTheSameWhenTheServerHadOtherCRTCsAtFirst) {
  const auto turn = connection.server();
  ASSERT_TRUE(turn);
  const auto outputsWith = [&turn](std::vector<xcb_randr_crtc_t> crtcs) {
    XServer server = *turn;
    server.crtcs = std::move(crtcs);
    const auto active = activeOutputs(server).value();
    std::vector<xcb_randr_output_t> outputs(active.size());
    std::ranges::transform(active, outputs.begin(), &XOutput::output);
    return outputs;
  };
  const auto& crtcs = turn->crtcs;
  ASSERT_GE(crtcs.size(), 3U);
  const std::vector expected = {rig.output(middle), rig.output(left), rig.output(right)};
  constexpr xcb_randr_crtc_t unknown = 4711;
  EXPECT_EQ(outputsWith({}), expected);
  EXPECT_EQ(outputsWith({crtcs.front()}), expected);
  EXPECT_EQ(outputsWith({unknown, crtcs.front()}), expected);
}

TEST_F(Displays, AreCutOffAtTheGivenMaximum) {
  EXPECT_THAT(list(0), IsEmpty());
  EXPECT_THAT(list(1), ElementsAre(rig.output(middle)));
  EXPECT_THAT(list(2), ElementsAre(rig.output(middle), rig.output(left)));
  EXPECT_EQ(list(3).size(), 3U);
}

TEST_F(Displays, HaveTheNumbersOfTheirEDID) {
  const EDIDBuilder panel{.vendor = "APP", .model = 0xAE22, .serial = 0xFEDCBA98, .name = "Big"};
  rig.setEDID(right, panel.bytes());
  EXPECT_EQ(displays.panelIdentity(rig.output(right)),
            (PanelIdentity{0x0610U, 0xAE22U, 0xFEDCBA98U}));
  EXPECT_EQ(displays.panelIdentity(rig.output(left)).model, 0x1001U);
  EXPECT_EQ(displays.panelIdentity(rig.output(middle)).serial, 22U);
}

TEST_F(Displays, AreNamedByTheirEDIDAndElseByTheirConnector) {
  EXPECT_THAT(names(), ElementsAre("Middle 24", "Left 20", "Right 19"));
  rig.setEDID(left, EDIDBuilder{.model = 7}.bytes());
  rig.removeEDID(right);
  EXPECT_THAT(names(), ElementsAre("Middle 24", "DUMMY0", "DUMMY2"));
  EXPECT_EQ(displays.panelIdentity(rig.output(left)).model, 7U);
}

TEST_F(Displays, WithoutAUsableEDIDAreKnownByTheirOutputsName) {
  auto damaged = EDIDBuilder{.serial = 5, .name = "Damaged"}.bytes();
  damaged[12] ^= 1;
  rig.setEDID(left, damaged);
  rig.removeEDID(middle);
  rig.setEDID(right, std::vector<std::uint8_t>(60, 0xFF));
  std::set<std::uint32_t> serials;
  for (const DisplayID display : list()) {
    const PanelIdentity identity = displays.panelIdentity(display);
    EXPECT_EQ(identity, (PanelIdentity{0, 0, identity.serial}));
    serials.insert(identity.serial);
  }
  EXPECT_EQ(serials.size(), 3U);
  EXPECT_THAT(names(), ElementsAre("DUMMY1", "DUMMY0", "DUMMY2"));
}

TEST_F(Displays, WithoutAnEDIDHaveTheNumbersOfTheirConnectors) {
  const auto panel = EDIDBuilder{.model = 12, .serial = 3}.bytes();
  std::filesystem::create_directories(drm / "card0-DP-1");
  drm.write("card0-DP-1/status", "connected\n");
  drm.write("card0-DP-1/connector_id", "93\n");
  drm.write("card0-DP-1/edid", {panel.begin(), panel.end()});
  rig.removeEDID(middle);
  rig.setConnectorNumber(middle, 93);
  EXPECT_EQ(displays.panelIdentity(rig.output(middle)), (PanelIdentity{0x0A56, 12, 3}));
}

TEST_F(Displays, AreDescribedWithConnectorNumberNameAndEDID) {
  rig.setConnectorNumber(middle, 93);
  rig.removeEDID(right);
  const auto described = displays.describedOutputs();
  ASSERT_EQ(described.online.size(), 3U);
  EXPECT_EQ(described.online[0].display, rig.output(middle));
  EXPECT_EQ(described.online[0].connectorNumber, 93);
  EXPECT_EQ(described.online[1].connectorNumber, std::nullopt);
  EXPECT_EQ(described.online[1].name, "DUMMY0");
  EXPECT_EQ(described.online[1].panel, displays.panelIdentity(rig.output(left)));
  EXPECT_EQ(described.online[2].panel, std::nullopt);
  EXPECT_THAT(described.names, ::testing::IsSupersetOf({"DUMMY0", "DUMMY1", "DUMMY2"}));
}

TEST_F(Displays, AreReadFromAnEDIDWithExtensionBlocks) {
  auto extended = EDIDBuilder{.model = 9, .name = "Extended"}.bytes();
  extended.resize(384, 0x5A);
  rig.setEDID(left, extended);
  EXPECT_EQ(displays.panelIdentity(rig.output(left)).model, 9U);
}

TEST_F(Displays, ThatAreUnknownHaveNoNumbersAndAreNotBuiltIn) {
  for (const DisplayID unknown : {DisplayID{0}, DisplayID{1}, DisplayID{0xFFFFFFFF}}) {
    EXPECT_FALSE(displays.isBuiltIn(unknown));
    EXPECT_EQ(displays.panelIdentity(unknown), PanelIdentity{});
  }
  EXPECT_EQ(list().size(), 3U);
}

TEST_F(Displays, AreBuiltInWhenTheirConnectorIsAPanel) {
  rig.setConnectorType(left, "Panel");
  rig.setConnectorType(right, "DisplayPort");
  EXPECT_TRUE(displays.isBuiltIn(rig.output(left)));
  EXPECT_FALSE(displays.isBuiltIn(rig.output(middle)));
  EXPECT_FALSE(displays.isBuiltIn(rig.output(right)));
  EXPECT_THAT(list(), ::testing::Contains(rig.output(left)));
}

TEST_F(Displays, HaveFramesAroundTheMainScreensLowerLeftCorner) {
  EXPECT_THAT(frames(), ElementsAre(Rect{0, 0, 1920, 1080}, Rect{-1600, 480, 1600, 900},
                                    Rect{1920, -144, 1280, 1024}));
  EXPECT_THAT(displays.screens(),
              ElementsAre(::testing::Field(&Screen::number, rig.output(middle)),
                          ::testing::Field(&Screen::number, rig.output(left)),
                          ::testing::Field(&Screen::number, rig.output(right))));
}

TEST_F(Displays, HaveNoExtendedRange) {
  for (const Screen& screen : displays.screens()) EXPECT_EQ(screen.potentialHeadroom, 1.0);
}

TEST_F(Displays, FollowTheChoiceOfAPrimaryOutput) {
  rig.setPrimary(right);
  EXPECT_THAT(list(), ElementsAre(rig.output(right), rig.output(left), rig.output(middle)));
  EXPECT_EQ(frames().front(), (Rect{0, 0, 1280, 1024}));
  EXPECT_EQ(frames().at(1), (Rect{-3520, 624, 1600, 900}));
}

TEST_F(Displays, WithoutAPrimaryOutputBeginAtTheLeft) {
  rig.setPrimary(std::nullopt);
  rig.move(left, 0, 1000);
  EXPECT_THAT(list(), ElementsAre(rig.output(left), rig.output(middle), rig.output(right)));
  EXPECT_EQ(frames().front(), (Rect{0, 0, 1600, 900}));
}

TEST_F(Displays, AboveEachOtherAreListedFromTopToBottom) {
  rig.setPrimary(left);
  rig.move(left, 3000, 0);
  rig.move(middle, 0, 1080);
  rig.move(right, 0, 0);
  EXPECT_THAT(list(), ElementsAre(rig.output(left), rig.output(right), rig.output(middle)));
  EXPECT_THAT(frames(), ElementsAre(Rect{0, 0, 1600, 900}, Rect{-3000, -124, 1280, 1024},
                                    Rect{-3000, -1260, 1920, 1080}));
}

TEST_F(Displays, ThatAreOffAreNotOnline) {
  rig.turnOff(right);
  EXPECT_EQ(displays.onlineDisplayCount(), 2U);
  EXPECT_THAT(list(), ElementsAre(rig.output(middle), rig.output(left)));
  EXPECT_THAT(names(), ElementsAre("Middle 24", "Left 20"));
}

TEST_F(Displays, AreTheSameWhenTheyComeBack) {
  const auto before = list();
  const auto framesBefore = frames();
  rig.turnOff(left);
  rig.turnOn(left);
  EXPECT_EQ(list(), before);
  EXPECT_EQ(frames(), framesBefore);
  EXPECT_EQ(displays.panelIdentity(rig.output(left)).serial, 11U);
}

TEST_F(Displays, GoOnWithoutTheirPrimaryOutput) {
  rig.turnOff(middle);
  EXPECT_THAT(list(), ElementsAre(rig.output(left), rig.output(right)));
  EXPECT_THAT(frames(), ElementsAre(Rect{0, 0, 1600, 900}, Rect{3520, -624, 1280, 1024}));
}

TEST_F(Displays, MayAllBeOff) {
  for (const std::size_t monitor : {left, middle, right}) rig.turnOff(monitor);
  EXPECT_EQ(displays.onlineDisplayCount(), 0U);
  EXPECT_THAT(list(), IsEmpty());
  EXPECT_THAT(displays.screens(), IsEmpty());
  EXPECT_EQ(displays.pointerPosition(), Point{});
  EXPECT_EQ(connection.problem(), std::nullopt);
}

TEST_F(Displays, HaveThePointerInEachCornerPixelOfEveryScreen) {
  const auto desk = X11Rig::standardDesk();
  for (std::size_t index = 0; index < desk.size(); ++index) {
    const RigMonitor& monitor = desk[index];
    for (const int x : {monitor.x, monitor.x + monitor.width - 1}) {
      for (const int y : {monitor.y, monitor.y + monitor.height - 1}) {
        rig.warpPointer(x, y);
        EXPECT_EQ(displayUnderPointer(), rig.output(index)) << "pixel " << x << ", " << y;
      }
    }
  }
}

TEST_F(Displays, HaveThePointerWhereItIsInGlobalCoordinates) {
  rig.warpPointer(1600, 1379);
  EXPECT_EQ(displays.pointerPosition(), (Point{0, 1}));
  rig.warpPointer(3519, 300);
  EXPECT_EQ(displays.pointerPosition(), (Point{1919, 1080}));
  rig.warpPointer(0, 0);
  EXPECT_EQ(displays.pointerPosition(), (Point{-1600, 1380}));
  rig.warpPointer(4799, 1523);
  EXPECT_EQ(displays.pointerPosition(), (Point{3199, -143}));
}

TEST_F(Displays, KeepThePointerOnItsScreenWhenAnotherBecomesMain) {
  rig.warpPointer(100, 100);
  rig.setPrimary(right);
  EXPECT_EQ(displayUnderPointer(), rig.output(left));
}

}  // namespace
}  // namespace brivane
