#include "tsql/semi_join.h"

#include <gtest/gtest.h>

#include "tsql/engine_harness.h"

namespace tolvane::tsql::testing {
namespace {

class SemiJoins : public ::testing::Test {
 protected:
  SemiJoins() {
    engine_.run("create table a (id int not null primary key, num varchar(10))");
    engine_.run("create table g (aid int, num varchar(10))");
  }
  bool asks(std::string_view sql) { return engine_.texts(sql).find("EXISTS (SELECT 1 FROM") != std::string::npos; }
  EngineHarness engine_;
};

TEST_F(SemiJoins, AskForARowWhatATableWouldOnlyChoose) {
  EXPECT_TRUE(asks("select id from a,(select distinct aid from g) d where id=d.aid"));
  EXPECT_TRUE(
      asks("select a.* from a,(select distinct aid n from g where num='x' or aid>5) d where a.num='x' and d.n=id"));
}

TEST_F(SemiJoins, NeedTheColumnNowhereElse) {
  EXPECT_FALSE(asks("select id, d.aid from a,(select distinct aid from g) d where id=d.aid"));
  EXPECT_FALSE(asks("select * from a,(select distinct aid from g) d where id=d.aid"));
  EXPECT_FALSE(asks("select id from a,(select distinct aid from g) d where id=d.aid order by d.aid"));
  EXPECT_FALSE(asks(
      "select id from a,(select distinct aid from g) d where id=d.aid and exists(select 1 from g where aid=d.aid)"));
}

TEST_F(SemiJoins, NeedOneDistinctColumnOfIntegers) {
  EXPECT_FALSE(asks("select id from a,(select aid from g) d where id=d.aid"));
  EXPECT_FALSE(asks("select id from a,(select distinct aid, num from g) d where id=d.aid"));
  EXPECT_FALSE(asks("select id from a,(select distinct num from g) d where a.num=d.num"));
  EXPECT_FALSE(asks("select id from a,(select distinct top 1 aid from g) d where id=d.aid"));
}

TEST_F(SemiJoins, NeedAnEqualityThatHoldsForEveryRow) {
  EXPECT_FALSE(asks("select id from a,(select distinct aid from g) d where id=d.aid or id=1"));
  EXPECT_FALSE(asks("select id from a,(select distinct aid from g) d where id>d.aid"));
}

}  // namespace
}  // namespace tolvane::tsql::testing
