// Reading classification standards, on a real account set.
#include "classification/classification_store.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr std::int32_t user = 16394;

struct RptPropItemClassInfoOnAccountSet : ClassificationStore {
  Value exists(const Named& what) { return set.result("RptPropItemClassInfo.ExistenceCheck", what); }
  std::vector<std::string> rows(const std::string& method, const Named& arguments = {}) {
    return rowsOf(set.result("RptPropItemClassInfo." + method, arguments));
  }
  /// The names under an item; "nothing" alone when the answer is no record set.
  std::vector<std::string> reportsOf(const std::string& item) {
    const Value found = set.result("RptPropItemClassInfo.GetRptByProp", {{"sPropName", item}});
    return found.isNothing() ? std::vector<std::string>{"nothing"} : rowsOf(found);
  }
  void grant(std::int32_t report, std::int32_t code) {
    set.sql(sql("Insert Into t_Rpt_Right Values (", report, ",", user, ",", code, ")"));
  }
  /// Lets `user` do what a mask of object 50 stands for.
  void allow(std::int32_t mask) { set.sql(sql("Insert Into t_ObjectAccess Values (", user, ",50,0,", mask, ")")); }
};

TEST_F(RptPropItemClassInfoOnAccountSet, ExistenceCheckFindsByIdentifierThenByNumber) {
  EXPECT_EQ(exists({}), Value(0));
  EXPECT_EQ(exists({{"PropClsID", 1001}}), Value(1001));
  EXPECT_EQ(exists({{"Number", "1001"}}), Value(1001));
  EXPECT_EQ(exists({{"PropClsID", 1002}, {"Number", "1001"}}), Value(0));
  EXPECT_EQ(exists({{"Number", "x' or '1'='1"}}), Value(0));
}

TEST_F(RptPropItemClassInfoOnAccountSet, GetAllPropNameNamesEveryItemOfEveryStandard) {
  EXPECT_THAT(rows("GetAllPropName"),
              ElementsAre("(性质)-普通报表|1", "(性质)-分析报表|2", "(性质)-报表模板|3",
                          "(会计制度)-小企业会计制度|123", "(会计制度)-新会计准则|124", "(会计制度)-企业会计制度|125"));
  set.sql("Delete From t_Rpt_PropItem");
  EXPECT_TRUE(set.result("RptPropItemClassInfo.GetAllPropName").isNothing());
}

TEST_F(RptPropItemClassInfoOnAccountSet, GetDetailGivesTheNameInTheCallersLanguage) {
  set.in("en");
  EXPECT_THAT(rows("GetDetail", {{"PropClsID", 1001}}), ElementsAre("1001|1001|Accounting Regime"));
}

TEST_F(RptPropItemClassInfoOnAccountSet, AMissingStandardNamesTheArgumentThatFoundNothing) {
  EXPECT_EQ(shown(set.error("RptPropItemClassInfo.GetDetail", {{"PropClsID", 7}})),
            "0x80044041 Tolvane.RptPropItemClassInfo.GetDetail: PropClsID");
  EXPECT_EQ(shown(set.error("RptPropItemClassInfo.GetDetailByNumber", {{"Number", "7"}})),
            "0x80044041 Tolvane.RptPropItemClassInfo.GetDetailByNumber: Number");
}

TEST_F(RptPropItemClassInfoOnAccountSet, GetDetailByNumberGivesAllColumns) {
  EXPECT_THAT(rows("GetDetailByNumber", {{"Number", "1"}}), ElementsAre("1|1|性质|性質|Nature"));
}

TEST_F(RptPropItemClassInfoOnAccountSet, GetListNeverHoldsStandardZeroAndIsOrderedByNumber) {
  set.sql("Insert Into t_Rpt_PropClass Values (0,'0','零','零','Zero')");
  set.sql("Insert Into t_Rpt_PropClass Values (1003,'01','部门','部门','Department')");
  EXPECT_THAT(rows("GetList"), ElementsAre("1003|01|部门", "1|1|性质", "1001|1001|会计制度"));
}

TEST_F(RptPropItemClassInfoOnAccountSet, GetListTakesFilterAndSortAndAnyOptions) {
  EXPECT_THAT(rows("GetList", {{"Options", 99}, {"Sort", "FPropClsID desc"}}),
              ElementsAre("1001|1001|会计制度", "1|1|性质"));
  EXPECT_THAT(rows("GetList", {{"Filter", "FPropClsID=1 or FPropClsID=1"}}), ElementsAre("1|1|性质"));
}

TEST_F(RptPropItemClassInfoOnAccountSet, IsExistRptForPropClsAnswersOneAndNotTrue) {
  const Named regime{{"lPropClsID", 1001}};
  EXPECT_EQ(set.result("RptPropItemClassInfo.IsExistRptForPropCls", regime), Value(0));
  file(save("a"), 1001, 124);
  EXPECT_EQ(set.result("RptPropItemClassInfo.IsExistRptForPropCls", regime), Value(1));
}

TEST_F(RptPropItemClassInfoOnAccountSet, IsExistRptForPropClsOfAStandardWithoutAColumnFailsWithTheDatabasesError) {
  EXPECT_EQ(set.error("RptPropItemClassInfo.IsExistRptForPropCls", {{"lPropClsID", 1500}}).number(), 0x80040E14);
}

