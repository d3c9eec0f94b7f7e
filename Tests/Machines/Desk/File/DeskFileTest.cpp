#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Machines/Desk/File/DeskFile.h"
#include "Tests/Support/TemporaryFolder.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

DeskDescription parsed(const std::string& text) {
  auto result = parseDesk(text, "desk.json");
  if (const auto* error = std::get_if<std::string>(&result)) ADD_FAILURE() << *error;
  auto* desk = std::get_if<DeskDescription>(&result);
  return desk == nullptr ? DeskDescription{} : std::move(*desk);
}

std::string errorOf(const std::string& text) {
  const auto result = parseDesk(text, "desk.json");
  const auto* error = std::get_if<std::string>(&result);
  return error == nullptr ? "no error" : *error;
}

struct BadDesk {
  std::string text;
  std::string error;
};

std::ostream& operator<<(std::ostream& out, const BadDesk& desk) {
  return out << desk.text.substr(0, 80);
}

class DeskFileErrors : public testing::TestWithParam<BadDesk> {};

TEST_P(DeskFileErrors, NameTheFileAndThePlaceInOneLine) {
  const std::string error = errorOf(GetParam().text);
  EXPECT_EQ(error, "desk.json: " + GetParam().error);
  EXPECT_THAT(error, Not(HasSubstr("\n")));
}

INSTANTIATE_TEST_SUITE_P(
    UnknownKeys, DeskFileErrors,
    testing::Values(
        BadDesk{R"({"dispalys": []})", R"(/: unknown key "dispalys", did you mean "displays"?)"},
        BadDesk{R"({"Faults": {}})", R"(/: unknown key "Faults", did you mean "faults"?)"},
        BadDesk{R"({"zebra": 1})", R"(/: unknown key "zebra")"},
        BadDesk{R"({"a\nb": 1})", R"(/: unknown key "a\u000ab")"},
        BadDesk{R"({"displays": [{"identifier": 1}, {"identifier": 2, "bultin": true}]})",
                R"(/displays/1: unknown key "bultin", did you mean "builtIn"?)"},
        BadDesk{R"({"displays": [{"identifier": 1, "firmware": {"max": 9}}]})",
                R"(/displays/0/firmware: unknown key "max")"},
        BadDesk{R"({"faults": {"GammaTables.write": [1]}})",
                R"(/faults: unknown key "GammaTables.write")"},
        BadDesk{R"({"faults": {"GammaTables.writeTabel": [1]}})",
                R"(/faults: unknown key "GammaTables.writeTabel",)"
                R"( did you mean "GammaTables.writeTable"?)"},
        BadDesk{R"({"libraries": {"IOKit": {"symbols": {"IOAVServiceReadI2c": "nowhere"}}}})",
                R"(/libraries/IOKit/symbols: unknown key "IOAVServiceReadI2c",)"
                R"( did you mean "IOAVServiceReadI2C"?)"},
        BadDesk{
            R"({"defaults": {"com.quorrel.brivan": {}}})",
            R"(/defaults: unknown key "com.quorrel.brivan", did you mean "com.quorrel.brivane"?)"},
        BadDesk{R"({"pointer": {"x": 1, "y": 2, "z": 3}})", R"(/pointer: unknown key "z")"}));

INSTANTIATE_TEST_SUITE_P(
    WrongKinds, DeskFileErrors,
    testing::Values(
        BadDesk{"[]", "/: expected an object, found a list"},
        BadDesk{"7", "/: expected an object, found 7"},
        BadDesk{R"({"displays": {}})", "/displays: expected a list, found an object"},
        BadDesk{R"({"displays": [7]})", "/displays/0: expected an object, found 7"},
        BadDesk{
            R"({"displays": [{"identifier": 1}, {"identifier": 2},
                  {"identifier": 3, "firmware": {"maximum": "x"}}]})",
            R"(/displays/2/firmware/maximum: expected a whole number from 1 to 65535, found "x")"},
        BadDesk{R"({"displays": [{"identifier": 1.0}]})",
                "/displays/0/identifier: expected a whole number from 1 to 4294967295, found 1.0"},
        BadDesk{R"({"displays": [{"identifier": 1, "builtIn": "yes"}]})",
                R"(/displays/0/builtIn: expected true or false, found "yes")"},
        BadDesk{R"({"displays": [{"identifier": 1, "name": null}]})",
                "/displays/0/name: expected text, found null"},
        BadDesk{
            R"({"displays": [{"identifier": 1, "name": "a\u001b[31m"}]})",
            R"(/displays/0/name: expected text without control characters, found "a\u001b[31m")"},
        BadDesk{R"({"displays": [{"identifier": 1, "screen": "non"}]})",
                R"(/displays/0/screen: expected "numbered", "unnumbered" or "none", found "non",)"
                R"( did you mean "none"?)"},
        BadDesk{R"({"appearance": 5})", R"(/appearance: expected "light" or "dark", found 5)"},
        BadDesk{R"({"bundleIdentifier": false})", "/bundleIdentifier: expected text, found false"},
        BadDesk{R"({"defaults": {"com.quorrel.brivane": {"a/b": null}}})",
                "/defaults/com.quorrel.brivane/a/b: expected a value without null, numbers beyond "
                "63 bits or unknown \"$…\", found null"},
        BadDesk{
            R"({"language": ")" + std::string(100, 'x') + "\x01\"}",
            "line 1, column 115: invalid string: control character U+0001 (SOH) must be escaped "
            "to \\u0001"}));

