#include "standalone/sql_batches.h"

#include <gtest/gtest.h>

namespace tolvane::standalone {
namespace {

using Batches = std::vector<std::string>;

TEST(SqlBatchesTest, ALineGoEndsABatch) {
  EXPECT_EQ(splitBatches("select 1\nGO\nselect 2\n go \nselect 3"), (Batches{"select 1\n", "select 2\n", "select 3"}));
}

TEST(SqlBatchesTest, OtherLinesWithGoDoNot) {
  EXPECT_EQ(splitBatches("select 1 GO\ngoto x\n'GO'"), (Batches{"select 1 GO\ngoto x\n'GO'"}));
}

TEST(SqlBatchesTest, BatchesOfBlanksAreLeftOut) {
  EXPECT_EQ(splitBatches("GO\r\n\r\nGO\r\nselect 1\r\nGO\r\n"), (Batches{"select 1\r\n"}));
  EXPECT_TRUE(splitBatches("").empty());
}

TEST(SqlBatchesTest, AByteOrderMarkIsNoText) {
  EXPECT_EQ(splitBatches("\xEF\xBB\xBFselect 1"), (Batches{"select 1"}));
}

}  // namespace
}  // namespace tolvane::standalone
