#include "tsql/like.h"

#include <gtest/gtest.h>

#include <string>

#include "tsql/runtime_support.h"

namespace tolvane::tsql::testing {
namespace {

bool matches(std::string_view text, std::string_view pattern, bool blanksAtEndCount = true) {
  const PlainCollation collation;
  return LikePattern(pattern, u'!', collation).matches(text, blanksAtEndCount);
}

TEST(Like, MatchesWildcards) {
  EXPECT_TRUE(matches("", ""));
  EXPECT_TRUE(matches("", "%"));
  EXPECT_TRUE(matches("abc", "a%c"));
  EXPECT_TRUE(matches("abcbc", "a%bc"));
  EXPECT_TRUE(matches("abc", "%%b%%"));
  EXPECT_TRUE(matches("abc", "a_c"));
  EXPECT_FALSE(matches("ac", "a_c"));
  EXPECT_FALSE(matches("abcd", "abc"));
  EXPECT_FALSE(matches("abc", "abcd"));
  EXPECT_TRUE(matches("损益表", "损__"));
}

TEST(Like, LetterCaseAndWidthDoNotCount) {
  EXPECT_TRUE(matches("ABC", "abc"));
  EXPECT_TRUE(matches("ＡBC", "a%"));
  EXPECT_TRUE(matches("abc", "Ａ%"));
  EXPECT_FALSE(matches("é", "e"));
}

TEST(Like, ClassesHoldUnitsAndRanges) {
  EXPECT_TRUE(matches("b", "[a-c]"));
  EXPECT_TRUE(matches("B", "[a-c]"));
  EXPECT_FALSE(matches("d", "[a-c]"));
  EXPECT_TRUE(matches("d", "[^a-c]"));
  EXPECT_TRUE(matches("x", "[abx-z]"));
  EXPECT_TRUE(matches("-", "[a-]"));
  EXPECT_TRUE(matches("-", "[-a]"));
  EXPECT_TRUE(matches("%", "[%]"));
  EXPECT_TRUE(matches("[", "[[]"));
  EXPECT_TRUE(matches("]", "]"));
  EXPECT_TRUE(matches("^", "[a^]"));
  EXPECT_FALSE(matches("", "[a-c]"));
}

TEST(Like, AClassThatIsNotClosedMatchesNothing) {
  EXPECT_FALSE(matches("[abc", "[abc"));
  EXPECT_FALSE(matches("a", "[a"));
  EXPECT_FALSE(matches("a", "["));
  EXPECT_FALSE(matches("a", "[]"));
}

TEST(Like, TheEscapeCharacterMakesTheNextOneItself) {
  EXPECT_TRUE(matches("10%", "10!%"));
  EXPECT_FALSE(matches("10x", "10!%"));
  EXPECT_TRUE(matches("!", "!!"));
  EXPECT_TRUE(matches("]", "[!]]"));
  EXPECT_TRUE(matches("a!", "a!"));
}

TEST(Like, BlanksAtTheEndOfThePatternCountButNotThoseOfCharacterData) {
  EXPECT_TRUE(matches("abc  ", "abc", false));
  EXPECT_TRUE(matches("abc  ", "%c", false));
  EXPECT_TRUE(matches("abc  ", "abc  ", false));
  EXPECT_FALSE(matches("abc", "abc ", false));
  EXPECT_FALSE(matches("abc  ", "abc", true));
  EXPECT_TRUE(matches("abc  ", "abc  ", true));
}

TEST(Like, CharactersBeyondTheFirstPlaneAreTwoUnits) {
  EXPECT_TRUE(matches("😀", "__"));
  EXPECT_FALSE(matches("😀", "_"));
  EXPECT_TRUE(matches("a😀b", "a%b"));
  EXPECT_TRUE(matches("😀", "😀"));
}

TEST(Like, ManyWildcardsStayFast) {
  const std::string text(5000, 'a');
  EXPECT_FALSE(matches(text, "%a%a%a%a%a%a%a%a%a%a%b"));
}

TEST(Like, FindsThePlaceOfTheFirstMatch) {
  const PlainCollation collation;
  const auto find = [&](std::string_view text, std::string_view pattern) {
    return LikePattern(pattern, std::nullopt, collation).find(text);
  };
  EXPECT_EQ(find("ab3d4", "%[0-9]%"), 3U);
  EXPECT_EQ(find("ab3d4", "%[0-9]"), 5U);
  EXPECT_EQ(find("ab", "b%"), 0U);
  EXPECT_EQ(find("", "%a%"), 0U);
  EXPECT_EQ(find("报表b", "%b%"), 3U);
}

TEST(Like, FoldsTextUnitByUnit) {
  EXPECT_EQ(foldedUnits("AＢ报", PlainCollation()), u"ab报");
}

}  // namespace
}  // namespace tolvane::tsql::testing
