#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>

#include "Machines/Desk/Machine/VirtualRuntime.h"
#include "Machines/Mac/Frame/Frame.h"
#include "Tests/Mac/Machine/AppKit/FakeDesktop.h"

extern "C" {
void* objc_autoreleasePoolPush();
void objc_autoreleasePoolPop(void* pool);
}

namespace brivane {

/// A pool for a whole test, as the run loop has one for each of its turns.
class TestPool {
 public:
  TestPool() = default;
  ~TestPool() { objc_autoreleasePoolPop(pool); }
  TestPool(const TestPool&) = delete;
  TestPool& operator=(const TestPool&) = delete;

 private:
  void* const pool = objc_autoreleasePoolPush();
};

/// Fails the test when objects, observers or status items are left that weren't there before. It
/// must go after everything that the test makes.
class NothingIsLeft {
 public:
  NothingIsLeft();
  ~NothingIsLeft();
  NothingIsLeft(const NothingIsLeft&) = delete;
  NothingIsLeft& operator=(const NothingIsLeft&) = delete;

 private:
  std::map<std::string, long> before;
};

/// A frame on a new desktop, in virtual time.
class AppKitBench {
 public:
  AppKitBench();

  FakeDesktop& desktop = FakeDesktop::shared();

 private:
  NothingIsLeft check;
  TestPool pool;

 public:
  VirtualRuntime runtime;
  std::unique_ptr<MacFrame> frame;

  void pass(double seconds) { runtime.runFor(fromSeconds(seconds)); }
};

/// A test of one part of the frame.
class AppKitTest : public testing::Test {
 protected:
  AppKitBench bench;
  FakeDesktop& desktop = bench.desktop;
  MacFrame& frame = *bench.frame;
};

}  // namespace brivane
