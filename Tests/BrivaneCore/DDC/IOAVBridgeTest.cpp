#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BrivaneCore/DDC/IOAVBridge.h"
#include "Tests/Support/FakeMachine.h"
#include "Tests/Support/SystemLibraries.h"

namespace brivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string openCall = std::string("open ") + ioKit + " 1";

std::string frameworkCall(const std::string& name) {
  return std::string("find ") + ioKit + " " + name;
}

struct IOAVBridgeTest : testing::Test {
  FakeMachine machine;
  FakeSymbolLoader& loader = machine.loader;
  IOAVBridge bridge{loader};
};

TEST_F(IOAVBridgeTest, LooksNothingUpBeforeItIsNeeded) {
  machine.bus.install(loader);
  EXPECT_THAT(loader.calls, IsEmpty());
  EXPECT_TRUE(bridge.writeI2C());
  EXPECT_THAT(loader.calls, ElementsAre(openCall, frameworkCall("IOAVServiceWriteI2C")));
}

TEST_F(IOAVBridgeTest, OpensTheFrameworkOnceAndLooksEachSymbolUpOnce) {
  machine.bus.install(loader);
  for (int i = 0; i < 3; ++i) {
    EXPECT_TRUE(bridge.createWithService());
    EXPECT_TRUE(bridge.writeI2C());
    EXPECT_TRUE(bridge.readI2C());
    EXPECT_TRUE(bridge.isComplete());
  }
  EXPECT_THAT(loader.calls, ElementsAre(openCall, frameworkCall("IOAVServiceCreateWithService"),
                                        frameworkCall("IOAVServiceWriteI2C"),
                                        frameworkCall("IOAVServiceReadI2C")));
}

TEST_F(IOAVBridgeTest, ASymbolThatTheFrameworkLacksIsTakenFromWhatIsLoaded) {
  machine.bus.install(loader);
  auto& symbols = loader.libraries[ioKit];
  loader.libraries[""]["IOAVServiceReadI2C"] = symbols.at("IOAVServiceReadI2C");
  symbols.erase("IOAVServiceReadI2C");
  EXPECT_TRUE(bridge.readI2C());
  EXPECT_THAT(loader.calls, ElementsAre(openCall, frameworkCall("IOAVServiceReadI2C"),
                                        "find global IOAVServiceReadI2C"));
}

TEST_F(IOAVBridgeTest, WithoutTheFrameworkSymbolsAreTakenFromWhatIsLoaded) {
  machine.bus.install(loader);
  loader.libraries[""] = loader.libraries[ioKit];
  loader.libraries.erase(ioKit);
  EXPECT_TRUE(bridge.isComplete());
  EXPECT_THAT(loader.calls,
              ElementsAre(openCall, "find global IOAVServiceCreateWithService",
                          "find global IOAVServiceWriteI2C", "find global IOAVServiceReadI2C"));
}

TEST_F(IOAVBridgeTest, AMissingSymbolIsNeverLookedUpAgain) {
  EXPECT_FALSE(bridge.writeI2C());
  machine.bus.install(loader);
  EXPECT_FALSE(bridge.writeI2C());
  EXPECT_THAT(loader.calls, ElementsAre(openCall, "find global IOAVServiceWriteI2C"));
}

TEST_F(IOAVBridgeTest, IsCompleteOnlyWithAllThreeSymbols) {
  for (const std::string missing :
       {"IOAVServiceCreateWithService", "IOAVServiceWriteI2C", "IOAVServiceReadI2C"}) {
    FakeMachine incomplete;
    incomplete.bus.install(incomplete.loader);
    incomplete.loader.libraries[ioKit].erase(missing);
    EXPECT_FALSE(IOAVBridge(incomplete.loader).isComplete()) << missing;
  }
}

}  // namespace
}  // namespace brivane
