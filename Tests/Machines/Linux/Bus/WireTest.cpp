// What goes over the wire, byte for byte, to monitors that check the standard's checksum.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <thread>

#include "Machines/Common/Files/FileDescriptor.h"
#include "Tests/Machines/Linux/Bus/BusWorld.h"
#include "Tests/Support/OrdinaryUser.h"

namespace brivane {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;
using testing::SizeIs;

constexpr std::uint32_t chip = 0x37;
constexpr std::uint32_t sender = 0x51;
const std::vector<std::uint8_t> getLuminance = {0x82, 0x01, 0x10, 0xFD};
const std::vector<std::uint8_t> set50 = {0x84, 0x03, 0x10, 0x00, 0x32, 0xCB};

std::ptrdiff_t openFileCount() {
  const std::filesystem::directory_iterator files("/proc/self/fd");
  return std::distance(begin(files), end(files));
}

/// What another DDC/CI program does while it uses a bus.
class ForeignTurn {
 public:
  explicit ForeignTurn(const char* node) : file(::open(node, O_RDWR | O_CLOEXEC)) {}
  bool isTaken() const { return ::flock(file.get(), LOCK_EX | LOCK_NB) == 0; }

 private:
  const FileDescriptor file;
};

class WireTest : public BusTest {
 protected:
  std::int32_t write(AVService& panel, const std::vector<std::uint8_t>& bytes = set50) {
    return bus.write(panel, chip, sender, bytes);
  }
  std::int32_t read(AVService& panel) { return bus.read(panel, chip, reply); }

  std::optional<BusTrouble> trouble() const {
    const auto first = missingAccess.buses.first();
    return first ? std::optional(first->kind) : std::nullopt;
  }