INSTANTIATE_TEST_SUITE_P(
    OutOfRange, DeskFileErrors,
    testing::Values(
        BadDesk{R"({"displays": [{"identifier": 0}]})",
                "/displays/0/identifier: expected a whole number from 1 to 4294967295, found 0"},
        BadDesk{R"({"displays": [{"identifier": 4294967296}]})",
                "/displays/0/identifier: expected a whole number from 1 to 4294967295, found "
                "4294967296"},
        BadDesk{R"({"displays": [{"identifier": 18446744073709551616}]})",
                "/displays/0/identifier: expected a whole number from 1 to 4294967295, found "
                "18446744073709551616.0"},
        BadDesk{R"({"displays": [{"identifier": 1, "firmware": {"maximum": 0}}]})",
                "/displays/0/firmware/maximum: expected a whole number from 1 to 65535, found 0"},
        BadDesk{R"({"displays": [{"identifier": 1, "firmware": {"replyMilliseconds": -1}}]})",
                "/displays/0/firmware/replyMilliseconds: expected a whole number from 0 to 60000, "
                "found -1"},
        BadDesk{R"({"displays": [{"identifier": 1, "headroom": 0.5}]})",
                "/displays/0/headroom: expected a number from 1 to 64, found 0.5"},
        BadDesk{R"({"displays": [{"identifier": 1, "displayServices": {"level": 1.5}}]})",
                "/displays/0/displayServices/level: expected a number from 0 to 1, found 1.5"},
        BadDesk{R"({"displays": [{"identifier": 1, "frame":
                  {"x": 0, "y": 0, "width": 0, "height": 9}}]})",
                "/displays/0/frame/width: expected a number from 1 to 1000000, found 0"},
        BadDesk{R"({"displays": [{"identifier": 1, "gamma": {"capacity": 1}}]})",
                "/displays/0/gamma/capacity: expected a whole number from 2 to 16384, found 1"},
        BadDesk{
            R"({"displays": [{"identifier": 1, "gamma": {"calibrated": {"exponents": [1, 1]}}}]})",
            "/displays/0/gamma/calibrated/exponents: expected a list of 3, found 2"},
        BadDesk{
            R"({"displays": [{"identifier": 1, "gamma": {"calibrated":
                  {"red": [0, 1], "green": [0, 1], "blue": [0, 0.5, 1]}}}]})",
            R"(/displays/0/gamma/calibrated/blue: expected as many samples as in "red", 2, found 3)"},
        BadDesk{
            R"({"displays": [{"identifier": 1, "gamma": {"calibrated": {"red": [0, 1]}}}]})",
            R"(/displays/0/gamma/calibrated: expected "exponents", or "red", "green" and "blue")"},
        BadDesk{
            R"({"hidMapping": [{"source": 1, "destination": -2}]})",
            "/hidMapping/0/destination: expected a whole number from 0 to 18446744073709551615, "
            "found -2"},
        BadDesk{
            R"({"faults": {"SymbolLoader.find": [0]}})",
            "/faults/SymbolLoader.find/0: expected a whole number from 1 to 1000000000, found 0"},
        BadDesk{R"({"applications": [{"bundleIdentifier": "a", "processID": 2147483648}]})",
                "/applications/0/processID: expected a whole number from 1 to 2147483647, found "
                "2147483648"}));

