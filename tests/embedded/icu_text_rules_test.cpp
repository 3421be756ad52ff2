#include <gtest/gtest.h>

#include "embedded/account_set_collation.h"

namespace tolvane::embedded {
namespace {

TEST(IcuTextRulesTest, SignsBeyondTheCommonOnesStandBeforeLetters) {
  EXPECT_LT(accountSetCollation().compare("\xF0\x9F\x98\x80", "a"), 0);
}

}  // namespace
}  // namespace tolvane::embedded
