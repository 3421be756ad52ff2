// Who sees which ledger account: every combination of what the rule looks at, against the rule in plain words.
#include <gmock/gmock.h>

#include <array>

#include "support/account_set.h"

namespace tolvane::test {
namespace {

constexpr std::int32_t theUser = 17;
constexpr std::int32_t thePrimaryGroup = 30;
constexpr std::int32_t theMemberGroup = 40;
constexpr std::int32_t theForeignGroup = 50;

/// Whom the right on account 1001 is given to.
enum class Holder { nobody, user, memberGroup, primaryGroup, groupZero, foreignGroup };
constexpr std::array holders{Holder::nobody,       Holder::user,      Holder::memberGroup,
                             Holder::primaryGroup, Holder::groupZero, Holder::foreignGroup};

std::int32_t idOf(Holder holder) {
  switch (holder) {
    case Holder::user:
      return theUser;
    case Holder::memberGroup:
      return theMemberGroup;
    case Holder::primaryGroup:
      return thePrimaryGroup;
    case Holder::foreignGroup:
      return theForeignGroup;
    case Holder::groupZero:
    case Holder::nobody:
      break;
  }
  return 0;
}

struct Situation {
  bool administrator = false;
  bool accountsAreChecked = true;
  bool userViewRestricted = true;
  bool groupViewRestricted = false;
  bool userInherits = false;
  bool groupInherits = false;
  Holder holder = Holder::nobody;
  std::int32_t authorization = 1;
};

/// The rule. Rights of the primary group count only as far as inheritance goes; to share its grants one must be a
/// member as well. Group 0 is no group.
bool sees(const Situation& now, const std::string& account) {
  if (account == "9999") return false;  // not in the chart
  if (now.administrator || !now.accountsAreChecked) return true;
  if (!now.userViewRestricted && !now.groupViewRestricted) return true;
  const bool granted = now.holder == Holder::user || now.holder == Holder::memberGroup;
  if (!granted || (now.authorization & 1) == 0) return false;
  if (account == "1001") return true;
  return (now.userInherits || now.groupInherits) && account.starts_with("1001.");
}

struct AccountRights : testing::Test {
  AccountSet set;