INSTANTIATE_TEST_SUITE_P(
    MissingAndRepeated, DeskFileErrors,
    testing::Values(
        BadDesk{R"({"displays": [{}]})", R"(/displays/0: the key "identifier" is missing)"},
        BadDesk{R"({"displays": [{"identifir": 1}]})",
                R"(/displays/0: unknown key "identifir", did you mean "identifier"?)"},
        BadDesk{R"({"hidMapping": [{"source": 1, "destinaton": 2}]})",
                R"(/hidMapping/0: unknown key "destinaton", did you mean "destination"?)"},
        BadDesk{
            R"({"applications": [{"bundleIdentifier": "a", "hotkeys": [{"keyCode": 1, "modifiers": 1}]}]})",
            R"(/applications/0/hotkeys/0: expected "modifiers" to be a sum of 256, 512, 2048 )"
            R"(and 4096, found 1)"},
        BadDesk{R"({"defaults": {"com.quorrel.brivane": {"a": {"$data": "zz"}}}})",
                R"(/defaults/com.quorrel.brivane/a: expected a value without null, numbers beyond )"
                R"(63 bits or unknown "$…", found an object)"},
        BadDesk{R"({"pointer": {"x": 1}})", R"(/pointer: the key "y" is missing)"},
        BadDesk{R"({"hidMapping": [{"source": 1}]})",
                R"(/hidMapping/0: the key "destination" is missing)"},
        BadDesk{R"({"applications": [{}]})",
                R"(/applications/0: the key "bundleIdentifier" is missing)"},
        BadDesk{R"({"displays": [{"identifier": 3}, {"identifier": 4}, {"identifier": 3}]})",
                "/displays/2/identifier: 3 is already the identifier of /displays/0"},
        BadDesk{R"({"displays": [], "displays": []})", R"(/: the key "displays" appears twice)"},
        BadDesk{R"({"displays": [{"identifier": 1}, {"identifier": 2, "firmware":
                  {"maximum": 50, "level": 3, "maximum": 60}}]})",
                R"(/displays/1/firmware: the key "maximum" appears twice)"},
        BadDesk{R"({"displays": [{"identifier": 1, "firmware": {"features": [{"code": 16}]}}]})",
                "/displays/0/firmware/features/0: code 16 is luminance, which is not listed here"},
        BadDesk{R"({"displays": [{"identifier": 1, "firmware": {"features":
                  [{"code": 18}, {"code": 18}]}}]})",
                "/displays/0/firmware/features/1: code 18 is in the list already"}));

INSTANTIATE_TEST_SUITE_P(
    Syntax, DeskFileErrors,
    testing::Values(
        BadDesk{"", "it is empty"},
        BadDesk{" \n ",
                "line 2, column 2: unexpected end of input; expected '[', '{', or a literal"},
        BadDesk{"{\n  \"displays\": [\n    {\"identifier\": 1,}\n",
                "line 3, column 22: unexpected '}'; expected string literal"},
        BadDesk{"{\"displays\": [",
                "line 1, column 15: unexpected end of input; expected '[', '{', "
                "or a literal"},
        BadDesk{"{} {}", "line 1, column 4: unexpected '{'; expected end of input"},
        BadDesk{"{\"a\": 1e999}", "line 1, column 11: number overflow parsing '1e999'"},
        BadDesk{"{\"language\": \"\xff\"}", "line 1, column 15: this is not UTF-8 text"},
        BadDesk{"\xff\xfe{", "line 1, column 1: invalid literal"},
        BadDesk{std::string(5000, '\0'), "line 1, column 1: a zero byte"},
        BadDesk{std::string("{}\n\0", 4), "line 2, column 1: a zero byte"},
        BadDesk{
            std::string(40, '[') + std::string(40, ']'),
            "/0/0/0/0/0/0/0/0/0/0/0/0/0/0/0/0/0/0/0/0/0/0/0/0/0/0/0/0/0/0/0: nested more than 32 "
            "levels deep"}));

