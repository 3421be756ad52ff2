#include "tsql/script.h"

#include <gtest/gtest.h>

namespace tolvane::tsql::testing {
namespace {

using Batches = std::vector<std::string_view>;

TEST(Script, EndsABatchAtALineWithGoAlone) {
  EXPECT_EQ(splitScript("select 1\ngo\nselect 2\n  GO  \n"), (Batches{"select 1\n", "select 2\n"}));
}

TEST(Script, LeavesGoInsideTextsAndCommentsAlone) {
  EXPECT_EQ(splitScript("select 'a\ngo\nb'\n/*\ngo\n*/").size(), 1U);
}

TEST(Script, LeavesOutBatchesWithoutAStatement) {
  EXPECT_EQ(splitScript("-- only words\ngo\n\ngo\n"), Batches{});
}

TEST(Script, TakesAnApostropheInACommentForNoText) {
  EXPECT_EQ(splitScript("-- it's\nselect 1\ngo\nselect 2").size(), 2U);
}

}  // namespace
}  // namespace tolvane::tsql::testing
