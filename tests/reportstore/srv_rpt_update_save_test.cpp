// Saving reports, on a real account set.
#include "reportstore/report_store.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;

struct SrvRptUpdateSaveOnAccountSet : ReportStore {
  std::vector<std::string> rights(std::int32_t id) {
    return set.rows(sql("Select FUserID,FRightCode From t_Rpt_Right Where FRptID=", id));
  }
  void breakTheMenu() { set.sql("Drop Table t_LocalSubFunc"); }
};

TEST_F(SrvRptUpdateSaveOnAccountSet, ANewReportHasOneNameInThreeLanguagesAndItsCreatorsRight) {
  set.asNewUser(16394);
  const auto id = save("现金", 1, bytes("d"), 5);
  EXPECT_EQ(field(id, "FRptName,FRptName_Cht,FRptName_En,FSysName,FRptType,FYear,FPeriod,FOwner,FLastOperator"),
            "现金|现金|现金|报表系统|1|0|0|5|16394");
  EXPECT_THAT(rights(id), ElementsAre("16394|4"));
}

TEST_F(SrvRptUpdateSaveOnAccountSet, ANewReportIsRegisteredAsASecurableObject) {
  const auto id = save("现金");
  EXPECT_THAT(
      set.rows(sql("Select FName,FName_Cht,FName_En From t_ObjectType Where FObjectType=136 And FObjectID=", id)),
      ElementsAre("现金|现金|现金"));
  EXPECT_THAT(set.rows(sql("Select FIndex,FAccessMask,FAccessUse,FName,FDescription,FName_En,FDescription_Cht From "
                           "t_ObjectAccessType Where FObjectType=136 And FObjectID=",
                           id, " Order By FIndex")),
              ElementsAre("0|8192|0|查看|用户可查看报表|查看|用户可查看报表",
                          "1|16384|0|图形分析|用户可查看图形分析|图形分析|用户可查看图形分析"));
  EXPECT_THAT(set.rows(sql("Select * From t_ObjectAccess Where FObjectType=136 And FObjectID=", id)),
              ElementsAre(sql("251|136|", id, "|0")));
}

TEST_F(SrvRptUpdateSaveOnAccountSet, SavingAgainUpdatesTheReportAndKeepsNameSystemAndType) {
  const auto id = save("现金");
  put(id, "FSysName='old', FRptName_En='Cash'");
  const Value again = set.result("SrvRptUpdate.SavePlxToSrv", {{"sSysName", "new"},
                                                               {"sRptName", "现金"},
                                                               {"vPlx", bytes("changed")},
                                                               {"lOwner", 8},
                                                               {"lYear", 2012},
                                                               {"lPeriod", 3}});
  EXPECT_EQ(again, Value(id));
  EXPECT_EQ(field(id, "FRptName_En,FSysName,FRptType,FYear,FPeriod,FOwner,FRptData"), "Cash|old|1|2012|3|8|<7 bytes>");
}

TEST_F(SrvRptUpdateSaveOnAccountSet, SavingAgainGrantsNothingAndRewritesTheRegistration) {
  const auto id = save("现金");
  set.sql("Delete From t_Rpt_Right");
  save("现金");
  EXPECT_THAT(rights(id), testing::IsEmpty());
  EXPECT_EQ(count(sql("t_ObjectType Where FObjectType=136 And FObjectID=", id)), 1);
  EXPECT_EQ(count(sql("t_ObjectAccessType Where FObjectType=136 And FObjectID=", id)), 2);
  EXPECT_EQ(count(sql("t_ObjectAccess Where FObjectType=136 And FObjectID=", id)), 1);
}

TEST_F(SrvRptUpdateSaveOnAccountSet, TheSameNameOfAnotherTypeIsAnotherReport) {
  EXPECT_NE(save("现金", 1), save("现金", 3));
}

TEST_F(SrvRptUpdateSaveOnAccountSet, AnApostropheIsStoredDoubledInAllThreeNamesAndOnceInTheRegistration) {
  const auto id = save("O'Brien");
  EXPECT_EQ(field(id, "FRptName,FRptName_Cht,FRptName_En"), "O''Brien|O''Brien|O''Brien");
  EXPECT_THAT(set.rows(sql("Select FName From t_ObjectType Where FObjectType=136 And FObjectID=", id)),
              ElementsAre("O'Brien"));
}

TEST_F(SrvRptUpdateSaveOnAccountSet, AReportWithAnApostropheIsMadeAnewByEverySave) {
  // It is stored with two apostrophes and looked for with one.
  EXPECT_NE(save("O'Brien"), save("O'Brien"));
}

TEST_F(SrvRptUpdateSaveOnAccountSet, PrintSettingsStayWithoutNewOnes) {
  const Named report{{"sSysName", "s"}, {"sRptName", "a"}, {"vPlx", bytes("d")}, {"lOwner", 1}};
  Named withSettings = report;
  withSettings.emplace_back("vPrinterBuf", bytes("paper"));
  Named withEmpty = report;
  withEmpty.emplace_back("vPrinterBuf", Empty{});
  const auto id = toInt32(set.result("SrvRptUpdate.SavePlxToSrv", withSettings));
  set.result("SrvRptUpdate.SavePlxToSrv", report);
  set.result("SrvRptUpdate.SavePlxToSrv", withEmpty);
  EXPECT_EQ(field(id, "FPrinterBuf"), "<5 bytes>");
}

TEST_F(SrvRptUpdateSaveOnAccountSet, TypeTwoStoresTheRecordOfTheVariantAndNotTheVariant) {
  // A tag of two bytes, then the number.
  EXPECT_EQ(field(save("数据", 2, std::int32_t{7}), "FRptData"), "<6 bytes>");
}

TEST_F(SrvRptUpdateSaveOnAccountSet, ABlankNameIsRefusedInTheCallersLanguageAndWritesNothing) {
  const Named blank{{"sSysName", "s"}, {"sRptName", "  "}, {"vPlx", bytes("d")}, {"lOwner", 1}};
  EXPECT_EQ(shown(set.error("SrvRptUpdate.SavePlxToSrv", blank)),
            "0x80044047 SrvRptRetrive.SavePlxToSrv: 报表名称不得为空字符串");
  set.in("en");
  EXPECT_EQ(set.error("SrvRptUpdate.SavePlxToSrv", blank).description(), "The report name must not be empty");
  set.in("cht");
  EXPECT_EQ(set.error("SrvRptUpdate.SavePlxToSrv", blank).description(), "報表名稱不得為空字串");
  EXPECT_EQ(count("t_Rpt_Content"), 0);
}

TEST_F(SrvRptUpdateSaveOnAccountSet, ARefusedMenuLeavesNothingBehind) {
  breakTheMenu();
  set.error("SrvRptUpdate.SavePlxToSrv", {{"sSysName", "s"}, {"sRptName", "a"}, {"vPlx", bytes("d")}, {"lOwner", 1}});
  EXPECT_EQ(count("t_Rpt_Content"), 0);
  EXPECT_EQ(count("t_Rpt_Right"), 0);
  EXPECT_EQ(count("t_ObjectType Where FObjectType=136"), 0);
}

TEST_F(SrvRptUpdateSaveOnAccountSet, TheMenuListsTheReportUnderEachNatureItemOfItsType) {
  save("现金");
  EXPECT_THAT(
      set.rows("Select FSubFuncID,FFuncName From t_LocalDetailFunc Where FSubFuncID>701 Order By FDetailFuncID"),
      ElementsAre("702|现金", "703|现金"));
}

}  // namespace
}  // namespace tolvane::test
