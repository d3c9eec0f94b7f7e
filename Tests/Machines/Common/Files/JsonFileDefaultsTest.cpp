#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "Machines/Common/Files/FileLock.h"
#include "Machines/Common/Files/JsonFileDefaults.h"
#include "Machines/Common/Processes/ThreadRuntime.h"
#include "Machines/Desk/Machine/VirtualRuntime.h"
#include "Tests/Support/OrdinaryUser.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class ListLog : public SystemLog {
 public:
  void write(std::string_view line) override { lines.emplace_back(line); }
  std::vector<std::string> lines;
};

class JsonFileDefaultsTest : public testing::Test {
 protected:
  JsonFileDefaults open() { return open(runtime); }
  JsonFileDefaults open(Runtime& time) {
    return {file, time, log, JsonFileDefaults::Durability::unsynced};
  }

  /// Runs `work` in a child process and returns its exit status.
  template <typename Work>
  static pid_t startChild(Work work) {
    const pid_t child = fork();
    if (child == 0) {
      work();
      _exit(0);
    }
    return child;
  }

  static int waitFor(pid_t child) {
    int status = -1;
    waitpid(child, &status, 0);
    return status;
  }

  TemporaryFolder folder;
  std::filesystem::path file = folder / "domain.json";
  ThreadRuntime runtime;
  /// For a lock that is waited for in vain.
  VirtualRuntime virtualTime;
  ListLog log;
};