  AccountRights() {
    set.sql(
        "Insert Into t_User (FUserID,FName,FPrimaryGroup) Values (17,'Li',30) "
        "Insert Into t_User (FUserID,FName,FIsGroup) Values (30,'primary',1) "
        "Insert Into t_User (FUserID,FName,FIsGroup) Values (40,'member',1) "
        "Insert Into t_Group (FGroupID,FUserID) Values (40,17) "
        "Insert Into t_Group (FGroupID,FUserID) Values (0,17) "
        "Insert Into t_UserItemClassRight (FUserID,FItemClassID,FUserItemClassRight) Values (17,105,0) "
        "Insert Into t_UserItemClassRight (FUserID,FItemClassID,FUserItemClassRight) Values (30,105,0)");
    account(1, "1001");
    account(2, "1001.01");
    account(3, "1001.01.02");
    account(4, "10011");
    account(5, "1002");
    set.as(theUser);
  }
  void account(std::int32_t id, const std::string& number) {
    set.sql("Insert Into t_Account (FAccountID,FNumber) Values (" + std::to_string(id) + ",'" + number + "')");
  }
  void grant(std::int32_t holder, std::int32_t account, std::int32_t authorization, std::int32_t type = 105) {
    set.sql("Insert Into t_ItemRight (FTypeID,FItemID,FUserID,FAuthType) Values (" + std::to_string(type) + "," +
            std::to_string(account) + "," + std::to_string(holder) + "," + std::to_string(authorization) + ")");
  }
  void lay(const Situation& now) {
    const auto number = [](bool on, int value) { return std::to_string(on ? value : 0); };
    std::string text = "Delete From t_ItemRight Delete From t_Group Where FGroupID=1 And FUserID=17 ";
    if (now.administrator) text += "Insert Into t_Group (FGroupID,FUserID) Values (1,17) ";
    text += "Update t_SystemProfile Set FValue='" + number(now.accountsAreChecked, 1) +
            "' Where FCategory='GL' And FKey='CheckAcctTable' ";
    // The other bits are set to show that nobody looks at them.
    text += "Update t_User Set FDataVokeType=2+" + number(now.userViewRestricted, 1) + " Where FUserID=17 ";
    text += "Update t_User Set FDataVokeType=4+" + number(now.groupViewRestricted, 1) + " Where FUserID=30 ";
    text +=
        "Update t_UserItemClassRight Set FUserItemClassRight=3+" + number(now.userInherits, 4) + " Where FUserID=17 ";
    text +=
        "Update t_UserItemClassRight Set FUserItemClassRight=8+" + number(now.groupInherits, 4) + " Where FUserID=30 ";
    set.sql(text);
    if (now.holder != Holder::nobody) grant(idOf(now.holder), 1, now.authorization);
  }
  bool check(const std::string& number) {
    return set.result("MultiAccountInfo.CheckAccountRight", {{"sAcctName", number}}) == Value(std::int32_t{1});
  }
  void expectTheRule(const Situation& now) {
    lay(now);
    for (const char* number : {"1001", "1001.01.02", "10011", "9999"}) {
      ASSERT_EQ(check(number), sees(now, number))
          << number << ": administrator " << now.administrator << ", checked " << now.accountsAreChecked
          << ", user's view " << now.userViewRestricted << ", group's view " << now.groupViewRestricted
          << ", user inherits " << now.userInherits << ", group inherits " << now.groupInherits << ", holder "
          << static_cast<int>(now.holder) << ", authorization " << now.authorization;
    }
  }
};

TEST_F(AccountRights, EveryCombinationFollowsTheRule) {
  for (unsigned bits = 0; bits < 64; ++bits) {
    for (const Holder holder : holders) {
      for (const std::int32_t authorization : {1, 6}) {
        expectTheRule({(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0, (bits & 8) != 0, (bits & 16) != 0,
                       (bits & 32) != 0, holder, authorization});
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST_F(AccountRights, AnAdministratorSeesExistingAccountsAlone) {
  set.as(1);
  EXPECT_TRUE(check("1002"));
  EXPECT_FALSE(check("9999"));
  EXPECT_FALSE(check(""));
}

TEST_F(AccountRights, WithInheritanceAGrantReachesTheAccountsBelowButNotTheNeighbour) {
  lay({.userInherits = true, .holder = Holder::user});
  EXPECT_TRUE(check("1001.01"));
  EXPECT_TRUE(check("1001.01.02"));
  EXPECT_FALSE(check("10011"));
}

TEST_F(AccountRights, AGrantBelowDoesNotReachTheAccountAbove) {
  lay({.userInherits = true});
  grant(theUser, 2, 1);
  EXPECT_FALSE(check("1001"));
  EXPECT_TRUE(check("1001.01.02"));
}

TEST_F(AccountRights, RightsOnOtherClassesOfItemsDoNotCount) {
  lay({});
  grant(theUser, 1, 1, 104);
  EXPECT_FALSE(check("1001"));
}

TEST_F(AccountRights, TheRightToSeeMayStandAmongOthers) {
  lay({.holder = Holder::user, .authorization = 7});
  EXPECT_TRUE(check("1001"));
}

TEST_F(AccountRights, WithoutTheSettingAccountsAreNotChecked) {
  lay({});
  set.sql("Delete From t_SystemProfile Where FKey='CheckAcctTable'");
  EXPECT_TRUE(check("1002"));
}

TEST_F(AccountRights, ASettingThatIsNoNumberIsRefused) {
  lay({});
  set.sql("Update t_SystemProfile Set FValue='yes' Where FKey='CheckAcctTable'");
  EXPECT_EQ(set.error("MultiAccountInfo.CheckAccountRight", {{"sAcctName", "1001"}}).number(),
            errorNumber(RuntimeError::typeMismatch));
}

TEST_F(AccountRights, ANumberWithAnApostropheIsTheDatabasesError) {
  EXPECT_EQ(set.error("MultiAccountInfo.CheckAccountRight", {{"sAcctName", "10'01"}}).number(), oledb::errorsInCommand);
}

TEST_F(AccountRights, AnswersAreTheIntegersOneAndZero) {
  set.as(1);
  EXPECT_EQ(set.result("MultiAccountInfo.CheckAccountRight", {{"sAcctName", "1001"}}), Value(std::int32_t{1}));
  EXPECT_EQ(set.result("MultiAccountInfo.CheckAccountRight", {{"sAcctName", "9999"}}), Value(std::int32_t{0}));
}

TEST_F(AccountRights, InAChartOfFourHundredAccountsAGrantShowsOneBranch) {
  set.sql("Delete From t_Account");
  std::vector<std::string> numbers;
  for (int first = 1001; first <= 1008; ++first) {
    numbers.push_back(std::to_string(first));
    for (int second = 1; second <= 7; ++second) {
      numbers.push_back(std::to_string(first) + ".0" + std::to_string(second));
      for (int third = 1; third <= 6; ++third)
        numbers.push_back(numbers[numbers.size() - third] + ".0" + std::to_string(third));
    }
  }
  ASSERT_EQ(numbers.size(), 400U);
  std::int32_t id = 0;
  for (const std::string& number : numbers) account(++id, number);
  lay({.groupInherits = true});
  grant(theMemberGroup, 101, 1);  // 1003, with 7 accounts below it and 42 below those
  grant(theUser, 1, 1);
  grant(theForeignGroup, 51, 1);
  int branch = 0;
  int others = 0;
  for (const std::string& number : numbers) {
    if (!check(number)) continue;
    ++(number.starts_with("1003") ? branch : others);
  }
  EXPECT_EQ(branch, 50);
  EXPECT_EQ(others, 50) << "the branch of 1001";
}

}  // namespace
}  // namespace tolvane::test
