#include <gmock/gmock.h>

#include <algorithm>

#include "Machines/Desk/Hardware/Trace.h"
#include "Tests/BrivaneCore/DDC/CoordinatorFixture.h"

// Three hours of a desk with four monitors, written out: every bus call with its bytes, every log
// line, every change of the settings. One of the monitors stops answering four times, in four ways.

namespace brivane {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;

constexpr DisplayID firstID = 11;
constexpr DisplayID secondID = 12;
constexpr DisplayID moodyID = 13;
constexpr DisplayID fourthID = 14;
constexpr auto moodyPort = "disp2";

constexpr double minute = 60;
constexpr double dayLength = 3 * 60 * minute;
constexpr double resyncPeriod = 5;

// When the moody monitor fails, in seconds; never together with a resync, so that the pace of its
// retries can be seen alone.
constexpr double silentOutage = 20 * minute + 1.3;
constexpr double longOutage = 60 * minute + 1.3;
constexpr double refusingOutage = 120 * minute + 1.3;
constexpr double babblingOutage = 150 * minute + 1.3;

class Day {
 public:
  Day() {
    machine.addMonitor(firstID, "First", "disp0", 1, 10, 100).max = 100;
    machine.addMonitor(secondID, "Second", "disp1", 2, 20, 200).max = 255;
    machine.addMonitor(moodyID, "Moody", moodyPort, 3, 30, 300).max = 50;
    machine.addMonitor(fourthID, "Fourth", "disp3", 4, 40, 400).max = 7000;
    noteReplies();
    planUse();
    planMoods();
  }

  Notes live() {
    coordinator.restoreSavedBrightness([this] { machine.notes.add("restored"); });
    machine.time.every(fromSeconds(resyncPeriod), [this] { coordinator.resyncCache(); });
    machine.time.runFor(fromSeconds(dayLength));
    return machine.notes.take();
  }

  NotingMachine machine;
  std::shared_ptr<AppleDisplayBackend> appleDisplays =
      std::make_shared<AppleDisplayBackend>(machine.loader, machine.displaySystem);
  BrightnessStore store{machine.defaults(), machine.displaySystem};
  DDCDisplayCoordinator coordinator{
      machine, appleDisplays,
      std::make_shared<DisplayRegistry>(machine.displaySystem, machine.registry, machine.loader,
                                        machine.time),
      store,
      [this](DisplayID display) { machine.notes.add("explicit " + std::to_string(display)); }};
  FakeBus::Channel& moody = machine.bus.channels[moodyPort];

 private:
  void noteReplies() {
    auto& symbols = machine.loader.libraries["/System/Library/Frameworks/IOKit.framework/IOKit"];
    auto& read = std::get<ReadI2CFunction>(symbols.at("IOAVServiceReadI2C"));
    read = [this, plainRead = read](AVService& service, std::uint32_t chip, std::uint32_t address,
                                    std::span<std::uint8_t> bytes) {
      const std::int32_t status = plainRead(service, chip, address, bytes);
      machine.notes.add("reply " + std::to_string(status) + ": " + tracedBytes(bytes));
      return status;
    };
  }

  void plan(double seconds, Task task) {
    machine.time.after(fromSeconds(seconds), std::move(task));
  }

  void wakeUp() {
    machine.notes.add("wake");
    coordinator.invalidate();
    coordinator.restoreSavedBrightness([this] { machine.notes.add("restored"); });
  }

  /// The user sets a level every seven minutes and turns a monitor's own knob every eleven.
  void planUse() {
    for (int i = 1; i * 7 * minute < dayLength; ++i) {
      const auto display = static_cast<DisplayID>(firstID + static_cast<DisplayID>(i % 4));
      plan(i * 7 * minute + 0.3, [this, i, display] {
        const bool isTaken = coordinator.write(i * 13 % 101, display, true);
        machine.notes.add(isTaken ? "taken" : "not taken");
      });
    }
    for (int i = 1; i * 11 * minute < dayLength; ++i) {
      auto& channel = machine.bus.channels.at("disp" + std::to_string(i % 4));
      plan(i * 11 * minute + 2.2, [&channel, i] {
        channel.current = static_cast<std::uint16_t>(channel.max * (i * 17 % 100) / 100);
      });
    }
  }

