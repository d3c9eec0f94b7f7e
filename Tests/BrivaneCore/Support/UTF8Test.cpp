#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "BrivaneCore/Support/UTF8.h"

namespace brivane {
namespace {

TEST(UTF8, AcceptsWellFormedSequencesOfEveryLength) {
  const std::vector<std::string> texts = {
      "",                    // nothing
      "plain",               // one byte each
      std::string(1, '\0'),  // U+0000
      "\x7F",                // U+007F
      "\xC2\x80",            // U+0080
      "\xDF\xBF",            // U+07FF
      "\xE0\xA0\x80",        // U+0800
      "\xED\x9F\xBF",        // U+D7FF
      "\xEE\x80\x80",        // U+E000
      "\xEF\xBF\xBF",        // U+FFFF
      "\xF0\x90\x80\x80",    // U+10000
      "\xF3\xBF\xBF\xBF",    // U+FFFFF
      "\xF4\x8F\xBF\xBF",    // U+10FFFF
      "a — b",
  };
  for (const auto& text : texts) EXPECT_TRUE(isValidUTF8(text)) << text;
}

TEST(UTF8, RefusesEverythingElse) {
  const std::vector<std::string> texts = {
      "\x80",                  // continues nothing
      "a\xBF",                 //
      "\xC2",                  // ends early
      "\xE1\x80",              //
      "\xF1\x80\x80",          //
      "\xC2z",                 // not continued
      "\xE1\x80z",             //
      "\xF1\x80\x80\xC0",      //
      "\xC0\x80",              // longer than needed
      "\xC1\xBF",              //
      "\xE0\x9F\xBF",          //
      "\xF0\x8F\xBF\xBF",      //
      "\xED\xA0\x80",          // surrogates
      "\xED\xBF\xBF",          //
      "\xF4\x90\x80\x80",      // above U+10FFFF
      "\xF5\x80\x80\x80",      //
      "\xFF",                  //
      "good until \xFE here",  //
  };
  for (const auto& text : texts) EXPECT_FALSE(isValidUTF8(text)) << text;
}

}  // namespace
}  // namespace brivane
