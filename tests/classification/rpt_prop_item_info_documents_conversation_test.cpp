// The exact statements and cursors behind reading audit marks and analysis documents.
#include <gmock/gmock.h>

#include "classification/rpt_prop_item_info.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;

struct RptPropItemInfoDocuments : testing::Test {
  RecordingPlatform platform;
  RptPropItemInfo service{platform};

  void marks(std::vector<std::vector<Value>> rows) {
    platform.answer("Select", {{"FRptID", "FUserID", "FUserName"}, std::move(rows)});
  }
};

TEST_F(RptPropItemInfoDocuments, CheckRptIsAuditOfAnUnmarkedReportIsEmpty) {
  EXPECT_EQ(service.CheckRptIsAudit("x", 7), Value());
  EXPECT_THAT(platform.work(), ElementsAre("Open 1 3 Select * From t_Rpt_LeaderAudit Where FRptID=7", "Close"));
}

TEST_F(RptPropItemInfoDocuments, CheckRptIsAuditNamesTheFirstMarkAlone) {
  marks({{std::int32_t{7}, std::int32_t{17}, "张三"}, {std::int32_t{7}, std::int32_t{18}, "李四"}});
  EXPECT_EQ(service.CheckRptIsAudit("x", 7), Value("张三,17"));
}

TEST_F(RptPropItemInfoDocuments, CheckRptIsAuditOfAMarkWithoutANameBeginsWithTheComma) {
  marks({{std::int32_t{7}, std::int32_t{17}, Null{}}});
  EXPECT_EQ(service.CheckRptIsAudit("x", 7), Value(",17"));
}

TEST_F(RptPropItemInfoDocuments, GetFUserIDIsZeroWithoutAMark) {
  EXPECT_EQ(service.GetFUserID("x", 7), 0);
  EXPECT_THAT(platform.work(), ElementsAre("Open 1 3 Select FUserID From t_Rpt_LeaderAudit Where FRptID=7", "Close"));
}

TEST_F(RptPropItemInfoDocuments, GetFUserIDIsTheFirstMarks) {
  marks({{std::int32_t{7}, std::int32_t{17}, "a"}, {std::int32_t{7}, std::int32_t{18}, "b"}});
  EXPECT_EQ(service.GetFUserID("x", 7), 17);
}

TEST_F(RptPropItemInfoDocuments, CheckValidEISFNameAsksForTheNameAsItStands) {
  EXPECT_TRUE(service.CheckValidEISFName("x", "a'b"));
  EXPECT_THAT(platform.work(), ElementsAre("Open 1 3 Select * from t_Rpt_EISDOC WHERE FName='a'b'", "Close"));
}

TEST_F(RptPropItemInfoDocuments, CheckValidEISFNameIsFalseForATakenName) {
  platform.answer("Select", {{"FID"}, {{std::int32_t{1}}}});
  EXPECT_FALSE(service.CheckValidEISFName("x", "a"));
}

TEST_F(RptPropItemInfoDocuments, GetEISFileNameOfNoDocumentIsEmptyText) {
  EXPECT_EQ(service.GetEISFileName("x"), Value(""));
  EXPECT_THAT(platform.work(), ElementsAre("Open 1 3 Select FID,FName from t_Rpt_EISDOC ", "Close"));
}

TEST_F(RptPropItemInfoDocuments, GetEISFileNameJoinsNamesAndIdentifiersEvenWhenTheyHoldTheSeparators) {
  platform.answer("Select", {{"FID", "FName"}, {{std::int32_t{1}, "a,b"}, {std::int32_t{2}, "c||d"}}});
  EXPECT_EQ(service.GetEISFileName("x"), Value("a,b||1,c||d||2"));
}

}  // namespace
}  // namespace tolvane::test