TEST_F(JsonFileDefaultsTest, AMissingFileHoldsNothingAndIsNotMadeByReading) {
  const auto defaults = open();
  EXPECT_EQ(defaults.object("a"), std::nullopt);
  EXPECT_THAT(folder.names(), IsEmpty());
  EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(JsonFileDefaultsTest, EveryKindOfValueComesBackAsItWasStored) {
  const PropertyValue::Dictionary values = {
      {"boolean", {true}},
      {"integer", {std::int64_t{-7}}},
      {"large", {std::int64_t{9007199254740993}}},
      {"fraction", {0.5}},
      {"text", {std::string("ä \" \\ 名")}},
      {"list", {PropertyValue::Array{{std::int64_t{1}}, {std::string("two")}}}},
      {"map", {PropertyValue::Dictionary{{"inner", {false}}}}},
      {"date", {PropertyValue::Date{776995200.25}}},
      {"earlyDate", {PropertyValue::Date{-1}}},
      {"data", {PropertyValue::Data{{0x00, 0x0A, 0xFF}}}},
      {"noData", {PropertyValue::Data{}}},
      {"deepDate", {PropertyValue::Array{{PropertyValue::Date{1}}}}},
      {"likeADate", {PropertyValue::Dictionary{{"$date", {7.0}}}}},
      {"likeATag", {PropertyValue::Dictionary{{"$$data", {std::string("0a")}}}}},
  };
  {
    auto defaults = open();
    for (const auto& [key, value] : values) defaults.set(key, value);
  }
  EXPECT_EQ(open().contents(), values);
}

TEST_F(JsonFileDefaultsTest, SettingsMayHaveKeysThatLookLikeADate) {
  open().set("$date", {std::int64_t{5}});
  EXPECT_EQ(open().contents(), (PropertyValue::Dictionary{{"$date", {std::int64_t{5}}}}));
}

TEST_F(JsonFileDefaultsTest, ARemovedKeyIsAbsentAndTheOthersStay) {
  auto defaults = open();
  defaults.set("a", {std::int64_t{1}});
  defaults.set("b", {std::int64_t{2}});
  defaults.remove("a");
  EXPECT_EQ(defaults.object("a"), std::nullopt);
  EXPECT_EQ(open().contents(), (PropertyValue::Dictionary{{"b", {std::int64_t{2}}}}));
}

TEST_F(JsonFileDefaultsTest, WhatAnotherProcessWroteIsSeenAtOnce) {
  auto mine = open();
  auto theirs = open();
  mine.set("a", {std::int64_t{1}});
  theirs.set("b", {std::int64_t{2}});
  EXPECT_EQ(mine.object("b"), (PropertyValue{std::int64_t{2}}));
  EXPECT_EQ(theirs.object("a"), (PropertyValue{std::int64_t{1}}));
}

TEST_F(JsonFileDefaultsTest, StoringTheSameValueAgainWritesNothing) {
  auto defaults = open();
  defaults.set("a", {std::int64_t{1}});
  const auto before = stampOf(file);
  defaults.set("a", {std::int64_t{1}});
  EXPECT_EQ(stampOf(file), before);
}

TEST_F(JsonFileDefaultsTest, TwoProcessesThatChangeDifferentKeysLoseNothing) {
  constexpr int changes = 200;
  const auto writeAll = [&](const std::string& name) {
    auto defaults = open();
    for (int i = 0; i < changes; ++i) defaults.set(name + std::to_string(i), {std::int64_t{i}});
  };
  const pid_t child = startChild([&] { writeAll("child"); });
  writeAll("parent");
  EXPECT_EQ(waitFor(child), 0);
  EXPECT_EQ(open().contents().size(), 2u * changes);
  EXPECT_THAT(log.lines, IsEmpty());
}

struct BadFile {
  const char* name;
  std::string content;
  const char* reason;
};

class JsonFileDefaultsBadFileTest : public JsonFileDefaultsTest,
                                    public testing::WithParamInterface<BadFile> {};

TEST_P(JsonFileDefaultsBadFileTest, ItIsSetAsideWholeAndOneLineSaysSo) {
  folder.write("domain.json", GetParam().content);
  auto defaults = open();
  EXPECT_EQ(defaults.object("a"), std::nullopt);
  defaults.set("a", {std::int64_t{1}});
  EXPECT_EQ(open().object("a"), (PropertyValue{std::int64_t{1}}));
  const auto names = folder.names();
  ASSERT_THAT(names, ElementsAre("domain.json", "domain.json.lock",
                                 StartsWith("domain.json.unreadable-2")));
  EXPECT_EQ(TemporaryFolder::read(folder / names[2]), GetParam().content);
  ASSERT_EQ(log.lines.size(), 1u);
  EXPECT_THAT(log.lines[0], StartsWith("Brivane: the settings in " + file.string()));
  EXPECT_THAT(log.lines[0], HasSubstr(GetParam().reason));
  EXPECT_THAT(log.lines[0], HasSubstr(names[2]));
}

INSTANTIATE_TEST_SUITE_P(
    Files, JsonFileDefaultsBadFileTest,
    testing::Values(BadFile{"Truncated", "{\"a\": 4", "no valid JSON at byte 8"},
                    BadFile{"Empty", "", "no valid JSON"},
                    BadFile{"ANumberBeyondDouble", "{\"a\": 1e999}", "a number that is too large"},
                    BadFile{"AnIntegerBeyondDouble", "{\"a\": [-1" + std::string(400, '0') + "]}",
                            "a number that is too large"},
                    BadFile{"AList", "[1, 2]", "a JSON array, not an object"},
                    BadFile{"Binary", std::string("\x00\xff\x00", 3), "no valid JSON"},
                    BadFile{"Huge", std::string(3 << 20, '\0'), "more than the 1048576 allowed"},
                    BadFile{"NestedDeeply",
                            "{\"a\":" + std::string(100000, '[') + std::string(100000, ']') + "}",
                            "nested too"}),
    [](const auto& bad) { return bad.param.name; });

TEST_F(JsonFileDefaultsTest, AnUnreadableFileThatCanNotBeSetAsideIsNeverOverwritten) {
  folder.write("domain.json", "broken");
  const auto lock = FileLock::acquire(file.string() + ".lock", runtime, Microseconds(0));
  auto defaults = open(virtualTime);
  EXPECT_EQ(defaults.object("a"), std::nullopt);
  defaults.set("a", {std::int64_t{1}});
  EXPECT_EQ(defaults.object("a"), (PropertyValue{std::int64_t{1}}));
  EXPECT_EQ(TemporaryFolder::read(file), "broken");
  ASSERT_EQ(log.lines.size(), 2u);
  EXPECT_THAT(log.lines[0], HasSubstr("leaving the file as it is"));
  EXPECT_THAT(log.lines[1], HasSubstr("could not be saved"));
}

TEST_F(JsonFileDefaultsTest, AFolderOfThatNameIsSetAsideToo) {
  std::filesystem::create_directory(file);
  auto defaults = open();
  defaults.set("a", {std::int64_t{1}});
  EXPECT_THAT(log.lines.front(), HasSubstr("it is a folder"));
  EXPECT_EQ(open().object("a"), (PropertyValue{std::int64_t{1}}));
}

TEST_F(JsonFileDefaultsTest, AFileThatTheSystemDoesNotLetReadStaysWhereItIs) {
  std::filesystem::create_symlink("domain.json", file);
  {
    auto defaults = open();
    EXPECT_EQ(defaults.object("a"), std::nullopt);
    EXPECT_EQ(defaults.object("a"), std::nullopt);
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_THAT(log.lines[0], HasSubstr("can't be read (Too many levels of symbolic links); going "
                                        "on with none, and leaving the file as it is"));
    defaults.set("a", {std::int64_t{1}});
    EXPECT_EQ(defaults.object("a"), (PropertyValue{std::int64_t{1}}));
  }
  EXPECT_TRUE(std::filesystem::is_symlink(file));
  EXPECT_THAT(folder.names(), ElementsAre("domain.json", "domain.json.lock"));
  ASSERT_EQ(log.lines.size(), 2u);
  EXPECT_THAT(log.lines[1], HasSubstr("could not be saved"));
}

TEST_F(JsonFileDefaultsTest, AFileThatMayNotBeReadCountsAgainOnceItMay) {
  std::filesystem::permissions(folder.path, std::filesystem::perms::all);
  EXPECT_TRUE(holdsForOrdinaryUser([&] {
    folder.write("domain.json", R"({"a": 4})");
    std::filesystem::permissions(file, std::filesystem::perms::none);
    auto defaults = open();
    const bool isUnknown = !defaults.object("a") && !defaults.object("a");
    const bool isLeft = folder.names().size() == 1 && log.lines.size() == 1;
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    return isUnknown && isLeft && defaults.object("a") == PropertyValue{std::int64_t{4}};
  }));
}

TEST_F(JsonFileDefaultsTest, ASecondUnreadableFileDoesNotReplaceTheFirst) {
  for (const auto* content : {"first", "second"}) {
    folder.write("domain.json", content);
    std::filesystem::last_write_time(file, std::filesystem::file_time_type{});
    auto defaults = open();
    defaults.set("a", {std::string(content)});
  }
  EXPECT_EQ(folder.names().size(), 4u);
}

TEST_F(JsonFileDefaultsTest, ALinkIntoAnotherFolderStaysALink) {
  folder.write("real.json", "{}");
  std::filesystem::create_symlink("real.json", file);
  auto defaults = open();
  defaults.set("a", {true});
  EXPECT_TRUE(std::filesystem::is_symlink(file));
  EXPECT_THAT(TemporaryFolder::read(folder / "real.json"), HasSubstr("\"a\": true"));
}

TEST_F(JsonFileDefaultsTest, ALinkToAFileThatIsNotThereStaysALinkToo) {
  std::filesystem::create_symlink("elsewhere/second.json", file);
  std::filesystem::create_directory(folder / "elsewhere");
  std::filesystem::create_symlink("real.json", folder / "elsewhere/second.json");
  auto defaults = open();
  EXPECT_EQ(defaults.object("a"), std::nullopt);
  defaults.set("a", {true});
  EXPECT_TRUE(std::filesystem::is_symlink(file));
  EXPECT_THAT(TemporaryFolder::read(folder / "elsewhere/real.json"), HasSubstr("\"a\": true"));
  EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(JsonFileDefaultsTest, AStoppedProcessThatHoldsTheLockIsWaitedForTwoSecondsOnce) {
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t holder = startChild([&] {
    const auto lock = FileLock::acquire(file.string() + ".lock", runtime, Microseconds(0));
    (void)!write(ready[1], "x", 1);
    raise(SIGSTOP);
  });
  char byte = 0;
  ASSERT_EQ(read(ready[0], &byte, 1), 1);
  auto defaults = open(virtualTime);
  const Instant start = virtualTime.now();
  defaults.set("a", {std::int64_t{1}});
  EXPECT_EQ(virtualTime.now() - start, std::chrono::seconds(2));
  defaults.set("b", {std::int64_t{2}});
  EXPECT_EQ(virtualTime.now() - start, std::chrono::seconds(2));
  ASSERT_EQ(log.lines.size(), 1u);
  EXPECT_THAT(log.lines[0], HasSubstr("another process holds the lock"));
  EXPECT_EQ(defaults.object("a"), (PropertyValue{std::int64_t{1}}));
  kill(holder, SIGKILL);
  waitFor(holder);
  defaults.set("c", {std::int64_t{3}});
  EXPECT_EQ(open().contents().size(), 3u);
}

TEST_F(JsonFileDefaultsTest, OnAFullDiskTheOldFileStaysWholeAndNoPartOfTheNewOne) {
  {
    auto defaults = open();
    defaults.set("a", {std::int64_t{1}});
  }
  const std::string before = TemporaryFolder::read(file);
  // A limit on the size of files fails writes half-way, as a full disk does.
  const pid_t child = startChild([&] {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{20, 20};
    setrlimit(RLIMIT_FSIZE, &limit);
    auto defaults = open();
    defaults.set("b", {std::string(100, 'x')});
    const bool inForce = defaults.object("b").has_value();
    const bool said =
        log.lines.size() == 1 && log.lines[0].find("File too large") != std::string::npos;
    _exit(inForce && said ? 0 : 1);
  });
  EXPECT_EQ(waitFor(child), 0);
  EXPECT_EQ(TemporaryFolder::read(file), before);
  EXPECT_THAT(folder.names(), ElementsAre("domain.json", "domain.json.lock"));
}

TEST_F(JsonFileDefaultsTest, WhatCouldNotBeWrittenIsWrittenAtTheEndAndTheLockWaitedForAgain) {
  std::optional lock(FileLock::acquire(file.string() + ".lock", runtime, Microseconds(0)));
  const auto other = virtualTime.makeSerialQueue("other", QueueQuality::userInitiated);
  other->async([&] {
    virtualTime.sleep(std::chrono::seconds(3));
    lock.reset();
  });
  {
    auto defaults = open(virtualTime);
    defaults.set("a", {std::int64_t{1}});
    EXPECT_FALSE(std::filesystem::exists(file));
  }
  other->sync([] {});
  EXPECT_EQ(open().object("a"), (PropertyValue{std::int64_t{1}}));
}

}  // namespace
}  // namespace brivane
