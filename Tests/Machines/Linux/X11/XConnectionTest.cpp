#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <csignal>
#include <memory>
#include <thread>

#include "Machines/Linux/X11/Displays.h"
#include "Machines/Linux/X11/Gamma.h"
#include "Machines/Linux/X11/XConnection.h"
#include "Tests/Support/X11Rig.h"

namespace brivane {
namespace {

const Connectors noConnectors("/no/such/folder");

using ::testing::IsEmpty;

/// Every operation of the display system and the gamma tables fails, by value.
void expectNothing(XConnection& connection, DisplayID display) {
  LinuxDisplays displays(connection, noConnectors);
  EXPECT_EQ(displays.onlineDisplayCount(), std::nullopt);
  EXPECT_EQ(displays.onlineDisplayList(10), std::nullopt);
  EXPECT_FALSE(displays.isBuiltIn(display));
  EXPECT_EQ(displays.panelIdentity(display), PanelIdentity{});
  EXPECT_THAT(displays.screens(), IsEmpty());
  EXPECT_EQ(displays.pointerPosition(), Point{});
  LinuxGammaTables gamma(connection);
  std::array<float, 4> samples{};
  std::uint32_t returned = 0;
  EXPECT_EQ(gamma.capacity(display), 0U);
  EXPECT_NE(gamma.readTable(display, samples, samples, samples, returned), 0);
  EXPECT_NE(gamma.writeTable(display, samples, samples, samples), 0);
  gamma.discardForeignTables();
}

struct AbsentServer {
  std::string display;
  std::string problem;
};

class XConnectionWithoutServer : public ::testing::TestWithParam<AbsentServer> {};

TEST_P(XConnectionWithoutServer, HasAProblemInWordsOnceAskedAndNoDisplays) {
  XConnection connection(GetParam().display);
  EXPECT_EQ(connection.problem(), std::nullopt);
  expectNothing(connection, 78);
  EXPECT_FALSE(connection.server());
  EXPECT_EQ(connection.problem(), GetParam().problem);
}

INSTANTIATE_TEST_SUITE_P(
    Displays, XConnectionWithoutServer,
    ::testing::Values(AbsentServer{"", "DISPLAY is not set"},
                      AbsentServer{":4711", "the X server \":4711\" cannot be reached"},
                      AbsentServer{"no display", "the X server \"no display\" cannot be reached"},
                      AbsentServer{":0:0:0", "the X server \":0:0:0\" cannot be reached"}));

TEST(XConnection, HasNoProblemWithAServer) {
  const X11Rig rig;
  XConnection connection(rig.display());
  ASSERT_TRUE(connection.server());
  EXPECT_EQ(connection.problem(), std::nullopt);
}

TEST(XConnection, OnceOpenDoesNotLetABrokenSocketKillTheProgram) {
  std::signal(SIGPIPE, SIG_DFL);
  const X11Rig rig;
  XConnection connection(rig.display());
  EXPECT_TRUE(connection.server());
  EXPECT_EQ(std::signal(SIGPIPE, SIG_DFL), SIG_IGN);
}

TEST(XConnection, ToAScreenThatTheServerHasNotIsAProblem) {
  const X11Rig rig;
  XConnection connection(rig.display() + ".7");
  EXPECT_FALSE(connection.server());
  EXPECT_EQ(connection.problem(), "the X server \"" + rig.display() + ".7\" cannot be reached");
}

TEST(XConnection, AServerThatHasGoneIsNoticedByTheNextCallWhicheverItIs) {
  X11Rig rig;
  XConnection connection(rig.display());
  ASSERT_TRUE(connection.server());
  rig.killServer();
  expectNothing(connection, rig.output(0));
  EXPECT_FALSE(connection.server());
  EXPECT_EQ(connection.problem(), "the X server \"" + rig.display() + "\" has gone");
}

TEST(XConnection, EachCallMayBeTheOneThatFindsTheServerGone) {
  using Call = void (*)(XConnection&, DisplayID);
  const std::array<Call, 5> calls = {
      [](XConnection& x, DisplayID) {
        EXPECT_THAT(LinuxDisplays(x, noConnectors).screens(), IsEmpty());
      },
      [](XConnection& x, DisplayID d) {
        EXPECT_EQ(LinuxDisplays(x, noConnectors).panelIdentity(d).vendor, 0U);
      },
      [](XConnection& x, DisplayID) {
        EXPECT_EQ(LinuxDisplays(x, noConnectors).pointerPosition(), Point{});
      },
      [](XConnection& x, DisplayID d) {
        const std::array<float, 2> line = {0.0F, 1.0F};
        EXPECT_NE(LinuxGammaTables(x).writeTable(d, line, line, line), 0);
      },
      [](XConnection& x, DisplayID) { LinuxGammaTables(x).discardForeignTables(); }};
  X11Rig rig;
  const DisplayID display = rig.output(0);
  std::array<std::unique_ptr<XConnection>, calls.size()> connections;
  for (auto& connection : connections) {
    connection = std::make_unique<XConnection>(rig.display());
    ASSERT_TRUE(connection->server());
  }
  rig.killServer();
  for (std::size_t index = 0; index < calls.size(); ++index) {
    calls.at(index)(*connections.at(index), display);
    EXPECT_FALSE(connections.at(index)->server());
  }
}

TEST(XConnection, TwoThreadsMayOpenItAndAskAtOnce) {
  X11Rig rig;
  XConnection connection(rig.display());
  const auto ask = [&] {
    LinuxDisplays displays(connection, noConnectors);
    for (int round = 0; round < 200; ++round) {
      EXPECT_EQ(displays.onlineDisplayCount(), 3U);
      EXPECT_EQ(displays.screens().at(1).localizedName, "Left 20");
      EXPECT_EQ(displays.panelIdentity(rig.output(2)).serial, 33U);
      EXPECT_EQ(connection.problem(), std::nullopt);
    }
  };
  std::thread other(ask);
  ask();
  other.join();
}

TEST(XConnection, AServerMayGoWhileTwoThreadsAsk) {
  X11Rig rig;
  XConnection connection(rig.display());
  std::atomic<int> rounds = 0;
  const auto ask = [&] {
    LinuxDisplays displays(connection, noConnectors);
    LinuxGammaTables gamma(connection);
    while (connection.server()) {
      // No answer must never look like a desk with fewer displays.
      const auto count = displays.onlineDisplayCount();
      EXPECT_TRUE(!count || *count == 3);
      displays.screens();
      gamma.discardForeignTables();
      ++rounds;
    }
  };
  std::thread one(ask);
  std::thread two(ask);
  while (rounds < 20) std::this_thread::yield();
  rig.killServer();
  one.join();
  two.join();
  EXPECT_EQ(connection.problem(), "the X server \"" + rig.display() + "\" has gone");
}

TEST(XConnection, DiscardsEventsThatItDidNotSelect) {
  X11Rig rig;
  XConnection connection(rig.display());
  ASSERT_TRUE(connection.server());
  rig.useEvdevKeymap();
  LinuxDisplays displays(connection, noConnectors);
  EXPECT_EQ(displays.onlineDisplayCount(), 3U);
  const auto server = connection.server();
  ASSERT_TRUE(server);
  EXPECT_EQ(xcb_poll_for_queued_event(server->connection), nullptr);
}

}  // namespace
}  // namespace brivane
