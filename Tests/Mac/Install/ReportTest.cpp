// What Tools/mac-report.sh tries on a Mac, and what it writes down, with stand-ins for the Mac's
// tools.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>

#include "Tests/Mac/Install/PlayedMac.h"

namespace brivane {
namespace {

namespace files = std::filesystem;

using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

struct ReportTest : testing::Test {
  ReportTest() { mac.playTree(); }

  PlayedMac::Result report(const std::string& arguments = "--unattended") const {
    return mac.run("Tools/mac-report.sh", arguments);
  }

  /// The folder of the one report; empty without any.
  files::path folder() const {
    for (const auto& entry : files::directory_iterator(mac.package() / "build")) {
      if (entry.path().filename().string().starts_with("mac-report-")) return entry.path();
    }
    return {};
  }

  std::string read(const std::string& name) const { return TemporaryFolder::read(folder() / name); }

  /// An archive that was built on Linux, with its checksum.
  std::string archive() const {
    std::ofstream(mac.package() / "Brivane-1.zip") << "x";
    std::ofstream(mac.package() / "Brivane-1.zip.sha256")
        << "2d711642b726b04401627ca9fbac32f5c8530fb1903cc4db02258717921a4881  Brivane-1.zip\n";
    return "'" + (mac.package() / "Brivane-1.zip").string() + "'";
  }

  const PlayedMac mac;
};

TEST_F(ReportTest, TriesEverythingThatTakesNobodyAndLeavesTheMacAsItWas) {
  const auto result = report("--unattended --archive " + archive());
  EXPECT_EQ(result.status, 0) << result.output;
  EXPECT_THAT(read("summary.txt"), StartsWith("ok system\n"
                                              "ok build\n"
                                              "ok it builds without a warning\n"
                                              "ok declarations agree with the system\n"
                                              "ok core\n"
                                              "ok scenarios\n"
                                              "ok the seal is whole\n"
                                              "ok Gatekeeper finds nothing damaged\n"
                                              "ok it can be loaded\n"
                                              "ok the app is installed\n"
                                              "ok the program runs\n"
                                              "ok the displays are probed\n"
                                              "NOT DONE the displays: needs a person: "));
  for (const auto* line :
       {"ok the menu opens\n", "ok the on-screen display is shown\n", "ok the editor opens\n",
        "ok it ends by SIGTERM\n", "ok its log is readable\n", "ok it is uninstalled\n",
        "ok nothing crashed\n", "ok the app from Linux is whole\n",
        "ok codesign and strip take the app from Linux\n", "ok the app from Linux probes\n",
        "24 ok, 0 failed, 9 not done.\n"}) {
    EXPECT_THAT(read("summary.txt"), HasSubstr(line));
  }
  for (const auto* picture : {"menu.png", "hud.png", "editor.png"}) {
    EXPECT_EQ(read(picture), "picture\n");
  }
  EXPECT_FALSE(files::exists(folder() / "work"));
  EXPECT_THAT(mac.found(), IsEmpty());
  EXPECT_FALSE(mac.has("running"));
}

TEST_F(ReportTest, WithoutAnArchiveSaysThatNoneWasVerified) {
  EXPECT_EQ(report().status, 0);
  EXPECT_THAT(read("summary.txt"),
              HasSubstr("NOT DONE the app from Linux: no --archive was given\n"));
}

TEST_F(ReportTest, WritesDownWhatAPersonSees) {
  std::ofstream(mac.package() / "answers") << "y\nyes\nthe slider sticks\n";
  const auto result = report("<'" + (mac.package() / "answers").string() + "'");
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.output, HasSubstr("Look: there is one mark in the menu bar"));
  EXPECT_THAT(
      read("summary.txt"),
      AllOf(
          HasSubstr("ok the displays, seen by a person\n"),
          HasSubstr("ok the mark, seen by a person\n"),
          HasSubstr("at once. A person says: the slider sticks\n"),
          HasSubstr("with a shadow, over a full-screen window, too. A person says: no answer\n")));
}

TEST_F(ReportTest, AsksAPersonWhereItMayPressNoKeys) {
  mac.set("no-keys");
  const auto result = report("</dev/null");
  EXPECT_THAT(result.output, AllOf(HasSubstr("Close Brivane's menu now.\n"),
                                   HasSubstr("Hold control-option-up for ten seconds, now.\n"),
                                   HasSubstr("Choose Change Hotkeys… in Brivane's menu now.\n")));
  EXPECT_THAT(read("summary.txt"), HasSubstr("FAILED the on-screen display is shown: see "));
}

TEST_F(ReportTest, NothingIsInstalledWithoutABuild) {
  mac.refuse("cmake --build --preset mac-native --clean-first");
  EXPECT_EQ(report().status, 1);
  EXPECT_THAT(read("summary.txt"), HasSubstr("FAILED build: see 02-build.log\n"));
  EXPECT_THAT(mac.calls(), Not(Contains(StartsWith("ditto "))));
}

TEST_F(ReportTest, InterruptedItUninstallsWhatItInstalled) {
  report();
  mac.set("interrupt", "TERM " + std::to_string(mac.stepOf("screencapture ")) + "\n");
  files::remove_all(folder());
  const auto result = report();
  EXPECT_EQ(result.status, 130);
  EXPECT_THAT(result.output, HasSubstr("Interrupted.\n"));
  EXPECT_THAT(mac.found(), IsEmpty());
  EXPECT_FALSE(mac.has("running"));
}

TEST_F(ReportTest, ReplacesNoBrivaneThatIsInstalled) {
  mac.playEarlierInstallation(mac.home() / "Applications");
  const auto result = report();
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.output,
            "Brivane is installed here, and this would replace it. Run ./uninstall.sh first.\n");
  EXPECT_EQ(PlayedMac::version(mac.app()), "old");
}

