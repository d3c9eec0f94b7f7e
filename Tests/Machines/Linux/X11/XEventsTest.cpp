#include <gmock/gmock.h>

#include <memory>

#include "Tests/Machines/Linux/X11/XInput.h"

namespace brivane {
namespace {

class XEventsTest : public XInputTest {
 protected:
  /// Causes an event for every client.
  void causeEvent() {
    ASSERT_NE(events.connection(), nullptr);
    rig.useEvdevKeymap("de");
  }

  int reported = 0;
};

TEST_F(XEventsTest, EventsThatArriveWithAReplyAreDeliveredByALaterTask) {
  const auto observation = events.observe([this](const xcb_generic_event_t&) { ++reported; });
  causeEvent();
  keyboard.isKeyDown(0);
  EXPECT_EQ(reported, 0);
  settle();
  EXPECT_GT(reported, 0);
}

TEST_F(XEventsTest, AnObserverMayDropAnotherWhoseTurnHasNotCome) {
  Observation second;
  const auto first = events.observe([&](const xcb_generic_event_t&) { second.reset(); });
  second = events.observe([this](const xcb_generic_event_t&) { ++reported; });
  causeEvent();
  settle();
  EXPECT_EQ(second, nullptr);
  EXPECT_EQ(reported, 0);
}

TEST_F(XEventsTest, TheConnectionMayEndWithinAnEvent) {
  auto own = std::make_unique<XEvents>(rig.display(), runtime);
  const auto first = own->observe([&](const xcb_generic_event_t&) { own.reset(); });
  const auto second = own->observe([this](const xcb_generic_event_t&) { ++reported; });
  ASSERT_NE(own->connection(), nullptr);
  causeEvent();
  settle();
  EXPECT_EQ(own, nullptr);
  EXPECT_EQ(reported, 0);
}

}  // namespace
}  // namespace brivane
