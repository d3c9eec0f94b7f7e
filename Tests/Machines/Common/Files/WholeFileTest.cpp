#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "Machines/Common/Files/WholeFile.h"
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

TEST(WholeFile, WhatAWriterThatEndedEarlyLeftIsNotWrittenInto) {
  const TemporaryFolder folder;
  std::ifstream reader(folder.write("file.new", "left"));
  ASSERT_FALSE(writeWholeFile(folder / "file", "new").has_value());
  EXPECT_EQ((std::string{std::istreambuf_iterator<char>(reader), {}}), "left");
}

class WholeFileAfter : public testing::TestWithParam<PowerCut> {};

TEST_P(WholeFileAfter, TheFileIsReplacedAndNothingElseIsLeft) {
  const TemporaryFolder folder;
  const auto file = folder / "file";
  for (const auto* const content : {"a long first content", "new", ""}) {
    std::ifstream reader(file);
    const std::string before = std::filesystem::exists(file) ? TemporaryFolder::read(file) : "";
    ASSERT_FALSE(writeWholeFile(file, content, GetParam()).has_value());
    EXPECT_EQ(TemporaryFolder::read(file), content);
    const std::string read{std::istreambuf_iterator<char>(reader), {}};
    EXPECT_EQ(read, before) << "whoever has the old version open still reads it";
  }
  EXPECT_FALSE(std::filesystem::exists(folder / "file.new"));
}

TEST_P(WholeFileAfter, AFolderOfThatNameStays) {
  const TemporaryFolder folder;
  const auto file = folder / "file";
  std::filesystem::create_directory(file);
  EXPECT_TRUE(writeWholeFile(file, "new", GetParam()).has_value());
  EXPECT_TRUE(std::filesystem::is_directory(file));
  EXPECT_FALSE(std::filesystem::exists(folder / "file.new"));
}

INSTANTIATE_TEST_SUITE_P(PowerCuts, WholeFileAfter,
                         testing::Values(PowerCut::keepsFile, PowerCut::mayEmptyFile));

}  // namespace
}  // namespace brivane
