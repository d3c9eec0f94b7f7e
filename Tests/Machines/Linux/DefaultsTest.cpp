#include <gtest/gtest.h>
#include <stdlib.h>

#include <optional>

#include "Machines/Linux/System/Defaults.h"
#include "Machines/Linux/System/Environment.h"

namespace brivane {
namespace {

/// An environment variable with another value for one test.
class Variable {
 public:
  Variable(const char* variableName, const char* value) : name(variableName) {
    if (const char* const before = getenv(name)) original = before;
    value != nullptr ? setenv(name, value, 1) : unsetenv(name);
  }
  ~Variable() { original ? setenv(name, original->c_str(), 1) : unsetenv(name); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name;
  std::optional<std::string> original;
};

TEST(Defaults, LieWhereTheUserKeepsSettings) {
  const Variable home("HOME", "/home/ada");
  const Variable folder("XDG_CONFIG_HOME", "/data/settings");
  EXPECT_EQ(defaultsFile("com.quorrel.brivane"), "/data/settings/brivane/com.quorrel.brivane.json");
}

TEST(Defaults, LieInTheUsualPlaceOtherwise) {
  const Variable home("HOME", "/home/ada");
  for (const auto* value : {static_cast<const char*>(nullptr), "", "settings", "./settings"}) {
    const Variable folder("XDG_CONFIG_HOME", value);
    EXPECT_EQ(defaultsFile("one"), "/home/ada/.config/brivane/one.json");
  }
}

TEST(Defaults, WithoutHOMETheSystemKnowsTheUsersFolder) {
  const Variable folder("XDG_CONFIG_HOME", nullptr);
  const Variable home("HOME", nullptr);
  EXPECT_TRUE(defaultsFile("one").is_absolute());
  EXPECT_TRUE(defaultsFile("one").string().ends_with("/.config/brivane/one.json"));
}

TEST(UserStateFolder, IsWhereTheUserKeepsStateOrInTheUsualPlace) {
  const Variable home("HOME", "/home/ada");
  {
    const Variable folder("XDG_STATE_HOME", "/data/state");
    EXPECT_EQ(userStateFolder(), "/data/state");
  }
  for (const auto* value : {static_cast<const char*>(nullptr), "", "state"}) {
    const Variable folder("XDG_STATE_HOME", value);
    EXPECT_EQ(userStateFolder(), "/home/ada/.local/state");
  }
}

}  // namespace
}  // namespace brivane
