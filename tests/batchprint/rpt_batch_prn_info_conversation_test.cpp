// The exact statements behind the reading of print schemes.
#include <gmock/gmock.h>

#include "batchprint/rpt_batch_prn_info.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;

struct RptBatchPrnInfoConversation : testing::Test {
  RecordingPlatform platform;
  RptBatchPrnInfo service{platform};
};

constexpr auto existsQuery =
    "Execute If Exists (SELECT FSchemeID FROM t_Rpt_PrintScheme WHERE FSchemeName='Month' )Select 1 as Result  Else "
    "Select 0 as Result ";

TEST_F(RptBatchPrnInfoConversation, GetListHandsTheRecordSetOutAttached) {
  platform.answer("SELECT", {{"FSchemeID"}, {{std::int32_t{1}}}});
  EXPECT_EQ(service.GetList("x")->recordCount(), 1);
  EXPECT_THAT(platform.work(), ElementsAre("Execute SELECT * FROM t_Rpt_PrintScheme"));
}

TEST_F(RptBatchPrnInfoConversation, GetDetailJoinsTheReports) {
  EXPECT_EQ(service.GetDetail("x", -3)->recordCount(), 0);
  EXPECT_THAT(platform.work(),
              ElementsAre("Execute SELECT a.*,b.* FROM t_Rpt_PrintScheme a  INNER JOIN t_Rpt_PrintSchemeDetail b ON "
                          "a.FSchemeID=b.FSchemeID Where a.FSchemeID=-3"));
}

TEST_F(RptBatchPrnInfoConversation, TheEmptyNameIsNotAskedFor) {
  EXPECT_FALSE(service.IsExists("x", ""));
  EXPECT_THAT(platform.work(), ElementsAre());
}

TEST_F(RptBatchPrnInfoConversation, IsExistsIsTrueForOneAndClosesThenDetaches) {
  platform.answer("If Exists", {{"Result"}, {{std::int32_t{1}}}});
  EXPECT_TRUE(service.IsExists("x", "Month"));
  EXPECT_THAT(platform.work(), ElementsAre(existsQuery, "Close", "Detach"));
}

TEST_F(RptBatchPrnInfoConversation, IsExistsIsFalseForZero) {
  platform.answer("If Exists", {{"Result"}, {{std::int32_t{0}}}});
  EXPECT_FALSE(service.IsExists("x", "Month"));
}

TEST_F(RptBatchPrnInfoConversation, IsExistsTrimsTheAnswer) {
  platform.answer("If Exists", {{"Result"}, {{" 1 "}}});
  EXPECT_TRUE(service.IsExists("x", "Month"));
}

TEST_F(RptBatchPrnInfoConversation, ANameStandsAsItIs) {
  platform.answer("If Exists", {{"Result"}, {{std::int32_t{0}}}});
  EXPECT_FALSE(service.IsExists("x", "O'Brien"));
  EXPECT_THAT(platform.statements()[0], testing::HasSubstr("FSchemeName='O'Brien' )Select 1"));
}

}  // namespace
}  // namespace tolvane::test
