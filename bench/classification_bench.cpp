// Maintenance of reports and classification: the function menu, templates imported, a standard deleted.
#include <string>
#include <utility>
#include <vector>

#include "plain_sqlite.h"
#include "ratio.h"
#include "support/account_set.h"

namespace tolvane::bench {
namespace {

using test::AccountSet;

constexpr int menuItems = 40;
constexpr int shippedItems = 6;
constexpr int menuReports = 5000;
constexpr int importedTemplates = 50;
constexpr int savedViews = 5000;
constexpr int documentSize = 4096;

/// The menu as the services rebuild it: items, then the reports under each, every entry one row.
class PlainMenu {
 public:
  explicit PlainMenu(PlainDatabase& database) : database_(database) {}

  void rebuild() {
    deleteDetails_.run();
    deleteItems_.run();
    std::vector<std::pair<std::int64_t, std::int64_t>> items;
    std::int64_t id = 701;
    while (items_.step()) {
      items.emplace_back(items_.integer(0), items_.integer(1));
      const std::string captions[] = {items_.text(2), items_.text(3), items_.text(4)};
      insertItem_.bind(1, ++id).bind(2, captions[0]).bind(3, captions[1]).bind(4, captions[2]).run();
    }
    items_.reset();
    for (std::size_t i = 0; i < items.size(); ++i) {
      addReports(reportsOf(items[i].first, items[i].second), 702 + static_cast<std::int64_t>(i));
    }
  }

 private:
  PlainStatement& reportsOf(std::int64_t standard, std::int64_t item) {
    if (standard != 1) return reportsOfItem_.bind(1, item);
    return item == 3 ? templates_ : unfiled_;
  }

  void addReports(PlainStatement& reports, std::int64_t item) {
    for (std::int64_t index = 1; reports.step(); ++index) {
      const std::string captions[] = {reports.text(0), reports.text(1), reports.text(2)};
      insertDetail_.bind(1, item).bind(2, index).bind(3, item * 100 + index);
      insertDetail_.bind(4, captions[0]).bind(5, captions[1]).bind(6, captions[2]).run();
    }
    reports.reset();
  }

  PlainDatabase& database_;
  PlainStatement deleteDetails_ = database_.prepare("DELETE FROM t_LocalDetailFunc WHERE FSystem=7");
  PlainStatement deleteItems_ = database_.prepare("DELETE FROM t_LocalSubFunc WHERE FSystem=7");
  PlainStatement items_ = database_.prepare(
      "SELECT c.FPropClsID,i.FPropItemID,'('||c.FName||')-'||i.FName,'('||c.FName_Cht||')-'||i.FName_Cht,"
      "'('||c.FName_En||')-'||i.FName_En FROM t_Rpt_PropClass c JOIN t_Rpt_PropItem i ON c.FPropClsID=i.FPropClsID "
      "ORDER BY c.FPropClsID,i.FPropItemID");
  PlainStatement insertItem_ = database_.prepare(
      "INSERT INTO t_LocalSubFunc(FSystem,FIndex,FSubFuncID,FFuncName,FFuncName_Cht,FFuncName_En,FClassName,"
      "FClassParam,FRefresh) VALUES(7,?1,?1,?2,?3,?4,'PirglView.GLData','',1)");
  PlainStatement reportsOfItem_ =
      database_.prepare("SELECT FRptName,FRptName_Cht,FRptName_En FROM t_Rpt_Content WHERE F1001=?1");
  PlainStatement templates_ =
      database_.prepare("SELECT FRptName,FRptName_Cht,FRptName_En FROM t_Rpt_Content WHERE FRptType=3 ORDER BY FRptID");
  PlainStatement unfiled_ = database_.prepare(
      "SELECT FRptName,FRptName_Cht,FRptName_En FROM t_Rpt_Content WHERE FRptType=1 AND F1=0 AND F1001=0 ORDER BY "
      "FRptID");
  PlainStatement insertDetail_ = database_.prepare(
      "INSERT INTO t_LocalDetailFunc(FSystem,FSubFuncID,FIndex,FDetailFuncID,FFuncName,FFuncName_Cht,FFuncName_En,"
      "FClassName,FClassParam,FRefresh) VALUES(7,?1,?2,?3,?4,?5,?6,'NorvRpt.Application','Other',0)");
};

void addReport(PlainDatabase& file, const std::string& name, int type, int item) {
  const std::vector<std::uint8_t> document(documentSize, 1);
  file.prepare(
          "INSERT INTO t_Rpt_Content(FRptName,FRptName_Cht,FRptName_En,FSysName,FRptType,F1001,FRptData) "
          "VALUES(?1,?1,?1,'报表系统',?2,?3,?4)")
      .bind(1, name)
      .bind(2, type)
      .bind(3, item)
      .bind(4, document)
      .run();
}

/// 40 items, and 5,000 reports filed under the regimes' items in turn.
struct MenuCase {
  AccountSet set;
  PlainDatabase plain{set.path()};
  PlainMenu menu{plain};

