#include <gtest/gtest.h>

#include "embedded/account_set_collation.h"
#include "embedded/text_rules.h"

namespace tolvane::embedded {
namespace {

// Where it stands among other texts depends on the release of Windows.
TEST(WindowsTextRulesTest, ASignBeyondTheCommonOnesIsNoLetter) {
  EXPECT_NE(accountSetCollation().compare("\xF0\x9F\x98\x80", "a"), 0);
}

// Windows itself would let it decide last; the collation does that, on all systems in the same way.
TEST(WindowsTextRulesTest, AHyphenCountsAsOtherSignsDo) {
  EXPECT_LT(systemTextRules()->compare("1122-01", "112201"), 0);
}

TEST(WindowsTextRulesTest, KindsOfKanaDoNotCount) {
  EXPECT_EQ(accountSetCollation().compare("か", "カ"), 0);
}

TEST(WindowsTextRulesTest, EveryCommonChineseCharacterHasAPlaceOfItsOwn) {
  const auto rules = systemTextRules();
  for (std::uint32_t c = 0x4E00; c < 0x9FA5; ++c) ASSERT_NE(rules->sortKey(c), rules->sortKey(c + 1)) << c;
}

}  // namespace
}  // namespace tolvane::embedded
