// The exact statements, cursors and order of operations behind saving a report.
#include <gmock/gmock.h>

#include "platform/error.h"
#include "reportstore/srv_rpt_update.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::_;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

const std::string registersObject55 =
    "Command 1 0 If Not Exists(Select * From t_objectType Where FObjectType=136 And FObjectID=55 )  Insert into "
    "t_objectType(FObjectType, FObjectID, FName,FName_Cht,FName_En) values(136,55 ,'Cash','Cash','Cash') Else  Update "
    "t_objectType Set FName='Cash',FName_Cht='Cash',FName_En='Cash' Where FObjectType=136 And FObjectID= 55";
const std::string registersAccess55 =
    "Command 1 0 Delete from t_ObjectAccessType Where FObjectType=136 And FObjectID=55 Insert into t_ObjectAccessType "
    "(FObjectType,FObjectID,FIndex,FAccessMask,FAccessUse,FName,FDescription,FName_Cht,FName_En,FDescription_Cht,"
    "FDescription_En) values(136, 55, 0, 0x2000, 0, '查看', "
    "'用户可查看报表','查看','查看','用户可查看报表','用户可查看报表') Insert into t_ObjectAccessType "
    "(FObjectType,FObjectID,FIndex,FAccessMask,FAccessUse,FName,FDescription,FName_Cht,FName_En,FDescription_Cht,"
    "FDescription_En) values(136, 55, 1, 0x4000, 0, '图形分析', "
    "'用户可查看图形分析','图形分析','图形分析','用户可查看图形分析','用户可查看图形分析') delete from t_objectaccess "
    "where fgroupid=251 and fobjecttype=136 and fobjectid=55 Insert into t_ObjectAccess values(251,136, 55,0)";

struct SrvRptUpdateSave : testing::Test {
  RecordingPlatform platform;
  SrvRptUpdate service{platform};

  SrvRptUpdateSave() {
    platform.userID = 17;
    serverAnswers();
  }
  void serverAnswers() {
    platform.answer("Select GetDate()", {{"FNow"}, {{Date{41000}}}});
    platform.answer("Select Max(FRptID)", {{"FRptID"}, {{std::int32_t{55}}}});
  }
  void reportExists() { platform.answer("Select * From T_Rpt_Content", {{"FRptID"}, {{std::int32_t{40}}}}); }
  std::int32_t save(const std::string& name, std::int32_t type = 1, const Value& printer = missingArgument) {
    return service.SavePlxToSrv("x", "GL", name, "document", 5, printer, 2012, 3, type);
  }
};

TEST_F(SrvRptUpdateSave, AnnouncesWorkInPlaceOfTheCompletionCall) {
  platform.log.clear();
  save("Cash");
  EXPECT_EQ(platform.log.front(), "BeginWork");
}

TEST_F(SrvRptUpdateSave, OfANewNameAddsARowGrantsTheCreatorRegistersAndCompletes) {
  EXPECT_EQ(save("Cash"), 55);
  EXPECT_THAT(platform.work(),
              ElementsAre("Execute Select GetDate() as FNow", "CurrentUserID", "LanguageCode",
                          "Open 1 3 Select * From T_Rpt_Content Where FRptName='Cash' And  FRptType =1", "AddNew",
                          "Set FRptName='Cash'", "Set FRptName_Cht='Cash'", "Set FRptName_En='Cash'",
                          "Set FSysName='GL'", "Set frpttype=1", "Set FYear=2012", "Set FPeriod=3", "Set FOwner=5",
                          "Set FLastOperator=17", "Set FLastDate=2012-4-1", "Set FRptData='document'", "Update",
                          "Execute Select Max(FRptID) FRptID From t_Rpt_Content", "Open 1 3 t_Rpt_Right", "AddNew",
                          "Set FRptID=55", "Set FUserID=17", "Set FRightCode=4", "Update", "CompleteWork",
                          registersObject55, "LanguageCode", "LanguageCode", "LanguageCode", "LanguageCode",
                          registersAccess55, StartsWith("Execute select c.FPropClsID"), "CompleteWork"));
}

