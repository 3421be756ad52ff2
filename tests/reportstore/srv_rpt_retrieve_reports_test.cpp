// Looking single reports up, on a real account set.
#include <gmock/gmock.h>

#include "support/account_set.h"

namespace tolvane::test {
namespace {

struct SrvRptRetrieveReportsOnAccountSet : testing::Test {
  AccountSet set;

  std::int32_t save(const std::string& name, const Value& document, std::int32_t type = 1) {
    return *set.result("SrvRptUpdate.SavePlxToSrv", {{"sSysName", "报表系统"},
                                                     {"sRptName", name},
                                                     {"vPlx", document},
                                                     {"lOwner", std::int32_t{1}},
                                                     {"lRptType", type}})
                .get<std::int32_t>();
  }
};

TEST_F(SrvRptRetrieveReportsOnAccountSet, ADocumentComesBackByteForByte) {
  const auto id = save("资产负债表", bytes("\x01\x00\xFFspreadsheet"));
  const auto outcome = set.call("SrvRptRetrieve.GetRptPlx", {{"lRptID", id}});
  EXPECT_EQ(outcome.result, Value(true));
  EXPECT_EQ(outcome.out.at("vPlx"), bytes("\x01\x00\xFFspreadsheet"));
  EXPECT_EQ(outcome.out.at("vPrinterBuf"), Value(Null{}));
}

TEST_F(SrvRptRetrieveReportsOnAccountSet, AMissingReportLeavesTheArgumentsAsTheyCame) {
  const auto outcome = set.call("SrvRptRetrieve.GetRptPlx", {{"lRptID", std::int32_t{999}}, {"vPlx", "before"}});
  EXPECT_EQ(outcome.result, Value(false));
  EXPECT_EQ(outcome.out.at("vPlx"), Value("before"));
}

}  // namespace
}  // namespace tolvane::test
