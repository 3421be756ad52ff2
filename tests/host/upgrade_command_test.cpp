// tolvane upgrade, from its options to its exit status.
#include "host/upgrade_command.h"

#include <gmock/gmock.h>

#include <sstream>

#include "host/usage_error.h"
#include "support/older_layout.h"

namespace tolvane::host {
namespace {

using test::AccountSet;
using testing::ElementsAre;
using testing::HasSubstr;

struct UpgradeCommand : testing::Test {
  AccountSet set;
  std::ostringstream out;
  std::ostringstream err;

  int upgrade(UpgradeOptions options = {}) {
    if (!options.dsn) options.dsn = set.dsn();
    const Environment environment{test::engines(), {}, out, err};
    out.str("");
    return runUpgradeCommand(environment, options);
  }
};

TEST_F(UpgradeCommand, WithoutTheOldTablesThereIsNothingToDo) {
  EXPECT_EQ(upgrade(), exitDone);
  EXPECT_EQ(out.str(), "This account set has no tables of the older layout: nothing is to be converted.\n");
}

TEST_F(UpgradeCommand, EveryGroupThatIsLeftIsConverted) {
  test::addOlderLayout(set, 2, 3, 4);
  EXPECT_EQ(upgrade(), exitDone);
  EXPECT_EQ(out.str(),
            "P1 Old 1: converted, 3 statements, 4 item values\n"
            "P2 Old 2: converted, 3 statements, 4 item values\n"
            "2 converted, 0 skipped, 0 refused\n");
}

TEST_F(UpgradeCommand, ASecondRunFindsNothingLeft) {
  test::addOlderLayout(set, 2, 3, 4);
  upgrade();
  EXPECT_EQ(upgrade(), exitDone);
  EXPECT_EQ(out.str(), "0 converted, 0 skipped, 0 refused\n");
  EXPECT_EQ(set.value("select count(*) from t_CsRptContent"), Value(std::int32_t{6}));
}

TEST_F(UpgradeCommand, OnlyTheGroupsAskedForAreConvertedAndEachOfThemIsAccountedFor) {
  test::addOlderLayout(set, 3, 1, 1);
  EXPECT_EQ(upgrade({.groups = {2}}), exitDone);
  EXPECT_EQ(upgrade({.groups = {2, 9, 3}}), exitRaised);
  EXPECT_EQ(out.str(),
            "group 9: refused, there is no such group\n"
            "P2 Old 2: skipped, converted before\n"
            "P3 Old 3: converted, 1 statements, 1 item values\n"
            "1 converted, 1 skipped, 1 refused\n");
}

TEST_F(UpgradeCommand, ARefusedGroupDoesNotStopTheOthers) {
  test::addOlderLayout(set, 2, 1, 1);
  set.sql("update t_Rpt_CsRptGroup set FRptGroupName='A''B' where FRptGroupID=1");
  EXPECT_EQ(upgrade(), exitRaised);
  EXPECT_THAT(out.str(), HasSubstr("P1 A'B: refused, "));
  EXPECT_THAT(out.str(), HasSubstr("P2 Old 2: converted"));
  EXPECT_THAT(out.str(), HasSubstr("1 converted, 0 skipped, 1 refused\n"));
}

TEST_F(UpgradeCommand, TheCurrencyIsAskedForByNumber) {
  test::addOlderLayout(set, 1, 1, 1);
  set.sql("insert into t_CsCurrency (FCurrencyID, FNumber) values (8, 'USD')");
  EXPECT_EQ(upgrade({.currency = "USD"}), exitDone);
  EXPECT_THAT(set.rows("select FCurrencyID from t_CsRptContent"), ElementsAre("8"));
  EXPECT_THAT(set.rows("select FCurrencyNum from t_CsRptItemData"), ElementsAre("USD"));
}

TEST_F(UpgradeCommand, ACurrencyThatThereIsNotIsWrongUsageAndNothingIsConverted) {
  test::addOlderLayout(set, 1, 1, 1);
  EXPECT_THROW(upgrade({.currency = "ZZZ"}), UsageError);
  EXPECT_THROW(upgrade({.currency = "R'MB"}), UsageError);
  EXPECT_EQ(set.value("select count(*) from t_CsRptGroup"), Value(std::int32_t{0}));
}

TEST_F(UpgradeCommand, ADataSourceThatDoesNotOpenIsAnError) {
  EXPECT_EQ(upgrade({.dsn = "Database=/nowhere/no.db"}), exitRaised);
  EXPECT_THAT(err.str(), HasSubstr("/nowhere/no.db"));
}

TEST_F(UpgradeCommand, WithoutADataSourceTheUsageIsWrong) {
  const Environment environment{{}, {}, out, err};
  EXPECT_THROW(runUpgradeCommand(environment, {}), UsageError);
}

}  // namespace
}  // namespace tolvane::host
