#include "rowset/utf8.h"

#include <gtest/gtest.h>

#include <string>

namespace tolvane::rowset {
namespace {

TEST(Utf8Test, WellFormedTextIsFound) {
  for (const char* text : {"", "plain", "eight byte", "é中\xF0\x9F\x98\x80", "aaaaaaaaé"}) {
    EXPECT_EQ(invalidUtf8(text), std::string::npos) << text;
  }
}

TEST(Utf8Test, TheFirstBadByteIsTold) {
  EXPECT_EQ(invalidUtf8("\xFF"), 0U);
  EXPECT_EQ(invalidUtf8("ab\xC3("), 2U);
  EXPECT_EQ(invalidUtf8("aaaaaaaaaa\x80"), 10U);
  EXPECT_EQ(invalidUtf8("\xC0\x80"), 0U);          // longer than needed
  EXPECT_EQ(invalidUtf8("\xED\xA0\x80"), 0U);      // half of a surrogate pair
  EXPECT_EQ(invalidUtf8("\xF4\x90\x80\x80"), 0U);  // beyond the last character
  EXPECT_EQ(invalidUtf8("\xE4\xB8"), 0U);          // cut short
}

}  // namespace
}  // namespace tolvane::rowset