TEST_F(ReportTest, SaysWhatItCanNotBeginWith) {
  EXPECT_EQ(report("--archive no.zip").output,
            "There is no archive " + files::current_path().string() + "/no.zip.\n");
  EXPECT_EQ(report("--archive").output, "--archive needs a file.\n");
  EXPECT_EQ(report("--what").status, 2);
  mac.set("user", "0\n");
  EXPECT_THAT(report().output, HasSubstr("Run it as yourself, without sudo"));
  mac.set("machine", "Linux x86_64\n");
  EXPECT_EQ(report().output, "This is for a Mac; ./test and ./run are for Linux.\n");
}

struct Trouble {
  std::string name;
  std::function<void(const PlayedMac&)> arrange;
  std::string failed;
};

void PrintTo(const Trouble& trouble, std::ostream* stream) {
  *stream << trouble.name;
}

std::function<void(const PlayedMac&)> setting(const std::string& state,
                                              const std::string& value = "") {
  return [=](const auto& mac) { mac.set(state, value); };
}

std::function<void(const PlayedMac&)> refusing(const std::string& call) {
  return [=](const auto& mac) { mac.refuse(call); };
}

struct ReportedTroubleTest : ReportTest, testing::WithParamInterface<Trouble> {};

TEST_P(ReportedTroubleTest, IsTheOneThatFailedAndTheOthersAreTried) {
  GetParam().arrange(mac);
  const auto result = report("--unattended --archive " + archive());
  EXPECT_EQ(result.status, 1) << result.output;
  const auto summary = read("summary.txt");
  EXPECT_THAT(summary, HasSubstr("FAILED " + GetParam().failed + ": see "));
  EXPECT_THAT(summary, HasSubstr(" ok, 1 failed, 9 not done.\n"));
}

INSTANTIATE_TEST_SUITE_P(
    Of, ReportedTroubleTest,
    testing::Values(
        Trouble{"Warning", setting("warning"), "it builds without a warning"},
        Trouble{"Declarations", refusing("cmake *brivane-abi-check"),
                "declarations agree with the system"},
        Trouble{"Core", setting("brivane-tests"), "core"},
        Trouble{"Scenarios", setting("brivane-desk"), "scenarios"},
        Trouble{"Damaged", setting("assessment", "a sealed resource is missing or invalid\n"),
                "Gatekeeper finds nothing damaged"},
        Trouble{"NoMenu", setting("no-menu"), "the menu opens"},
        Trouble{"NoHUD", setting("no-hud"), "the on-screen display is shown"},
        Trouble{"NoEditor", setting("no-editor"), "the editor opens"},
        Trouble{"BadEnd", setting("exit", "1\n"), "it ends by SIGTERM"},
        Trouble{"StartedAgain", setting("crashing"), "it ends by SIGTERM"},
        Trouble{"MappingLeft", setting("mapping-left"), "it is uninstalled"},
        Trouble{"Silent", setting("silent"), "its log is readable"},
        Trouble{"Crash",
                [](const auto& mac) {
                  const auto reports = mac.home() / "Library/Logs/DiagnosticReports";
                  files::create_directories(reports);
                  std::ofstream(reports / "Brivane-1.ips") << "x";
                  files::last_write_time(
                      reports / "Brivane-1.ips",
                      files::file_time_type::clock::now() + std::chrono::hours(1));
                },
                "nothing crashed"},
        Trouble{"LinkEdit",
                setting("complaint", "link edit information does not fill the segment\n"),
                "codesign and strip take the app from Linux"}),
    [](const auto& test) { return test.param.name; });

TEST_F(ReportTest, AnAppWithoutTheHardenedRuntimeHasNotItsSeal) {
  mac.set("flags", "0x2(adhoc)");
  EXPECT_EQ(report().status, 1);
  EXPECT_THAT(read("summary.txt"), HasSubstr("FAILED the seal is whole: see "));
}

TEST_F(ReportTest, AProgramWithoutAReportIsNoProbe) {
  mac.set("dumb");
  EXPECT_EQ(report().status, 1);
  EXPECT_THAT(read("summary.txt"), HasSubstr("FAILED the displays are probed: see "));
}

TEST_F(ReportTest, AProgramThatTheLoaderRefusesFails) {
  mac.set("loader", "error: symbol not found\n");
  EXPECT_EQ(report().status, 1);
  EXPECT_THAT(read("summary.txt"), HasSubstr("FAILED it can be loaded: see "));
}

TEST_F(ReportTest, AnArchiveThatArrivedDamagedIsNotStarted) {
  const auto name = archive();
  std::ofstream(mac.package() / "Brivane-1.zip") << "y";
  EXPECT_EQ(report("--unattended --archive " + name).status, 1);
  EXPECT_THAT(read("summary.txt"), AllOf(HasSubstr("FAILED the app from Linux is whole: see "),
                                         Not(HasSubstr("the app from Linux probes"))));
}

}  // namespace
}  // namespace brivane
