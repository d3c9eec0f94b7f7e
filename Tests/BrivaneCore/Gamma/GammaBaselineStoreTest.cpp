#include <gmock/gmock.h>

#include "BrivaneCore/Gamma/CoreGraphicsGammaTableIO.h"
#include "BrivaneCore/Gamma/GammaBaselineStore.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct GammaBaselineStoreTest : testing::Test {
  FakeGammaTables tables;
  GammaBaselineStore store{std::make_shared<CoreGraphicsGammaTableIO>(tables)};
};

TEST_F(GammaBaselineStoreTest, CapturesTheWholeTableAtTheFirstNeedAndNeverAgain) {
  tables.add(1, 16);
  EXPECT_EQ(store.baseline(1), GammaRamp::identity(16));
  tables.tables[1] = {{0, 0.1F}, {0, 0.1F}, {0, 0.1F}};
  EXPECT_EQ(store.baseline(1), GammaRamp::identity(16));
  EXPECT_THAT(tables.calls, ElementsAre("capacity 1", "read 1 16"));
}

TEST_F(GammaBaselineStoreTest, ADisplayWithoutATableNeverGetsABaselineAndIsAskedAgainEachTime) {
  EXPECT_EQ(store.baseline(1), std::nullopt);
  EXPECT_EQ(store.baseline(1), std::nullopt);
  EXPECT_EQ(store.cached(1), std::nullopt);
  EXPECT_THAT(tables.calls, ElementsAre("capacity 1", "capacity 1"));
}

class TablelessIO : public GammaTableIO {
 public:
  std::int64_t capacity(DisplayID) override { return 0; }
  std::optional<GammaRamp> read(DisplayID, std::int64_t) override { return GammaRamp::identity(2); }
  bool write(const GammaRamp&, DisplayID) override { return false; }
  void restoreColorSyncDefaults() override {}
};

TEST(GammaBaselineStore, ADisplayWithoutATableIsNotRead) {
  GammaBaselineStore store(std::make_shared<TablelessIO>());
  EXPECT_EQ(store.baseline(1), std::nullopt);
}

TEST_F(GammaBaselineStoreTest, AFailedReadIsTriedAgain) {
  tables.add(1, 2);
  tables.readStatus[1] = 1000;
  EXPECT_EQ(store.baseline(1), std::nullopt);
  EXPECT_EQ(store.cached(1), std::nullopt);
  tables.readStatus[1] = 0;
  EXPECT_EQ(store.baseline(1), GammaRamp::identity(2));
  EXPECT_EQ(store.cached(1), GammaRamp::identity(2));
}

TEST_F(GammaBaselineStoreTest, LookingForACachedBaselineNeverReadsTheDisplay) {
  tables.add(1, 2);
  EXPECT_EQ(store.cached(1), std::nullopt);
  EXPECT_THAT(tables.calls, IsEmpty());
}

TEST_F(GammaBaselineStoreTest, KeepsWhatWasReadEvenAboveWhite) {
  const GammaRamp ramp{{0, 1.5F}, {0, 1.6F}, {0, 1.7F}};
  tables.capacities[1] = 2;
  tables.tables[1] = {ramp.red, ramp.green, ramp.blue};
  EXPECT_EQ(store.baseline(1), ramp);
  EXPECT_EQ(store.cached(1), ramp);
}

TEST_F(GammaBaselineStoreTest, ForgettingADisplayLeavesTheOthers) {
  tables.add(1, 2);
  tables.add(2, 2);
  store.baseline(1);
  store.baseline(2);
  store.forget(1);
  store.forget(3);
  EXPECT_EQ(store.cached(1), std::nullopt);
  EXPECT_NE(store.cached(2), std::nullopt);
}

TEST_F(GammaBaselineStoreTest, InvalidationKeepsExactlyTheDisplaysThatSatisfyThePredicate) {
  for (const DisplayID display : {1U, 2U, 3U}) {
    tables.add(display, 2);
    store.baseline(display);
  }
  store.invalidateUnless([](DisplayID) { return true; });
  EXPECT_TRUE(store.cached(1) && store.cached(2) && store.cached(3));
  store.invalidateUnless([](DisplayID display) { return display == 2; });
  EXPECT_EQ(store.cached(1), std::nullopt);
  EXPECT_NE(store.cached(2), std::nullopt);
  EXPECT_EQ(store.cached(3), std::nullopt);
  store.invalidateUnless([](DisplayID) { return false; });
  EXPECT_EQ(store.cached(2), std::nullopt);
}

}  // namespace
}  // namespace brivane
