// The report store: fetching, listing and saving reports.
#include <string>
#include <vector>

#include "plain_sqlite.h"
#include "ratio.h"
#include "support/account_set.h"

namespace tolvane::bench {
namespace {

using test::AccountSet;

constexpr std::int32_t smallReport = 1;
constexpr std::int32_t largeReport = 2;
constexpr std::size_t smallSize = 4 * 1024;
constexpr std::size_t largeSize = 1024 * 1024;
constexpr std::size_t savedSize = 64 * 1024;
constexpr int listedReports = 20000;

std::vector<std::uint8_t> document(std::size_t size) {
  std::vector<std::uint8_t> bytes(size);
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<std::uint8_t>(i * 31 + i / 7);
  return bytes;
}

/// An account set with two documents and 20,000 listed reports, made once for all cases.
struct Store {
  AccountSet set;
  PlainDatabase plain;

  Store() : plain((fill(set), set.path())) {}

  static void fill(AccountSet& set) {
    PlainDatabase file(set.path());
    file.execute("BEGIN");
    auto insert = file.prepare(
        "INSERT INTO t_Rpt_Content(FRptID,FRptName,FRptName_Cht,FRptName_En,FSysName,FYear,FPeriod,FOwner,FRptType,"
        "FLastOperator,FLastDate,FRptData,FVisibleInList) VALUES(?1,?2,?2,?2,'报表系统',2012,3,1,1,1,"
        "'2012-03-15 10:00:00.000',?3,'1')");
    for (int id = 1; id <= listedReports; ++id) {
      const std::string name = "报表" + std::to_string(id);
      const auto content = document(id == largeReport ? largeSize : id == smallReport ? smallSize : 16);
      insert.bind(1, id).bind(2, name).bind(3, content).run();
    }
    file.execute("COMMIT");
  }
};

Store& store() {
  static Store one;
  return one;
}

void fetch(std::int32_t id) {
  store().set.call("SrvRptRetrieve.GetRptPlx", {{"lRptID", id}});
}

std::function<void()> plainFetch(std::int32_t id) {
  auto statement = std::make_shared<PlainStatement>(
      store().plain.prepare("SELECT FRptType, FRptData, FPrinterBuf FROM t_Rpt_Content WHERE FRptID=?1"));
  return [statement, id] {
    statement->bind(1, id);
    std::size_t size = 0;
    while (statement->step()) size += statement->bytes(1).size();
    statement->reset();
    if (size == 0) throw std::runtime_error("no document");
  };
}

void list() {
  store().set.call("SrvRptRetrieve.GetRptlist", {{"lGetStyle", std::int32_t{3}}});
}

/// Reads the same columns of the same rows into memory, in the same order.
std::function<void()> plainList() {
  auto statement = std::make_shared<PlainStatement>(store().plain.prepare(
      "SELECT 4,FRptID,FRptName,FSysName,FOwner,FYear,FPeriod,FRptType,FLastOperator,FLastDate FROM t_Rpt_Content "
      "WHERE "
      "FRptType=1 UNION SELECT 4,FRptID,FRptName,FSysName,FOwner,FYear,FPeriod,FRptType,FLastOperator,FLastDate FROM "
      "t_Rpt_Content WHERE FRptType=3 ORDER BY FSysName COLLATE NOCASE, FRptType"));
  return [statement] {
    std::vector<std::vector<std::string>> rows;
    while (statement->step()) {
      auto& row = rows.emplace_back();
      for (int column = 0; column < 10; ++column) row.push_back(statement->text(column));
    }
    statement->reset();
  };
}

/// An account set of its own: saving rebuilds the function menu, which must not be a question of 20,000 reports here.
struct Saving {
  AccountSet set;
  PlainDatabase plain;
  Value content;

