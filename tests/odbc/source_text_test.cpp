#include "odbc/source_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvane::odbc {
namespace {

using ::testing::ElementsAre;

TEST(SourceTextTest, ANameIsATableAndAStatementStaysAsItIs) {
  EXPECT_EQ(readSource("t_Rpt_Content", false).statement, "SELECT * FROM t_Rpt_Content");
  EXPECT_EQ(readSource(" dbo.[a b] ", false).statement, "SELECT * FROM dbo.[a b]");
  EXPECT_EQ(readSource("odd name", true).statement, "SELECT * FROM odd name");
  EXPECT_EQ(readSource("Select * From t", false).statement, "Select * From t");
  EXPECT_EQ(readSource("commit", false).statement, "commit");
}

TEST(SourceTextTest, TheTableOfASimpleSelectIsKnown) {
  const std::pair<const char*, const char*> table[] = {
      {"Select * From t", "t"},
      {"select a, b from dbo.[t x] where a in (1, 2) order by b", "dbo.[t x]"},
      {"select top 5 t.* from t as q", "t"},
      {"select a /* from x */ from t -- where", "t"},
      {"select a from t where exists (select 1 from u)", "t"},
      {"select a from t, u", ""},
      {"select a from t inner join u on 1 = 1", ""},
      {"select a, count(*) from t group by a", ""},
      {"select distinct a from t", ""},
      {"select a from t union select a from u", ""},
      {"select a from t where a = 1; delete from t", ""},
      {"select a from t where a = 1 select 2", ""},
      {"select 1", ""},
      {"exec p", ""},
      {"select a from (select 1 a) q", ""},
  };
  for (const auto& [text, name] : table) EXPECT_EQ(readSource(text, false).table, name) << text;
}

TEST(SourceTextTest, AWholeTableHasNoConditionAndNoComputedColumn) {
  for (const char* text : {"t", "select a, b from t order by b", "select * from t"}) {
    EXPECT_TRUE(readSource(text, false).isWholeTable()) << text;
  }
  for (const char* text : {"select * from t where a = 1", "select max(a) from t", "select a, 1 from t", "select 1"}) {
    EXPECT_FALSE(readSource(text, false).isWholeTable()) << text;
  }
}

TEST(SourceTextTest, TheSameRowsAreReadWithAnotherListOfColumns) {
  EXPECT_EQ(readSource("select top 5 a, b+1 from t as q where a = 'from'", false).withList("k"),
            "select top 5 k from t as q where a = 'from'");
}

TEST(SourceTextTest, ColumnsAreTheTablesOrComputed) {
  const auto source = readSource("select a, t.[b c], d as e, f + 1 as g, count(*), h i from t", false);
  EXPECT_THAT(source.columns, ElementsAre("a", "[b c]", "d", "", "", "h"));
  EXPECT_FALSE(source.allColumns);
  EXPECT_TRUE(readSource("select * from t", false).allColumns);
  EXPECT_EQ(readSource("select a, * from t", false).table, "");
}

TEST(SourceTextTest, TheHeadDescribesTheColumnsWithoutRows) {
  const auto source = readSource("select a from t q where a = 'x' order by a", false);
  EXPECT_EQ(source.head, "select a from t q ");
  EXPECT_TRUE(source.hasWhere);
  EXPECT_FALSE(readSource("select a from t order by a", false).hasWhere);
}

TEST(SourceTextTest, MarksInQuotesAndCommentsAreNoParameters) {
  EXPECT_EQ(markCount("select ? where a = '?' and [b?] = ? -- ?\n /* ? */"), 2U);
}

TEST(SourceTextTest, NamesAreTakenApart) {
  EXPECT_THAT(nameParts("db..[a]]b]"), ElementsAre("db", "a]b"));
  EXPECT_THAT(nameParts("\"x\"\"y\""), ElementsAre("x\"y"));
}

}  // namespace
}  // namespace tolvane::odbc
