#include "embedded/constraint_names.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvane::embedded {
namespace {

TEST(ConstraintNamesTest, KeysOfATableKeepTheNamesOfItsText) {
  const auto names = constraintNames(
      "CREATE TABLE \"t\"(\"a\" int NOT NULL DEFAULT 'unique',\"b\" int,CONSTRAINT \"PK_t\" PRIMARY KEY (\"a\"),"
      "UNIQUE (\"b\"),CONSTRAINT \"UQ_t\" UNIQUE (\"a\",\"b\"))");
  EXPECT_EQ(names.primaryKey, "PK_t");
  EXPECT_THAT(names.uniques, ::testing::ElementsAre("", "UQ_t"));
}

TEST(ConstraintNamesTest, ATableWithoutKeysHasNone) {
  const auto names = constraintNames("CREATE TABLE t(a int)");
  EXPECT_EQ(names.primaryKey, "");
  EXPECT_TRUE(names.uniques.empty());
}

}  // namespace
}  // namespace tolvane::embedded
