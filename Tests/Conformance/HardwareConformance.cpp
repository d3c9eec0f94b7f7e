// The registry of hardware, the entry points and the I2C bus behind them, and gamma tables.
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <set>
#include <thread>

#include "Tests/Conformance/MachineUnderTest.h"
#include "Tests/Support/SystemLibraries.h"

namespace brivane {
namespace {

using testing::ElementsAre;

// The registry of hardware

class IORegistryConformance : public MachineConformance {
 protected:
  std::vector<std::shared_ptr<const RegistryEntry>> allEntries() {
    std::vector<std::shared_ptr<const RegistryEntry>> all;
    const auto walk = machine.ioRegistry().allServices();
    while (auto entry = walk->next()) all.push_back(entry);
    return all;
  }
};

TEST_F(IORegistryConformance, EveryEntryHasAClassAndANameAndLeadsToARoot) {
  const auto entries = allEntries();
  ASSERT_FALSE(entries.empty());
  for (const auto& entry : entries) {
    EXPECT_TRUE(entry->className().has_value());
    EXPECT_TRUE(entry->name().has_value());
    auto above = entry->parent();
    int steps = 0;
    while (above && steps < 100) {
      above = above->parent();
      ++steps;
    }
    EXPECT_LT(steps, 100);
  }
}

TEST_F(IORegistryConformance, ParentsComeBeforeTheirChildrenAndNothingAfterTheEnd) {
  const auto walk = machine.ioRegistry().allServices();
  std::set<std::string> namesBefore;
  while (const auto entry = walk->next()) {
    const auto above = entry->parent();
    if (above) {
      EXPECT_THAT(namesBefore, testing::Contains(*above->name())) << *entry->name();
    }
    namesBefore.insert(*entry->name());
  }
  EXPECT_EQ(walk->next(), nullptr);
}

TEST_F(IORegistryConformance, AnEntryOutlivesItsWalk) {
  std::shared_ptr<const RegistryEntry> last;
  {
    const auto walk = machine.ioRegistry().allServices();
    while (auto entry = walk->next()) last = std::move(entry);
  }
  ASSERT_NE(last, nullptr);
  EXPECT_TRUE(last->name().has_value());
  EXPECT_NE(last->parent(), nullptr);
}

TEST_F(IORegistryConformance, AMissingPropertyIsAbsent) {
  for (const auto& entry : allEntries()) EXPECT_EQ(entry->property("No such key"), std::nullopt);
}

TEST_F(IORegistryConformance, AMonitorThatSpeaksDDCHasAPanelAndAnExternalProxy) {
  std::set<std::int64_t> products;
  int externalProxies = 0;
  for (const auto& entry : allEntries()) {
    const auto attributes = entry->property("DisplayAttributes");
    if (attributes && attributes->dictionary()) {
      const auto& product = attributes->dictionary()->at("ProductAttributes");
      products.insert(product.dictionary()->at("ProductID").asInteger());
    }
    const auto location = entry->property("Location");
    if (entry->className() == "DCPAVServiceProxy" && location &&
        *location == PropertyValue{std::string("External")}) {
      ++externalProxies;
    }
  }
  int monitors = 0;
  for (const auto& expected : underTest->expectedDisplays()) {
    if (expected.ddcMaximum == 0) continue;
    ++monitors;
    EXPECT_THAT(products, testing::Contains(expected.panel.model)) << expected.name;
  }
  ASSERT_GT(monitors, 0);
  EXPECT_GE(externalProxies, monitors);
}

TEST_F(IORegistryConformance, TwoWalksGiveTheSameEntries) {
  std::vector<std::string> names;
  for (const auto& entry : allEntries()) names.push_back(*entry->name());
  std::vector<std::string> again;
  for (const auto& entry : allEntries()) again.push_back(*entry->name());
  EXPECT_EQ(names, again);
}

// Entry points

class SymbolLoaderConformance : public MachineConformance {
 protected:
  Symbol find(const char* library, const char* name) {
    return machine.symbols().find(machine.symbols().open(library, lazyBinding), name);
  }
};

TEST_F(SymbolLoaderConformance, AMissingLibraryDoesNotOpen) {
  EXPECT_EQ(machine.symbols().open("/no/such/library", lazyBinding), 0);
}

TEST_F(SymbolLoaderConformance, AnUnknownNameFindsNothing) {
  EXPECT_TRUE(std::holds_alternative<std::monostate>(find(ioKit, "NoSuchFunction")));
  EXPECT_TRUE(std::holds_alternative<std::monostate>(
      machine.symbols().find(globalNamespace, "NoSuchFunction")));
}

TEST_F(SymbolLoaderConformance, EachNameGivesItsOwnTypeOfFunction) {
  EXPECT_TRUE(
      std::holds_alternative<CreateAVServiceFunction>(find(ioKit, "IOAVServiceCreateWithService")));
  EXPECT_TRUE(std::holds_alternative<WriteI2CFunction>(find(ioKit, "IOAVServiceWriteI2C")));
  EXPECT_TRUE(std::holds_alternative<ReadI2CFunction>(find(ioKit, "IOAVServiceReadI2C")));
}

TEST_F(SymbolLoaderConformance, DisplayServicesAreCompleteOrMissing) {
  const bool hasGet = std::holds_alternative<GetBrightnessFunction>(
      find(displayServices, "DisplayServicesGetBrightness"));
  const bool hasSet = std::holds_alternative<SetBrightnessFunction>(
      find(displayServices, "DisplayServicesSetBrightness"));
  EXPECT_EQ(hasGet, hasSet);
}

// The bus

class BusConformance : public SymbolLoaderConformance {
 protected:
  static constexpr std::uint32_t chip = 0x37;
  static constexpr std::uint32_t hostAddress = 0x51;

