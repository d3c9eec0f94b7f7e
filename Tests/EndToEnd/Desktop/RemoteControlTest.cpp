// The built program asked by `brivane-ctl` and by D-Bus's own means.
#include <gmock/gmock.h>

#include <csignal>
#include <fstream>
#include <regex>

#include "Tests/EndToEnd/Desktop/DesktopTest.h"

namespace brivane {
namespace {

using testing::AllOf;
using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

constexpr auto busName = "com.quorrel.brivane";
constexpr auto objectPath = "/com/quorrel/brivane";
constexpr auto interfaceName = "com.quorrel.brivane.Brightness1";

class RemoteControlTest : public DesktopTest {
 protected:
  ProgramResult control(const std::vector<std::string>& arguments) {
    auto all = environment();
    all["DBUS_SESSION_BUS_ADDRESS"] = address;
    return runProgram("brivane-ctl", arguments, all);
  }

  /// What the command prints; it must succeed in silence.
  std::string outputOf(const std::vector<std::string>& arguments) {
    const auto result = control(arguments);
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.errors, "");
    return result.output;
  }

  /// The one line that a command that fails says.
  std::string complaintOf(const std::vector<std::string>& arguments, int status = 1) {
    const auto result = control(arguments);
    EXPECT_EQ(result.exitStatus, status);
    EXPECT_EQ(result.output, "");
    const auto lines = linesOf(result.errors);
    EXPECT_EQ(lines.size(), 1U) << result.errors;
    return result.errors;
  }

  /// Starts the program and waits until it knows its monitors' levels.
  void startAndAwaitLevels() {
    start({{"DBUS_SESSION_BUS_ADDRESS", address}});
    ASSERT_TRUE(eventually([&] {
      return control({"get", "Left 20"}).exitStatus == 0 &&
             control({"get", "Middle 24"}).exitStatus == 0;
    }));
  }

  /// Waits for the end of the start's reads: one that is under way at a write gives the level
  /// before it.
  void awaitReads() {
    atRest([&] { return wireLines().size(); });
  }

  bool isHUDShown() { return testClient.find("Brivane").has_value(); }

  /// The display's number, as the program prints it.
  std::string numberOf(const std::string& name) {
    std::smatch found;
    const std::string list = outputOf({"list"});
    const std::regex line("\\[(\\d+)\\] " + name);
    return std::regex_search(list, found, line) ? found[1].str() : "";
  }

