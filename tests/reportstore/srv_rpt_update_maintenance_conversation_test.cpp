// The exact statements, cursors and order of operations behind deleting, renaming, filing and importing reports.
#include <gmock/gmock.h>

#include "platform/error.h"
#include "reportstore/srv_rpt_update.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::_;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

const auto readsTheMenu = StartsWith("Execute select c.FPropClsID,i.FPropItemID,");

struct SrvRptUpdateMaintenance : testing::Test {
  RecordingPlatform platform;
  SrvRptUpdate service{platform};
  std::shared_ptr<PropertyBag> properties = platform.newPropertyBag();

  void reportExists() { platform.answer(" Select * From t_Rpt_Content", {{"FRptID"}, {{std::int32_t{7}}}}); }
  void templates(Rows rows) { platform.answer("select FRPTID,FRptName", std::move(rows)); }
  void nextSavedReportIs(std::int32_t id) { platform.answer("Select Max(FRptID)", {{"FRptID"}, {{id}}}); }
  void serverTells() { platform.answer("Select GetDate()", {{"FNow"}, {{Date{41000}}}}); }
};

TEST_F(SrvRptUpdateMaintenance, DelReportAnnouncesWorkInPlaceOfTheCompletionCall) {
  platform.log.clear();
  EXPECT_TRUE(service.DelReport("x", 7));
  EXPECT_EQ(platform.log.front(), "BeginWork");
  EXPECT_EQ(platform.log.back(), "CompleteWork");
}

TEST_F(SrvRptUpdateMaintenance, DelReportRemovesRightsRowAndRegistrationThenRefreshesTheMenu) {
  service.DelReport("x", -7);
  EXPECT_THAT(
      platform.work(),
      ElementsAre("Execute  Delete From T_Rpt_Right Where FRptID=-7\r\n Delete From T_Rpt_Content Where FRptID=-7",
                  "Execute Delete From t_ObjectType Where FObjectType=136 And FObjectID=-7",
                  "Execute Delete From t_ObjectAccessType Where FObjectType=136 And FObjectID=-7",
                  "Execute delete from t_objectaccess where fgroupid=251 and fobjecttype=136 and fobjectid=-7",
                  readsTheMenu, "CompleteWork"));
}

TEST_F(SrvRptUpdateMaintenance, DelReportDoesNotCompleteWhenTheMenuIsRefused) {
  platform.answer("select c.FPropClsID", {{"FPropClsID", "FPropItemID", "FName", "FName_Cht", "FName_En"},
                                          {{std::int32_t{1}, std::int32_t{1}, "a", "b", "c"}}});
  platform.fail("RefreshSubFunc", AutomationError(RuntimeError::invalidArgument, "DataFlow"));
  EXPECT_THROW(service.DelReport("x", 7), AutomationError);
  EXPECT_THAT(platform.log.back(), StartsWith("RefreshSubFunc"));
}

TEST_F(SrvRptUpdateMaintenance, DelRptViaNameMatchesTheChineseNameInEveryLanguageAndLeavesTheRegistration) {
  platform.language = "en";
  EXPECT_TRUE(service.DelRptViaName("x", "Cash'2", 3));
  EXPECT_THAT(platform.work(),
              ElementsAre("Execute  Delete From T_Rpt_Right Where FRptID =(Select FRptID From T_Rpt_Content Where "
                          "FRptName='Cash''2' and FRptType =3)\r\n Delete From T_Rpt_Content Where "
                          "FRptName='Cash''2' and FRptType =3",
                          readsTheMenu, "CompleteWork"));
}

TEST_F(SrvRptUpdateMaintenance, ReRptNameRenamesInTheCallersLanguageAloneAndInEveryType) {
  platform.language = "en";
  EXPECT_TRUE(service.ReRptName("x", "O'ld", "N'ew"));
  EXPECT_THAT(platform.work(), ElementsAre("LanguageCode",
                                           "Execute Update t_Rpt_Content Set FRptName_en='N''ew' Where "
                                           "FRptName_en='O''ld'",
                                           readsTheMenu, "CompleteWork"));
}

TEST_F(SrvRptUpdateMaintenance, ReRptNameUsesTheBaseColumnForChinese) {
  service.ReRptName("x", "a", "b");
  EXPECT_THAT(platform.statements(),
              ElementsAre("Execute Update t_Rpt_Content Set FRptName='b' Where FRptName='a'", readsTheMenu));
}

TEST_F(SrvRptUpdateMaintenance, SetReportPropWritesOneFieldForEachEntryAndTheTypeForEntryOne) {
  reportExists();
  properties->set("1", std::int32_t{3});
  properties->set("1001", std::int32_t{124});
  service.SetReportProp("x", 7, properties);
  EXPECT_THAT(platform.work(), ElementsAre("Open 1 3  Select * From t_Rpt_Content Where FRptID=7", "Set FRptType=3",
                                           "Set F1001=124", "Update", "CompleteWork"));
}

TEST_F(SrvRptUpdateMaintenance, SetReportPropTakesTheColumnFromTheNameAsItStands) {
  reportExists();
  properties->set("01001", std::int32_t{5});
  properties->set(" 1 ", std::int32_t{2});
  service.SetReportProp("x", 7, properties);
  EXPECT_THAT(platform.work(), ElementsAre(_, "Set F01001=5", "Set FRptType=2", "Update", "CompleteWork"));
}

TEST_F(SrvRptUpdateMaintenance, SetReportPropOfAnEmptyBagUpdatesNothingAndCompletes) {
  reportExists();
  service.SetReportProp("x", 7, properties);
  EXPECT_THAT(platform.work(), ElementsAre(_, "Update", "CompleteWork"));
}