  std::array<std::uint8_t, 12> reply{};
};

TEST_F(WireTest, ASetGoesOutTwiceWithTheSendersAddressAndAStandardChecksum) {
  EXPECT_TRUE(handle("card0-HDMI-A-1")->setVCP(0x10, 50));
  EXPECT_THAT(events("HDMI-A-1"), ElementsAre("write 51 84 03 10 00 32 9a ok", "level 50",
                                              "write 51 84 03 10 00 32 9a ok", "level 50"));
}

TEST_F(WireTest, AGetGoesOutOnceAndTwelveBytesComeBack) {
  EXPECT_THAT(handle("card0-HDMI-A-1")->getVCP(0x10), Optional(VCPReading{50, 100}));
  EXPECT_THAT(events("HDMI-A-1"),
              ElementsAre("write 51 82 01 10 ac ok", "read 12 6e 88 02 00 10 00 00 64 00 32 f2"));
}

TEST_F(WireTest, TheSmallestAndLargestValuesArriveWhole) {
  for (const auto& [value, bytes] : {std::pair{std::uint16_t{0}, "00 00 a8"},
                                     {std::uint16_t{0xFFFF}, "ff ff a8"},
                                     {std::uint16_t{7000}, "1b 58 eb"}}) {
    forgetEvents();
    EXPECT_TRUE(handle("card0-HDMI-A-1")->setVCP(0x10, value));
    EXPECT_EQ(events("HDMI-A-1").front(), std::string("write 51 84 03 10 ") + bytes + " ok");
    EXPECT_EQ(knob("HDMI-A-1", "level"), std::to_string(value));
  }
}

TEST_F(WireTest, MonitorsWithOtherMaximaAreReadAsTheyAre) {
  for (const auto& [maximum, level] : {std::pair{50, 49}, {255, 1}, {7000, 4321}, {65535, 65535}}) {
    turn("HDMI-A-1", "maximum", std::to_string(maximum));
    turn("HDMI-A-1", "level", std::to_string(level));
    const VCPReading expected{static_cast<std::uint16_t>(level),
                              static_cast<std::uint16_t>(maximum)};
    EXPECT_THAT(handle("card0-HDMI-A-1")->getVCP(0x10), Optional(expected));
  }
}

TEST_F(WireTest, AMessageWithAWrongChecksumIsIgnoredByTheMonitor) {
  auto wrong = set50;
  wrong.back() ^= 1;
  EXPECT_EQ(write(*service("card0-HDMI-A-1"), wrong), 0);
  EXPECT_THAT(events("HDMI-A-1"), ElementsAre("write 51 84 03 10 00 32 9b ignored"));
}

TEST_F(WireTest, AReplyFetchedTooEarlyIsANullMessage) {
  // However late this machine comes to fetch it.
  turn("HDMI-A-1", "mood", "slow");
  const auto panel = service("card0-HDMI-A-1");
  EXPECT_EQ(write(*panel, getLuminance), 0);
  EXPECT_EQ(read(*panel), 0);
  EXPECT_THAT(reply, ElementsAre(0x6E, 0x80, 0xBE, 0, 0, 0, 0, 0, 0, 0, 0, 0));
}

TEST_F(WireTest, ASilentMonitorIsAskedThreeTimes) {
  turn("HDMI-A-1", "mood", "silent");
  EXPECT_EQ(handle("card0-HDMI-A-1")->getVCP(0x10), std::nullopt);
  EXPECT_THAT(events("HDMI-A-1"),
              ElementsAre("write 51 82 01 10 ac ok", "read 12 6e 80 be", "write 51 82 01 10 ac ok",
                          "read 12 6e 80 be", "write 51 82 01 10 ac ok", "read 12 6e 80 be"));
}

TEST_F(WireTest, AnUnsupportedFeatureHasNoReading) {
  EXPECT_EQ(handle("card0-HDMI-A-1")->getVCP(0x12), std::nullopt);
}

TEST_F(WireTest, AnAdapterThatRefusesWholeMessagesGetsThemByReadAndWrite) {
  for (const auto* refusal : {"rdwr:EINVAL", "rdwr:ENOTTY", "rdwr:EOPNOTSUPP"}) {
    turn("HDMI-A-1", "mood", refusal);
    forgetEvents();
    EXPECT_THAT(handle("card0-HDMI-A-1")->getVCP(0x10), Optional(VCPReading{50, 100})) << refusal;
    EXPECT_THAT(
        events("HDMI-A-1"),
        ElementsAre("refuse I2C_RDWR", "address 55", "write 51 82 01 10 ac ok", "refuse I2C_RDWR",
                    "address 55", "read 12 6e 88 02 00 10 00 00 64 00 32 f2"));
  }
}

TEST_F(WireTest, AnAddressThatAnotherDriverHoldsIsAFailureThere) {
  turn("HDMI-A-1", "mood", "rdwr:EINVAL slave:EBUSY");
  const auto panel = service("card0-HDMI-A-1");
  EXPECT_EQ(write(*panel), EBUSY);
  EXPECT_EQ(read(*panel), EBUSY);
  EXPECT_THAT(events("HDMI-A-1"), ElementsAre("refuse I2C_RDWR", "refuse I2C_SLAVE 55",
                                              "refuse I2C_RDWR", "refuse I2C_SLAVE 55"));
}

TEST_F(WireTest, ATransferThatFailsIsNotTriedInAnotherWay) {
  for (const auto& [mood, error] : {std::pair{"wire:ENXIO", ENXIO}, {"wire:EIO", EIO}}) {
    turn("HDMI-A-1", "mood", mood);
    forgetEvents();
    EXPECT_EQ(write(*service("card0-HDMI-A-1")), error);
    EXPECT_THAT(events("HDMI-A-1"), SizeIs(1));
  }
}

TEST_F(WireTest, ATransferThatFailsByReadAndWriteIsAFailureToo) {
  turn("HDMI-A-1", "mood", "rdwr:EINVAL wire:ENXIO");
  EXPECT_EQ(write(*service("card0-HDMI-A-1")), ENXIO);
  EXPECT_EQ(read(*service("card0-HDMI-A-1")), ENXIO);
}

TEST_F(WireTest, NoDeviceAnswersAtAnotherAddress) {
  EXPECT_NE(bus.write(*service("card0-HDMI-A-1"), 0x38, sender, set50), 0);
  EXPECT_THAT(events("HDMI-A-1"), ElementsAre("error 6"));
}

TEST_F(WireTest, AMessageWithoutBytesIsRefused) {
  EXPECT_NE(write(*service("card0-HDMI-A-1"), {}), 0);
  EXPECT_THAT(events("HDMI-A-1"), IsEmpty());
}

TEST_F(WireTest, APanelOnStandByIsNeverDisturbed) {
  const auto panel = service("card0-HDMI-A-1");
  for (const auto* power : {"Off", "Standby", "Suspend"}) {
    writeConnector("card0-HDMI-A-1", "dpms", std::string(power) + "\n");
    EXPECT_NE(write(*panel), 0) << power;
    EXPECT_NE(read(*panel), 0) << power;
  }
  EXPECT_THAT(events("HDMI-A-1"), IsEmpty());
  EXPECT_EQ(write(*service("card0-DP-1")), 0);
  writeConnector("card0-HDMI-A-1", "dpms", "On\n");
  EXPECT_EQ(write(*panel), 0);
}

TEST_F(WireTest, WithoutPermissionNothingReachesTheWireAndTheMissingAccessIsNoted) {
  const auto panel = service("card0-HDMI-A-1");
  const Forbidden node("/dev/i2c-5");
  EXPECT_TRUE(holdsForOrdinaryUser([&] {
    const bool isDenied = write(*panel) == EACCES && read(*panel) == EACCES;
    return isDenied && write(*service("card0-DP-1")) == 0 &&
           missingAccess.buses.first()->kind == BusTrouble::notPermitted;
  }));
  EXPECT_THAT(events("HDMI-A-1"), IsEmpty());
}

TEST_F(WireTest, ABusThatVanishesInTheMiddleOfAGetIsAFailureUntilItIsBack) {
  const auto panel = service("card0-HDMI-A-1");
  EXPECT_EQ(write(*panel, getLuminance), 0);
  {
    const Vanished node("/dev/i2c-5");
    EXPECT_NE(read(*panel), 0);
    EXPECT_NE(write(*panel), 0);
  }
  EXPECT_EQ(write(*panel), 0);
  turn("HDMI-A-1", "mood", "wire:ENODEV");
  EXPECT_EQ(read(*panel), ENODEV);
}

TEST_F(WireTest, NoBusIsHeldBetweenCalls) {
  const auto panel = service("card0-HDMI-A-1");
  write(*panel);
  const auto before = openFileCount();
  for (const auto* mood : {"", "rdwr:EINVAL", "wire:ENXIO", "rdwr:EINVAL slave:EBUSY"}) {
    turn("HDMI-A-1", "mood", mood);
    write(*panel);
    read(*panel);
  }
  EXPECT_EQ(openFileCount(), before);
}

TEST_F(WireTest, ASetOnOneThreadAndAGetOnAnotherBothGetThrough) {
  const auto monitor = handle("card0-HDMI-A-1");
  const auto other = handle("card0-DP-1");
  std::thread getting([&] {
    for (int count = 0; count < 3; ++count) {
      EXPECT_THAT(other->getVCP(0x10), Optional(VCPReading{255, 255}));
    }
  });
  for (std::uint16_t value = 0; value < 5; ++value) EXPECT_TRUE(monitor->setVCP(0x10, value));
  getting.join();
  EXPECT_EQ(knob("HDMI-A-1", "level"), "4");
  EXPECT_EQ(knob("DP-1", "level"), "255");
}

TEST_F(WireTest, MessagesOfTwoThreadsToOneMonitorNeverMix) {
  const auto panel = service("card0-HDMI-A-1");
  const auto send = [&] {
    for (int count = 0; count < 30; ++count) EXPECT_EQ(write(*panel), 0);
  };
  std::thread other(send);
  send();
  other.join();
  const auto all = events("HDMI-A-1");
  EXPECT_THAT(all, SizeIs(120));
  EXPECT_THAT(all, Each(testing::AnyOf("write 51 84 03 10 00 32 9a ok", "level 50")));
}

TEST_F(WireTest, ABusThatAnotherProgramUsesIsAFailure) {
  const ForeignTurn other("/dev/i2c-5");
  ASSERT_TRUE(other.isTaken());
  EXPECT_FALSE(handle("card0-HDMI-A-1")->setVCP(0x10, 50));
  EXPECT_EQ(handle("card0-HDMI-A-1")->getVCP(0x10), std::nullopt);
  EXPECT_THAT(events("HDMI-A-1"), IsEmpty());
  EXPECT_TRUE(handle("card0-DP-1")->setVCP(0x10, 50));
  EXPECT_EQ(trouble(), BusTrouble::busy);
}

TEST_F(WireTest, WhyAMonitorIsNotReachedIsNotedUntilItIs) {
  const auto monitor = handle("card0-HDMI-A-1");
  for (const auto& [mood, expected] : {std::pair{"silent", BusTrouble::noAnswer},
                                       {"wire:ENXIO", BusTrouble::noAnswer},
                                       {"wire:EBUSY", BusTrouble::busy}}) {
    turn("HDMI-A-1", "mood", mood);
    EXPECT_EQ(monitor->getVCP(0x10), std::nullopt);
    EXPECT_EQ(trouble(), expected) << mood;
  }
  turn("HDMI-A-1", "mood", "");
  writeConnector("card0-HDMI-A-1", "dpms", "Off\n");
  EXPECT_EQ(monitor->getVCP(0x10), std::nullopt);
  EXPECT_EQ(trouble(), BusTrouble::asleep);
  writeConnector("card0-HDMI-A-1", "dpms", "On\n");
  {
    const Vanished node("/dev/i2c-5");
    EXPECT_EQ(monitor->getVCP(0x10), std::nullopt);
    EXPECT_EQ(trouble(), BusTrouble::noBus);
  }
  EXPECT_NE(monitor->getVCP(0x10), std::nullopt);
  EXPECT_EQ(trouble(), std::nullopt);
}

TEST_F(WireTest, ABusThatAnotherProgramUsesForAMomentIsWaitedFor) {
  auto other = std::make_unique<ForeignTurn>("/dev/i2c-5");
  ASSERT_TRUE(other->isTaken());
  std::thread ending([&] {
    runtime.sleep(std::chrono::milliseconds(15));
    other.reset();
  });
  EXPECT_TRUE(handle("card0-HDMI-A-1")->setVCP(0x10, 50));
  ending.join();
}

TEST_F(WireTest, OtherProgramsHaveTheBusBetweenAttemptsOnly) {
  const ForeignTurn other("/dev/i2c-5");
  {
    const auto turn = service("card0-HDMI-A-1")->takeTurn();
    EXPECT_FALSE(other.isTaken());
    EXPECT_TRUE(handle("card0-HDMI-A-1")->setVCP(0x10, 50)) << "turns of one program";
    EXPECT_FALSE(other.isTaken());
  }
  EXPECT_TRUE(other.isTaken());
}

}  // namespace
}  // namespace brivane