TEST(DeskFile, ThatIsAnEmptyObjectIsADeskWithoutDisplays) {
  const auto desk = parsed("{}");
  EXPECT_THAT(desk.displays, IsEmpty());
  EXPECT_EQ(desk.pointer, (Point{0, 0}));
  EXPECT_EQ(desk.bundleIdentifier, "com.quorrel.brivane");
  EXPECT_TRUE(desk.isAccessibilityGranted);
  EXPECT_EQ(desk.tools.hidUtil, ToolPresence::present);
  EXPECT_FALSE(desk.tallowinDefaults.has_value());
  EXPECT_EQ(desk.language, "en");
  EXPECT_EQ(desk.appearance, DeskAppearance::light);
  EXPECT_EQ(desk.keyboard.layout, KeyboardLayout::us);
  EXPECT_EQ(desk.keyboard.brightnessUsages, BrightnessUsages::consumer);
  EXPECT_EQ(desk.keyboard.repeatDelaySeconds, 0.5);
  EXPECT_EQ(desk.keyboard.repeatPeriodSeconds, 1.0 / 12);
  EXPECT_EQ(desk.tools.launchControl, ToolPresence::present);
  EXPECT_THAT(desk.missingResources, IsEmpty());
  EXPECT_FALSE(desk.launchAgent.isInstalled);
}

TEST(DeskFile, GivesADisplayWithNothingButAnIdentifierWhatMostMonitorsHave) {
  const auto desk = parsed(R"({"displays": [{"identifier": 7}, {"identifier": 9}]})");
  const auto& first = desk.displays.at(0);
  const auto& second = desk.displays.at(1);
  EXPECT_EQ(first.name, "Display 7");
  EXPECT_FALSE(first.isBuiltIn);
  EXPECT_EQ(first.vendor, 8738u);
  EXPECT_EQ(first.model, 7u);
  EXPECT_EQ(first.serial, 0u);
  EXPECT_EQ(first.frame, (Rect{0, 0, 1920, 1080}));
  EXPECT_EQ(second.frame, (Rect{1920, 0, 1920, 1080}));
  EXPECT_EQ(first.port, "dispext0");
  EXPECT_EQ(second.port, "dispext1");
  EXPECT_EQ(first.screen, ScreenPresence::numbered);
  ASSERT_TRUE(first.firmware.has_value());
  EXPECT_EQ(first.firmware->mood, MonitorMood::answering);
  EXPECT_EQ(first.firmware->maximum, 100);
  EXPECT_EQ(first.firmware->level, 75);
  EXPECT_EQ(first.firmware->replyMilliseconds, 0);
  EXPECT_EQ(first.gamma->capacity, 1024u);
  EXPECT_EQ(first.headroom, 1.0);
  EXPECT_FALSE(first.displayServices.has_value());
  EXPECT_EQ(desk.pointer, (Point{960, 540}));
}

TEST(DeskFile, GivesABuiltInPanelDisplayServicesAndNoFirmware) {
  const auto desk = parsed(R"({"displays": [{"identifier": 1, "builtIn": true}]})");
  const auto& panel = desk.displays.at(0);
  EXPECT_EQ(panel.name, "Built-in Display");
  EXPECT_EQ(panel.vendor, 1552u);
  EXPECT_EQ(panel.port, "disp0");
  EXPECT_FALSE(panel.firmware.has_value());
  ASSERT_TRUE(panel.displayServices.has_value());
  EXPECT_EQ(panel.displayServices->level, 0.5F);
  EXPECT_TRUE(panel.displayServices->canChange);
}

TEST(DeskFile, GivesPortsThatAreStillFree) {
  const auto desk =
      parsed(R"({"displays": [{"identifier": 1, "port": "dispext0"}, {"identifier": 2}]})");
  EXPECT_EQ(desk.displays.at(1).port, "dispext1");
}