TEST_F(RptPropItemClassInfoOnAccountSet, GetRptByPropListsTemplatesAndReportsOfTheItem) {
  file(save("report"), 1001, 124);
  file(save("template", 3), 1001, 124);
  file(save("other"), 1001, 125);
  EXPECT_THAT(reportsOf("(会计制度)-新会计准则"), ElementsAre("template", "report"));
  EXPECT_THAT(reportsOf("(会计制度)-小企业会计制度"), ElementsAre("nothing"));
}

TEST_F(RptPropItemClassInfoOnAccountSet, GetRptByPropSplitsAtTheFirstHyphenBehindAParenthesis) {
  createStandard("a-b");
  createItem(1002, "01", "c)-d");
  file(save("report"), 1002, 126);
  EXPECT_THAT(reportsOf("(a-b)-c)-d"), ElementsAre("report"));
}

TEST_F(RptPropItemClassInfoOnAccountSet, GetRptByPropOfANameThatIsNoItemIsNothing) {
  EXPECT_THAT(reportsOf("会计制度"), ElementsAre("nothing"));
  EXPECT_THAT(reportsOf("(会计制度)-x"), ElementsAre("nothing"));
}

TEST_F(RptPropItemClassInfoOnAccountSet, GetRptByPropOfAUserWithoutRightsHoldsGrantedReportsAndNoTemplates) {
  const auto granted = save("granted");
  file(granted, 1001, 124);
  file(save("foreign"), 1001, 124);
  file(save("template", 3), 1001, 124);
  grant(granted, 1);
  set.asNewUser(user);
  EXPECT_THAT(reportsOf("(会计制度)-新会计准则"), ElementsAre("granted"));
}

TEST_F(RptPropItemClassInfoOnAccountSet, GetRptByPropOfAUserWithTheSharedReportRightHoldsTheTemplatesToo) {
  file(save("template", 3), 1001, 124);
  allow(0x4000000);
  set.asNewUser(user);
  EXPECT_THAT(reportsOf("(会计制度)-新会计准则"), ElementsAre("template"));
}

TEST_F(RptPropItemClassInfoOnAccountSet, GetRptByPropOfAUserWithTheAllReportsRightLeavesDeniedReportsOut) {
  const auto denied = save("denied");
  file(denied, 1001, 124);
  file(save("foreign"), 1001, 124);
  grant(denied, 0);
  allow(0x8000000);
  set.asNewUser(user);
  EXPECT_THAT(reportsOf("(会计制度)-新会计准则"), ElementsAre("foreign"));
}

TEST_F(RptPropItemClassInfoOnAccountSet, GetRptByPropOfANatureItemListsUnfiledReportsOfItsType) {
  save("unfiled");
  file(save("filed"), 1001, 124);
  save("template", 3);
  set.sql("Insert Into t_Rpt_PropItem Values (1,4,'4','四','四','4')");
  set.sql("Insert Into t_Rpt_PropItem Values (1,5,'5','五','五','5')");
  EXPECT_THAT(reportsOf("(性质)-普通报表"), ElementsAre("unfiled"));
  EXPECT_THAT(reportsOf("(性质)-分析报表"), ElementsAre("unfiled"));
  EXPECT_THAT(reportsOf("(性质)-报表模板"), ElementsAre("template"));
  EXPECT_THAT(reportsOf("(性质)-四"), ElementsAre("template"));
  EXPECT_THAT(reportsOf("(性质)-五"), ElementsAre("unfiled"));
}

TEST_F(RptPropItemClassInfoOnAccountSet, GetRptByPropOfANatureItemListsFiledReportsTooForTheAllReportsRight) {
  save("unfiled");
  file(save("filed"), 1001, 124);
  allow(0x8000000);
  set.asNewUser(user);
  EXPECT_THAT(reportsOf("(性质)-普通报表"), UnorderedElementsAre("unfiled", "filed"));
  EXPECT_THAT(reportsOf("(性质)-报表模板"), ElementsAre("nothing"));
}

TEST_F(RptPropItemClassInfoOnAccountSet, GetRptByPropOfANatureItemListsGrantedReportsForAUser) {
  const auto granted = save("granted");
  const auto filed = save("filed");
  file(filed, 1001, 124);
  save("foreign");
  grant(granted, 1);
  grant(filed, 4);
  set.asNewUser(user);
  EXPECT_THAT(reportsOf("(性质)-普通报表"), ElementsAre("granted"));
}

TEST_F(RptPropItemClassInfoOnAccountSet, GetRptByPropTakesItemAndReportNamesInTheCallersLanguage) {
  const auto report = save("中文");
  file(report, 1001, 124);
  set.sql("Update t_Rpt_Content Set FRptName_En='English'");
  set.in("en");
  EXPECT_THAT(reportsOf("(Accounting Regime)-New Accounting Standards"), ElementsAre("English"));
}

TEST_F(RptPropItemClassInfoOnAccountSet, ANameWithAnApostropheFailsWithTheDatabasesError) {
  EXPECT_EQ(set.error("RptPropItemClassInfo.GetDetailByNumber", {{"Number", "O'Brien"}}).number(), 0x80040E14);
  EXPECT_EQ(set.error("RptPropItemClassInfo.GetRptByProp", {{"sPropName", "(O'Brien)-x"}}).number(), 0x80040E14);
}

}  // namespace
}  // namespace tolvane::test
