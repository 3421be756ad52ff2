// Reading classification items and cash-flow items, on a real account set.
#include "classification/classification_store.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

struct RptPropItemInfoOnAccountSet : ClassificationStore {
  Value exists(const Named& what) { return set.result("RptPropItemInfo.ExistenceCheck", what); }
  std::vector<std::string> rows(const std::string& method, const Named& arguments = {}) {
    return rowsOf(set.result("RptPropItemInfo." + method, arguments));
  }
  /// A root with two children of class 9, one of them with a child of its own; a root of another class.
  void cashItems() {
    for (const char* item :
         {"(10,9,0,'1','现金流量',1,0)", "(11,9,10,'1.02','筹资',2,1)", "(12,9,10,'1.01','经营',2,0)",
          "(13,9,12,'1.01.01','销售',3,1)", "(20,8,0,'1','部门',1,0)"}) {
      set.sql("Insert Into t_Item (FItemID,FItemClassID,FParentID,FNumber,FName,FLevel,FDetail) Values " +
              std::string(item));
    }
  }
};

TEST_F(RptPropItemInfoOnAccountSet, ExistenceCheckByIdentifierTakesPrecedence) {
  EXPECT_EQ(exists({{"PropItemID", 124}}), Value(124));
  EXPECT_EQ(exists({{"PropItemID", "124"}, {"PropClsID", 1001}, {"Number", "01"}}), Value(124));
  EXPECT_EQ(exists({{"PropItemID", 500}, {"PropClsID", 1001}, {"Number", "01"}}), Value(0));
}

TEST_F(RptPropItemInfoOnAccountSet, ExistenceCheckByNumberLooksInOneStandard) {
  EXPECT_EQ(exists({{"PropClsID", 1001}, {"Number", "01"}}), Value(123));
  EXPECT_EQ(exists({{"PropClsID", "1"}, {"Number", 3}}), Value(3));
  EXPECT_EQ(exists({{"PropClsID", 1}, {"Number", "01"}}), Value(0));
}

TEST_F(RptPropItemInfoOnAccountSet, ExistenceCheckWithHalfAQuestionIsZero) {
  EXPECT_EQ(exists({{"PropClsID", 1001}}), Value(0));
  EXPECT_EQ(exists({{"Number", "01"}}), Value(0));
  EXPECT_EQ(exists({}), Value(0));
}

TEST_F(RptPropItemInfoOnAccountSet, ExistenceCheckOfAStandardThatIsNoNumberFails) {
  EXPECT_EQ(set.error("RptPropItemInfo.ExistenceCheck", {{"PropClsID", "first"}, {"Number", "01"}}).number(),
            0x800A000D);
}

TEST_F(RptPropItemInfoOnAccountSet, GetDetailGivesTheNameInTheCallersLanguage) {
  EXPECT_THAT(rows("GetDetail", {{"PropItemID", 124}}), ElementsAre("1001|124|02|新会计准则"));
  set.in("en");
  EXPECT_THAT(rows("GetDetail", {{"PropItemID", 124}}), ElementsAre("1001|124|02|New Accounting Standards"));
}

TEST_F(RptPropItemInfoOnAccountSet, GetDetailOfAMissingItemNamesItsArgument) {
  for (const std::int32_t id : {0, -1, 500, 2147483647}) {
    EXPECT_EQ(shown(set.error("RptPropItemInfo.GetDetail", {{"PropItemID", id}})),
              "0x80044041 Tolvane.RptPropItemInfo.GetDetail: PropItemID");
  }
}

TEST_F(RptPropItemInfoOnAccountSet, GetDetailByNumberGivesTheItemsOfEveryStandardWithTheNumber) {
  createStandard("部门");
  createItem(1002, "02", "财务部");
  EXPECT_THAT(rows("GetDetailByNumber", {{"ItemClassID", 1002}, {"Number", "02"}}), SizeIs(2));
}

TEST_F(RptPropItemInfoOnAccountSet, GetDetailByNumberOfAMissingNumberFailsUnderTheNameOfGetDetail) {
  EXPECT_EQ(shown(set.error("RptPropItemInfo.GetDetailByNumber", {{"ItemClassID", 1}, {"Number", "x"}})),
            "0x80044041 Tolvane.RptPropItemInfo.GetDetail: PropItemID");
}

TEST_F(RptPropItemInfoOnAccountSet, GetDetailByNumberOfANumberWithAnApostropheFailsWithTheDatabasesError) {
  EXPECT_EQ(set.error("RptPropItemInfo.GetDetailByNumber", {{"ItemClassID", 1}, {"Number", "O'Brien"}}).number(),
            0x80040E14);
}