  std::string address = sessionBus.address();
};

TEST_F(RemoteControlTest, UpAndDownAreHotkeyPressesOnTheDisplayUnderThePointer) {
  startAndAwaitLevels();
  awaitReads();
  EXPECT_FALSE(isHUDShown());
  EXPECT_EQ(outputOf({"up"}), "");
  EXPECT_EQ(world.luminance("HDMI-A-1"), 55);
  EXPECT_TRUE(eventually([&] { return isHUDShown(); }));
  EXPECT_EQ(outputOf({"set", "42"}), "");
  EXPECT_EQ(outputOf({"down"}), "");
  EXPECT_EQ(world.luminance("HDMI-A-1"), 40);
}

TEST_F(RemoteControlTest, SetAndGetReachADisplayByPointerNumberAndName) {
  startAndAwaitLevels();
  awaitReads();
  EXPECT_EQ(outputOf({"set", "30"}), "");
  EXPECT_EQ(world.luminance("HDMI-A-1"), 30);
  EXPECT_EQ(outputOf({"set", "20", "Middle 24"}), "");
  EXPECT_EQ(world.luminance("DP-1"), 51);
  EXPECT_EQ(outputOf({"get", numberOf("Middle 24")}), "20\n");
  EXPECT_EQ(outputOf({"set", "-40", numberOf("Left 20")}), "");
  EXPECT_EQ(outputOf({"get"}), "-40\n");
  EXPECT_EQ(world.luminance("HDMI-A-1"), 0);
  EXPECT_LT(world.screens.gamma(standardMonitor::left)[0].back(), 65535);
}

TEST_F(RemoteControlTest, TheListHasEveryDisplayAsTextAndAsJSON) {
  startAndAwaitLevels();
  const std::string left = numberOf("Left 20");
  EXPECT_THAT(
      linesOf(outputOf({"list"})),
      testing::UnorderedElementsAre("[" + left + "] Left 20: 50 (-100 to 200), under the pointer",
                                    "[" + numberOf("Middle 24") + "] Middle 24: 100 (-100 to 200)",
                                    "[" + numberOf("Right 19") + "] Right 19: not driven"));
  EXPECT_THAT(outputOf({"list", "--json"}), AllOf(StartsWith("["), HasSubstr(R"(  {
    "number": )" + left + R"(,
    "name": "Left 20",
    "driven": true,
    "level": 50,
    "minimum": -100,
    "maximum": 200,
    "underPointer": true
  })"),
                                                  HasSubstr(R"("name": "Right 19",
    "driven": false,
    "level": null,)")));
}

TEST_F(RemoteControlTest, EachFailureIsOneLineThatSaysWhy) {
  startAndAwaitLevels();
  EXPECT_THAT(complaintOf({"set", "50", "Left 21"}),
              AllOf(HasSubstr("There is no display \"Left 21\"; there are "),
                    HasSubstr("(Left 20)"), HasSubstr("(Right 19)")));
  EXPECT_THAT(complaintOf({"get", "Right 19"}), HasSubstr("Right 19 doesn't answer"));
  EXPECT_THAT(complaintOf({"set", "201"}), HasSubstr("from -100 to 200"));
  world.turn("HDMI-A-1", "mood", "wire:ENXIO");
  EXPECT_THAT(complaintOf({"up"}), AnyOf(HasSubstr("Left 20 didn't take the level"),
                                         HasSubstr("Left 20 doesn't answer")));
}

TEST_F(RemoteControlTest, WrongArgumentsAreOneLineAndStatus64) {
  EXPECT_THAT(complaintOf({}, 64), HasSubstr("--help"));
  EXPECT_THAT(complaintOf({"brighter"}, 64), HasSubstr("no command \"brighter\""));
  EXPECT_THAT(complaintOf({"bright\ner"}, 64), HasSubstr(R"(no command "bright\ner")"));
  for (const std::vector<std::string>& words :
       std::vector<std::vector<std::string>>{{"set"},
                                             {"set", "5x"},
                                             {"set", "5", "Left", "20"},
                                             {"set", "5", ""},
                                             {"get", "Left", "20"},
                                             {"get", ""},
                                             {"up", "2"},
                                             {"list", "--xml"},
                                             {"menu", "start"},
                                             {"--version", "please"}}) {
    EXPECT_THAT(complaintOf(words, 64), HasSubstr("usage: brivane-ctl " + words[0]));
  }
  EXPECT_THAT(complaintOf({"get", "\xfc"}, 64), HasSubstr("not UTF-8"));
}

TEST_F(RemoteControlTest, HelpAndVersionNeedNoProgram) {
  address = "unix:path=/nobody";
  EXPECT_THAT(outputOf({"--help"}), HasSubstr("brivane-ctl set LEVEL [DISPLAY]"));
  EXPECT_THAT(linesOf(outputOf({"--version"})), ElementsAre(StartsWith("brivane-ctl ")));
}

TEST_F(RemoteControlTest, WithoutTheProgramOrWithoutABusItSaysSoAndStartsNothing) {
  for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
           {"up"}, {"down"}, {"set", "5"}, {"get"}, {"list"}, {"menu"}}) {
    EXPECT_THAT(complaintOf(words), HasSubstr("Brivane isn't running here")) << words[0];
  }
  address = "unix:path=/nobody";
  EXPECT_THAT(complaintOf({"menu", "--start"}), HasSubstr("there is no session bus"));
}

TEST_F(RemoteControlTest, MenuOpensTheMenuAtThePointer) {
  startAndAwaitLevels();
  EXPECT_EQ(outputOf({"menu"}), "");
  ASSERT_TRUE(doesMenuOpen());
  EXPECT_EQ(menu()->box.x, 800);
  EXPECT_EQ(menu()->box.y, 450);
}