  MenuCase() {
    plain.execute("BEGIN");
    for (int i = shippedItems; i < menuItems; ++i) {
      const std::string name = "项目" + std::to_string(i);
      plain.prepare("INSERT INTO t_Rpt_PropItem VALUES(1001,?1,?2,?2,?2,?2)").bind(1, 120 + i).bind(2, name).run();
    }
    for (int i = 0; i < menuReports; ++i) addReport(plain, "报表" + std::to_string(i), 1, 123 + i % (menuItems - 3));
    plain.execute("COMMIT");
  }
  /// Renaming a standard to its own name is the menu and little else.
  void system() {
    set.call("RptPropItemClassUpdate.Update",
             {{"PropClsID", std::int32_t{1001}}, {"Properties", test::bag({{"FName", "会计制度"}})}});
  }
  void direct() {
    plain.execute("BEGIN IMMEDIATE");
    plain.execute("UPDATE t_Rpt_PropClass SET FName='会计制度' WHERE FPropClsID=1001");
    menu.rebuild();
    plain.execute("COMMIT");
  }
};

/// 50 templates, imported once already: every run brings the 50 reports up to date and rebuilds the menu 50 times.
struct ImportCase {
  AccountSet set;
  PlainDatabase plain{set.path()};
  PlainMenu menu{plain};

  ImportCase() {
    for (int i = 0; i < importedTemplates; ++i) addReport(plain, "新会计准则" + std::to_string(i), 3, 124);
    system();
  }
  void system() { set.call("SrvRptUpdate.ImportRpt", {{"sID", "124"}}); }
  void direct() {
    plain.execute("BEGIN IMMEDIATE");
    while (templates_.step()) {
      const std::string name = templates_.text(1).substr(std::string("新会计准则").size());
      report_.bind(1, name).step();
      const std::int64_t id = report_.integer(0);
      report_.reset();
      update_.bind(1, id).run();
      largest_.run();
      object_.bind(1, name).bind(2, id).run();
      for (PlainStatement& statement : registration_) statement.bind(1, id).run();
      menu.rebuild();
      copy_.bind(1, templates_.integer(0)).bind(2, id).run();
    }
    templates_.reset();
    plain.execute("COMMIT");
  }