TEST_F(RptPropItemInfoOnAccountSet, GetListHoldsTheItemsOfAllStandardsByNumberWhateverTheClassAndTheOptions) {
  EXPECT_THAT(rows("GetList", {{"ItemClassID", 1001}, {"Options", 5}}),
              ElementsAre("123|1001|01|小企业会计制度", "124|1001|02|新会计准则", "125|1001|03|企业会计制度",
                          "1|1|1|普通报表", "2|1|2|分析报表", "3|1|3|报表模板"));
}

TEST_F(RptPropItemInfoOnAccountSet, GetListTakesFilterAndSort) {
  EXPECT_THAT(rows("GetList", {{"Filter", "FPropClsID=1 or FPropItemID=125"}, {"Sort", "FPropItemID desc"}}),
              ElementsAre("125|1001|03|企业会计制度", "3|1|3|报表模板", "2|1|2|分析报表", "1|1|1|普通报表"));
}

TEST_F(RptPropItemInfoOnAccountSet, GetListNeverHoldsItemZero) {
  set.sql("Insert Into t_Rpt_PropItem Values (1001,0,'00','n','n','n')");
  EXPECT_THAT(rows("GetList", {{"Filter", "FPropItemID=0"}}), IsEmpty());
}

TEST_F(RptPropItemInfoOnAccountSet, GetSubItemListsTheChildrenByNumber) {
  cashItems();
  EXPECT_THAT(rows("GetSubItem", {{"sFNumber", "1"}, {"sName", "现金流量"}}),
              ElementsAre("1.01|经营|2", "1.02|筹资|2"));
}

TEST_F(RptPropItemInfoOnAccountSet, GetSubItemOfTwoSuchItemsGivesTheItemsAndNotTheirChildren) {
  cashItems();
  set.sql("Update t_Item Set FName='现金流量' Where FItemID=20");
  EXPECT_THAT(rows("GetSubItem", {{"sFNumber", "1"}, {"sName", "现金流量"}}), ElementsAre("10", "20"));
}

TEST_F(RptPropItemInfoOnAccountSet, GetSubItemOfALeafIsAnEmptySetOfItems) {
  cashItems();
  EXPECT_THAT(rows("GetSubItem", {{"sFNumber", "1.02"}, {"sName", "筹资"}}), IsEmpty());
}

TEST_F(RptPropItemInfoOnAccountSet, GetCashItemLeavesTheRootsAndOtherClassesOut) {
  cashItems();
  EXPECT_THAT(column(set.result("RptPropItemInfo.GetCashItem"), "FItemID"), UnorderedElementsAre("11", "12", "13"));
}

TEST_F(RptPropItemInfoOnAccountSet, GetCashSubItemFiltersAnyClassAndHandsTheFilterBack) {
  cashItems();
  const auto outcome = set.call("RptPropItemInfo.GetCashSubItem", {{"Filter", "FParentID=0"}});
  EXPECT_THAT(column(outcome.result, "FItemID"), ElementsAre("10", "20"));
  EXPECT_EQ(outcome.out.at("Filter"), Value("FParentID=0"));
  EXPECT_THAT(rowsOf(set.result("RptPropItemInfo.GetCashSubItem")), SizeIs(5));
}

TEST_F(RptPropItemInfoOnAccountSet, GetCashDetailByNumberFindsCashFlowItemsAlone) {
  cashItems();
  set.sql("Update t_Item Set FNumber='8' Where FItemID=20");
  EXPECT_THAT(rows("GetCashDetailByNumber", {{"Number", "1.01"}}), ElementsAre("12|9|10|1.01|经营|2|False"));
  EXPECT_EQ(shown(set.error("RptPropItemInfo.GetCashDetailByNumber", {{"Number", "8"}})),
            "0x80044041 Tolvane.RptPropItemInfo.GetCashDetailByNumber: Number");
}

TEST_F(RptPropItemInfoOnAccountSet, UpdateHiddenItemShowsAReportInLists) {
  const auto report = save("a");
  EXPECT_EQ(set.result("RptPropItemInfo.UpdateHiddenItem", {{"lngRptID", report}, {"sFVisibleInList", "1"}}),
            Value(true));
  EXPECT_THAT(set.rows("Select FVisibleInList From t_Rpt_Content"), ElementsAre("1"));
  EXPECT_THAT(column(set.result("SrvRptRetrieve.GetRptRS"), "FFuncName"), ElementsAre("a"));
}

TEST_F(RptPropItemInfoOnAccountSet, UpdateHiddenItemOfAMissingReportIsTrue) {
  EXPECT_EQ(set.result("RptPropItemInfo.UpdateHiddenItem", {{"lngRptID", 999}, {"sFVisibleInList", "1"}}), Value(true));
}

}  // namespace
}  // namespace tolvane::test