TEST_F(SrvRptUpdateMaintenance, SetReportPropStopsAtTheFirstNameThatIsNoNumber) {
  reportExists();
  properties->set("1001", std::int32_t{5});
  properties->set("FName", "x");
  EXPECT_THROW(service.SetReportProp("x", 7, properties), AutomationError);
  EXPECT_THAT(platform.work(), ElementsAre(_, "Set F1001=5"));
}

TEST_F(SrvRptUpdateMaintenance, SetReportPropOfAMissingReportDoesNotLookAtTheBag) {
  std::shared_ptr<PropertyBag> nothing;
  EXPECT_THROW(service.SetReportProp("x", 7, nothing), AutomationError);
  EXPECT_THAT(platform.work(), ElementsAre("Open 1 3  Select * From t_Rpt_Content Where FRptID=7", "LanguageCode"));
}

TEST_F(SrvRptUpdateMaintenance, ImportRptAsksForTheTemplatesReadOnlyAndForwardOnly) {
  std::string dsn = "x";
  std::string regime = "124";
  EXPECT_FALSE(service.ImportRpt(dsn, regime));
  EXPECT_THAT(platform.work(),
              ElementsAre("CurrentUserID",
                          "Open 0 1 select FRPTID,FRptName from t_RPT_Content a Where F1001 =124 And frpttype = 3 and "
                          "not exists (select 1 from t_RPT_Content b where b.frptname=a.frptname and b.frpttype=1)",
                          "CompleteWork"));
}

TEST_F(SrvRptUpdateMaintenance, ImportRptPutsTheRegimeIntoTheStatementAsItStands) {
  std::string dsn = "x";
  std::string regime = "1 or 1=1";
  service.ImportRpt(dsn, regime);
  EXPECT_THAT(platform.statements(), ElementsAre(StartsWith("Open 0 1 select FRPTID,FRptName from t_RPT_Content a "
                                                            "Where F1001 =1 or 1=1 And frpttype = 3 and not")));
}

TEST_F(SrvRptUpdateMaintenance, ImportRptSavesTheShortenedNameAndCopiesTheDocument) {
  templates({{"FRPTID", "FRptName"}, {{std::int32_t{40}, "资产负债表(新会计准则)新会计准则"}}});
  serverTells();
  nextSavedReportIs(55);
  std::string dsn = "x";
  std::string regime = "124";
  service.ImportRpt(dsn, regime);
  const auto saved = platform.statements();
  EXPECT_EQ(saved[2], "Open 1 3 Select * From T_Rpt_Content Where FRptName='资产负债表()' And  FRptType =1");
  EXPECT_EQ(saved.back(),
            "Execute update t_RPT_Content set FRptData=b.FRptData,FPrinterBuf=b.FPrinterBuf  from (select "
            "FRptData,FPrinterBuf from t_RPT_Content where  FRptID=40) b  where FRptID =55");
  EXPECT_EQ(platform.log.back(), "CompleteWork");
}

TEST_F(SrvRptUpdateMaintenance, ImportRptSavesForTheCallerWithoutPrintSettings) {
  platform.userID = 17;
  templates({{"FRPTID", "FRptName"}, {{std::int32_t{40}, "利润表"}}});
  serverTells();
  nextSavedReportIs(55);
  std::string dsn = "x";
  std::string regime = "123";
  service.ImportRpt(dsn, regime);
  EXPECT_THAT(platform.log, testing::IsSupersetOf({"Set FSysName='报表系统'", "Set FOwner=17", "Set FRptData=''",
                                                   "Set FYear=0", "Set FPeriod=0", "Set frpttype=1"}));
  EXPECT_THAT(platform.log, testing::Not(testing::Contains(StartsWith("Set FPrinterBuf"))));
}

TEST_F(SrvRptUpdateMaintenance, ImportRptCopiesNoDocumentIntoReportOne) {
  templates({{"FRPTID", "FRptName"}, {{std::int32_t{40}, "利润表"}}});
  serverTells();
  nextSavedReportIs(1);
  std::string dsn = "x";
  std::string regime = "123";
  service.ImportRpt(dsn, regime);
  EXPECT_THAT(platform.log, testing::Not(testing::Contains(StartsWith("Execute update t_RPT_Content"))));
}

struct RegimeName {
  const char* item;
  const char* saved;
  friend void PrintTo(const RegimeName& regime, std::ostream* out) { *out << "item" << regime.item; }
};
struct SrvRptUpdateImportNames : SrvRptUpdateMaintenance, testing::WithParamInterface<RegimeName> {};

TEST_P(SrvRptUpdateImportNames, LoseTheNameOfTheirRegimeAlone) {
  templates({{"FRPTID", "FRptName"}, {{std::int32_t{40}, "小企业会计制度,新会计准则,企业会计制度"}}});
  serverTells();
  nextSavedReportIs(55);
  std::string dsn = "x";
  std::string regime = GetParam().item;
  service.ImportRpt(dsn, regime);
  EXPECT_THAT(platform.log, testing::Contains(std::string("Set FRptName='") + GetParam().saved + "'"));
}

INSTANTIATE_TEST_SUITE_P(Regimes, SrvRptUpdateImportNames,
                         testing::Values(RegimeName{"123", ",新会计准则,企业会计制度"},
                                         RegimeName{"124", "小企业会计制度,,企业会计制度"},
                                         RegimeName{"125", "小,新会计准则,"}, RegimeName{" 124", "小,新会计准则,"}));

}  // namespace
}  // namespace tolvane::test
