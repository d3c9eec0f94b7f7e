#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>

#include "Machines/Desk/Hardware/MonitorFirmware.h"

namespace brivane {
namespace {

using testing::Each;

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t chip = 0x37;
constexpr std::uint32_t hostAddress = 0x51;

const Bytes getLuminance = {0x82, 0x01, 0x10, 0xFD};
const Bytes nullReplyOfTwelve = {0x6E, 0x80, 0xBE, 0, 0, 0, 0, 0, 0, 0, 0, 0};

Bytes packet(Bytes bytes) {
  bytes.push_back(std::accumulate(
      bytes.begin(), bytes.end(), std::uint8_t{0x6E},
      [](std::uint8_t sum, std::uint8_t byte) { return static_cast<std::uint8_t>(sum ^ byte); }));
  return bytes;
}

Bytes setLuminance(unsigned value) {
  return packet({0x84, 0x03, 0x10, static_cast<std::uint8_t>(value >> 8U),
                 static_cast<std::uint8_t>(value & 0xFFU)});
}

/// One monitor on a bench, and the time on its clock.
class Bench {
 public:
  explicit Bench(FirmwareDescription description = {})
      : firmware(std::move(description)), state(firmware.initialState()) {}

  std::int32_t write(const Bytes& bytes) {
    return firmware.write(state, chip, hostAddress, bytes, now);
  }

  Bytes read(std::size_t count = 12) {
    Bytes bytes(count, 0xEE);
    EXPECT_EQ(firmware.read(state, chip, hostAddress, bytes, now), 0);
    return bytes;
  }

  /// A get and its read, 40 ms later.
  Bytes ask(const Bytes& request = getLuminance) {
    EXPECT_EQ(write(request), 0);
    pass(std::chrono::milliseconds(40));
    return read();
  }

  /// The current value in a well-formed reply about luminance; -1 for any other reply.
  int askLevel() {
    const Bytes reply = ask();
    const bool isReply =
        reply[0] == 0x6E && reply[1] == 0x88 && reply[2] == 2 && reply[3] == 0 && reply[4] == 0x10;
    return isReply ? reply[8] << 8 | reply[9] : -1;
  }

  void pass(Microseconds time) { now += time; }

