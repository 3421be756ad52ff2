// The exact statements, cursors and order of operations behind the reading of withdrawn statements.
#include <gmock/gmock.h>

#include "csreports/cs_retrieve.h"
#include "platform/calendar.h"
#include "support/account_set.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;

const AutomationError databaseError(oledb::noTable, "provider", "Invalid object name");

struct CsRetrieveWithdrawn : testing::Test {
  RecordingPlatform platform;
  CsRetrieve service{platform};
  Value document = "before";

  bool fetch(std::int32_t year, std::int32_t period, std::int32_t type) {
    return service.GetDeleteCsRpt("x", "G1", year, period, dateOf(2012, 3, 15), "RMB", "001", document, type);
  }
};

TEST_F(CsRetrieveWithdrawn, GetDeleteCsRptFindsByNumbersForwardOnlyAndReadOnly) {
  platform.answer("Select", {{"FRptContent"}, {{bytes("gone")}}});
  EXPECT_TRUE(fetch(2012, 3, 1));
  EXPECT_EQ(document, bytes("gone"));
  EXPECT_THAT(platform.work(),
              ElementsAre("Open 0 1 Select FRptContent From t_CsRptContentDel Where FRptGroupNum='G1' AND "
                          "FCurrencyNum='RMB' AND FCompanyNum='001' AND FRptType=1 AND FYear=2012 AND  FPeriod=3",
                          "Close"));
}

TEST_F(CsRetrieveWithdrawn, GetDeleteCsRptOfTypeFiveLooksUpByDay) {
  EXPECT_FALSE(fetch(2012, 3, 5));
  EXPECT_THAT(platform.statements(),
              ElementsAre("Open 0 1 Select FRptContent From t_CsRptContentDel Where FRptGroupNum='G1' AND "
                          "FCurrencyNum='RMB' AND FCompanyNum='001' AND FRptType=5 AND FYear < 0 AND FPeriod <0 AND "
                          "FDay='20120315'"));
}

TEST_F(CsRetrieveWithdrawn, GetDeleteCsRptOfTypeZeroSearchesForTypeZero) {
  EXPECT_FALSE(fetch(2012, 3, 0));
  EXPECT_THAT(platform.statements(),
              ElementsAre("Open 0 1 Select FRptContent From t_CsRptContentDel Where FRptGroupNum='G1' AND "
                          "FCurrencyNum='RMB' AND FCompanyNum='001' AND FRptType=0 AND FYear=2012 AND  FPeriod=3"));
}

TEST_F(CsRetrieveWithdrawn, GetDeleteCsRptKeepsTheDocumentWithoutARowAndOnFailure) {
  EXPECT_FALSE(fetch(2012, 3, 1));
  platform.fail("Open ", databaseError);
  EXPECT_FALSE(fetch(2012, 3, 1));
  EXPECT_EQ(document, Value("before"));
}

TEST_F(CsRetrieveWithdrawn, GetDelCsSampleHandsOutTheOpenRecordSetItself) {
  platform.answer("Select", {{"FRptGroupNum"}, {{"G1"}}});
  const auto rows = service.GetDelCsSample("x");
  EXPECT_EQ(rows->state(), ObjectState::open);
  EXPECT_THAT(platform.work(),
              ElementsAre("Open 0 1 Select FRptGroupNum,FRptGroupName,FCycleID,FBaseRptStyle From t_CsRptContentDel "
                          "Group By FRptGroupNum,FRptGroupName,FCycleID,FBaseRptStyle "));
}

TEST_F(CsRetrieveWithdrawn, GetDelCsSampleGivesNothingOnFailure) {
  platform.fail("Open ", databaseError);
  EXPECT_EQ(service.GetDelCsSample("x"), nullptr);
}

}  // namespace
}  // namespace tolvane::test
