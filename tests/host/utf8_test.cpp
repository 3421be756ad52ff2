#include "host/utf8.h"

#include <gtest/gtest.h>

namespace tolvane::host {
namespace {

TEST(Utf8Test, KnowsWhatIsUtf8) {
  for (const char* text : {"", "abc", "报表", "😀", "\u007F"}) EXPECT_TRUE(isUtf8(text)) << text;
  for (const char* text : {"\xD6\xD0", "\xC0\x80", "\xED\xA0\x80", "a\xFF", "\xE6\x8A", "\xF5\x80\x80\x80"}) {
    EXPECT_FALSE(isUtf8(text)) << text;
  }
}

TEST(Utf8Test, WideCharactersTakeTwoColumns) {
  const std::pair<const char*, std::size_t> cases[] = {{"", 0},  {"abc", 3}, {"报表", 4},    {"(用途)-a", 8},
                                                       {"😀", 2}, {"é", 1},   {"e\u0301", 1}, {"Ａ", 2}};
  for (const auto& [text, width] : cases) EXPECT_EQ(displayWidth(text), width) << text;
}

TEST(Utf8Test, ControlCharactersStayOnTheLine) {
  EXPECT_EQ(oneLine("a\nb\tc\r\x1b[2J"), "a\\nb\\tc\\r\\u001b[2J");
  EXPECT_EQ(oneLine("报表"), "报表");
}

}  // namespace
}  // namespace tolvane::host
