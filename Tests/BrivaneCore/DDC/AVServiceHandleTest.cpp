#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BrivaneCore/DDC/AVServiceHandle.h"
#include "BrivaneCore/DDC/DisplayRegistry.h"
#include "Tests/Support/FakeMachine.h"
#include "Tests/Support/SystemLibraries.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto getRequest = "write disp0 55/81: 82 01 10 FD";
constexpr auto getReply = "read disp0 55/81: 12";

std::string at(int milliseconds, const std::string& what) {
  return "[" + std::to_string(milliseconds) + "] " + what;
}

struct AVServiceHandleTest : testing::Test {
  AVServiceHandle& handle() {
    if (!made) {
      const auto bridge = std::make_shared<const IOAVBridge>(machine.loader);
      made = std::make_unique<AVServiceHandle>(service, "disp0", bridge, machine.time);
    }
    return *made;
  }

  /// Three failed attempts: 40 ms in each for the reply, 20 and 40 ms in between.
  void expectThreeAttempts() {
    EXPECT_THAT(machine.notes.take(),
                ElementsAre(at(0, getRequest), at(40, getReply), at(60, getRequest),
                            at(100, getReply), at(140, getRequest), at(180, getReply)));
    EXPECT_EQ(machine.time.now(), Instant(fromSeconds(0.18)));
  }

  FakeMachine machine;
  FakeBus::Channel& channel = machine.addMonitor(1, "Monitor", "disp0", 1, 2, 3);
  std::shared_ptr<AVService> service = std::get<CreateAVServiceFunction>(
      machine.loader.libraries[ioKit]["IOAVServiceCreateWithService"])(
      *machine.registry.entries.back());
  std::unique_ptr<AVServiceHandle> made;
};

TEST_F(AVServiceHandleTest, CarriesItsServiceAndItsPort) {
  EXPECT_EQ(handle().service, service);
  EXPECT_EQ(handle().location, "disp0");
}

TEST_F(AVServiceHandleTest, ASetGoesOutTwiceAfterTenMillisecondsEach) {
  EXPECT_TRUE(handle().setVCP(0x10, 50));
  EXPECT_THAT(machine.notes.take(), ElementsAre(at(10, "write disp0 55/81: 84 03 10 00 32 CB"),
                                                at(20, "write disp0 55/81: 84 03 10 00 32 CB")));
  EXPECT_EQ(machine.time.now(), Instant(fromSeconds(0.02)));
}

TEST_F(AVServiceHandleTest, ABusThatAnotherProgramUsesFailsASetAndEachAttemptOfAGetUntouched) {
  channel.isBusy = true;
  EXPECT_FALSE(handle().setVCP(0x10, 50));
  EXPECT_EQ(machine.time.now(), Instant(fromSeconds(0)));
  EXPECT_EQ(handle().getVCP(0x10), std::nullopt);
  EXPECT_EQ(machine.time.now(), Instant(fromSeconds(0.06)));
  EXPECT_THAT(machine.notes.take(), IsEmpty());
}

TEST_F(AVServiceHandleTest, EverySetAndEveryAttemptOfAGetHasTheBusForItself) {
  EXPECT_TRUE(handle().setVCP(0x10, 50));
  channel.reply = [] { return std::vector<std::uint8_t>(12); };
  EXPECT_EQ(handle().getVCP(0x10), std::nullopt);
  EXPECT_EQ(channel.messagesOutsideTurns, 0);
  EXPECT_EQ(channel.openTurns, 0);
}

TEST_F(AVServiceHandleTest, ASetOfTheSmallestAndTheLargestValue) {
  EXPECT_TRUE(handle().setVCP(0x10, 0));
  EXPECT_TRUE(handle().setVCP(0x10, 0xFFFF));
  EXPECT_THAT(machine.notes.take(), ElementsAre(at(10, "write disp0 55/81: 84 03 10 00 00 F9"),
                                                at(20, "write disp0 55/81: 84 03 10 00 00 F9"),
                                                at(30, "write disp0 55/81: 84 03 10 FF FF F9"),
                                                at(40, "write disp0 55/81: 84 03 10 FF FF F9")));
}

TEST_F(AVServiceHandleTest, ASetThatTheBusRefusesIsNotRepeated) {
  channel.nextWriteStatuses = {-536870206};
  EXPECT_FALSE(handle().setVCP(0x10, 50));
  EXPECT_THAT(machine.notes.take(), ElementsAre(at(10, "write disp0 55/81: 84 03 10 00 32 CB")));
  EXPECT_EQ(machine.time.now(), Instant(fromSeconds(0.01)));
}

TEST_F(AVServiceHandleTest, ASetSucceedsEvenIfItsRepetitionIsRefused) {
  channel.nextWriteStatuses = {0, 1};
  EXPECT_TRUE(handle().setVCP(0x10, 50));
  EXPECT_EQ(channel.setCount, 2);
}

TEST_F(AVServiceHandleTest, AGetReadsTwelveBytesFortyMillisecondsAfterItsRequest) {
  EXPECT_EQ(handle().getVCP(0x10), (VCPReading{50, 100}));
  EXPECT_THAT(machine.notes.take(), ElementsAre(at(0, getRequest), at(40, getReply)));
  EXPECT_EQ(machine.time.now(), Instant(fromSeconds(0.04)));
}