TEST_F(RemoteControlTest, MenuStartStartsTheProgramBesideItAndTheProgramGoesOn) {
  EXPECT_EQ(outputOf({"menu", "--start"}), "");
  choose(menuLineFromLast::quit);
  EXPECT_TRUE(eventually([&] { return control({"get"}).exitStatus != 0; }));
  EXPECT_TRUE(eventually([&] { return !world.screens.isKeyTaken(xKey::f19, 0); }));
}

TEST_F(RemoteControlTest, MenuStartTellsWhyTheProgramEndedAtOnce) {
  auto all = environment();
  all["DISPLAY"] = "";
  const auto result = runProgram("brivane-ctl", {"menu", "--start"}, all);
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(linesOf(result.errors),
              ElementsAre(HasSubstr("Brivane ended with status 1; run it")));
}

TEST_F(RemoteControlTest,
       WhereTheBusKnowsHowToStartTheProgramMenuStartLeavesItToTheBusAndWaitsLong) {
  const TemporaryFolder started;
  const auto mark = started.path / "mark";
  std::string command = "/usr/bin/env";
  for (const auto& [variable, value] : environment()) {
    if (!value.empty()) command.append(" ").append(variable).append("=").append(value);
  }
  // A bus like the tests' tells what it starts of itself under this name only. Other commands wait
  // ten seconds.
  command += " sh -c \"touch " + mark.string() +
             "; sleep 11; DBUS_SESSION_BUS_ADDRESS=$DBUS_STARTER_ADDRESS exec " +
             (programFolder() / "Brivane").string() + "\"";
  const PrivateBus bus({{busName, command}});
  address = bus.address();
  EXPECT_THAT(complaintOf({"get"}), HasSubstr("Brivane isn't running here"));
  EXPECT_EQ(outputOf({"menu", "--start"}), "");
  EXPECT_TRUE(std::filesystem::exists(mark));
  choose(menuLineFromLast::quit);
  EXPECT_TRUE(eventually([&] { return !world.screens.isKeyTaken(xKey::f19, 0); }));
}

TEST_F(RemoteControlTest, WhereTheBusCantStartTheProgramMenuStartStartsTheOneBesideIt) {
  const PrivateBus bus({{busName, std::string("/bin/false")}});
  address = bus.address();
  EXPECT_EQ(outputOf({"menu", "--start"}), "");
  choose(menuLineFromLast::quit);
  EXPECT_TRUE(eventually([&] { return !world.screens.isKeyTaken(xKey::f19, 0); }));
}

/// What D-Bus's own means see of the program.
class RemoteInterfaceTest : public RemoteControlTest {
 protected:
  struct Answer {
    std::string error;
    std::string message;
    std::string signature;
    /// Of an answer that is a text.
    std::string text;
  };

  template <typename... Arguments>
  Answer call(const char* interface, const std::string& method, const char* types,
              Arguments... arguments) {
    return caller.exclusively([&](sd_bus* bus) {
      sd_bus_error error{};
      sd_bus_message* reply = nullptr;
      Answer answer;
      if (sd_bus_call_method(bus, busName, objectPath, interface, method.c_str(), &error, &reply,
                             types, arguments...) < 0) {
        answer = {error.name, error.message, "", ""};
      } else {
        answer.signature = sd_bus_message_get_signature(reply, 1);
        const char* text = "";
        if (answer.signature == "s") sd_bus_message_read(reply, "s", &text);
        answer.text = text;
      }
      sd_bus_message_unref(reply);
      sd_bus_error_free(&error);
      return answer;
    });
  }

  struct Method {
    std::string name;
    std::string in;
    std::string out;
  };