  BusConformance()
      : create(std::get<CreateAVServiceFunction>(find(ioKit, "IOAVServiceCreateWithService"))),
        write(std::get<WriteI2CFunction>(find(ioKit, "IOAVServiceWriteI2C"))),
        read(std::get<ReadI2CFunction>(find(ioKit, "IOAVServiceReadI2C"))) {}

  /// The services of all external proxies.
  std::vector<std::shared_ptr<AVService>> services() {
    std::vector<std::shared_ptr<AVService>> all;
    const auto walk = machine.ioRegistry().allServices();
    while (const auto entry = walk->next()) {
      const auto location = entry->property("Location");
      const bool isExternal = location && *location == PropertyValue{std::string("External")};
      if (entry->className() != "DCPAVServiceProxy" || !isExternal) continue;
      if (auto service = create(*entry)) all.push_back(service);
    }
    return all;
  }

  /// A packet as Brivane builds it, whose checksum starts with 0x6E and omits the host address.
  static std::vector<std::uint8_t> packet(std::vector<std::uint8_t> bytes) {
    std::uint8_t checksum = 0x6E;
    for (const std::uint8_t byte : bytes) checksum = static_cast<std::uint8_t>(checksum ^ byte);
    bytes.push_back(checksum);
    return bytes;
  }

  struct Reading {
    int current = 0;
    int max = 0;
  };

  Reading readLuminance(AVService& service) {
    EXPECT_EQ(write(service, chip, hostAddress, packet({0x82, 0x01, 0x10})), 0);
    machine.runtime().sleep(std::chrono::milliseconds(50));
    std::array<std::uint8_t, 12> reply{};
    EXPECT_EQ(read(service, chip, hostAddress, reply), 0);
    EXPECT_THAT(std::vector(reply.begin(), reply.begin() + 5), ElementsAre(0x6E, 0x88, 2, 0, 0x10));
    return {reply[8] << 8 | reply[9], reply[6] << 8 | reply[7]};
  }

