#include <gtest/gtest.h>

#include "Machines/Common/Files/TaggedProperty.h"

namespace brivane {
namespace {

using Dictionary = PropertyValue::Dictionary;

PropertyValue text(const char* value) {
  return {std::string(value)};
}

TEST(TaggedProperty, ADateIsItsSecondsUnderOneKey) {
  EXPECT_EQ(tagged(PropertyValue::Date{-0.5}), (Dictionary{{"$date", {-0.5}}}));
  EXPECT_EQ(untagged({{"$date", {-0.5}}}), (PropertyValue{PropertyValue::Date{-0.5}}));
  EXPECT_EQ(untagged({{"$date", {std::int64_t{3}}}}), (PropertyValue{PropertyValue::Date{3}}));
}

TEST(TaggedProperty, RawDataIsHexadecimalDigits) {
  const PropertyValue::Data data{{0x0A, 0x00, 0xFE}};
  EXPECT_EQ(tagged(data), (Dictionary{{"$data", text("0a00fe")}}));
  EXPECT_EQ(untagged({{"$data", text("0A00fe")}}), PropertyValue{data});
  EXPECT_EQ(untagged({{"$data", text("")}}), PropertyValue{PropertyValue::Data{}});
}

TEST(TaggedProperty, WhatIsNeitherStaysADictionary) {
  for (const Dictionary& dictionary :
       {Dictionary{}, Dictionary{{"date", {1.0}}}, Dictionary{{"$date", text("today")}},
        Dictionary{{"$data", text("0a0")}}, Dictionary{{"$data", text("0x")}},
        Dictionary{{"$data", {1.0}}}, Dictionary{{"$", {true}}},
        Dictionary{{"$data", text("0a")}, {"$date", {1.0}}}}) {
    EXPECT_EQ(untagged(dictionary), PropertyValue{dictionary});
    EXPECT_EQ(untagged(tagged(dictionary)), PropertyValue{dictionary});
  }
}

TEST(TaggedProperty, ADictionaryThatLooksTaggedComesBackAsItWas) {
  for (const Dictionary& dictionary :
       {Dictionary{{"$date", {1.0}}}, Dictionary{{"$data", text("0a")}}, Dictionary{{"$$", {true}}},
        Dictionary{{"$$$date", {1.0}}}}) {
    EXPECT_EQ(tagged(dictionary).begin()->first, "$" + dictionary.begin()->first);
    EXPECT_EQ(untagged(tagged(dictionary)), PropertyValue{dictionary});
  }
}

}  // namespace
}  // namespace brivane
