#include <gtest/gtest.h>

#include "BrivaneCore/DDC/LevelCache.h"

namespace brivane {
namespace {

TEST(LevelCache, StoresLevelAndMaximumWhateverWasThereBefore) {
  LevelCache cache;
  cache.store(40, 255, 3);
  cache.store(100, 80, 4);
  cache.store(0, 50, 3);
  EXPECT_EQ(cache.percents, (std::map<DisplayID, Percent>{{3, 0}, {4, 100}}));
  EXPECT_EQ(cache.nativeMaxes, (std::map<DisplayID, std::int64_t>{{3, 50}, {4, 80}}));
}

}  // namespace
}  // namespace brivane