 private:
  PlainStatement templates_ = plain.prepare(
      "SELECT FRptID,FRptName FROM t_Rpt_Content a WHERE F1001=124 AND FRptType=3 AND NOT EXISTS (SELECT 1 FROM "
      "t_Rpt_Content b WHERE b.FRptName=a.FRptName AND b.FRptType=1)");
  PlainStatement report_ = plain.prepare("SELECT * FROM t_Rpt_Content WHERE FRptName=?1 AND FRptType=1");
  PlainStatement update_ =
      plain.prepare("UPDATE t_Rpt_Content SET FYear=0,FPeriod=0,FOwner=1,FLastOperator=1,FRptData='' WHERE FRptID=?1");
  PlainStatement largest_ = plain.prepare("SELECT max(FRptID) FROM t_Rpt_Content");
  PlainStatement object_ =
      plain.prepare("UPDATE t_ObjectType SET FName=?1,FName_Cht=?1,FName_En=?1 WHERE FObjectType=136 AND FObjectID=?2");
  PlainStatement registration_[5] = {
      plain.prepare("DELETE FROM t_ObjectAccessType WHERE FObjectType=136 AND FObjectID=?1"),
      plain.prepare("INSERT INTO t_ObjectAccessType(FObjectType,FObjectID,FIndex,FAccessMask,FName) "
                    "VALUES(136,?1,0,8192,'查看')"),
      plain.prepare("INSERT INTO t_ObjectAccessType(FObjectType,FObjectID,FIndex,FAccessMask,FName) "
                    "VALUES(136,?1,1,16384,'图形分析')"),
      plain.prepare("DELETE FROM t_ObjectAccess WHERE FGroupID=251 AND FObjectType=136 AND FObjectID=?1"),
      plain.prepare("INSERT INTO t_ObjectAccess VALUES(251,136,?1,0)")};
  PlainStatement copy_ = plain.prepare(
      "UPDATE t_Rpt_Content SET (FRptData,FPrinterBuf)=(SELECT FRptData,FPrinterBuf FROM t_Rpt_Content WHERE "
      "FRptID=?1) WHERE FRptID=?2");
};

struct SetWithStandard : AccountSet {
  SetWithStandard() { call("RptPropItemClassUpdate.Create", {{"Properties", test::bag({{"FName", "部门"}})}}); }
};

/// 5,000 users' views that name the standard. Both sides put standard and views back in the same way after each run.
struct DeleteCase {
  SetWithStandard set;
  PlainDatabase plain{set.path()};
  PlainMenu menu{plain};

  DeleteCase() {
    plain.execute("BEGIN");
    for (int user = 1; user <= savedViews; ++user) {
      plain.prepare("INSERT INTO t_Rpt_View VALUES(?1,'1\\1002\\1001')").bind(1, user).run();
    }
    plain.execute("COMMIT");
  }
  void system() {
    set.call("RptPropItemClassUpdate.Delete", {{"PropClsID", std::int32_t{1002}}});
    restore();
  }
  void direct() {
    plain.execute("BEGIN IMMEDIATE");
    exists_.run();
    used_.run();
    while (views_.step()) {
      std::string view = views_.text(1);
      view.erase(view.find("1002\\"), 5);
      change_.bind(1, views_.integer(0)).bind(2, view).run();
    }
    views_.reset();
    plain.execute("DELETE FROM t_Rpt_PropItem WHERE FPropClsID=1002");
    plain.execute("DELETE FROM t_Rpt_PropClass WHERE FPropClsID=1002");
    menu.rebuild();
    plain.execute("COMMIT");
    restore();
  }

 private:
  void restore() {
    plain.execute("BEGIN IMMEDIATE");
    plain.execute("INSERT INTO t_Rpt_PropClass VALUES(1002,'1002','部门','部门','部门')");
    plain.execute("UPDATE t_Rpt_View SET FViewCode='1\\1002\\1001'");
    plain.execute("COMMIT");
  }

  PlainStatement exists_ = plain.prepare("SELECT FPropClsID FROM t_Rpt_PropClass WHERE FPropClsID=1002");
  PlainStatement used_ = plain.prepare("SELECT count(*) FROM t_Rpt_Content WHERE F1002>0");
  PlainStatement views_ = plain.prepare("SELECT * FROM t_Rpt_View");
  PlainStatement change_ = plain.prepare("UPDATE t_Rpt_View SET FViewCode=?2 WHERE FUserID=?1");
};

}  // namespace

void registerCases() {
  static MenuCase menu;
  compare(
      "menu refresh, 40 items, 5,000 reports", 1.5, [] { menu.system(); }, [] { menu.direct(); });
  static ImportCase imported;
  compare(
      "ImportRpt, 50 templates", 1.5, [] { imported.system(); }, [] { imported.direct(); });
  static DeleteCase deleted;
  compare(
      "Delete of a standard, 5,000 views", 1.5, [] { deleted.system(); }, [] { deleted.direct(); });
}

}  // namespace tolvane::bench
