#include <gmock/gmock.h>

#include <memory>

#include "Tests/Machines/Linux/X11/XInput.h"

namespace brivane {
namespace {

class XEventsTest : public XInputTest {
 protected:
  /// Something that every client is told.
  void makeNews() {
    ASSERT_NE(events.connection(), nullptr);
    rig.useEvdevKeymap("de");
  }

  int heard = 0;
};

TEST_F(XEventsTest, EventsThatArriveWithAReplyAreDeliveredByALaterTask) {
  const auto observation = events.observe([this](const xcb_generic_event_t&) { ++heard; });
  makeNews();
  keyboard.isKeyDown(0);
  EXPECT_EQ(heard, 0);
  settle();
  EXPECT_GT(heard, 0);
}

TEST_F(XEventsTest, AnObserverMayDropAnotherWhoseTurnHasNotCome) {
  Observation second;
  const auto first = events.observe([&](const xcb_generic_event_t&) { second.reset(); });
  second = events.observe([this](const xcb_generic_event_t&) { ++heard; });
  makeNews();
  settle();
  EXPECT_EQ(second, nullptr);
  EXPECT_EQ(heard, 0);
}

TEST_F(XEventsTest, TheConnectionMayEndWithinAnEvent) {
  auto own = std::make_unique<XEvents>(rig.display(), runtime);
  const auto first = own->observe([&](const xcb_generic_event_t&) { own.reset(); });
  const auto second = own->observe([this](const xcb_generic_event_t&) { ++heard; });
  ASSERT_NE(own->connection(), nullptr);
  makeNews();
  settle();
  EXPECT_EQ(own, nullptr);
  EXPECT_EQ(heard, 0);
}

}  // namespace
}  // namespace brivane