  MonitorFirmware firmware;
  MonitorState state;
  Instant now = Instant(std::chrono::hours(1));
};

FirmwareDescription with(std::uint16_t maximum, std::uint16_t level) {
  FirmwareDescription description;
  description.maximum = maximum;
  description.level = level;
  return description;
}

FirmwareDescription inMood(MonitorMood mood) {
  auto description = with(100, 50);
  description.mood = mood;
  return description;
}

TEST(MonitorFirmware, AnswersAGetWithTheBytesOnTheWire) {
  Bench bench(with(100, 100));
  EXPECT_EQ(bench.ask(),
            (Bytes{0x6E, 0x88, 0x02, 0x00, 0x10, 0x00, 0x00, 0x64, 0x00, 0x64, 0xA4, 0x00}));
}

TEST(MonitorFirmware, AnswersWithTwoByteNumbersHighByteFirst) {
  Bench bench(with(7000, 2100));
  EXPECT_EQ(bench.ask(),
            (Bytes{0x6E, 0x88, 0x02, 0x00, 0x10, 0x00, 0x1B, 0x58, 0x08, 0x34, 0xDB, 0x00}));
}

TEST(MonitorFirmware, ReportsACurrentValueAboveItsMaximum) {
  Bench bench(with(100, 120));
  EXPECT_EQ(bench.ask(),
            (Bytes{0x6E, 0x88, 0x02, 0x00, 0x10, 0x00, 0x00, 0x64, 0x00, 0x78, 0xB8, 0x00}));
}

TEST(MonitorFirmware, AnswersAboutACodeItLacksThatItIsUnsupported) {
  Bench bench;
  EXPECT_EQ(bench.ask(packet({0x82, 0x01, 0x00})),
            (Bytes{0x6E, 0x88, 0x02, 0x01, 0x00, 0x01, 0xFF, 0xFF, 0x00, 0x00, 0xB4, 0x00}));
  EXPECT_EQ(bench.ask(packet({0x82, 0x01, 0x12})),
            (Bytes{0x6E, 0x88, 0x02, 0x01, 0x12, 0x01, 0xFF, 0xFF, 0x00, 0x00, 0xA6, 0x00}));
}

TEST(MonitorFirmware, WithoutLuminanceAnswersAboutItThatItIsUnsupportedAndIgnoresSets) {
  auto description = with(100, 50);
  description.supportsLuminance = false;
  Bench bench(description);
  EXPECT_EQ(bench.ask()[3], 0x01);
  bench.write(setLuminance(20));
  EXPECT_EQ(bench.state.writeCount, 0u);
  EXPECT_EQ(bench.ask()[3], 0x01);
}

TEST(MonitorFirmware, GetsAndSetsEveryCodeItHas) {
  auto description = with(100, 50);
  description.features = {{0x12, 40, 7}};
  Bench bench(description);
  bench.write(packet({0x84, 0x03, 0x12, 0x00, 0x09}));
  EXPECT_EQ(bench.ask(packet({0x82, 0x01, 0x12})),
            (Bytes{0x6E, 0x88, 0x02, 0x00, 0x12, 0x00, 0x00, 0x28, 0x00, 0x09, 0x87, 0x00}));
  EXPECT_EQ(bench.askLevel(), 50);
}

TEST(MonitorFirmware, TakesASetAndCountsIt) {
  Bench bench(with(100, 50));
  EXPECT_EQ(setLuminance(50), (Bytes{0x84, 0x03, 0x10, 0x00, 0x32, 0xCB}));
  EXPECT_EQ(bench.write(setLuminance(20)), 0);
  EXPECT_EQ(bench.write(setLuminance(20)), 0);
  EXPECT_EQ(bench.askLevel(), 20);
  EXPECT_EQ(bench.state.shownLevel, 20);
  EXPECT_EQ(bench.state.writeCount, 2u);
}

TEST(MonitorFirmware, LimitsASetToItsMaximum) {
  Bench bench(with(50, 10));
  bench.write(setLuminance(0xFFFF));
  EXPECT_EQ(bench.askLevel(), 50);
}

TEST(MonitorFirmware, AnswersNotReadyWhenItWasAskedNothing) {
  Bench bench;
  EXPECT_EQ(bench.read(), nullReplyOfTwelve);
  bench.write(setLuminance(20));
  EXPECT_EQ(bench.read(), nullReplyOfTwelve);
}

TEST(MonitorFirmware, SendsAsMuchAsIsReadAndZerosBehindItsReply) {
  Bench bench(with(100, 50));
  bench.write(getLuminance);
  EXPECT_EQ(bench.read(2), (Bytes{0x6E, 0x88}));
  EXPECT_EQ(bench.read(0), Bytes{});
  const Bytes longRead = bench.read(14);
  EXPECT_EQ(Bytes(longRead.begin() + 11, longRead.end()), (Bytes{0, 0, 0}));
}

struct BadPacket {
  const char* what;
  Bytes bytes;
};

TEST(MonitorFirmware, TakesPacketsItCannotCheckWithoutAWordAndIgnoresThem) {
  const std::vector<BadPacket> packets = {
      {"checksum with the host address in it", {0x82, 0x01, 0x10, 0xAC}},
      {"wrong checksum of a set", {0x84, 0x03, 0x10, 0x00, 0x14, 0x00}},
      {"length of a get in a set", packet({0x82, 0x03, 0x10, 0x00, 0x14})},
      {"no length flag", packet({0x04, 0x03, 0x10, 0x00, 0x14})},
      {"cut off", {0x84, 0x03, 0x10}},
      {"set without a value", packet({0x82, 0x03, 0x10})},
      {"get with a value", packet({0x84, 0x01, 0x10, 0x00, 0x14})},
      {"unknown opcode", packet({0x82, 0x07, 0x10})},
      {"one byte", {0x82}},
      {"nothing", {}},
  };
  for (const auto& bad : packets) {
    Bench bench(with(100, 50));
    const auto before = bench.state;
    EXPECT_EQ(bench.write(bad.bytes), 0) << bad.what;
    EXPECT_EQ(bench.state, before) << bad.what;
  }
}

TEST(MonitorFirmware, HearsNothingAtAnotherChipOrHostAddress) {
  Bench bench(with(100, 50));
  Bytes bytes(12, 0xEE);
  EXPECT_NE(bench.firmware.write(bench.state, 0x36, hostAddress, setLuminance(9), bench.now), 0);
  EXPECT_NE(bench.firmware.read(bench.state, 0x36, hostAddress, bytes, bench.now), 0);
  EXPECT_EQ(bench.firmware.write(bench.state, chip, 0x50, setLuminance(9), bench.now), 0);
  EXPECT_EQ(bench.state.writeCount, 0u);
  EXPECT_EQ(bench.firmware.read(bench.state, chip, 0x50, bytes, bench.now), 0);
  EXPECT_THAT(bytes, Each(0));
}

// When a reply is ready

TEST(MonitorFirmware, KeepsAReplyUntilTheNextRequestAndFillsItInAsItIsRead) {
  Bench bench(with(100, 50));
  bench.write(getLuminance);
  EXPECT_EQ(bench.read()[9], 50);
  bench.write(setLuminance(20));
  EXPECT_EQ(bench.read()[9], 20);
  bench.pass(std::chrono::hours(1));
  EXPECT_EQ(bench.read()[9], 20);
}

FirmwareDescription slow(std::int64_t replyMilliseconds) {
  auto description = with(100, 50);
  description.replyMilliseconds = replyMilliseconds;
  return description;
}

TEST(MonitorFirmware, ThatIsSlowAnswersNotReadyUntilItsReplyIs) {
  Bench bench(slow(90));
  bench.write(getLuminance);
  bench.pass(Microseconds(89'999));
  EXPECT_EQ(bench.read(), nullReplyOfTwelve);
  bench.pass(Microseconds(1));
  EXPECT_EQ(bench.read()[9], 50);
}

TEST(MonitorFirmware, ThatIsSlowDoesNotStartAgainWhenAskedTheSameAgain) {
  Bench bench(slow(90));
  EXPECT_EQ(bench.ask(), nullReplyOfTwelve);
  bench.pass(std::chrono::milliseconds(20));
  EXPECT_EQ(bench.askLevel(), 50);
}

TEST(MonitorFirmware, ThatIsSlowStartsAgainOnceItsReplyWasRead) {
  Bench bench(slow(30));
  EXPECT_EQ(bench.askLevel(), 50);
  bench.write(getLuminance);
  EXPECT_EQ(bench.read(), nullReplyOfTwelve);
}

TEST(MonitorFirmware, ThatIsSlowStartsAgainForAnotherCode) {
  auto description = slow(90);
  description.features = {{0x12, 40, 7}};
  Bench bench(description);
  bench.write(getLuminance);
  bench.pass(std::chrono::milliseconds(80));
  EXPECT_EQ(bench.ask(packet({0x82, 0x01, 0x12})), nullReplyOfTwelve);
  bench.pass(std::chrono::milliseconds(50));
  EXPECT_EQ(bench.read()[4], 0x12);
}

TEST(MonitorFirmware, ThatIsSlowKeepsPreparingItsReplyThroughASet) {
  Bench bench(slow(90));
  bench.write(getLuminance);
  bench.pass(std::chrono::milliseconds(60));
  bench.write(setLuminance(20));
  bench.pass(std::chrono::milliseconds(30));
  EXPECT_EQ(bench.read()[9], 20);
}

TEST(MonitorFirmware, CountsARequestFromBeforeARestartAsLongPast) {
  Bench bench(slow(90));
  bench.write(getLuminance);
  bench.now = Instant(std::chrono::seconds(1));
  EXPECT_EQ(bench.read()[9], 50);
}

// Moods

TEST(MonitorFirmware, ThatIsSilentTakesEverythingDoesNothingAndReadsZeros) {
  Bench bench(inMood(MonitorMood::silent));
  EXPECT_EQ(bench.write(setLuminance(20)), 0);
  EXPECT_THAT(bench.ask(), Each(0));
  EXPECT_EQ(bench.state.shownLevel, 50);
  EXPECT_EQ(bench.state.writeCount, 0u);
}

TEST(MonitorFirmware, WithBusErrorsAcknowledgesNothing) {
  Bench bench(inMood(MonitorMood::busError));
  EXPECT_NE(bench.write(setLuminance(20)), 0);
  EXPECT_NE(bench.write(getLuminance), 0);
  Bytes bytes(12, 0xEE);
  EXPECT_NE(bench.firmware.read(bench.state, chip, hostAddress, bytes, bench.now), 0);
  EXPECT_EQ(bench.state.shownLevel, 50);
}

TEST(MonitorFirmware, WithNullRepliesTakesSetsButNeverAnswers) {
  Bench bench(inMood(MonitorMood::nullReply));
  bench.write(setLuminance(20));
  EXPECT_EQ(bench.ask(), nullReplyOfTwelve);
  bench.pass(std::chrono::hours(1));
  EXPECT_EQ(bench.read(), nullReplyOfTwelve);
  EXPECT_EQ(bench.state.shownLevel, 20);
}

TEST(MonitorFirmware, ThatIsGarbledSendsNoByteRight) {
  Bench bench(inMood(MonitorMood::garbled));
  const Bytes wrong = bench.ask();
  bench.state.mood = MonitorMood::answering;
  const Bytes right = bench.read();
  for (std::size_t i = 0; i < right.size(); ++i) EXPECT_NE(wrong[i], right[i]) << i;
}

TEST(MonitorFirmware, ThatIsStaleAnswersForTheCodeOfTheRequestBefore) {
  auto description = inMood(MonitorMood::stale);
  description.features = {{0x12, 40, 7}};
  Bench bench(description);
  EXPECT_EQ(bench.ask()[3], 0x01) << "before the first request there was none";
  EXPECT_EQ(bench.ask(packet({0x82, 0x01, 0x12}))[4], 0x10);
  EXPECT_EQ(bench.ask()[4], 0x12);
  EXPECT_EQ(bench.ask()[4], 0x10);
}

TEST(MonitorFirmware, ThatIsShiftedLeavesOutItsFirstByte) {
  Bench bench(inMood(MonitorMood::shifted));
  EXPECT_EQ(bench.ask(),
            (Bytes{0x88, 0x02, 0x00, 0x10, 0x00, 0x00, 0x64, 0x00, 0x32, 0xF2, 0x00, 0x00}));
}

TEST(MonitorFirmware, ThatDoublesSendsItsFirstByteTwice) {
  Bench bench(inMood(MonitorMood::doubled));
  EXPECT_EQ(bench.ask(),
            (Bytes{0x6E, 0x6E, 0x88, 0x02, 0x00, 0x10, 0x00, 0x00, 0x64, 0x00, 0x32, 0xF2}));
}

TEST(MonitorFirmware, ThatIsForgetfulLosesItsReplyToASetInBetween) {
  Bench bench(inMood(MonitorMood::forgetful));
  bench.write(getLuminance);
  bench.write(setLuminance(20));
  EXPECT_EQ(bench.read(), nullReplyOfTwelve);
  EXPECT_EQ(bench.askLevel(), 20);
}

TEST(MonitorFirmware, ThatIgnoresEveryOtherWriteDropsTheFirstAndTakesTheSecond) {
  auto description = with(100, 50);
  description.ignoresEveryOtherWrite = true;
  Bench bench(description);
  bench.write(setLuminance(10));
  EXPECT_EQ(bench.askLevel(), 50);
  bench.write(setLuminance(20));
  EXPECT_EQ(bench.askLevel(), 20);
  bench.write(setLuminance(30));
  EXPECT_EQ(bench.askLevel(), 20);
  EXPECT_EQ(bench.state.writeCount, 1u);
}

TEST(MonitorFirmware, ShowsAndReportsWhatItsButtonsSetWithoutCountingAWrite) {
  Bench bench(with(100, 50));
  MonitorFirmware::setLevelByButtons(bench.state, 33);
  EXPECT_EQ(bench.askLevel(), 33);
  EXPECT_EQ(bench.state.shownLevel, 33);
  EXPECT_EQ(bench.state.writeCount, 0u);
}

// Sleep

TEST(MonitorFirmware, ThatIsAsleepAcknowledgesNothing) {
  auto description = with(100, 50);
  description.isAsleep = true;
  Bench bench(description);
  EXPECT_NE(bench.write(setLuminance(20)), 0);
  bench.firmware.wake(bench.state, bench.now);
  EXPECT_EQ(bench.askLevel(), 50);
}

TEST(MonitorFirmware, ForgetsItsReplyWhenItFallsAsleep) {
  Bench bench(with(100, 50));
  bench.write(getLuminance);
  MonitorFirmware::fallAsleep(bench.state);
  bench.firmware.wake(bench.state, bench.now);
  EXPECT_EQ(bench.read(), nullReplyOfTwelve);
}

TEST(MonitorFirmware, ThatIsSlowToWakeIsNotReadyAndDeafUntilThen) {
  auto description = with(100, 50);
  description.wakeSeconds = 3;
  Bench bench(description);
  EXPECT_EQ(bench.askLevel(), 50) << "it was never asleep";
  MonitorFirmware::fallAsleep(bench.state);
  bench.firmware.wake(bench.state, bench.now);
  bench.write(setLuminance(20));
  EXPECT_EQ(bench.ask(), nullReplyOfTwelve);
  bench.pass(std::chrono::milliseconds(2959));
  EXPECT_EQ(bench.read(), nullReplyOfTwelve);
  bench.pass(std::chrono::milliseconds(1));
  EXPECT_EQ(bench.read(), nullReplyOfTwelve) << "it did not hear the request";
  EXPECT_EQ(bench.askLevel(), 50);
}

TEST(MonitorFirmware, ThatWasWokenBeforeARestartIsAwake) {
  auto description = with(100, 50);
  description.wakeSeconds = 3;
  Bench bench(description);
  MonitorFirmware::fallAsleep(bench.state);
  bench.firmware.wake(bench.state, bench.now);
  bench.now = Instant(std::chrono::seconds(1));
  EXPECT_EQ(bench.askLevel(), 50);
}

TEST(MonitorFirmware, ThatRevertsShowsItsOldLevelAfterWakingAndReportsWhatWasSet) {
  auto description = with(100, 80);
  description.revertsAfterWake = true;
  Bench bench(description);
  bench.write(setLuminance(20));
  MonitorFirmware::fallAsleep(bench.state);
  EXPECT_EQ(bench.state.shownLevel, 20);
  bench.firmware.wake(bench.state, bench.now);
  EXPECT_EQ(bench.state.shownLevel, 80);
  EXPECT_EQ(bench.askLevel(), 20);
  bench.write(setLuminance(20));
  EXPECT_EQ(bench.state.shownLevel, 20);
}

TEST(MonitorFirmware, ThatIsAwakeIsNotWokenAgain) {
  auto description = with(100, 80);
  description.revertsAfterWake = true;
  description.wakeSeconds = 3;
  Bench bench(description);
  bench.write(setLuminance(20));
  bench.firmware.wake(bench.state, bench.now);
  EXPECT_EQ(bench.state.shownLevel, 20);
  EXPECT_EQ(bench.askLevel(), 20);
}

}  // namespace
}  // namespace brivane
