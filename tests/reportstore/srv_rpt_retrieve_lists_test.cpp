// The report lists, on a real account set.
#include "platform/calendar.h"
#include "reportstore/report_store.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

constexpr std::int32_t user = 16394;

struct SrvRptRetrieveListsOnAccountSet : ReportStore {
  Value list(const std::string& method, std::int32_t style, const Named& more = {}) {
    Named arguments = more;
    arguments.emplace_back("lGetStyle", style);
    return set.call("SrvRptRetrieve." + method, arguments).out.at("objRptInfo");
  }
  std::vector<std::string> names(const Value& rows) { return column(rows, "FRptName"); }
  /// Own, shared with code 2, denied, foreign, and a template; the caller is `user` afterwards.
  void someReports() {
    save("own", 1, bytes("d"), user);
    const auto shared = save("shared");
    const auto denied = save("denied");
    save("foreign");
    save("template", 3);
    grant(shared, user, 2);
    grant(denied, user, 0);
    set.asNewUser(user);
  }
};

TEST_F(SrvRptRetrieveListsOnAccountSet, GetRptlistOfAllReportsHoldsEveryReportWithCodeFour) {
  someReports();
  const Value rows = list("GetRptlist", 3);
  EXPECT_THAT(names(rows), UnorderedElementsAre("own", "shared", "denied", "foreign", "template"));
  EXPECT_THAT(column(rows, "FRightCode"), ElementsAre("4", "4", "4", "4", "4"));
}

TEST_F(SrvRptRetrieveListsOnAccountSet, GetRptlistOfSharedReportsHoldsTheStoredCodesAndTheTemplates) {
  someReports();
  const Value rows = list("GetRptlist", 2);
  EXPECT_THAT(names(rows), ElementsAre("shared", "template"));
  EXPECT_THAT(column(rows, "FRightCode"), ElementsAre("2", "4"));
}

TEST_F(SrvRptRetrieveListsOnAccountSet, GetRptlistOfOwnReportsAsksForTheOwnerAlone) {
  someReports();
  const Value rows = list("GetRptlist", 1);
  EXPECT_THAT(names(rows), UnorderedElementsAre("own", "template"));
}

TEST_F(SrvRptRetrieveListsOnAccountSet, ATemplateWithoutAnyRightRowIsListedToEveryUser) {
  save("template", 3);
  set.sql("Delete From t_Rpt_Right");
  set.asNewUser(user);
  EXPECT_THAT(names(list("GetRptlist", 2)), ElementsAre("template"));
}

TEST_F(SrvRptRetrieveListsOnAccountSet, AnEmptyListIsAListAndTheResultTrue) {
  const auto outcome = set.call("SrvRptRetrieve.GetRptlist");
  EXPECT_EQ(outcome.result, Value(true));
  EXPECT_THAT(rowsOf(outcome.out.at("objRptInfo")), IsEmpty());
}

TEST_F(SrvRptRetrieveListsOnAccountSet, GetRptlistIsOrderedByTheViewsWords) {
  put(save("a"), "FYear=2012, FPeriod=2");
  put(save("b"), "FYear=2011, FPeriod=3");
  put(save("c"), "FYear=2012, FPeriod=1");
  EXPECT_THAT(names(list("GetRptlist", 3, {{"sViewCode", "年度!期间"}})), ElementsAre("b", "c", "a"));
}

TEST_F(SrvRptRetrieveListsOnAccountSet, AViewWithAnUnknownWordIsRefusedByTheDatabase) {
  EXPECT_EQ(set.error("SrvRptRetrieve.GetRptlist", {{"sViewCode", "年度!月"}}).number(), 0x80040E14);
}

TEST_F(SrvRptRetrieveListsOnAccountSet, GetRptlistOrderByOrdersByColumnsAndNotAtAllForBlanks) {
  put(save("a"), "FYear=1");
  put(save("b"), "FYear=2");
  EXPECT_THAT(names(list("GetRptlistOrderBy", 3, {{"sOrderStr", "FYear desc"}})), ElementsAre("b", "a"));
  EXPECT_THAT(names(list("GetRptlistOrderBy", 3, {{"sOrderStr", "  "}})), UnorderedElementsAre("a", "b"));
}

TEST_F(SrvRptRetrieveListsOnAccountSet, GetRptlistWebHoldsNoTemplatesAndIgnoresTheStyle) {
  someReports();
  EXPECT_THAT(names(list("GetRptlistWeb", 3)), ElementsAre("shared"));
  set.as(1);
  EXPECT_THAT(names(list("GetRptlistWeb", 1)), UnorderedElementsAre("own", "shared", "denied", "foreign"));
}

TEST_F(SrvRptRetrieveListsOnAccountSet, TheListsShowTheNameInTheCallersLanguage) {
  put(save("中文"), "FRptName_En='English'");
  set.in("en");
  EXPECT_THAT(names(list("GetRptlist", 3)), ElementsAre("English"));
}

TEST_F(SrvRptRetrieveListsOnAccountSet, TheMenuOfAnAdministratorHoldsAtMostThirtyTwoReports) {
  for (int i = 0; i < 40; ++i) put(save(sql("r", i)), "FVisibleInList='1'");
  EXPECT_THAT(rowsOf(set.result("SrvRptRetrieve.GetRptRS")), SizeIs(32));
}

