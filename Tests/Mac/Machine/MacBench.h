#pragma once

#include <gtest/gtest.h>

#include "Tests/Mac/Machine/Fakes/FakeCoreFoundation.h"
#include "Tests/Mac/Machine/Fakes/FakeInput.h"
#include "Tests/Mac/Machine/Fakes/FakeMac.h"
#include "Tests/Mac/Machine/Fakes/FakeRunLoop.h"
#include "Tests/Mac/Machine/Fakes/FakeSystem.h"

namespace brivane {

/// A new Mac for each test, to which everything that was taken from it must have come back at the
/// end.
class MacTest : public testing::Test {
 protected:
  MacTest() {
    fake::resetMac();
    fake::resetSystem();
    fake::resetInput();
    objectsBefore = fake::liveObjects();
    constantsBefore = fake::heldConstants();
    ioObjectsBefore = fake::liveIOObjects();
  }
  ~MacTest() override {
    fake::drainMainQueue();
    EXPECT_EQ(fake::liveRegistrations(), 0u) << "handlers, hotkeys and taps";
    EXPECT_EQ(fake::liveDispatchObjects(), 0u) << "queues and sources";
    EXPECT_EQ(fake::liveObjects(), objectsBefore) << "CoreFoundation objects";
    EXPECT_EQ(fake::heldConstants(), constantsBefore) << "constants of CoreFoundation";
    EXPECT_EQ(fake::liveIOObjects(), ioObjectsBefore) << "objects of the I/O registry";
  }

 private:
  std::size_t objectsBefore = 0;
  long constantsBefore = 0;
  std::size_t ioObjectsBefore = 0;
};

}  // namespace brivane
