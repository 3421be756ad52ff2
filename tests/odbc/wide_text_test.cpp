#include "odbc/wide_text.h"

#include <gtest/gtest.h>

#include "platform/error.h"

namespace tolvane::odbc {
namespace {

TEST(WideTextTest, TextsOfEveryPlaneGoThereAndBack) {
  const std::pair<std::string, std::u16string> table[] = {{"", u""},
                                                          {"abc", u"abc"},
                                                          {"\xC3\xA9", u"\u00E9"},
                                                          {"资产负债表", u"资产负债表"},
                                                          {"\xF0\x9F\x98\x80", u"\U0001F600"}};
  for (const auto& [utf8, utf16] : table) {
    EXPECT_EQ(toWide(utf8), utf16);
    EXPECT_EQ(toUtf8(utf16), utf8);
  }
}

TEST(WideTextTest, HalfACharacterIsNoText) {
  for (const auto& text : {std::u16string(1, char16_t{0xD83D}), std::u16string(1, char16_t{0xDE00}),
                           std::u16string{0xD83D, u'a'}, std::u16string{0xD83D, 0xD83D}})
    EXPECT_EQ(toUtf8(text), std::nullopt);
}

TEST(WideTextTest, WhatIsNotUtf8IsRefusedWithItsPlace) {
  EXPECT_EQ(toWide("a\xff"), std::nullopt);
  EXPECT_EQ(toWide("\xED\xA0\x80"), std::nullopt);
  try {
    (void)toWideOrRefuse("select '\xff'", "statement");
    FAIL();
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.description(), "The statement is not UTF-8 from byte 9 on.");
  }
}

}  // namespace
}  // namespace tolvane::odbc
