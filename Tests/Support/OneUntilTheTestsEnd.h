#pragma once

#include <gtest/gtest.h>

#include <memory>

namespace brivane {

/// Keeps the one object of its kind of a test program, at first null, and destroys it when the
/// tests are over: Qt's application must end before the libraries that it uses do. To be called
/// before the tests begin.
template <typename One>
std::unique_ptr<One>& oneUntilTheTestsEnd() {
  struct Holder : testing::Environment {
    void TearDown() override { one.reset(); }
    std::unique_ptr<One> one;
  };
  auto* const holder = new Holder;
  testing::AddGlobalTestEnvironment(holder);
  return holder->one;
}

}  // namespace brivane
