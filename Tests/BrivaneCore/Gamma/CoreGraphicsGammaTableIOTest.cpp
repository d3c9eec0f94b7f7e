#include <gmock/gmock.h>

#include "BrivaneCore/Gamma/CoreGraphicsGammaTableIO.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct CoreGraphicsGammaTableIOTest : testing::Test {
  FakeGammaTables tables;
  CoreGraphicsGammaTableIO io{tables};
};

TEST_F(CoreGraphicsGammaTableIOTest, CapacityIsTheTablesOwn) {
  tables.capacities = {{1, 1024}, {2, 0}};
  EXPECT_EQ(io.capacity(1), 1024);
  EXPECT_EQ(io.capacity(2), 0);
}

TEST_F(CoreGraphicsGammaTableIOTest, AskedFor1024EntriesADisplayWith256Yields256) {
  tables.add(1, 256);
  EXPECT_EQ(io.read(1, 1024), GammaRamp::identity(256));
  EXPECT_THAT(tables.calls, ElementsAre("read 1 1024"));
}

TEST_F(CoreGraphicsGammaTableIOTest, ADisplayThatClaimsMoreThanWasAskedForYieldsWhatWasAskedFor) {
  tables.tables[1] = {{0, 0.1F, 0.2F}, {0.3F, 0.4F, 0.5F}, {0.6F, 0.7F, 0.8F}};
  EXPECT_EQ(io.read(1, 2), (GammaRamp{{0, 0.1F}, {0.3F, 0.4F}, {0.6F, 0.7F}}));
}

TEST_F(CoreGraphicsGammaTableIOTest, AReadOfNoEntriesDoesNotAskTheDisplay) {
  tables.add(1, 256);
  EXPECT_EQ(io.read(1, 0), std::nullopt);
  EXPECT_EQ(io.read(1, -1), std::nullopt);
  EXPECT_THAT(tables.calls, IsEmpty());
}

TEST_F(CoreGraphicsGammaTableIOTest, AFailedReadYieldsNothing) {
  tables.add(1, 4);
  tables.readStatus[1] = 1000;
  EXPECT_EQ(io.read(1, 4), std::nullopt);
}

TEST_F(CoreGraphicsGammaTableIOTest, NoReturnedSamplesYieldNothing) {
  tables.tables[1] = {};
  EXPECT_EQ(io.read(1, 4), std::nullopt);
}

class ForgetfulTables : public FakeGammaTables {
 public:
  std::int32_t readTable(DisplayID, std::span<float>, std::span<float>, std::span<float>,
                         std::uint32_t& returned) override {
    returned += given;
    return status;
  }
  std::int32_t status = 0;
  std::uint32_t given = 0;
};

TEST(CoreGraphicsGammaTableIO, SamplesAndTheirCountStartAtZero) {
  ForgetfulTables tables;
  CoreGraphicsGammaTableIO io(tables);
  EXPECT_EQ(io.read(1, 2), std::nullopt);
  tables.given = 2;
  EXPECT_EQ(io.read(1, 2), (GammaRamp{{0, 0}, {0, 0}, {0, 0}}));
  tables.status = 1000;
  EXPECT_EQ(io.read(1, 2), std::nullopt);
}

TEST_F(CoreGraphicsGammaTableIOTest, WritesEachChannel) {
  tables.add(7, 2);
  EXPECT_TRUE(io.write({{0, 0.1F}, {0, 0.2F}, {0, 0.3F}}, 7));
  EXPECT_EQ(tables.tables[7], (FakeGammaTables::Table{{0, 0.1F}, {0, 0.2F}, {0, 0.3F}}));
}

TEST_F(CoreGraphicsGammaTableIOTest, AWriteThatTheDisplayRefusesFails) {
  for (const std::int32_t status : {1000, -1, 1}) {
    tables.writeStatus[7] = status;
    EXPECT_FALSE(io.write(GammaRamp::identity(2), 7)) << status;
  }
}

TEST_F(CoreGraphicsGammaTableIOTest, AMalformedRampIsRefusedWithoutTouchingTheDisplay) {
  EXPECT_FALSE(io.write({{0, 1}, {0}, {0, 1}}, 1));
  EXPECT_FALSE(io.write({{0, 1}, {0, 1}, {0, 1, 1}}, 1));
  EXPECT_FALSE(io.write({}, 1));
  EXPECT_THAT(tables.calls, IsEmpty());
}

TEST_F(CoreGraphicsGammaTableIOTest, TheDefaultsAreTheCalibratedTables) {
  io.restoreColorSyncDefaults();
  EXPECT_THAT(tables.calls, ElementsAre("restore all"));
}

TEST_F(CoreGraphicsGammaTableIOTest, ACountBeyond32BitsAborts) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(io.read(1, std::int64_t{1} << 32), "more samples than 32 bits can count");
}

}  // namespace
}  // namespace brivane
