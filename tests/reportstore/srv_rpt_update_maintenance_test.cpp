// Deleting, renaming, filing and importing reports, on a real account set.
#include <fstream>
#include <utility>

#include "reportstore/report_store.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

struct SrvRptUpdateMaintenanceOnAccountSet : ReportStore {
  std::vector<std::string> names(const std::string& where = "1=1") {
    return set.rows("Select FRptName From t_Rpt_Content Where " + where);
  }
  std::int32_t registrations(std::int32_t id) {
    return count(sql("t_ObjectType Where FObjectType=136 And FObjectID=", id)) +
           count(sql("t_ObjectAccessType Where FObjectType=136 And FObjectID=", id)) +
           count(sql("t_ObjectAccess Where FObjectType=136 And FObjectID=", id));
  }
  std::vector<std::string> menuReports() {
    return set.rows("Select distinct FFuncName From t_LocalDetailFunc Where FSubFuncID>701");
  }
  void breakTheMenu() { set.sql("Drop Table t_LocalSubFunc"); }
  void setProperties(std::int32_t id, const Named& properties) {
    set.call("SrvRptUpdate.SetReportProp", {{"lRptID", id}, {"Properties", bag(properties)}});
  }
  AutomationError propertyError(std::int32_t id, const Value& properties) {
    return set.error("SrvRptUpdate.SetReportProp", {{"lRptID", id}, {"Properties", properties}});
  }
  std::int32_t saveTemplate(const std::string& name, std::int32_t regime) {
    const auto id = save(name, 3, bytes("template of " + name));
    put(id, sql("F1001=", regime, ", FPrinterBuf=0x0102"));
    return id;
  }
  /// The shipped sample; its batches stand between lines of GO.
  void fillWithTheDemonstration() {
    std::ifstream file(TOLVANE_SOURCE_DIR "/samples/demo.sql");
    std::string batch;
    for (std::string line; std::getline(file, line);) {
      if (line != "GO") {
        batch += line + "\n";
      } else if (!trim(batch).empty()) {
        set.sql(std::exchange(batch, {}));
      }
    }
    if (!batch.empty()) set.sql(batch);
  }
  Value import(const std::string& regime) { return set.result("SrvRptUpdate.ImportRpt", {{"sID", regime}}); }
};

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, DelReportRemovesTheReportItsRightsItsRegistrationAndItsMenuEntry) {
  const auto kept = save("kept");
  const auto id = save("gone");
  EXPECT_EQ(set.result("SrvRptUpdate.DelReport", {{"lRptID", id}}), Value(true));
  EXPECT_THAT(names(), ElementsAre("kept"));
  EXPECT_EQ(count(sql("t_Rpt_Right Where FRptID=", id)), 0);
  EXPECT_EQ(registrations(id), 0);
  EXPECT_EQ(registrations(kept), 4);
  EXPECT_THAT(menuReports(), ElementsAre("kept"));
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, DelReportOfAnIdentifierThatDoesNotExistSucceeds) {
  for (const std::int32_t id : {0, -1, 999, 2147483647}) {
    EXPECT_EQ(set.result("SrvRptUpdate.DelReport", {{"lRptID", id}}), Value(true));
  }
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, DelReportLeavesTheReportWhenTheMenuIsRefused) {
  const auto id = save("a");
  breakTheMenu();
  set.error("SrvRptUpdate.DelReport", {{"lRptID", id}});
  EXPECT_THAT(names(), ElementsAre("a"));
  EXPECT_EQ(registrations(id), 4);
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, DelRptViaNameLeavesTheObjectRegistrationBehind) {
  const auto id = save("a");
  save("a", 3);
  EXPECT_EQ(set.result("SrvRptUpdate.DelRptViaName", {{"sRptName", "a"}}), Value(true));
  EXPECT_THAT(names("FRptType=1"), IsEmpty());
  EXPECT_THAT(names("FRptType=3"), ElementsAre("a"));
  EXPECT_EQ(count(sql("t_Rpt_Right Where FRptID=", id)), 0);
  EXPECT_EQ(registrations(id), 4);
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, DelRptViaNameOfTwoReportsOfTheNameFailsAndDeletesNeither) {
  save("a");
  put(save("b"), "FRptName='a'");
  const auto error = set.error("SrvRptUpdate.DelRptViaName", {{"sRptName", "a"}});
  EXPECT_EQ(error.number(), 0x80040E14);
  EXPECT_EQ(error.database().nativeNumber, 512);
  EXPECT_THAT(names(), ElementsAre("a", "a"));
  EXPECT_EQ(count("t_Rpt_Right"), 2);
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, DelRptViaNameTakesTheChineseNameInEveryLanguage) {
  put(save("中文"), "FRptName_En='English'");
  set.in("en");
  set.result("SrvRptUpdate.DelRptViaName", {{"sRptName", "English"}});
  EXPECT_THAT(names(), ElementsAre("中文"));
  set.result("SrvRptUpdate.DelRptViaName", {{"sRptName", "中文"}});
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, DelRptViaNameDoublesApostrophes) {
  put(save("a"), "FRptName='O''Brien'");
  set.result("SrvRptUpdate.DelRptViaName", {{"sRptName", "O'Brien"}});
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, ReRptNameRenamesInTheCallersLanguageAlone) {
  const auto id = save("中文");
  put(id, "FRptName_En='Old'");
  set.in("en");
  EXPECT_EQ(set.result("SrvRptUpdate.ReRptName", {{"sOldName", "Old"}, {"sNewName", "N'ew"}}), Value(true));
  EXPECT_EQ(field(id, "FRptName,FRptName_Cht,FRptName_En"), "中文|中文|N'ew");
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, ReRptNameRenamesReportsOfEveryTypeAndLeavesTheirRegistration) {
  const auto id = save("a", 1);
  save("a", 3);
  set.result("SrvRptUpdate.ReRptName", {{"sOldName", "a"}, {"sNewName", "b"}});
  EXPECT_THAT(names(), ElementsAre("b", "b"));
  EXPECT_THAT(set.rows(sql("Select FName From t_ObjectType Where FObjectType=136 And FObjectID=", id)),
              ElementsAre("a"));
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, ReRptNameOfANameThatDoesNotExistSucceedsAndChangesNothing) {
  save("a");
  EXPECT_EQ(set.result("SrvRptUpdate.ReRptName", {{"sOldName", "x"}, {"sNewName", "y"}}), Value(true));
  EXPECT_THAT(names(), ElementsAre("a"));
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, SetReportPropFilesAReportAndSetsItsType) {
  const auto id = save("a");
  setProperties(id, {{"1001", 124}, {"1", 3}});
  EXPECT_EQ(field(id, "FRptType,F1,F1001"), "3|0|124");
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, SetReportPropOfAMissingReportNamesTheIdentifierInEveryLanguage) {
  EXPECT_EQ(shown(propertyError(999, bag({}))), "0x80044047 SrvRptUpdate.SetReportProp: 不存在报表ID 999");
  set.in("en");
  EXPECT_EQ(propertyError(-1, bag({})).description(), "There is no report with the ID -1");
  set.in("cht");
  EXPECT_EQ(propertyError(0, bag({})).description(), "不存在報表ID 0");
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, SetReportPropFailsForANameThatIsNoNumberAndWritesNothing) {
  const auto id = save("a");
  EXPECT_EQ(propertyError(id, bag({{"1001", 124}, {"F1001", 125}})).number(), 0x800A000D);
  EXPECT_EQ(field(id, "F1001"), "0");
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, SetReportPropFailsForANumberThatDoesNotFit) {
  EXPECT_EQ(propertyError(save("a"), bag({{"99999999999", 1}})).number(), 0x800A0006);
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, SetReportPropFailsForAStandardWithoutAColumn) {
  EXPECT_EQ(propertyError(save("a"), bag({{"1002", 1}})).number(), 0x800A0CC1);
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, SetReportPropFailsForAValueThatDoesNotFitTheColumn) {
  const auto id = save("a");
  propertyError(id, bag({{"1001", "first"}}));
  propertyError(id, bag({{"1001", 40000}}));
  propertyError(id, bag({{"1001", Null{}}}));
  EXPECT_EQ(field(id, "F1001"), "0");
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, SetReportPropWithoutABagFails) {
  EXPECT_EQ(propertyError(save("a"), ObjectRef()).number(), 0x800A005B);
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, ImportRptTurnsTheRegimesTemplatesIntoTheCallersReports) {
  saveTemplate("资产负债表(新会计准则)", 124);
  saveTemplate("利润表(企业会计制度)", 125);
  set.asNewUser(16394);
  EXPECT_EQ(import("124"), Value(false));
  EXPECT_THAT(set.rows("Select FRptName,FOwner,FSysName,FYear,FPeriod,F1001,FPrinterBuf From t_Rpt_Content "
                       "Where FRptType=1"),
              ElementsAre("资产负债表()|16394|报表系统|0|0|0|<2 bytes>"));
  EXPECT_EQ(set.value("Select FRptData From t_Rpt_Content Where FRptType=1"),
            bytes("template of 资产负债表(新会计准则)"));
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, ImportRptTwiceUpdatesTheShortenedReportInPlaceOfMakingAnother) {
  const auto id = saveTemplate("资产负债表(新会计准则)", 124);
  import("124");
  put(id, "FRptData=0x01");
  EXPECT_EQ(import("124"), Value(false));
  EXPECT_THAT(set.rows("Select FRptName,FRptData From t_Rpt_Content Where FRptType=1"),
              ElementsAre("资产负债表()|<1 bytes>"));
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, ImportRptLeavesTemplatesOutWhoseFullNameAnOrdinaryReportBears) {
  saveTemplate("利润表", 125);
  saveTemplate("现金流量表", 125);
  const auto own = save("利润表", 1, bytes("own"));
  import("125");
  EXPECT_EQ(field(own, "FRptData"), "<3 bytes>");
  EXPECT_THAT(names("FRptType=1"), UnorderedElementsAre("利润表", "现金流量表"));
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, ImportRptOfARegimeWithoutTemplatesDoesNothing) {
  saveTemplate("a", 124);
  EXPECT_EQ(import("125"), Value(false));
  EXPECT_EQ(import("0"), Value(false));
  EXPECT_EQ(count("t_Rpt_Content"), 1);
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, ImportRptOfATextThatIsNoItemFailsWithTheDatabasesError) {
  EXPECT_EQ(set.error("SrvRptUpdate.ImportRpt", {{"sID", "1'"}}).number(), 0x80040E14);
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, ImportRptOfATemplateNamedAsItsRegimeImportsNone) {
  saveTemplate("利润表", 124);
  saveTemplate("新会计准则", 124);
  EXPECT_EQ(shown(set.error("SrvRptUpdate.ImportRpt", {{"sID", "124"}})),
            "0x80044047 SrvRptRetrive.SavePlxToSrv: 报表名称不得为空字符串");
  EXPECT_THAT(names("FRptType=1"), IsEmpty());
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, ImportRptOfTheDemonstrationMakesEveryTemplateAReportOnce) {
  fillWithTheDemonstration();
  ASSERT_GT(count("t_Rpt_Content Where FRptType=3 And F1001=124"), 0);
  import("124");
  EXPECT_EQ(count("t_Rpt_Content t Where t.FRptType=3 And t.F1001=124 And Not Exists (Select 1 From t_Rpt_Content r "
                  "Where r.FRptType=1 And r.FRptName=Replace(t.FRptName,'新会计准则',''))"),
            0);
  const auto reports = count("t_Rpt_Content");
  import("124");
  EXPECT_EQ(count("t_Rpt_Content"), reports);
}

TEST_F(SrvRptUpdateMaintenanceOnAccountSet, ImportRptHandsTheRegimeBackAsItCame) {
  EXPECT_EQ(set.call("SrvRptUpdate.ImportRpt", {{"sID", "124"}}).out.at("sID"), Value("124"));
}

}  // namespace
}  // namespace tolvane::test
