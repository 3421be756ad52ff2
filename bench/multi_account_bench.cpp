// Rights on ledger accounts, and batch print schemes.
#include <string>
#include <vector>

#include "plain_sqlite.h"
#include "ratio.h"
#include "support/account_set.h"

namespace tolvane::bench {
namespace {

using test::AccountSet;

constexpr int accounts = 5000;
constexpr int grants = 2000;
constexpr std::int32_t userID = 50;
constexpr int schemeReports = 1000;

std::string twoDigits(int number) {
  return {static_cast<char>('0' + number / 10), static_cast<char>('0' + number % 10)};
}

/// "1000.00", "1000.01", ...: 50 accounts of the first level with 100 below each.
std::string accountNumber(int index) {
  return std::to_string(1000 + index / 100) + "." + twoDigits(index % 100);
}

/// 5,000 accounts, 2,000 of them granted to a user whose rights reach down to sub-accounts.
struct RightsCase {
  AccountSet set;
  PlainDatabase plain{set.path()};
  std::string asked = accountNumber(1234);
  PlainStatement check = plain.prepare(
      "SELECT z.* FROM (SELECT FAccountID,FNumber FROM t_Account,(SELECT DISTINCT c1.FAccountID FItemID FROM t_Account "
      "c1,"
      "(SELECT DISTINCT r.FItemID FItemID,FNumber FNumber1 FROM t_ItemRight r,t_Account a WHERE (r.FAuthType & 1)=1 "
      "AND "
      "FTypeID=105 AND r.FItemID=a.FAccountID AND (FUserID IN (SELECT FGroupID FROM t_Group WHERE FGroupID<>0 AND "
      "FUserID=50) OR FUserID=50)) c WHERE c1.FNumber=c.FNumber1 OR c1.FNumber LIKE c.FNumber1||'.%') c WHERE "
      "FAccountID=c.FItemID) z WHERE z.FNumber=?1");

  RightsCase() {
    set.asNewUser(userID);
    set.sql("Update t_User Set FDataVokeType=1 Where FUserID=50");
    set.sql("Delete From t_SystemProfile Where FCategory='GL' And FKey='CheckAcctTable'");
    set.sql("Insert Into t_SystemProfile (FCategory,FKey,FValue) Values ('GL','CheckAcctTable','1')");
    set.sql("Insert Into t_UserItemClassRight Values (50,105,4)");
    plain.execute("BEGIN");
    auto account = plain.prepare("INSERT INTO t_Account(FAccountID,FNumber) VALUES(?1,?2)");
    auto right = plain.prepare("INSERT INTO t_ItemRight(FTypeID,FItemID,FUserID,FAuthType) VALUES(105,?1,50,1)");
    for (int i = 0; i < accounts; ++i) {
      const std::string number = accountNumber(i);
      account.bind(1, 100000 + i).bind(2, number).run();
      if (i < grants) right.bind(1, 100000 + i).run();
    }
    plain.execute("COMMIT");
  }
  void system() { set.call("MultiAccountInfo.CheckAccountRight", {{"sAcctName", asked}}); }
  void direct() { check.bind(1, asked).run(); }
};

/// A scheme of 1,000 reports, in a transaction of its own.
struct SchemeCase {
  AccountSet set;
  PlainDatabase plain{set.path()};
  Value reports;
  PlainStatement scheme =
      plain.prepare("INSERT INTO t_Rpt_PrintScheme(FSchemeName,FAuthor) VALUES('月初打印','admin')");
  PlainStatement find = plain.prepare("SELECT FSchemeID FROM t_Rpt_PrintScheme WHERE FSchemeName='月初打印'");
  PlainStatement detail =
      plain.prepare("INSERT INTO t_Rpt_PrintSchemeDetail(FSchemeID,FRptID,FRptName) VALUES(1,?1,?2)");

  SchemeCase() {
    std::vector<Value> items;
    for (std::int32_t i = 1; i <= schemeReports; ++i) {
      items.push_back(test::bag({{"lRptID", i}, {"sRptName", "报表" + std::to_string(i)}}));
    }
    reports = test::list(items);
  }
  void system() {
    set.call("RptBatchPrnUpdate.Add", {{"sSchemeName", "月初打印"}, {"sAuthor", "admin"}, {"vect", reports}});
  }
  void direct() {
    plain.execute("BEGIN IMMEDIATE");
    scheme.run();
    find.run();
    for (int i = 1; i <= schemeReports; ++i) {
      const std::string name = "报表" + std::to_string(i);
      detail.bind(1, i).bind(2, name).run();
    }
    plain.execute("COMMIT");
  }
};

}  // namespace

void registerCases() {
  static RightsCase rights;
  compare(
      "CheckAccountRight, 5,000 accounts, 2,000 grants", 1.3, [] { rights.system(); }, [] { rights.direct(); });
  static SchemeCase schemes;
  compare(
      "Add of a scheme with 1,000 reports", 1.5, [] { schemes.system(); }, [] { schemes.direct(); });
}

}  // namespace tolvane::bench
