#include <gtest/gtest.h>

#include "host/program.h"

namespace tolvane::host::testing {
namespace {

std::string at(const Workplace& place, const std::string& name) {
  return "Database=" + place.path(name + ".db");
}

TEST(CopyCommandTest, ACopyHoldsTheSameRowsWithTheirIdentities) {
  const Workplace place;
  ASSERT_EQ(place.run({"init", "--dsn", at(place, "a"), "--sample=demo"}).status, 0);
  const auto copied = place.run({"copy", "--from", at(place, "a"), "--to", at(place, "b")});
  EXPECT_EQ(copied.status, 0) << copied.err;
  EXPECT_NE(copied.out.find("rows were copied to " + at(place, "b") + "."), std::string::npos) << copied.out;
  const auto compared = place.run({"compare", "--dsn", at(place, "a"), "--dsn", at(place, "b")});
  EXPECT_EQ(compared.status, 0);
  EXPECT_EQ(compared.out.find("The same: 32 tables, "), 0U) << compared.out;
}

TEST(CopyCommandTest, TheOlderLayoutAndAddedColumnsAreCopiedToo) {
  const Workplace place;
  ASSERT_EQ(place.run({"init", "--dsn", at(place, "a"), "--sample=older"}).status, 0);
  place.run({"sql", "--dsn", at(place, "a"), "alter table t_Rpt_Content add F1002 smallint not null default (7)"});
  EXPECT_EQ(place.run({"copy", "--from", at(place, "a"), "--to", at(place, "b")}).status, 0);
  EXPECT_EQ(place.run({"compare", "--dsn", at(place, "a"), "--dsn", at(place, "b")}).out.find("The same: 36 tables"),
            0U);
}

TEST(CopyCommandTest, ATargetThatIsThereIsRefusedAndAFailureLeavesNone) {
  const Workplace place;
  ASSERT_EQ(place.run({"init", "--dsn", at(place, "a")}).status, 0);
  ASSERT_EQ(place.run({"init", "--dsn", at(place, "b")}).status, 0);
  EXPECT_EQ(place.run({"copy", "--from", at(place, "a"), "--to", at(place, "b")}).status, 1);
  place.run({"sql", "--dsn", at(place, "a"), "alter table t_User add Odd datetime null"});
  const auto refused = place.run({"copy", "--from", at(place, "a"), "--to", at(place, "c")});
  EXPECT_EQ(refused.status, 1);
  EXPECT_NE(refused.err.find("t_User.Odd is not a column of an account set"), std::string::npos) << refused.err;
  EXPECT_FALSE(std::filesystem::exists(place.path("c.db")));
}

}  // namespace
}  // namespace tolvane::host::testing