  const CreateAVServiceFunction create;
  const WriteI2CFunction write;
  const ReadI2CFunction read;
};

TEST_F(BusConformance, AGetReturnsTheShownLuminance) {
  const auto expected = underTest->expectedDisplays();
  const auto all = services();
  ASSERT_FALSE(all.empty());
  std::multiset<std::pair<int, int>> answers;
  for (const auto& service : all) {
    const Reading reading = readLuminance(*service);
    answers.insert({reading.current, reading.max});
  }
  std::multiset<std::pair<int, int>> shown;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    if (expected[i].ddcMaximum == 0) continue;
    shown.insert({underTest->shownLuminance(i), expected[i].ddcMaximum});
  }
  EXPECT_EQ(answers, shown);
}

TEST_F(BusConformance, ASetChangesOneMonitorAndNoOther) {
  const auto all = services();
  const auto expected = underTest->expectedDisplays();
  std::vector<int> before;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    before.push_back(expected[i].ddcMaximum == 0 ? -1 : underTest->shownLuminance(i));
  }
  EXPECT_EQ(write(*all.front(), chip, hostAddress, packet({0x84, 0x03, 0x10, 0x00, 0x21})), 0);
  int changed = 0;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    if (expected[i].ddcMaximum == 0 || underTest->shownLuminance(i) == before[i]) continue;
    ++changed;
    EXPECT_EQ(underTest->shownLuminance(i), 0x21);
  }
  EXPECT_EQ(changed, 1);
}

TEST_F(BusConformance, APacketWithAWrongChecksumIsIgnoredByTheMonitor) {
  const auto all = services();
  const int before = readLuminance(*all.front()).current;
  auto wrong = packet({0x84, 0x03, 0x10, 0x00, 0x21});
  wrong.back() ^= 1;
  write(*all.front(), chip, hostAddress, wrong);
  EXPECT_EQ(readLuminance(*all.front()).current, before);
}

TEST_F(BusConformance, NothingAnswersAtAnotherChipAddress) {
  const auto all = services();
  EXPECT_NE(write(*all.front(), 0x38, hostAddress, packet({0x82, 0x01, 0x10})), 0);
  std::array<std::uint8_t, 12> reply{};
  EXPECT_NE(read(*all.front(), 0x38, hostAddress, reply), 0);
}

TEST_F(BusConformance, TwoThreadsMayUseOneServiceAtOnce) {
  const auto service = services().front();
  const auto set = [&] {
    for (int i = 0; i < 20; ++i) {
      EXPECT_EQ(write(*service, chip, hostAddress, packet({0x84, 0x03, 0x10, 0x00, 0x14})), 0);
    }
  };
  std::thread other(set);
  set();
  other.join();
  EXPECT_EQ(readLuminance(*service).current, 0x14);
}

// Gamma

class GammaTablesConformance : public MachineConformance {
 public:
  ~GammaTablesConformance() override { gamma.restoreCalibratedTables(); }

 protected:
  struct Table {
    std::vector<float> red, green, blue;
  };

  GammaTablesConformance() : gamma(machine.gammaTables()), ids(displayIDs()) {}

  Table read(DisplayID display) {
    const auto count = gamma.capacity(display);
    Table table{std::vector<float>(count), std::vector<float>(count), std::vector<float>(count)};
    std::uint32_t returned = 0;
    EXPECT_EQ(gamma.readTable(display, table.red, table.green, table.blue, returned), 0);
    EXPECT_EQ(returned, count);
    return table;
  }

  static std::vector<float> ramp(std::uint32_t count, double peak) {
    std::vector<float> curve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
      curve[i] = static_cast<float>(peak * i / (count - 1));
    }
    return curve;
  }

  static void expectNear(const std::vector<float>& found, const std::vector<float>& expected) {
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
      ASSERT_NEAR(found[i], expected[i], 1.0 / 65535) << i;
    }
  }

  GammaTables& gamma;
  const std::vector<DisplayID> ids;
};

TEST_F(GammaTablesConformance, EveryDisplayHasATableThatRises) {
  for (const DisplayID display : ids) {
    ASSERT_GE(gamma.capacity(display), 2u);
    const Table table = read(display);
    EXPECT_TRUE(std::is_sorted(table.red.begin(), table.red.end()));
    EXPECT_GT(table.green.back(), 0.9F);
  }
}