TEST(DeskFile, ReadsEveryKeyOfADisplay) {
  const auto desk = parsed(R"({"displays": [{
      "identifier": 4294967295, "name": "Ünïcode 名", "builtIn": false, "vendor": 1, "model": 2,
      "serial": 3, "frame": {"x": -1.5, "y": 2, "width": 3, "height": 4}, "port": "dispext7",
      "screen": "unnumbered", "headroom": 1.5,
      "registry": {"DisplayAttributes": null, "ProductAttributes": 5,
        "LegacyManufacturerID": "x", "ProductID": [1], "SerialNumber": {"a": true},
        "Location": "Embedded", "panelDepth": 9, "panelController": "soc", "proxy": false,
        "proxyParent": "dispext7:x", "service": false},
      "firmware": {"mood": "stale", "asleep": true, "luminance": false, "maximum": 50,
        "level": 60, "replyMilliseconds": 90, "wakeSeconds": 2.5, "ignoresEveryOtherWrite": true,
        "revertsAfterWake": true, "features": [{"code": 18, "maximum": 40, "level": 7},
                                               {"code": 19}]},
      "gamma": {"capacity": 256, "calibrated": {"exponents": [1.1, 1, 0.9]}},
      "displayServices": {"level": 0.25, "canChange": false}}]})");
  const auto& display = desk.displays.at(0);
  EXPECT_EQ(display.identifier, 4294967295u);
  EXPECT_EQ(display.name, "Ünïcode 名");
  EXPECT_EQ(display.vendor, 1u);
  EXPECT_EQ(display.model, 2u);
  EXPECT_EQ(display.serial, 3u);
  EXPECT_EQ(display.frame, (Rect{-1.5, 2, 3, 4}));
  EXPECT_EQ(display.port, "dispext7");
  EXPECT_EQ(display.screen, ScreenPresence::unnumbered);
  EXPECT_EQ(display.headroom, 1.5);
  const auto& registry = display.registry;
  ASSERT_TRUE(registry.displayAttributes.has_value());
  EXPECT_EQ(*registry.displayAttributes, std::nullopt);
  EXPECT_EQ(**registry.productAttributes, PropertyValue{std::int64_t{5}});
  EXPECT_EQ(**registry.legacyManufacturerID, PropertyValue{std::string("x")});
  EXPECT_EQ(**registry.productID, (PropertyValue{PropertyValue::Array{{std::int64_t{1}}}}));
  EXPECT_EQ(**registry.serialNumber, (PropertyValue{PropertyValue::Dictionary{{"a", {true}}}}));
  EXPECT_EQ(**registry.location, PropertyValue{std::string("Embedded")});
  EXPECT_EQ(registry.panelDepth, 9);
  EXPECT_EQ(registry.panelController, "soc");
  EXPECT_FALSE(registry.hasProxy);
  EXPECT_EQ(registry.proxyParent, "dispext7:x");
  EXPECT_FALSE(registry.serviceCanBeCreated);
  const auto& firmware = *display.firmware;
  EXPECT_EQ(firmware.mood, MonitorMood::stale);
  EXPECT_TRUE(firmware.isAsleep);
  EXPECT_FALSE(firmware.supportsLuminance);
  EXPECT_EQ(firmware.maximum, 50);
  EXPECT_EQ(firmware.level, 60);
  EXPECT_EQ(firmware.replyMilliseconds, 90);
  EXPECT_EQ(firmware.wakeSeconds, 2.5);
  EXPECT_TRUE(firmware.ignoresEveryOtherWrite);
  EXPECT_TRUE(firmware.revertsAfterWake);
  ASSERT_EQ(firmware.features.size(), 2u);
  EXPECT_EQ(firmware.features[0].maximum, 40);
  EXPECT_EQ(firmware.features[0].level, 7);
  EXPECT_EQ(firmware.features[1].level, 100);
  EXPECT_EQ(display.gamma->capacity, 256u);
  EXPECT_EQ(std::get<GammaDescription::Exponents>(display.gamma->calibrated)[2], 0.9);
  EXPECT_EQ(display.displayServices->level, 0.25F);
  EXPECT_FALSE(display.displayServices->canChange);
}

