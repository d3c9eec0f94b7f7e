#include <gmock/gmock.h>

#include "Machines/Mac/CoreFoundation/CFProperty.h"
#include "Machines/Mac/CoreFoundation/CFText.h"
#include "Tests/Mac/Machine/MacBench.h"

namespace brivane {
namespace {

using CFProperty = MacTest;

TEST_F(CFProperty, EveryKindComesBackAsItWent) {
  const PropertyValue::Dictionary inner = {{"ä", {std::int64_t{-1}}}};
  for (const PropertyValue& value :
       {PropertyValue{true}, PropertyValue{false}, PropertyValue{std::int64_t{1} << 62},
        PropertyValue{0.25}, PropertyValue{std::string()}, PropertyValue{std::string("ä 名 😀")},
        PropertyValue{PropertyValue::Array{{inner}, {PropertyValue::Array{}}}},
        PropertyValue{PropertyValue::Date{-1.5}}, PropertyValue{PropertyValue::Data{{0, 255}}},
        PropertyValue{PropertyValue::Data{}}}) {
    const auto object = makeCFProperty(value);
    ASSERT_TRUE(object);
    EXPECT_EQ(fake::valueOf(object.get()), value);
    EXPECT_EQ(propertyOf(object.get()), value);
  }
}

TEST_F(CFProperty, AnObjectOfAnotherKindIsPresentButUnsupported) {
  const CFReference<CFTypeRef> other(fake::makeObject(fake::otherKind));
  EXPECT_EQ(propertyOf(other.get()), PropertyValue{});
  EXPECT_EQ(propertyOf(nullptr), PropertyValue{});
}

TEST_F(CFProperty, WhatNoObjectCanStandForIsLeftOutOfItsContainer) {
  const PropertyValue value{PropertyValue::Array{
      {}, {std::string("\xFF")}, {PropertyValue::Dictionary{{"none", {}}, {"\xFF", {true}}}}}};
  EXPECT_FALSE(makeCFProperty({}));
  EXPECT_FALSE(makeCFProperty({std::string("\xFF")}));
  EXPECT_EQ(propertyOf(makeCFProperty(value).get()),
            (PropertyValue{PropertyValue::Array{{PropertyValue::Dictionary{}}}}));
}

TEST_F(CFProperty, AKeyThatIsNoTextIsPassedOver) {
  fake::FakeObject* const dictionary = fake::makeObject(fake::dictionaryKind);
  const CFReference<CFTypeRef> owner(dictionary);
  dictionary->items = {fake::makePropertyList({std::int64_t{7}}), fake::makePropertyList({true})};
  EXPECT_EQ(propertyOf(dictionary), (PropertyValue{PropertyValue::Dictionary{}}));
}

TEST_F(CFProperty, TextIsReadWholeWithNullCharactersInIt) {
  const std::string text("a\0ü", 4);
  EXPECT_EQ(textOf(makeCFText(text).get()), text);
  EXPECT_EQ(textOf(CFSTR("constant")), "constant");
  EXPECT_EQ(optionalTextOf(nullptr), std::nullopt);
}

TEST_F(CFProperty, AFilesURLIsItsPath) {
  const CFReference<CFURLRef> url(reinterpret_cast<CFURLRef>(
      fake::makeObject(fake::urlKind, {std::string("/Applications/Brivane.app")})));
  EXPECT_EQ(pathOf(url.get()), "/Applications/Brivane.app");
  EXPECT_EQ(pathOf(nullptr), std::nullopt);
}

}  // namespace
}  // namespace brivane
