// The exact statements and their order behind the writing of print schemes.
#include <gmock/gmock.h>

#include "batchprint/rpt_batch_prn_update.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;

struct RptBatchPrnUpdateConversation : testing::Test {
  RecordingPlatform platform;
  RptBatchPrnUpdate service{platform};
  std::shared_ptr<ItemList> reports = platform.newItemList();

  void report(const Value& id, const Value& name) {
    auto bag = platform.newPropertyBag();
    bag->set("lRptID", id);
    bag->set("sRptName", name);
    reports->add(bag);
  }
  void schemeIs(std::int32_t id) { platform.answer("SELECT FSchemeID", {{"FSchemeID"}, {{id}}}); }
};

constexpr auto insertScheme = "Execute INSERT INTO t_Rpt_PrintScheme (FSchemeName,FAuthor ) Values('Month','Li')";
constexpr auto findScheme = "Execute SELECT FSchemeID FROM t_Rpt_PrintScheme WHERE FSchemeName='Month'";

TEST_F(RptBatchPrnUpdateConversation, AddSendsAllReportsInOneBatch) {
  report(std::int32_t{7}, "Cash");
  report(std::int32_t{5}, "Balance");
  schemeIs(12);
  platform.log.clear();
  EXPECT_TRUE(service.Add("x", "Month", "Li", reports));
  EXPECT_THAT(platform.log,
              ElementsAre("CompleteWork", "GetContext", "OpenDataSource x", "GetLoginInfo", "GetConnection",
                          insertScheme, findScheme, "Close",
                          "Execute  INSERT INTO t_Rpt_PrintSchemeDetail (FSchemeID,FRptID,FRptName) VALUES( "
                          "12,7,'Cash')\r\n INSERT INTO "
                          "t_Rpt_PrintSchemeDetail (FSchemeID,FRptID,FRptName) VALUES( 12,5,'Balance')\r\n"));
}

TEST_F(RptBatchPrnUpdateConversation, AddTakesTheFirstSchemeOfTheName) {
  platform.answer("SELECT FSchemeID", {{"FSchemeID"}, {{std::int32_t{3}}, {std::int32_t{12}}}});
  report(std::int32_t{7}, "Cash");
  service.Add("x", "Month", "Li", reports);
  EXPECT_THAT(platform.statements().back(), testing::HasSubstr("VALUES( 3,7,"));
}

TEST_F(RptBatchPrnUpdateConversation, AddOfNoReportsExecutesAnEmptyText) {
  schemeIs(12);
  service.Add("x", "Month", "Li", reports);
  EXPECT_THAT(platform.work(), ElementsAre(insertScheme, findScheme, "Close", "Execute "));
}

TEST_F(RptBatchPrnUpdateConversation, ModifyRenamesDeletesAndInsertsAnew) {
  report(std::int32_t{7}, "Cash");
  EXPECT_TRUE(service.Modify("x", 12, "Month", reports));
  EXPECT_THAT(platform.work(),
              ElementsAre("Execute Update t_Rpt_PrintScheme Set FSchemeName='Month' Where FSchemeID=12",
                          "Execute DELETE FROM t_Rpt_PrintSchemeDetail WHERE FSchemeID=12",
                          "Execute  INSERT INTO t_Rpt_PrintSchemeDetail (FSchemeID,FRptID,FRptName) VALUES( "
                          "12,7,'Cash')\r\n"));
}

TEST_F(RptBatchPrnUpdateConversation, ModifyToNoReportsExecutesAnEmptyText) {
  service.Modify("x", 12, "Month", reports);
  EXPECT_EQ(platform.statements().back(), "Execute ");
}

TEST_F(RptBatchPrnUpdateConversation, DeleteLeavesTheReportsRows) {
  EXPECT_TRUE(service.Delete("x", 12));
  EXPECT_THAT(platform.work(), ElementsAre("Execute Delete From t_Rpt_PrintScheme Where FSchemeID=12"));
}

TEST_F(RptBatchPrnUpdateConversation, AListThatIsNotThereIsMissedAfterTheSchemesRow) {
  std::shared_ptr<ItemList> nothing;
  schemeIs(12);
  try {
    service.Add("x", "Month", "Li", nothing);
    FAIL() << "no error";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), errorNumber(RuntimeError::objectNotSet));
  }
  EXPECT_THAT(platform.work(), ElementsAre(insertScheme, findScheme, "Close"));
}

}  // namespace
}  // namespace tolvane::test