TEST_F(AVServiceHandleTest, AGetAsksForTheCodeItIsGiven) {
  EXPECT_EQ(handle().getVCP(0x12), (VCPReading{50, 100}));
  EXPECT_THAT(machine.notes.take(),
              ElementsAre(at(0, "write disp0 55/81: 82 01 12 FF"), at(40, getReply)));
}

TEST_F(AVServiceHandleTest, AMonitorThatDoesNotReplyIsAskedThreeTimes) {
  channel.answers = false;
  EXPECT_EQ(handle().getVCP(0x10), std::nullopt);
  expectThreeAttempts();
}

TEST_F(AVServiceHandleTest, AReadThatTheBusRefusesIsAFailedAttempt) {
  channel.readStatus = 5;
  EXPECT_EQ(handle().getVCP(0x10), std::nullopt);
  expectThreeAttempts();
  channel.readStatus = -536870206;
  EXPECT_EQ(handle().getVCP(0x10), std::nullopt) << "whatever the reply holds";
}

TEST_F(AVServiceHandleTest, ARequestThatTheBusRefusesIsNotFollowedByARead) {
  channel.writeStatus = 5;
  EXPECT_EQ(handle().getVCP(0x10), std::nullopt);
  EXPECT_THAT(machine.notes.take(),
              ElementsAre(at(0, getRequest), at(20, getRequest), at(60, getRequest)));
  EXPECT_EQ(machine.time.now(), Instant(fromSeconds(0.06)));
}

TEST_F(AVServiceHandleTest, AnImpossibleLevelIsAFailedAttempt) {
  channel.current = 101;
  EXPECT_EQ(handle().getVCP(0x10), std::nullopt);
  expectThreeAttempts();
  channel.current = 0;
  channel.max = 0;
  EXPECT_EQ(handle().getVCP(0x10), std::nullopt);
  EXPECT_EQ(channel.getCount, 6);
}

TEST_F(AVServiceHandleTest, AMonitorThatWakesUpIsReadAtTheSecondOrThirdAttempt) {
  for (const std::int64_t goodAttempt : {2, 3}) {
    channel.getCount = 0;
    channel.reply = [&]() -> std::vector<std::uint8_t> {
      if (channel.getCount < goodAttempt) return {0x6E, 0x80, 0xBE};
      return {0x6E, 0x88, 0x02, 0x00, 0x10, 0x00, 0x00, 0xFF, 0x00, 0x80, 0x00, 0x00};
    };
    EXPECT_EQ(handle().getVCP(0x10), (VCPReading{128, 255}));
    EXPECT_EQ(channel.getCount, goodAttempt) << "and no more often than needed";
  }
}

TEST_F(AVServiceHandleTest, AShortReplyIsFilledUpWithZeros) {
  channel.reply = [] { return std::vector<std::uint8_t>{0x02, 0x00, 0x10, 0x00, 0x01}; };
  EXPECT_EQ(handle().getVCP(0x10), (VCPReading{0, 256}));
}

TEST_F(AVServiceHandleTest, AFailedAttemptLeavesNothingInTheNext) {
  channel.reply = [&]() -> std::vector<std::uint8_t> {
    if (channel.getCount == 1) return std::vector<std::uint8_t>(12, 0xFF);
    return {0x02, 0x00, 0x10, 0x00, 0x01};
  };
  EXPECT_EQ(handle().getVCP(0x10), (VCPReading{0, 256}));
}

TEST_F(AVServiceHandleTest, TheChecksumOfAReplyIsIgnored) {
  channel.reply = [] {
    return std::vector<std::uint8_t>{0x6E, 0x88, 0x02, 0x00, 0x10, 0x00,
                                     0x00, 0x64, 0x00, 0x32, 0xEE, 0xEE};
  };
  EXPECT_EQ(handle().getVCP(0x10), (VCPReading{50, 100}));
}

TEST_F(AVServiceHandleTest, WithoutTheWriteCallNothingCanBeSetOrRead) {
  machine.loader.libraries[ioKit].erase("IOAVServiceWriteI2C");
  EXPECT_FALSE(handle().setVCP(0x10, 50));
  EXPECT_EQ(machine.time.now(), Instant()) << "and a set waits for nothing";
  EXPECT_EQ(handle().getVCP(0x10), std::nullopt);
  EXPECT_EQ(machine.time.now(), Instant(fromSeconds(0.06))) << "but a get tries three times";
  EXPECT_THAT(machine.notes.take(), IsEmpty());
}

TEST_F(AVServiceHandleTest, WithoutTheReadCallNothingIsEvenRequested) {
  machine.loader.libraries[ioKit].erase("IOAVServiceReadI2C");
  EXPECT_EQ(handle().getVCP(0x10), std::nullopt);
  EXPECT_EQ(machine.time.now(), Instant(fromSeconds(0.06)));
  EXPECT_THAT(machine.notes.take(), IsEmpty());
  EXPECT_TRUE(handle().setVCP(0x10, 50)) << "a set needs no read";
}

}  // namespace
}  // namespace brivane