TEST(DeskFile, ReadsEveryKeyBesideTheDisplays) {
  const auto desk = parsed(R"({
      "pointer": {"x": -3, "y": 4.5},
      "hidMapping": [{"source": 30064771129, "destination": 18446744073709551615}],
      "hidutil": "refusing", "grants": {"accessibility": false}, "bundleIdentifier": null,
      "applications": [{"bundleIdentifier": "com.quorrel.brivane", "processID": 4242}],
      "defaults": {"com.quorrel.brivane": {"ddc.1.2.3": true, "brightness.1.2.3": 40, "x": 0.5},
                   "com.quorrel.tallowin": {}},
      "language": "de", "appearance": "dark", "keyboard": {"layout": "german"},
      "launchAgent": {"installed": true, "enabled": false},
      "libraries": {"IOKit": {"opens": false, "symbols": {"IOAVServiceReadI2C": "global"}},
                    "DisplayServices": {"symbols": {"DisplayServicesSetBrightness": "nowhere"}}},
      "faults": {"GammaTables.writeTable": [2, 3], "SymbolLoader.find": [1]}})");
  EXPECT_EQ(desk.pointer, (Point{-3, 4.5}));
  EXPECT_THAT(desk.hidMapping, ElementsAre(HIDMappingEntry{30064771129u, 18446744073709551615u}));
  EXPECT_EQ(desk.tools.hidUtil, ToolPresence::refusing);
  EXPECT_FALSE(desk.isAccessibilityGranted);
  EXPECT_EQ(desk.bundleIdentifier, std::nullopt);
  EXPECT_EQ(desk.applications.at(0).processID, 4242);
  EXPECT_EQ(desk.brivaneDefaults.values,
            (PropertyValue::Dictionary{
                {"ddc.1.2.3", {true}}, {"brightness.1.2.3", {std::int64_t{40}}}, {"x", {0.5}}}));
  EXPECT_TRUE(desk.tallowinDefaults.has_value());
  EXPECT_EQ(desk.language, "de");
  EXPECT_EQ(desk.appearance, DeskAppearance::dark);
  EXPECT_EQ(desk.keyboard.layout, KeyboardLayout::german);
  EXPECT_TRUE(desk.launchAgent.isInstalled);
  EXPECT_FALSE(desk.launchAgent.isEnabled);
  EXPECT_FALSE(desk.ioKit.canBeOpened);
  EXPECT_EQ(desk.ioKit.symbols.at("IOAVServiceReadI2C"), SymbolPlace::global);
  EXPECT_EQ(desk.displayServicesLibrary.symbols.at("DisplayServicesSetBrightness"),
            SymbolPlace::nowhere);
  EXPECT_EQ(desk.faults.at("GammaTables.writeTable"), (std::set<std::int64_t>{2, 3}));
}

TEST(DeskFile, TellsAnEditedSectionFromOneThatOnlyLooksDifferent) {
  const auto firmware = [](const std::string& text) {
    return parsed(R"({"displays": [{"identifier": 1, "firmware": )" + text + "}]}")
        .displays.at(0)
        .firmware->fingerprint;
  };
  EXPECT_EQ(firmware(R"({"maximum": 50, "level": 4})"), firmware(R"({ "level":4,"maximum":50 })"));
  EXPECT_NE(firmware(R"({"maximum": 50, "level": 4})"), firmware(R"({"maximum": 50, "level": 5})"));
}

std::string errorOfFile(const std::filesystem::path& file) {
  const auto result = readDeskFile(file);
  const auto* error = std::get_if<std::string>(&result);
  return error == nullptr ? "no error" : *error;
}

TEST(DeskFile, ThatIsNotThereSaysSo) {
  const TemporaryFolder folder;
  const auto file = folder / "missing.json";
  EXPECT_EQ(errorOfFile(file), file.string() + ": No such file or directory");
}

TEST(DeskFile, ThatIsAFolderOrAPipeSaysSoAndHangsNowhere) {
  const TemporaryFolder folder;
  EXPECT_EQ(errorOfFile(folder.path), folder.path.string() + ": it is a folder");
  const auto pipe = folder / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(errorOfFile(pipe), pipe.string() + ": it is no ordinary file");
}

TEST(DeskFile, ThatMayNotBeReadSaysSo) {
  if (geteuid() == 0) {
    // Nothing is unreadable to root; a path through a file is refused to everyone.
    const TemporaryFolder folder;
    const auto file = folder.write("file", "{}");
    EXPECT_EQ(errorOfFile(file / "desk.json"), (file / "desk.json").string() + ": Not a directory");
    return;
  }
  const TemporaryFolder folder;
  const auto file = folder.write("desk.json", "{}");
  std::filesystem::permissions(file, std::filesystem::perms::none);
  EXPECT_EQ(errorOfFile(file), file.string() + ": Permission denied");
}

TEST(DeskFile, OfAHundredMegabytesOfZerosIsRefusedWithoutReadingIt) {
  const TemporaryFolder folder;
  const auto file = folder.write("zeros.json", "");
  std::filesystem::resize_file(file, 100'000'000);
  rusage before{};
  rusage after{};
  getrusage(RUSAGE_SELF, &before);
  EXPECT_EQ(errorOfFile(file),
            file.string() + ": it has 100000000 bytes, more than the 8388608 allowed");
  getrusage(RUSAGE_SELF, &after);
  EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 50'000) << "kilobytes";
}