TEST_F(GammaTablesConformance, AWrittenTableIsReadBackPerChannel) {
  const auto count = gamma.capacity(ids.front());
  const auto red = ramp(count, 1.0);
  const auto green = ramp(count, 0.59);
  const auto blue = ramp(count, 0.18);
  ASSERT_EQ(gamma.writeTable(ids.front(), red, green, blue), 0);
  const Table table = read(ids.front());
  expectNear(table.red, red);
  expectNear(table.green, green);
  expectNear(table.blue, blue);
}

TEST_F(GammaTablesConformance, AWriteChangesThatDisplayAndNoOther) {
  const Table before = read(ids[1]);
  const auto dark = ramp(gamma.capacity(ids[0]), 0.5);
  ASSERT_EQ(gamma.writeTable(ids[0], dark, dark, dark), 0);
  expectNear(read(ids[1]).red, before.red);
}

TEST_F(GammaTablesConformance, ATableOfAnotherSizeIsResampled) {
  const auto count = gamma.capacity(ids.front());
  const auto half = ramp(count / 2, 0.5);
  ASSERT_EQ(gamma.writeTable(ids.front(), half, half, half), 0);
  expectNear(read(ids.front()).red, ramp(count, 0.5));
}

TEST_F(GammaTablesConformance, ATableOfOneSampleAppliesToEveryLevel) {
  const std::vector<float> grey = {0.5F};
  ASSERT_EQ(gamma.writeTable(ids.front(), grey, grey, grey), 0);
  const auto count = gamma.capacity(ids.front());
  expectNear(read(ids.front()).green, std::vector<float>(count, 0.5F));
}

TEST_F(GammaTablesConformance, RestoringPutsTheCalibratedTablesOfAllDisplaysBack) {
  const auto darken = [&] {
    for (const DisplayID display : ids) {
      const auto dark = ramp(gamma.capacity(display), 0.3);
      EXPECT_EQ(gamma.writeTable(display, dark, dark, dark), 0);
    }
  };
  darken();
  gamma.restoreCalibratedTables();
  std::vector<Table> calibrated(ids.size());
  std::ranges::transform(ids, calibrated.begin(),
                         [this](DisplayID display) { return read(display); });
  EXPECT_GT(calibrated.front().blue.back(), 0.9F);
  darken();
  gamma.restoreCalibratedTables();
  for (std::size_t i = 0; i < ids.size(); ++i) expectNear(read(ids[i]).blue, calibrated[i].blue);
}

TEST_F(GammaTablesConformance, AReadFillsNoMoreThanFits) {
  std::array<float, 3> red{-1, -1, -1};
  std::array<float, 3> green{};
  std::array<float, 3> blue{};
  std::uint32_t returned = 0;
  EXPECT_EQ(gamma.readTable(ids.front(), std::span(red).first(2), std::span(green).first(2),
                            std::span(blue).first(2), returned),
            0);
  EXPECT_GE(returned, 2u);
  EXPECT_GE(red[0], 0);
  EXPECT_EQ(red[2], -1);
}

TEST_F(GammaTablesConformance, UnknownDisplaysHaveNoTable) {
  const DisplayID unknown = unknownDisplay();
  EXPECT_EQ(gamma.capacity(unknown), 0u);
  const auto curve = ramp(256, 1.0);
  EXPECT_NE(gamma.writeTable(unknown, curve, curve, curve), 0);
  std::array<float, 2> sample{};
  std::uint32_t returned = 0;
  EXPECT_NE(gamma.readTable(unknown, sample, sample, sample, returned), 0);
}

TEST_F(GammaTablesConformance, AnotherProcessReadsTheSameTable) {
  const auto dark = ramp(gamma.capacity(ids.front()), 0.5);
  ASSERT_EQ(gamma.writeTable(ids.front(), dark, dark, dark), 0);
  const auto second = underTest->secondProcess();
  const auto count = second->gammaTables().capacity(ids.front());
  std::vector<float> whole(count);
  std::vector<float> others(count);
  std::uint32_t returned = 0;
  ASSERT_EQ(second->gammaTables().readTable(ids.front(), whole, others, others, returned), 0);
  EXPECT_NEAR(whole.back(), 0.5, 1.0 / 65535);
}

}  // namespace
}  // namespace brivane
