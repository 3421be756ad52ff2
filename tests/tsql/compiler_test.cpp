#include "tsql/compiler.h"

#include <gtest/gtest.h>

#include "tsql/engine_harness.h"

namespace tolvane::tsql::testing {
namespace {

class Compiler : public ::testing::Test {
 protected:
  Compiler() {
    engine_.run(
        "create table t (id int identity primary key, name nvarchar(20), price money not null default 0, doc image)");
  }
  EngineHarness engine_;
};

struct ColumnsRow {
  std::string_view query;
  std::string_view columns;
};

TEST_F(Compiler, TellsTheTypesOfResultColumns) {
  static constexpr ColumnsRow rows[] = {
      {"select id, name, price, doc from t", "id int not null, name nvarchar(20), price money not null, doc image"},
      {"select id+1 as n, name+'x' as s from t", "n int, s nvarchar(21)"},
      {"select max(id) m, count(*) c, avg(price) a from t", "m int, c int, a money"},
      {"select 1.5*2.25 d, 10/3.0 q", "d numeric(6,3), q numeric(9,6)"},
      {"select isnull(name,'abc') n, coalesce(name,'x') c from t", "n nvarchar(20) not null, c nvarchar(20)"},
      {"select case when 1=1 then 1 else 2.5 end c", "c numeric(2,1) not null"},
      {"select x.name from t x left join t y on x.id=y.id", "name nvarchar(20)"},
      {"select y.id from t x left join t y on x.id=y.id", "id int"},
      {"select id from t union select price from t", "id money not null"},
      {"select getdate() d, newid() g, len('a') l", "d datetime not null, g uniqueidentifier not null, l int not null"},
      {"select cast(1 as decimal(9,3)) a, convert(char(3), 5) b", "a decimal(9,3), b char(3)"},
  };
  for (const ColumnsRow& row : rows) EXPECT_EQ(engine_.columns(row.query), row.columns) << row.query;
}

TEST_F(Compiler, WritesCollationsWhereTextsAreCompared) {
  EXPECT_EQ(engine_.texts("select id from t where name='x'"),
            "SELECT t1.\"id\" FROM \"t\" AS t1 WHERE (t1.\"name\" COLLATE TSQL=?1)\n");
}

TEST_F(Compiler, ConvertsLiteralsBeforeTheyAreBound) {
  EXPECT_EQ(engine_.texts("select name from t where id='17'"),
            "SELECT t1.\"name\" FROM \"t\" AS t1 WHERE (t1.\"id\"=?1)\n");
}

TEST_F(Compiler, ReadsTheDefaultOfAColumnWhereItIsAskedFor) {
  EXPECT_EQ(engine_.run("insert t (name, price) values ('a', default) select price from t"), "0.0000\n");
}

TEST_F(Compiler, TakesAnEmptyBatchForAProgramWithoutSteps) {
  EXPECT_EQ(engine_.run(" -- nothing"), "");
}

TEST_F(Compiler, RefusesABatchWithASyntaxErrorBeforeItsFirstStatement) {
  EXPECT_EQ(engine_.run("insert t (name) values ('a') selec 1"), "error 102: Incorrect syntax near 'selec'.\n");
  EXPECT_EQ(engine_.run("select count(*) from t"), "0\n");
}

TEST_F(Compiler, FindsAnUnknownTableOnlyWhenTheStatementIsReached) {
  EXPECT_EQ(engine_.run("select 1 select * from nowhere select 2"), "1\nerror 208: Invalid object name 'nowhere'.\n");
  EXPECT_EQ(engine_.run("if 1=0 select * from nowhere select 3"), "3\n");
}

TEST_F(Compiler, BoundsTheDepthOfExpressions) {
  const std::string open(2000, '(');
  EXPECT_EQ(engine_.run("select " + open + "1").substr(0, 10), "error 191:");
}

TEST_F(Compiler, TakesLongChainsOfConditions) {
  std::string text = "select count(*) from t where id=0";
  for (int i = 1; i < 3000; ++i) text += " or id=" + std::to_string(i);
  EXPECT_EQ(engine_.run(text), "0\n");
}

}  // namespace
}  // namespace tolvane::tsql::testing