TEST(DeskFile, WithALineBreakInItsNameStillGivesOneLine) {
  const TemporaryFolder folder;
  EXPECT_THAT(errorOfFile(folder / "a\nb.json"), Not(HasSubstr("\n")));
}

TEST(DeskFile, TruncatedAnywhereGivesOneLineAndNeverADesk) {
  const std::string whole =
      R"({"displays": [{"identifier": 1, "name": "ü", "frame": {"x": 1.5e1, "y": 0, "width": 3, )"
      R"("height": 4}}], "faults": {"SymbolLoader.find": [1, 22]}, "bundleIdentifier": null})";
  ASSERT_NE(errorOf(whole + "x"), "no error");
  ASSERT_EQ(errorOf(whole), "no error");
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const auto error = errorOf(whole.substr(0, length));
    EXPECT_THAT(error, StartsWith(length == 0 ? "desk.json: it is empty" : "desk.json: line 1, "));
    EXPECT_THAT(error, Not(HasSubstr("\n")));
  }
}

TEST(DeskFile, ThatComesWithTheProgramShowsWhatItCanDo) {
  const auto result = readDeskFile("Machines/Desk/default-desk.json");
  ASSERT_TRUE(std::holds_alternative<DeskDescription>(result)) << std::get<std::string>(result);
  const auto& desk = std::get<DeskDescription>(result);
  ASSERT_EQ(desk.displays.size(), 7u);
  EXPECT_TRUE(desk.displays[0].isBuiltIn);
  EXPECT_GT(desk.displays[0].headroom, 1.0);
  EXPECT_EQ(desk.displays[1].vendor, 1552u);
  EXPECT_EQ(desk.displays[2].firmware->maximum, 255);
  EXPECT_TRUE(mouseInRect(desk.pointer, desk.displays[2].frame));
  EXPECT_EQ(desk.displays[3].model, desk.displays[4].model);
  EXPECT_EQ(desk.displays[3].serial, 0u);
  EXPECT_EQ(desk.displays[5].firmware->maximum, 7000);
  EXPECT_GT(desk.displays[5].firmware->replyMilliseconds, 40);
  EXPECT_FALSE(desk.displays[6].firmware.has_value());
}

TEST(DeskFile, ThatComesWithTheProgramHasScreensThatShareNoPoint) {
  const auto desk = std::get<DeskDescription>(readDeskFile("Machines/Desk/default-desk.json"));
  for (const auto& left : desk.displays) {
    for (const auto& right : desk.displays) {
      if (&left == &right) continue;
      const bool isApart = left.frame.x + left.frame.width <= right.frame.x ||
                           right.frame.x + right.frame.width <= left.frame.x ||
                           left.frame.y + left.frame.height <= right.frame.y ||
                           right.frame.y + right.frame.height <= left.frame.y;
      EXPECT_TRUE(isApart) << left.name << ", " << right.name;
    }
  }
}

TEST(DeskFile, ReadsWhatOnlyTheResidentProgramUses) {
  const auto desk = parsed(R"({
      "keyboard": {"layout": "french", "brightnessUsages": "vendor", "repeatDelaySeconds": 0.25,
                   "repeatPeriodSeconds": 0.03},
      "applications": [{"bundleIdentifier": "a", "hotkeys": [{"keyCode": 126, "modifiers": 6144},
                                                             {"keyCode": 1}]}],
      "launchctl": "missing", "missingResources": ["A.bundle"],
      "program": {"executable": "/x", "modified": 5, "arguments": ["y", "z"]}})");
  EXPECT_EQ(desk.keyboard.layout, KeyboardLayout::french);
  EXPECT_EQ(desk.keyboard.brightnessUsages, BrightnessUsages::vendor);
  EXPECT_EQ(desk.keyboard.repeatDelaySeconds, 0.25);
  EXPECT_EQ(desk.keyboard.repeatPeriodSeconds, 0.03);
  EXPECT_THAT(desk.applications.at(0).hotkeys,
              ElementsAre(KeyCombination{126, 6144}, KeyCombination{1, 0}));
  EXPECT_EQ(desk.tools.launchControl, ToolPresence::missing);
  EXPECT_THAT(desk.missingResources, ElementsAre("A.bundle"));
  EXPECT_EQ(desk.program.executablePath, "/x");
  EXPECT_EQ(desk.program.modificationSeconds, 5);
  EXPECT_EQ(desk.program.arguments, (std::vector<std::string>{"y", "z"}));
}

}  // namespace
}  // namespace brivane
