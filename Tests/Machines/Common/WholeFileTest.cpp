#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Machines/Common/WholeFile.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

TEST(WholeFile, EveryWriteIsALaterVersionHoweverFastTheyFollow) {
  const TemporaryFolder folder;
  const auto file = folder / "file";
  std::optional<FileStamp> before;
  for (int i = 0; i < 1000; ++i) {
    ASSERT_FALSE(writeWholeFile(file, "same").has_value());
    const auto stamp = stampOf(file);
    ASSERT_TRUE(stamp.has_value());
    if (before) {
      ASSERT_GT(stamp->modifiedNanoseconds, before->modifiedNanoseconds);
    }
    before = stamp;
  }
}

TEST(WholeFile, AVersionFromTheFutureIsFollowedByALaterOne) {
  const TemporaryFolder folder;
  const auto file = folder.write("file", "old");
  using namespace std::chrono_literals;
  std::filesystem::last_write_time(file, std::filesystem::file_time_type::clock::now() + 24h);
  const auto before = stampOf(file);
  writeWholeFile(file, "new");
  EXPECT_GT(stampOf(file)->modifiedNanoseconds, before->modifiedNanoseconds);
  EXPECT_EQ(TemporaryFolder::read(file), "new");
}

}  // namespace
}  // namespace brivane