  Saving() : plain(set.path()), content(Bytes(document(savedSize))) { save(); }
  void save() {
    set.call("SrvRptUpdate.SavePlxToSrv",
             {{"sSysName", "报表系统"}, {"sRptName", "利润表"}, {"vPlx", content}, {"lOwner", std::int32_t{1}}});
  }
};

/// Sends the statements that saving an existing report comes down to, prepared, in one transaction.
class PlainSaving {
 public:
  explicit PlainSaving(PlainDatabase& database) : database_(database), bytes_(document(savedSize)) {
    const auto add = [&](const char* sql) { statements_.push_back(database.prepare(sql)); };
    add("SELECT * FROM t_Rpt_Content WHERE FRptName='利润表' AND FRptType=1");
    add("SELECT max(FRptID) FROM t_Rpt_Content");
    add("UPDATE t_ObjectType SET FName='利润表',FName_Cht='利润表',FName_En='利润表' WHERE FObjectType=136 AND "
        "FObjectID=1");
    add("DELETE FROM t_ObjectAccessType WHERE FObjectType=136 AND FObjectID=1");
    add("INSERT INTO t_ObjectAccessType(FObjectType,FObjectID,FIndex,FAccessMask,FName) VALUES(136,1,0,8192,'查看')");
    add("INSERT INTO t_ObjectAccessType(FObjectType,FObjectID,FIndex,FAccessMask,FName) "
        "VALUES(136,1,1,16384,'图形分析')");
    add("DELETE FROM t_ObjectAccess WHERE FGroupID=251 AND FObjectType=136 AND FObjectID=1");
    add("INSERT INTO t_ObjectAccess VALUES(251,136,1,0)");
    add("SELECT c.FPropClsID,i.FPropItemID,'('||c.FName||')-'||i.FName,'('||c.FName_Cht||')-'||i.FName_Cht,"
        "'('||c.FName_En||')-'||i.FName_En FROM t_Rpt_PropClass c JOIN t_Rpt_PropItem i ON c.FPropClsID=i.FPropClsID "
        "ORDER BY c.FPropClsID,i.FPropItemID");
  }

  void run() {
    database_.execute("BEGIN IMMEDIATE");
    for (PlainStatement& statement : statements_) statement.run();
    update_.bind(1, bytes_).run();
    menu();
    database_.execute("COMMIT");
  }

 private:
  /// The menu's rows once more, item by item.
  void menu() {
    deleteSub_.run();
    deleteDetail_.run();
    PlainStatement& items = statements_.back();
    std::int64_t id = 701;
    while (items.step()) {
      insertSub_.bind(1, ++id).bind(2, items.text(2)).run();
      reports_.bind(1, items.integer(0) == 1 && items.integer(1) == 3 ? 3 : 1);
      std::int64_t detail = id * 100;
      while (reports_.step()) insertDetail_.bind(1, ++detail).bind(2, reports_.text(0)).run();
      reports_.reset();
    }
    items.reset();
  }

  PlainDatabase& database_;
  std::vector<std::uint8_t> bytes_;
  std::vector<PlainStatement> statements_;
  PlainStatement update_ =
      database_.prepare("UPDATE t_Rpt_Content SET FYear=0,FPeriod=0,FOwner=1,FRptData=?1 WHERE FRptID=1");
  PlainStatement deleteSub_ = database_.prepare("DELETE FROM t_LocalSubFunc");
  PlainStatement deleteDetail_ = database_.prepare("DELETE FROM t_LocalDetailFunc");
  PlainStatement insertSub_ =
      database_.prepare("INSERT INTO t_LocalSubFunc(FSystem,FIndex,FSubFuncID,FFuncName) VALUES(7,?1,?1,?2)");
  PlainStatement reports_ = database_.prepare("SELECT FRptName FROM t_Rpt_Content WHERE FRptType=?1 ORDER BY FRptID");
  PlainStatement insertDetail_ = database_.prepare(
      "INSERT INTO t_LocalDetailFunc(FSystem,FIndex,FDetailFuncID,FFuncName,FSubFuncID) VALUES(7,?1,?1,?2,?1/100)");
};

}  // namespace

void registerCases() {
  compare(
      "GetRptPlx, 4 KiB", 2.0, [] { fetch(smallReport); }, plainFetch(smallReport));
  compare(
      "GetRptPlx, 1 MiB", 1.1, [] { fetch(largeReport); }, plainFetch(largeReport));
  compare("GetRptlist, 20,000 reports", 1.5, list, plainList());
  static Saving saving;
  static PlainSaving plainSaving(saving.plain);
  compare(
      "SavePlxToSrv, 64 KiB", 1.5, [] { saving.save(); }, [] { plainSaving.run(); });
}

}  // namespace tolvane::bench