TEST_F(SrvRptUpdateSave, OfAKnownNameLeavesNamesSystemTypeAndRightsAlone) {
  reportExists();
  EXPECT_EQ(save("Cash"), 40);
  EXPECT_THAT(platform.work(),
              ElementsAre(_, _, _, _, "Set FYear=2012", "Set FPeriod=3", "Set FOwner=5", "Set FLastOperator=17",
                          "Set FLastDate=2012-4-1", "Set FRptData='document'", "Update",
                          "Execute Select Max(FRptID) FRptID From t_Rpt_Content", StartsWith("Command"), _, _, _, _,
                          StartsWith("Command"), _, "CompleteWork"));
}

TEST_F(SrvRptUpdateSave, LooksTheNameUpInTheCallersLanguage) {
  platform.language = "en";
  save("Cash", 3);
  EXPECT_EQ(platform.statements()[1], "Open 1 3 Select * From T_Rpt_Content Where FRptName_en='Cash' And  FRptType =3");
}

TEST_F(SrvRptUpdateSave, StoresApostrophesDoubledInTheFieldsToo) {
  save("O'Brien");
  EXPECT_THAT(platform.log, testing::IsSupersetOf({"Set FRptName='O''Brien'", "Set FRptName_Cht='O''Brien'",
                                                   "Set FRptName_En='O''Brien'"}));
}

TEST_F(SrvRptUpdateSave, OfABlankNameIsRefusedUnderTheReadClassesMisspelledNameBeforeAnyStatement) {
  for (const char* name : {"", "   "}) {
    try {
      save(name);
      FAIL();
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.number(), 0x80044047);
      EXPECT_EQ(error.source(), "SrvRptRetrive.SavePlxToSrv");
      EXPECT_EQ(error.description(), "报表名称不得为空字符串");
    }
  }
  EXPECT_THAT(platform.statements(), IsEmpty());
}

TEST_F(SrvRptUpdateSave, StoresPrintSettingsThatAreGiven) {
  save("Cash", 1, Bytes(std::vector<std::uint8_t>{1, 2}));
  EXPECT_THAT(platform.log, Contains("Set FPrinterBuf=bytes(2)"));
}

TEST_F(SrvRptUpdateSave, StoresANullForPrintSettings) {
  save("Cash", 1, Null{});
  EXPECT_THAT(platform.log, Contains("Set FPrinterBuf=Null"));
}

TEST_F(SrvRptUpdateSave, DoesNotTouchThePrintSettingsWithoutThem) {
  save("Cash", 1, missingArgument);
  serverAnswers();
  save("Cash", 1, Empty{});
  EXPECT_THAT(platform.log, Not(Contains(StartsWith("Set FPrinterBuf"))));
}

TEST_F(SrvRptUpdateSave, OfTypeTwoStoresTheRecordOfTheVariant) {
  save("Cash", 2);
  EXPECT_THAT(platform.log, testing::IsSupersetOf({"OpenFile 444444.tmp", "RemoveFile 444444.tmp"}));
  // A tag of two bytes, a length of two, the text.
  EXPECT_THAT(platform.log, Contains("Set FRptData=bytes(12)"));
}

TEST_F(SrvRptUpdateSave, PutsTranslatedTextsIntoTheStatementWithoutDoublingApostrophes) {
  platform.language = "en";
  platform.translations = {{"查看", "View'"}, {"用户可查看报表", "v"}, {"图形分析", "c"}, {"用户可查看图形分析", "d"}};
  save("Cash");
  EXPECT_THAT(platform.log, Contains(testing::HasSubstr("0x2000, 0, 'View'', 'v','View'','View'','v','v') Insert")));
}

TEST_F(SrvRptUpdateSave, DoesNotCompleteWhenTheRegistrationFails) {
  platform.fail("Command 1 0 Delete", AutomationError(RuntimeError::invalidArgument, "x"));
  EXPECT_THROW(save("Cash"), AutomationError);
  EXPECT_THAT(platform.log.back(), StartsWith("Command 1 0 Delete"));
}

TEST_F(SrvRptUpdateSave, RefusesAUserBeyondSixteenBits) {
  platform.userID = 32768;
  EXPECT_THROW(save("Cash"), AutomationError);
  EXPECT_THAT(platform.statements(), ElementsAre("Execute Select GetDate() as FNow"));
}

}  // namespace
}  // namespace tolvane::test
