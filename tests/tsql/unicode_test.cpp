#include "tsql/unicode.h"

#include <gtest/gtest.h>

namespace tolvane::tsql {
namespace {

TEST(Unicode, CountsUtf16Units) {
  EXPECT_EQ(utf16Length("abc"), 3U);
  EXPECT_EQ(utf16Length("报表"), 2U);
  EXPECT_EQ(utf16Length("a😀"), 3U);
}

TEST(Unicode, CutsBetweenTheHalvesOfACharacterAndJoinsThemAgain) {
  const std::string half = utf16Prefix("a😀b", 2);
  EXPECT_EQ(toUtf16(half), (std::u16string{u'a', 0xD83D}));
  EXPECT_EQ(fromUtf16(toUtf16(half) + std::u16string{0xDE00}), "a😀");
  EXPECT_EQ(utf16Prefix("报表", 1), "报");
  EXPECT_EQ(utf16Prefix("abc", 5), "abc");
}

TEST(Unicode, IllFormedBytesBecomeReplacementCharacters) {
  EXPECT_EQ(toUtf16("\xFF\x80z"), u"\uFFFD\uFFFDz");
  EXPECT_EQ(toUtf16("\xE6\x8A"), u"\uFFFD\uFFFD");
  EXPECT_EQ(toUtf16("\xC0\x80"), u"\uFFFD\uFFFD");
}

TEST(Unicode, WritesCharactersOfEveryLength) {
  std::string text;
  for (const char32_t c : {U'a', U'\u00E9', U'报', U'😀'}) appendCharacter(text, c);
  EXPECT_EQ(text, "aé报😀");
}

TEST(Unicode, DropsTrailingBlanksOnly) {
  EXPECT_EQ(withoutTrailingBlanks(" a  "), " a");
  EXPECT_EQ(withoutTrailingBlanks("   "), "");
}

}  // namespace
}  // namespace tolvane::tsql