  /// From each wake-up on, the moody monitor fails for a while: it is silent, silent until it is
  /// given up on, refuses the bus, and sends nonsense.
  void planMoods() {
    plan(silentOutage, [this] {
      moody.answers = false;
      wakeUp();
    });
    plan(silentOutage + 40, [this] { moody.answers = true; });
    plan(longOutage, [this] {
      moody.answers = false;
      wakeUp();
    });
    for (const double seconds : {1.0, 179.0, 181.0}) {
      plan(longOutage + seconds,
           [this] { machine.notes.add(coordinator.isKnownDDC(moodyID) ? "known" : "given up"); });
    }
    plan(longOutage + 250, [this] { moody.answers = true; });
    plan(refusingOutage, [this] {
      moody.writeStatus = 5;
      wakeUp();
    });
    plan(refusingOutage + 9, [this] { moody.writeStatus = 0; });
    plan(babblingOutage, [this] {
      moody.reply = [] { return std::vector<std::uint8_t>(12, 0x6E); };
      wakeUp();
    });
    plan(babblingOutage + 30, [this] { moody.reply = nullptr; });
  }
};

std::int64_t timeOf(const std::string& note) {
  return std::stoll(note.substr(1));
}

Notes notesWith(const Notes& transcript, const std::string& text) {
  Notes found;
  std::ranges::copy_if(transcript, std::back_inserter(found), [&](const std::string& note) {
    return note.find(text) != std::string::npos;
  });
  return found;
}

struct FailedRead {
  std::int64_t start = 0;
  std::int64_t end = 0;
};

/// The moody monitor's reads during an outage; attempts less than 100 ms apart are one read.

std::vector<FailedRead> failedReads(const Notes& transcript, double outage, double lengthSeconds) {
  const auto start = static_cast<std::int64_t>(outage * 1000);
  const auto recovery = start + static_cast<std::int64_t>(lengthSeconds * 1000);
  const std::string port = std::string(" ") + moodyPort + " 55/81: ";
  std::vector<FailedRead> reads;
  for (const std::string& note : transcript) {
    const bool isRequest = note.find("write" + port + "82 01 10 FD") != std::string::npos;
    const bool isReply = note.find("read" + port) != std::string::npos;
    const std::int64_t time = timeOf(note);
    if (!(isRequest || isReply) || time < start || time > recovery) continue;
    if (reads.empty() || time - reads.back().end > 100) reads.push_back({time, time});
    reads.back().end = time;
  }
  return reads;
}

/// The pauses between failed reads, in whole seconds. A read may have to wait for the re-reads of
/// the other three monitors, which take 120 ms, and so start a little late.
std::vector<std::int64_t> backoffSeconds(const std::vector<FailedRead>& reads) {
  std::vector<std::int64_t> seconds;
  for (std::size_t i = 1; i < reads.size(); ++i) {
    const std::int64_t pause = reads[i].start - reads[i - 1].end;
    EXPECT_LE(pause % 1000, 300) << "before the read at " << reads[i].start;
    seconds.push_back(pause / 1000);
  }
  return seconds;
}

TEST(CoordinatorDay, TwoDaysAreTheSameToTheByte) {
  const Notes transcript = Day().live();
  EXPECT_THAT(transcript, SizeIs(testing::Gt(20'000)));
  EXPECT_EQ(transcript, Day().live());
}

TEST(CoordinatorDay, EachOutageIsLoggedOnceWithItsRecovery) {
  // A log line comes with the results of a read: a failure 300 ms after a wake-up, when all four
  // monitors have been read (180 ms where the refused requests saved three waits), a recovery 40 ms
  // after the first read that begins with the monitor back.
  EXPECT_THAT(notesWith(Day().live(), "log "),
              ElementsAre("[1201600] log Brivane: [13] Moody stopped answering DDC",
                          "[1243260] log Brivane: [13] Moody answering again after 42s",
                          "[3601600] log Brivane: [13] Moody stopped answering DDC",
                          "[3855740] log Brivane: [13] Moody answering again after 254s",
                          "[7201480] log Brivane: [13] Moody stopped answering DDC",
                          "[7211700] log Brivane: [13] Moody answering again after 10s",
                          "[9001600] log Brivane: [13] Moody stopped answering DDC",
                          "[9032900] log Brivane: [13] Moody answering again after 31s"));
}

TEST(CoordinatorDay, AFailingMonitorIsReadAtThePaceOfTheBackOff) {
  const Notes transcript = Day().live();
  const auto backoffs = [&](double outage, double lengthSeconds) {
    return backoffSeconds(failedReads(transcript, outage, lengthSeconds));
  };
  EXPECT_THAT(backoffs(silentOutage, 40), ElementsAre(1, 2, 3, 4, 5, 5, 5, 5, 5));
  EXPECT_THAT(backoffs(refusingOutage, 9), ElementsAre(1, 2, 3));
  EXPECT_THAT(backoffs(babblingOutage, 30), ElementsAre(1, 2, 3, 4, 5, 5, 5));
  const auto longOnes = backoffs(longOutage, 250);
  ASSERT_THAT(longOnes, SizeIs(50));
  EXPECT_THAT(std::vector(longOnes.begin(), longOnes.begin() + 4), ElementsAre(1, 2, 3, 4));
  EXPECT_THAT(std::vector(longOnes.begin() + 4, longOnes.end()), Each(5));
}

TEST(CoordinatorDay, AMonitorThatIsOutForThreeMinutesIsGivenUpOnUntilItAnswers) {
  const Notes transcript = Day().live();
  EXPECT_THAT(notesWith(transcript, "known"), ElementsAre("[3602300] known", "[3780320] known"));
  EXPECT_THAT(notesWith(transcript, "given up"), ElementsAre("[3782300] given up"));
}

TEST(CoordinatorDay, AMonitorThatIsBackIsFollowedLikeTheOthers) {
  Day day;
  day.live();
  EXPECT_FALSE(day.coordinator.hasUnresolvedDisplays());
  for (const auto& [display, port] : std::map<DisplayID, std::string>{
           {firstID, "disp0"}, {secondID, "disp1"}, {moodyID, moodyPort}, {fourthID, "disp3"}}) {
    const auto& channel = day.machine.bus.channels.at(port);
    const Percent level = BrightnessScaling::percentFromRaw(channel.current, channel.max);
    EXPECT_EQ(day.coordinator.levelCache.percents.at(display), level) << display;
    EXPECT_EQ(day.store.load(display), level) << display;
  }
}

TEST(CoordinatorDay, EachWakeUpBringsTheSavedLevelsBack) {
  const Notes saved = notesWith(Day().live(), "set brightness.");
  const auto savedAfter = [&saved](double wake) {
    return std::ranges::count_if(saved, [wake](const std::string& note) {
      const double seconds = static_cast<double>(timeOf(note)) / 1000;
      return seconds >= wake && seconds < wake + 1;
    });
  };
  EXPECT_EQ(savedAfter(silentOutage), 2) << "as many as had been saved by then";
  EXPECT_EQ(savedAfter(longOutage), 4) << "a silent monitor can be written to";
  EXPECT_EQ(savedAfter(refusingOutage), 3) << "a monitor that refuses the bus can't";
  EXPECT_EQ(savedAfter(babblingOutage), 4);
}

TEST(CoordinatorDay, TheUsersWritesAreAllTaken) {
  const Notes transcript = Day().live();
  EXPECT_THAT(notesWith(transcript, "explicit"), SizeIs(25));
  EXPECT_THAT(notesWith(transcript, "] taken"), SizeIs(25));
}

}  // namespace
}  // namespace brivane
