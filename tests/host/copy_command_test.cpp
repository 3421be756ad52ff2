#include <gtest/gtest.h>

#include "host/program.h"

namespace tolvane::host::testing {
namespace {

TEST(CopyCommandTest, ACopyHoldsTheSameRowsWithTheirIdentities) {
  const Workplace place;
  ASSERT_EQ(place.run({"init", "--dsn", "Database=a.db", "--sample=demo"}).status, 0);
  const auto copied = place.run({"copy", "--from", "Database=a.db", "--to", "Database=b.db"});
  EXPECT_EQ(copied.status, 0) << copied.err;
  EXPECT_NE(copied.out.find("rows were copied to Database=b.db."), std::string::npos) << copied.out;
  const auto compared = place.run({"compare", "--dsn", "Database=a.db", "--dsn", "Database=b.db"});
  EXPECT_EQ(compared.status, 0);
  EXPECT_EQ(compared.out.find("The same: 32 tables, "), 0U) << compared.out;
}

TEST(CopyCommandTest, TheOlderLayoutAndAddedColumnsAreCopiedToo) {
  const Workplace place;
  ASSERT_EQ(place.run({"init", "--dsn", "Database=a.db", "--sample=older"}).status, 0);
  place.run({"sql", "--dsn", "Database=a.db", "alter table t_Rpt_Content add F1002 smallint not null default (7)"});
  EXPECT_EQ(place.run({"copy", "--from", "Database=a.db", "--to", "Database=b.db"}).status, 0);
  EXPECT_EQ(place.run({"compare", "--dsn", "Database=a.db", "--dsn", "Database=b.db"}).out.find("The same: 36 tables"),
            0U);
}

TEST(CopyCommandTest, ATargetThatIsThereIsRefusedAndAFailureLeavesNone) {
  const Workplace place;
  ASSERT_EQ(place.run({"init", "--dsn", "Database=a.db"}).status, 0);
  ASSERT_EQ(place.run({"init", "--dsn", "Database=b.db"}).status, 0);
  EXPECT_EQ(place.run({"copy", "--from", "Database=a.db", "--to", "Database=b.db"}).status, 1);
  place.run({"sql", "--dsn", "Database=a.db", "alter table t_User add Odd datetime null"});
  const auto refused = place.run({"copy", "--from", "Database=a.db", "--to", "Database=c.db"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_NE(refused.err.find("t_User.Odd is not a column of an account set"), std::string::npos) << refused.err;
  EXPECT_FALSE(std::filesystem::exists(place.path("c.db")));
}

}  // namespace
}  // namespace tolvane::host::testing
