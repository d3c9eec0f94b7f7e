#include <gtest/gtest.h>

#include "BrivaneCore/Input/AccessibilityPermission.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {
namespace {

TEST(AccessibilityPermission, IsGrantedWhileTheSystemTrustsThisProcess) {
  FakeAccessibility access;
  const AccessibilityPermission permission(access);
  EXPECT_FALSE(permission.isGranted());
  access.trusted = true;
  EXPECT_TRUE(permission.isGranted());
  access.trusted = false;
  EXPECT_FALSE(permission.isGranted());
}

}  // namespace
}  // namespace brivane