  static std::vector<Method> documentedMethods(const std::string& xml) {
    const std::regex item(
        R"re(<method name="(\w+)">|<arg name="\w+" type="([^"]+)" direction="(in|out)")re");
    std::vector<Method> methods;
    for (auto found = std::sregex_iterator(xml.begin(), xml.end(), item);
         found != std::sregex_iterator(); ++found) {
      if ((*found)[1].matched) {
        methods.push_back({(*found)[1], "", ""});
      } else {
        ((*found)[3] == "in" ? methods.back().in : methods.back().out) += (*found)[2];
      }
    }
    return methods;
  }

  BusPeer caller{sessionBus.address()};
};

TEST_F(RemoteInterfaceTest, TheProgramDocumentsItselfAsTheInstalledFileDoes) {
  startAndAwaitLevels();
  const auto answer = call("org.freedesktop.DBus.Introspectable", "Introspect", "");
  EXPECT_EQ(answer.text, TemporaryFolder::read(treeFolder() / "Packaging/Linux/dbus-1" /
                                               (std::string(interfaceName) + ".xml")));
}

TEST_F(RemoteInterfaceTest, EveryDocumentedMethodIsThereWithItsArgumentsAndAnswer) {
  startAndAwaitLevels();
  const auto methods =
      documentedMethods(call("org.freedesktop.DBus.Introspectable", "Introspect", "").text);
  ASSERT_EQ(methods.size(), 7U);
  for (const Method& method : methods) {
    const auto refused = call(interfaceName, method.name, "t", std::uint64_t{1});
    EXPECT_EQ(refused.error, "org.freedesktop.DBus.Error.InvalidArgs") << method.name;
    EXPECT_THAT(refused.message, HasSubstr("\"" + method.in + "\"")) << method.name;
    const auto answer = method.in == "is"  ? call(interfaceName, method.name, "is", 60, "")
                        : method.in == "s" ? call(interfaceName, method.name, "s", "")
                                           : call(interfaceName, method.name, "");
    EXPECT_EQ(answer.error, "") << method.name;
    EXPECT_EQ(answer.signature, method.out) << method.name;
  }
  EXPECT_EQ(call(interfaceName, "Sideways", "").error, "org.freedesktop.DBus.Error.UnknownMethod");
}

TEST_F(RemoteInterfaceTest, ShowHotkeyEditorOpensTheEditorsWindow) {
  startAndAwaitLevels();
  EXPECT_EQ(call(interfaceName, "ShowHotkeyEditor", "").error, "");
  EXPECT_TRUE(eventually([&] { return testClient.find("Brightness Hotkeys").has_value(); }));
}

TEST_F(RemoteInterfaceTest, FailuresAreErrorsWithANameEach) {
  startAndAwaitLevels();
  EXPECT_EQ(call(interfaceName, "Get", "s", "nobody").error,
            "com.quorrel.brivane.Error.NoSuchDisplay");
  EXPECT_EQ(call(interfaceName, "Get", "s", "Right 19").error,
            "com.quorrel.brivane.Error.NotAnswering");
  EXPECT_EQ(call(interfaceName, "Set", "is", 300, "").error,
            "com.quorrel.brivane.Error.LevelOutOfRange");
}

TEST_F(RemoteInterfaceTest, WhereAnotherProgramHasTheNameItSaysSoOnceAndWorksWithout) {
  caller.own(busName);
  start({}, {.hasTerminal = true});
  EXPECT_TRUE(program->waitForError("another program has the name com.quorrel.brivane"));
  EXPECT_TRUE(doHotkeysWork());
}

TEST_F(RemoteControlTest, AProgramWhoseBusHasGoneWorksOnInPeace) {
  auto bus = std::make_unique<PrivateBus>();
  address = bus->address();
  startAndAwaitLevels();
  bus.reset();
  EXPECT_THAT(complaintOf({"get"}), HasSubstr("there is no session bus"));
  tapHotkey(xKey::up);
  EXPECT_TRUE(becomes("HDMI-A-1", 55));
  // Clock ticks, of which there are a hundred in a second.
  const auto usedTicks = [&] {
    std::ifstream file("/proc/" + std::to_string(program->processID()) + "/stat");
    std::string word;
    long user = 0;
    for (int field = 1; field < 14; ++field) file >> word;
    file >> user;
    return user;
  };
  EXPECT_TRUE(eventually([&] { return !isHUDShown(); }));
  const long before = usedTicks();
  std::this_thread::sleep_for(std::chrono::seconds(1));
  EXPECT_LT(usedTicks() - before, 50);
}

}  // namespace
}  // namespace brivane
