#include <gtest/gtest.h>

#include "host/program.h"
#include "tds_server/tds_server.h"

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

TEST(CopyCommandTest, AnAccountSetGoesToAServerAndBackWithoutAChange) {
  const Workplace place;
  tds::TdsServer server;
  server.state().createDatabase("books");
  ASSERT_EQ(place.run({"init", "--dsn", at(place, "a"), "--sample=demo"}).status, 0);
  const auto there = place.run({"copy", "--from", at(place, "a"), "--to", server.dsn("books")});
  EXPECT_EQ(there.status, 0) << there.err;
  EXPECT_EQ(there.out.find("se;cr"), std::string::npos);
  EXPECT_EQ(place.run({"copy", "--from", server.dsn("books"), "--to", at(place, "b")}).status, 0);
  EXPECT_EQ(place.run({"compare", "--dsn", at(place, "a"), "--dsn", at(place, "b")}).status, 0);
  const auto compared = place.run({"compare", "--dsn", at(place, "a"), "--dsn", server.dsn("books")});
  EXPECT_EQ(compared.out.find("The same: 32 tables, "), 0U) << compared.out << compared.err;
}

TEST(CopyCommandTest, TheOlderLayoutGoesToAServerToo) {
  const Workplace place;
  tds::TdsServer server;
  server.state().createDatabase("books");
  ASSERT_EQ(place.run({"init", "--dsn", at(place, "a"), "--sample=older"}).status, 0);
  place.run({"sql", "--dsn", at(place, "a"), "alter table t_Rpt_Content add F1002 smallint not null default (7)"});
  EXPECT_EQ(place.run({"copy", "--from", at(place, "a"), "--to", server.dsn("books")}).status, 0);
  EXPECT_EQ(place.run({"compare", "--dsn", at(place, "a"), "--dsn", server.dsn("books")}).out.find("The same: 36"), 0U);
}

TEST(CopyCommandTest, AServerThatGoesAwayInTheMiddleHasNoHalfAccountSet) {
  const Workplace place;
  tds::TdsServer server;
  server.state().createDatabase("books");
  ASSERT_EQ(place.run({"init", "--dsn", at(place, "a"), "--sample=demo"}).status, 0);
  server.state().plan({"Insert Into t_ObjectType ", tds::Fault::When::afterRunning, 0});
  EXPECT_EQ(place.run({"copy", "--from", at(place, "a"), "--to", server.dsn("books")}).status, 1);
  const auto again = place.run({"copy", "--from", at(place, "a"), "--to", server.dsn("books")});
  EXPECT_EQ(again.status, 0) << again.err;
}

}  // namespace
}  // namespace tolvane::host::testing
