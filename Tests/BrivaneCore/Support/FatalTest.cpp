#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iostream>

#include "BrivaneCore/Support/Fatal.h"

namespace brivane {
namespace {

using testing::StrEq;

FatalErrorHandler::Handle telling(const std::string& name) {
  return [name](const std::string& line) { std::cerr << name << " <" << line << ">\n"; };
}

class FatalDeathTest : public testing::Test {
 protected:
  void SetUp() override { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
};

TEST_F(FatalDeathTest, WithoutAHandlerTheSentenceGoesToStandardError) {
  EXPECT_DEATH(fatal("this and that"), StrEq("Brivane: fatal: this and that\n"));
}

TEST_F(FatalDeathTest, AHandlerReceivesOneLineAndStandardErrorNothing) {
  const auto end = [] {
    const FatalErrorHandler handler(telling("log"));
    fatal("this\nand that");
  };
  EXPECT_DEATH(end(), StrEq("log <Brivane: fatal: this and that>\n"));
}

TEST_F(FatalDeathTest, TheHandlerMadeLastReceivesTheError) {
  const auto end = [](bool isWithin) {
    const FatalErrorHandler first(telling("first"));
    {
      const FatalErrorHandler second(telling("second"));
      if (isWithin) fatal("x");
    }
    fatal("y");
  };
  EXPECT_DEATH(end(true), StrEq("second <Brivane: fatal: x>\n"));
  EXPECT_DEATH(end(false), StrEq("first <Brivane: fatal: y>\n"));
}

TEST_F(FatalDeathTest, AFatalErrorInTheHandlerGoesToStandardError) {
  const auto end = [] {
    const FatalErrorHandler handler([](const std::string&) { fatal("the log"); });
    fatal("x");
  };
  EXPECT_DEATH(end(), StrEq("Brivane: fatal: the log\n"));
}

TEST(Fatal, AHandlerThatThrowsKeepsTheProcessAlive) {
  struct Left {};
  const FatalErrorHandler handler([](const std::string&) { throw Left(); });
  EXPECT_THROW(fatal("x"), Left);
}

}  // namespace
}  // namespace brivane
