#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Machines/Common/Files/WholeFile.h"
#include "Machines/Common/Processes/ThreadRuntime.h"
#include "Machines/Desk/State/FolderWatch.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

class FolderWatchTest : public testing::Test {
 protected:
  /// Whether something is heard before much time has passed.
  bool hears(Microseconds patience = std::chrono::seconds(20)) {
    const int before = heard;
    const auto timeout = runtime.after(patience, [this] { runtime.stop(); });
    runtime.run();
    runtime.cancel(timeout);
    return heard > before;
  }
  bool hearsNothing() { return !hears(std::chrono::milliseconds(50)); }

  std::unique_ptr<FolderWatch> watch(const std::string& fileName) {
    return std::make_unique<FolderWatch>(state, fileName, runtime, [this] {
      ++heard;
      runtime.stop();
    });
  }

  TemporaryFolder folder;
  const std::filesystem::path state = folder / "state";
  ThreadRuntime runtime;
  int heard = 0;
};

TEST_F(FolderWatchTest, ReportsAReplacedOrRemovedFileOnTheMainQueue) {
  const auto watching = watch("");
  ASSERT_TRUE(watching->isWatching());
  writeWholeFile(state / "one.json", "1");
  EXPECT_EQ(heard, 0);
  EXPECT_TRUE(hears());
  writeWholeFile(state / "one.json", "2");
  EXPECT_TRUE(hears());
  std::filesystem::remove(state / "one.json");
  EXPECT_TRUE(hears());
}

TEST_F(FolderWatchTest, IgnoresOtherFilesWhenOneIsWatched) {
  const auto watching = watch("one.json");
  writeWholeFile(state / "two.json", "2");
  EXPECT_TRUE(hearsNothing());
  writeWholeFile(state / "one.json", "1");
  EXPECT_TRUE(hears());
}

TEST_F(FolderWatchTest, IgnoresLocks) {
  const auto watching = watch("");
  std::ofstream(state / "lock") << "";
  std::filesystem::rename(state / "lock", state / "other.lock");
  EXPECT_TRUE(hearsNothing());
}

TEST_F(FolderWatchTest, MergesTheChangesBeforeItsTask) {
  const auto watching = watch("one.json");
  for (int i = 0; i < 100; ++i) writeWholeFile(state / "one.json", std::to_string(i));
  EXPECT_TRUE(hears());
  while (!hearsNothing()) {
  }
  EXPECT_LT(heard, 100);
}

TEST_F(FolderWatchTest, GoesOnWhenTheFolderIsRemovedAndCreatedAgain) {
  const auto watching = watch("one.json");
  for (int round = 0; round < 3; ++round) {
    std::filesystem::remove_all(state);
    while (!hearsNothing()) {
    }
    writeWholeFile(state / "one.json", "1");
    EXPECT_TRUE(hears()) << round;
    while (!hearsNothing()) {
    }
    writeWholeFile(state / "one.json", "2");
    EXPECT_TRUE(hears()) << round;
  }
}

TEST_F(FolderWatchTest, ReportsNothingAfterItsEndNotEvenEarlierChanges) {
  auto watching = watch("one.json");
  writeWholeFile(state / "one.json", "1");
  watching.reset();
  EXPECT_TRUE(hearsNothing());
}

TEST_F(FolderWatchTest, SaysWhenTheFolderCannotBeMade) {
  folder.write("state", "a file");
  EXPECT_FALSE(watch("one.json")->isWatching());
}

}  // namespace
}  // namespace brivane
