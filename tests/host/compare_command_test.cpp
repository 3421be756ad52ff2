#include <gtest/gtest.h>

#include "host/program.h"

namespace tolvane::host::testing {
namespace {

std::string at(const Workplace& place, const std::string& name) {
  return "Database=" + place.path(name + ".db");
}

TEST(CompareCommandTest, ATableThatDiffersIsNamedWithTheRowsOfEachSide) {
  const Workplace place;
  ASSERT_EQ(place.run({"init", "--dsn", at(place, "a")}).status, 0);
  ASSERT_EQ(place.run({"init", "--dsn", at(place, "b")}).status, 0);
  place.run({"sql", "--dsn", at(place, "b"), "insert into t_Rpt_Right values (1, 2, 3)"});
  const auto compared = place.run({"compare", "--dsn", at(place, "a"), "--dsn", at(place, "b")});
  EXPECT_EQ(compared.status, 1);
  EXPECT_EQ(compared.out, "t_Rpt_Right: 0 rows only in A, 1 only in B.\n  B: frightcode=3, frptid=1, fuserid=2\n");
}

TEST(CompareCommandTest, TwoDataSourcesAreAskedFor) {
  const Workplace place;
  EXPECT_EQ(place.run({"compare", "--dsn", at(place, "a")}).status, 2);
}

}  // namespace
}  // namespace tolvane::host::testing
