// Converting groups of the older layout one by one, each in a transaction of its own.
#include "host/older_groups.h"

#include <gmock/gmock.h>
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "embedded/embedded_engine.h"
#include "standalone/standalone_platform.h"
#include "support/older_layout.h"

namespace tolvane::host {
namespace {

using test::AccountSet;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::int32_t renminbi = 1;
const RowProgress silent = [](std::int64_t) {};

/// What a process of its own would have.
struct Program {
  standalone::StandalonePlatform platform{{test::engines(), std::filesystem::path(TOLVANE_SOURCE_DIR) / "resources"}};
  OlderGroups older;

  explicit Program(const std::string& dsn) : older(platform, platform.session(), dsn) {}
};

struct OlderGroupsTest : testing::Test {
  AccountSet set;

  OlderGroupsTest() { test::addOlderLayout(set, 2, 3, 4); }

  GroupResult convert(std::int32_t id, const RowProgress& progress = silent) {
    Program program(set.dsn());
    return program.older.convert(program.older.find(id).at(0), renminbi, "RMB", progress);
  }
  std::vector<std::string> newGroups() {
    return set.rows(
        "select FRptGroupID, FRptGroupNum, FRptGroupName, FCycleID, FBaseRptStyle from t_CsRptGroup order "
        "by FRptGroupID");
  }
  Value count(const std::string& table) { return set.value("select count(*) from " + table); }
};

TEST_F(OlderGroupsTest, TheGroupsThatAreLeftHaveTheirRowsCounted) {
  Program program(set.dsn());
  const auto groups = program.older.left();
  ASSERT_EQ(groups.size(), 2U);
  EXPECT_EQ(groups[0].number, "P1");
  EXPECT_EQ(groups[0].statements, 3);
  EXPECT_EQ(groups[0].values, 4);
}

TEST_F(OlderGroupsTest, AConvertedGroupHasASuccessorWithItsNumberNameCycleAndStyle) {
  const auto result = convert(2);
  EXPECT_EQ(result.outcome, GroupOutcome::converted) << result.reason;
  EXPECT_EQ(result.statements, 3);
  EXPECT_EQ(result.values, 4);
  EXPECT_THAT(newGroups(), ElementsAre("1|P2|Old 2|3|7"));
  EXPECT_THAT(set.rows("select distinct FRptGroupID, FCurrencyID from t_CsRptContent"), ElementsAre("1|1"));
}

TEST_F(OlderGroupsTest, SuccessorsGetTheNextIdentifier) {
  set.sql("insert into t_CsRptGroup (FRptGroupID, FRptGroupNum, FRptGroupName) values (41, 'N', 'new')");
  EXPECT_EQ(convert(1).outcome, GroupOutcome::converted);
  EXPECT_THAT(newGroups(), ElementsAre("41|N|new|1|0", "42|P1|Old 1|3|7"));
}

TEST_F(OlderGroupsTest, AGroupThatWasConvertedMeanwhileIsSkipped) {
  Program program(set.dsn());
  const auto stale = program.older.left();
  EXPECT_EQ(convert(1).outcome, GroupOutcome::converted);
  const auto second = program.older.convert(stale.at(0), renminbi, "RMB", silent);
  EXPECT_EQ(second.outcome, GroupOutcome::skipped);
  EXPECT_EQ(second.reason, "converted before");
  EXPECT_EQ(count("t_CsRptContent"), Value(std::int32_t{3}));
}

TEST_F(OlderGroupsTest, AGroupWhoseNumberIsTakenIsRefusedAndLeftAlone) {
  set.sql("insert into t_CsRptGroup (FRptGroupID, FRptGroupNum, FRptGroupName) values (1, 'P1', 'new')");
  const auto result = convert(1);
  EXPECT_EQ(result.outcome, GroupOutcome::refused);
  EXPECT_EQ(result.reason, "there is a group with the number P1 already");
  EXPECT_EQ(count("t_CsRptContent"), Value(std::int32_t{0}));
}

TEST_F(OlderGroupsTest, AGroupWithAnApostropheInItsNameIsRefusedWithTheDatabasesWordsAndHasNoSuccessor) {
  set.sql("update t_Rpt_CsRptGroup set FRptGroupName='O''Brien' where FRptGroupID=1");
  const auto result = convert(1);
  EXPECT_EQ(result.outcome, GroupOutcome::refused);
  EXPECT_THAT(result.reason, HasSubstr("Unclosed quotation mark"));
  EXPECT_THAT(newGroups(), IsEmpty());
  EXPECT_THAT(set.rows("select FCycleID from t_Rpt_CsRptGroup"), ElementsAre("3", "3"));
}

TEST_F(OlderGroupsTest, AValueThatCannotBeConvertedTakesTheWholeGroupBack) {
  set.sql("update t_Rpt_CsRptItemData set FYear=0, FDay=null where FPeriod=4");
  const auto result = convert(1);
  EXPECT_EQ(result.outcome, GroupOutcome::refused);
  EXPECT_THAT(newGroups(), IsEmpty());
  EXPECT_EQ(count("t_CsRptContent"), Value(std::int32_t{0}));
  EXPECT_EQ(count("t_CsRptItemData"), Value(std::int32_t{0}));
}

TEST_F(OlderGroupsTest, ProgressCountsStatementsAndThenValues) {
  std::vector<std::int64_t> told;
  convert(1, [&](std::int64_t done) { told.push_back(done); });
  EXPECT_THAT(told, ElementsAre(1, 2, 3, 4, 5, 6, 7));
}

/// Memory in use, in bytes; 0 where the allocator does not tell.
std::int64_t memoryInUse() {
  const auto info = mallinfo2();
  return static_cast<std::int64_t>(info.uordblks) + static_cast<std::int64_t>(info.hblkhd);
}

/// How much more memory is in use at row `last` of a conversion of group 1 than at row `first`, or before it at row 0.
std::int64_t growth(const std::string& dsn, std::int64_t first, std::int64_t last) {
  Program program(dsn);
  std::int64_t atFirst = memoryInUse();
  std::int64_t atLast = 0;
  const auto result = program.older.convert(program.older.find(1).at(0), renminbi, "RMB", [&](std::int64_t done) {
    if (done == first) atFirst = memoryInUse();
    if (done == last) atLast = memoryInUse();
  });
  EXPECT_EQ(result.outcome, GroupOutcome::converted) << result.reason;
  return atLast - atFirst;
}

TEST(ConversionMemory, HoldsOneDocumentAtATime) {
  if (test::ServerDatabase::isNamed()) GTEST_SKIP() << "a server's documents are read with the rows of their result";
  AccountSet set;
  test::addOlderLayout(set, 1, 40, 0);
  set.sql("update t_Rpt_CsRptContent set FRptContent=0x" + std::string(std::size_t{2} << 20, '4'));
  EXPECT_LT(growth(set.dsn(), 5, 40), 8 << 20);
}

TEST(ConversionMemory, DoesNotReadTheValuesThatAreThereAlready) {
  AccountSet set;
  test::addOlderLayout(set, 1, 0, 20);
  set.sql("insert into t_CsRptItemData values ('', 'J', 'RMB', 0, 1, 1, '19000101', 0, 0, 0)");
  for (int year = 1; year < 60000; year *= 2) {
    const std::string text = std::to_string(year);
    set.sql("insert into t_CsRptItemData select FCompanyNum, FItemNum, FCurrencyNum, FDataClass, FYear+" + text +
            ", FPeriod, FDay, FAmount, FAccuAmount, FIsNew from t_CsRptItemData");
  }
  EXPECT_LT(growth(set.dsn(), 0, 20), 8 << 20);
}

/// In a process of its own, fills the account set and converts group 1, and dies after `rows` rows of it. This process
/// must not have opened the account set before: open database files do not survive a fork.
int fillConvertAndDie(AccountSet& set, std::int64_t rows) {
  const pid_t child = fork();
  if (child == 0) {
    test::addOlderLayout(set, 2, 3, 4);
    Program program(set.dsn());
    (void)program.older.convert(program.older.find(1).at(0), renminbi, "RMB", [rows](std::int64_t done) {
      if (done == rows) (void)::raise(SIGKILL);
    });
    _exit(0);
  }
  int status = 0;
  (void)waitpid(child, &status, 0);
  return status;
}

TEST(KilledConversion, LeavesNothingOfTheGroupAndCanBeRunAgain) {
  if (test::ServerDatabase::isNamed()) GTEST_SKIP() << "a forked process would share this one's connections";
  // Row 2 is among the statements, row 6 among the item values, row 7 the last before the mark.
  for (const std::int64_t row : {2, 6, 7}) {
    AccountSet set;
    const int status = fillConvertAndDie(set, row);
    ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << row;
    EXPECT_THAT(set.rows("select FRptGroupID from t_CsRptGroup"), IsEmpty()) << row;
    EXPECT_THAT(set.rows("select FRptID from t_CsRptContent"), IsEmpty()) << row;
    EXPECT_THAT(set.rows("select FItemNum from t_CsRptItemData"), IsEmpty()) << row;
    EXPECT_THAT(set.rows("select FCycleID from t_Rpt_CsRptGroup"), ElementsAre("3", "3")) << row;

    Program program(set.dsn());
    const auto again = program.older.convert(program.older.find(1).at(0), renminbi, "RMB", silent);
    EXPECT_EQ(again.outcome, GroupOutcome::converted) << again.reason;
    EXPECT_EQ(set.value("select count(*) from t_CsRptContent"), Value(std::int32_t{3})) << row;
  }
}

}  // namespace
}  // namespace tolvane::host
