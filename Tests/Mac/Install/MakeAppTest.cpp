// How a Mac's build puts the app together and signs it, with stand-ins for codesign and strip.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "Tests/Mac/Install/PlayedMac.h"

namespace brivane {
namespace {

namespace files = std::filesystem;

using testing::Contains;
using testing::HasSubstr;

/// As security(1) lists it.
constexpr auto identity = "Developer ID Application: SOMEBODY (TEAM)";

struct MakeAppTest : testing::Test {
  MakeAppTest() {
    std::ofstream(mac.package() / "make-app.sh")
        << "exec /usr/bin/cmake -DAPP=\"$HOME/Brivane.app\" -DPACKAGE=Brivane-1 -DSTRIP=strip "
           "-DEXECUTABLE=\"${0%/*}/Brivane.app/Contents/MacOS/Brivane\" "
           "-DINFO=\"${0%/*}/Brivane.app/Contents/Info.plist\" -DRESOURCES=\"$0\" "
           "-DEXTRAS=\"$0\" \"-DSEAL=codesign;--force;--options;runtime;--sign;$1\" -P "
        << files::absolute("Packaging/macOS/MakeApp.cmake");
    PlayedMac::makeApp(app, "com.quorrel.brivane", "old");
  }

  PlayedMac::Result sign() const {
    return mac.run("make-app.sh", std::string("'") + identity + "'");
  }

  const PlayedMac mac;
  const files::path app = mac.home() / "Brivane.app";
  const files::path archive = mac.home() / "Brivane-1.zip";
};

TEST_F(MakeAppTest, SignsByAnIdentityOfTheUsersOwn) {
  mac.set("identities", std::string(identity) + "\n");
  const auto result = sign();
  EXPECT_EQ(result.status, 0) << result.output;
  EXPECT_EQ(PlayedMac::version(app), "new");
  EXPECT_TRUE(files::exists(archive));
  EXPECT_THAT(mac.calls(), Contains(std::string("codesign --force --options runtime --sign ") +
                                    identity + " " + mac.home().string() + "/fresh/Brivane.app"));
}

TEST_F(MakeAppTest, AnIdentityThatTheKeychainLacksIsNamedAndLeavesTheAppOfBefore) {
  const auto result = sign();
  EXPECT_NE(result.status, 0);
  EXPECT_THAT(result.output, HasSubstr(std::string(identity) + ": no identity found\n"));
  EXPECT_EQ(PlayedMac::version(app), "old");
  EXPECT_FALSE(files::exists(archive));
}

}  // namespace
}  // namespace brivane
