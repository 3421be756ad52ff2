// The exact statements, cursors and order of operations behind writing audit marks and analysis documents.
#include <gmock/gmock.h>

#include "classification/rpt_prop_item_update.h"
#include "platform/error.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::_;
using testing::ElementsAre;

Bytes bytes(std::size_t size) {
  return Bytes(std::vector<std::uint8_t>(size, 1));
}

struct RptPropItemUpdateDocuments : testing::Test {
  RecordingPlatform platform;
  RptPropItemUpdate service{platform};

  VariantArray chunks(std::int32_t lower, std::vector<Value> elements) { return {lower, std::move(elements), true}; }
  void emptyShape() { platform.answer("Select * from t_Rpt_EISDOC", {{"FID", "FName"}, {}}); }
};

TEST_F(RptPropItemUpdateDocuments, SetRptIsAuditCompletesFirstAndInsertsAMark) {
  platform.log.clear();
  EXPECT_EQ(service.SetRptIsAudit("x", 7, 17, "张'三"), 1);
  EXPECT_THAT(platform.log,
              ElementsAre("CompleteWork", "GetContext", "OpenDataSource x", "GetLoginInfo", "GetConnection",
                          "Execute InSert Into t_Rpt_LeaderAudit(FRptID,FUserID,FUserName) Values(7,17,'张'三')"));
}

TEST_F(RptPropItemUpdateDocuments, SetRptIsAuditAnswersZeroOnAnyFailure) {
  for (const char* operation : {"CompleteWork", "OpenDataSource", "Execute"}) {
    platform.fail(operation, AutomationError(RuntimeError::invalidArgument, "x"));
    EXPECT_EQ(service.SetRptIsAudit("x", 7, 17, "a"), 0) << operation;
  }
}

TEST_F(RptPropItemUpdateDocuments, RevokeRptIsAuditTakesAllMarksOff) {
  EXPECT_EQ(service.RevokeRptIsAudit("x", 7), 1);
  EXPECT_THAT(platform.work(), ElementsAre("Execute Delete t_Rpt_LeaderAudit Where FRptID=7"));
}

TEST_F(RptPropItemUpdateDocuments, RevokeRptIsAuditAnswersZeroOnAnyFailure) {
  for (const char* operation : {"CompleteWork", "OpenDataSource", "Execute"}) {
    platform.fail(operation, AutomationError(RuntimeError::invalidArgument, "x"));
    EXPECT_EQ(service.RevokeRptIsAudit("x", 7), 0) << operation;
  }
}

TEST_F(RptPropItemUpdateDocuments, PutOutDocAppendsTheChunksInOrderAndReadsTheIdentifierBack) {
  emptyShape();
  auto document = chunks(0, {bytes(512), bytes(3)});
  EXPECT_EQ(service.PutOutDoc("x", "a.xls", "excel", document), Value());
  EXPECT_THAT(platform.work(),
              ElementsAre("CursorLocation 3", "Open 1 3 Select * from t_Rpt_EISDOC Where FID=0 ", "AddNew",
                          "Set FName='a.xls'", "Set FLastDate=2012-3-15", "Set FChecked=0", "Set FType='excel'",
                          "AppendChunk FBinaryImg bytes(512)", "AppendChunk FBinaryImg bytes(3)", "Update"));
}

TEST_F(RptPropItemUpdateDocuments, PutOutDocOfAnArrayWithoutElementsAppendsNothing) {
  emptyShape();
  VariantArray document;
  service.PutOutDoc("x", "a", "t", document);
  EXPECT_THAT(platform.work(), ElementsAre(_, _, "AddNew", _, _, _, _, "Update"));
}

TEST_F(RptPropItemUpdateDocuments, PutOutDocBeginsAtIndexZeroWhateverTheLowerBound) {
  emptyShape();
  auto document = chunks(-1, {bytes(1), bytes(2), bytes(3)});
  service.PutOutDoc("x", "a", "t", document);
  EXPECT_THAT(platform.work(), ElementsAre(_, _, "AddNew", _, _, _, _, "AppendChunk FBinaryImg bytes(2)",
                                           "AppendChunk FBinaryImg bytes(3)", "Update"));
}

TEST_F(RptPropItemUpdateDocuments, PutOutDocOfAnArrayThatEndsBelowZeroAppendsNothing) {
  emptyShape();
  auto document = chunks(-2, {bytes(1), bytes(2)});
  service.PutOutDoc("x", "a", "t", document);
  EXPECT_EQ(platform.log.back(), "Update");
  EXPECT_THAT(platform.log, testing::Not(testing::Contains(testing::StartsWith("AppendChunk"))));
}

TEST_F(RptPropItemUpdateDocuments, PutOutDocFailsWhenTheArrayBeginsAboveZero) {
  emptyShape();
  auto document = chunks(1, {bytes(1)});
  EXPECT_THROW(service.PutOutDoc("x", "a", "t", document), AutomationError);
  EXPECT_EQ(platform.log.back(), "Set FType='t'");
}

TEST_F(RptPropItemUpdateDocuments, DelEISDocAsksForIdentifierAndName) {
  EXPECT_EQ(service.DelEISDoc("x", "a'b", 5), Value(true));
  EXPECT_THAT(platform.work(), ElementsAre("Execute delete from t_Rpt_EISDOC where FID=5 and FName='a'b'"));
}

}  // namespace
}  // namespace tolvane::test