TEST_F(SrvRptRetrieveListsOnAccountSet, TheMenuOfAUserHoldsOwnAndSharedVisibleReportsAndNoLimit) {
  set.asNewUser(user);
  for (int i = 0; i < 40; ++i) put(save(sql("r", i), 1, bytes("d"), user), "FVisibleInList='1'");
  const Value rows = set.result("SrvRptRetrieve.GetRptRS");
  EXPECT_THAT(column(rows, "FRightCode"), testing::AllOf(SizeIs(40), testing::Each("4")));
}

TEST_F(SrvRptRetrieveListsOnAccountSet, TheMenuShowsTheOwnersReportWithCodeFourWhateverTheRightRowSays) {
  const auto own = save("own", 1, bytes("d"), user);
  put(own, "FVisibleInList='1'");
  grant(own, user, 0);
  set.asNewUser(user);
  EXPECT_THAT(column(set.result("SrvRptRetrieve.GetRptRS"), "FRightCode"), ElementsAre("4"));
}

TEST_F(SrvRptRetrieveListsOnAccountSet, TheMenuLeavesInvisibleAndDeniedReportsOut) {
  const auto hidden = save("hidden");
  const auto denied = save("denied");
  const auto shown = save("shown");
  grant(hidden, user, 4);
  grant(denied, user, 0);
  grant(shown, user, 1);
  put(denied, "FVisibleInList='1'");
  put(shown, "FVisibleInList='1'");
  set.asNewUser(user);
  EXPECT_THAT(column(set.result("SrvRptRetrieve.GetRptRS"), "FFuncName"), ElementsAre("shown"));
}

TEST_F(SrvRptRetrieveListsOnAccountSet, AMenuEntryIsNumberedAboveTenMillionAndKeepsTheChineseName) {
  const auto id = save("中文");
  put(id, "FVisibleInList='1', FRptName_En='English'");
  set.in("en");
  EXPECT_THAT(
      rowsOf(set.result("SrvRptRetrieve.GetRptRS")),
      ElementsAre(testing::StartsWith(sql("4|", id + 10000000, "|中文|0|Other|701|TarnRpt.Application|0|0|1|1|"))));
}

TEST_F(SrvRptRetrieveListsOnAccountSet, ASchemeTakesReportsWithARightOfTwoThatAreNotUnderAudit) {
  grant(save("one"), user, 1);
  grant(save("two"), user, 2);
  const auto audited = save("audited");
  grant(audited, user, 4);
  set.sql(sql("Insert Into t_Rpt_LeaderAudit Values (", audited, ",1,'boss')"));
  EXPECT_THAT(column(set.result("SrvRptRetrieve.GetSchemeRptList"), "FRptName"), UnorderedElementsAre("one", "two"));
  set.asNewUser(user);
  EXPECT_THAT(column(set.result("SrvRptRetrieve.GetSchemeRptList"), "FRptName"), ElementsAre("two"));
}

struct SrvRptRetrieveGetList : SrvRptRetrieveListsOnAccountSet {
  std::vector<std::string> filtered(const Named& filter) {
    return names(set.result("SrvRptRetrieve.GetList", {{"Filter", bag(filter)}}));
  }
};

TEST_F(SrvRptRetrieveGetList, HoldsEveryOrdinaryReportAndTemplateForAnAdministrator) {
  someReports();
  set.as(1);
  EXPECT_THAT(names(set.result("SrvRptRetrieve.GetList")),
              UnorderedElementsAre("own", "shared", "denied", "foreign", "template"));
}

TEST_F(SrvRptRetrieveGetList, HoldsOwnAndGrantedReportsAndTemplatesForAUser) {
  someReports();
  EXPECT_THAT(names(set.result("SrvRptRetrieve.GetList")), UnorderedElementsAre("own", "shared", "template"));
}

TEST_F(SrvRptRetrieveGetList, IsFilteredByTextNumberDayAndClassification) {
  put(save("O"), "FRptName='O''Brien', FYear=2012, F1001=124, FLastDate='20120315', FSysName=null");
  save("other");
  EXPECT_THAT(filtered({{"FRptName", "O'Brien"}}), ElementsAre("O'Brien"));
  EXPECT_THAT(filtered({{"FYear", 2012}, {"F1001", 124}}), ElementsAre("O'Brien"));
  EXPECT_THAT(filtered({{"FLastDate", dateOf(2012, 3, 15)}}), ElementsAre("O'Brien"));
  EXPECT_THAT(filtered({{"FSysName", Null{}}}), ElementsAre("O'Brien"));
  EXPECT_THAT(filtered({{"FYear", 2013}}), IsEmpty());
}

TEST_F(SrvRptRetrieveGetList, RefusesAnEntryThatIsNoColumnInTheCallersLanguage) {
  EXPECT_EQ(shown(set.error("SrvRptRetrieve.GetList", {{"Filter", bag({{"FNone", 1}})}})),
            "0x800A0005 Tolvane.SrvRptRetrieve.GetList: 报表列表中不存在字段 FNone");
}

}  // namespace
}  // namespace tolvane::test
