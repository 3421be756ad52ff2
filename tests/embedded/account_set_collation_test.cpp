#include "embedded/account_set_collation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace tolvane::embedded {
namespace {

int sign(int order) {
  return (order > 0) - (order < 0);
}
int compare(std::string_view a, std::string_view b) {
  return sign(accountSetCollation().compare(a, b));
}

struct Pair {
  const char* left;
  const char* right;
  int order;
};

const Pair pairs[] = {
    {"abc", "ABC", 0},      {"abc", "abc   ", 0},   {"", "   ", 0},        {"abc", "abd", -1},     {"ab", "abc", -1},
    {"a b", "ab", -1},      {"a1", "a10", -1},      {"9", "a", -1},        {"_", "0", -1},         {"ＡＢＣ", "abc", 0},
    {"é", "f", -1},         {"É", "é", 0},          {"e\xCC\x81", "é", 0}, {"资产", "资产 ", 0},   {"阿", "波", -1},
    {"北京", "上海", -1},   {"张三", "李四", 1},    {"a", "阿", -1},       {"资产a", "资产B", -1}, {"１", "1", 0},
    {"报表1", "报表１", 0}, {"报表1", "报表2", -1}, {"中", "中x", -1},     {"x中", "x", 1},
};

TEST(AccountSetCollationTest, TextsCompareWithoutCaseWidthAndTrailingBlanksAndInChineseOrder) {
  // Twice: the first comparisons go through the system's rules, later ones through the table of ranks.
  for (int round = 0; round < 2; ++round) {
    for (const auto& pair : pairs) {
      EXPECT_EQ(compare(pair.left, pair.right), pair.order) << pair.left << " / " << pair.right << ", round " << round;
      EXPECT_EQ(compare(pair.right, pair.left), -pair.order) << pair.right << " / " << pair.left << ", round " << round;
    }
    for (int i = 0; i < 1000; ++i) (void)compare("中", "国");
  }
}

// Each text is greater than the one before: a hyphen or an apostrophe decides only between texts that are equal
// without.
TEST(AccountSetCollationTest, WordsSortWithoutHyphensAndApostrophes) {
  const std::vector<std::vector<const char*>> orders{
      {"coop", "co-op", "co-operate", "coops"},
      {"", "-", "--", "a", "-a", "a'", "a-", "a-a", "ab", "a'b", "a-b", "A-c"},
      {"1001", "10010", "10011", "1001-1", "1001-2", "10012-1"},
      {"abc", "a-bc", "a-b-c", "ab-c"},
      {"中国", "中-国", "中-国a", "中国b", "中－国c"},
      {"é", "é-", "é-a", "éb"},
  };
  for (int round = 0; round < 2; ++round) {
    for (const auto& texts : orders) {
      for (std::size_t i = 0; i < texts.size(); ++i) {
        for (std::size_t j = 0; j < texts.size(); ++j) {
          EXPECT_EQ(compare(texts[i], texts[j]), (i > j) - (i < j)) << texts[i] << " / " << texts[j];
        }
      }
    }
    for (int i = 0; i < 1000; ++i) (void)compare("中", "国");
  }
  EXPECT_EQ(compare("a-b", "A－B"), 0);
  EXPECT_EQ(compare("it's", "it＇s"), 0);
}

TEST(AccountSetCollationTest, SignsStandInTheirOrderBeforeDigitsAndLetters) {
  const std::string_view order = " !\"#$%&()*,./:;?@[\\]^_`{|}~+<=>09az";
  for (int round = 0; round < 2; ++round) {
    for (std::size_t i = 1; i < order.size(); ++i) {
      const std::string left = std::string("x") + order[i - 1] + "x";
      const std::string right = std::string("x") + order[i] + "x";
      EXPECT_EQ(compare(left, right), -1) << left << " / " << right;
      EXPECT_EQ(compare("中é" + right, "中é" + left), 1) << left << " / " << right;
    }
    for (int i = 0; i < 1000; ++i) (void)compare("中", "国");
  }
  EXPECT_EQ(compare("a（b", "a(b"), 0);
  EXPECT_EQ(compare("报表（一）", "报表_一"), -1);
}

TEST(AccountSetCollationTest, AccentsCount) {
  EXPECT_NE(compare("é", "e"), 0);
  EXPECT_NE(compare("résumé", "resume"), 0);
}

TEST(AccountSetCollationTest, NamesSortByPinyin) {
  std::vector<std::string> names = {"王五", "李四", "张三", "陈六", "Zoe", "adam"};
  std::sort(names.begin(), names.end(), [](const auto& a, const auto& b) { return compare(a, b) < 0; });
  EXPECT_THAT(names, ::testing::ElementsAre("adam", "Zoe", "陈六", "李四", "王五", "张三"));
}

TEST(AccountSetCollationTest, SortingMakesNoKeysOnceTheTableIsThere) {
  std::vector<std::string> names;
  for (int i = 0; i < 5000; ++i) {
    const int character = 0x4E00 + i * 7919 % 20000;
    names.push_back({static_cast<char>(0xE0 | (character >> 12)), static_cast<char>(0x80 | ((character >> 6) & 0x3F)),
                     static_cast<char>(0x80 | (character & 0x3F))});
  }
  for (int i = 1; i < 1000; ++i) (void)compare(names[0], names[static_cast<std::size_t>(i)]);
  const auto before = sortKeysMade();
  EXPECT_GT(before, 20'000U);
  std::sort(names.begin(), names.end(), [](const auto& a, const auto& b) { return compare(a, b) < 0; });
  EXPECT_EQ(sortKeysMade(), before);
}

TEST(AccountSetCollationTest, EqualCharactersFoldToOne) {
  const auto& collation = accountSetCollation();
  EXPECT_EQ(collation.fold(U'A'), U'a');
  EXPECT_EQ(collation.fold(U'Ａ'), U'a');
  EXPECT_EQ(collation.fold(U'É'), collation.fold(U'é'));
  EXPECT_NE(collation.fold(U'é'), U'e');
  EXPECT_EQ(collation.fold(U'中'), U'中');
  EXPECT_EQ(collation.fold(U'\U0001F600'), U'\U0001F600');
}

TEST(AccountSetCollationTest, CharactersAreOrderedAsTextsAre) {
  const auto& collation = accountSetCollation();
  EXPECT_EQ(collation.compareCharacters(U'a', U'A'), 0);
  EXPECT_LT(collation.compareCharacters(U'a', U'b'), 0);
  EXPECT_LT(collation.compareCharacters(U'阿', U'波'), 0);
}

TEST(AccountSetCollationTest, TheCodePageHoldsChineseAndTurnsTheRestIntoQuestionMarks) {
  const auto& collation = accountSetCollation();
  EXPECT_EQ(collation.toCodePage("a中"), "a\xD6\xD0");
  EXPECT_EQ(collation.toCodePage("\xF0\x9F\x98\x80"), "??");
  EXPECT_EQ(collation.fromCodePage("a\xD6\xD0"), "a中");
}

TEST(AccountSetCollationTest, CaseIsMappedCharacterByCharacter) {
  EXPECT_EQ(accountSetCollation().upper(U'é'), U'É');
  EXPECT_EQ(accountSetCollation().lower(U'Ä'), U'ä');
  EXPECT_EQ(accountSetCollation().upper(U'中'), U'中');
}

}  // namespace
}  // namespace tolvane::embedded
