// Reading audit marks and analysis documents, on a real account set.
#include "classification/classification_store.h"

namespace tolvane::test {
namespace {

struct RptPropItemInfoDocumentsOnAccountSet : ClassificationStore {
  void mark(std::int32_t report, std::int32_t user, const std::string& name) {
    set.call("RptPropItemUpdate.SetRptIsAudit", {{"lngRptID", report}, {"lngUserID", user}, {"sUserName", name}});
  }
  void store(const std::string& name) {
    set.call("RptPropItemUpdate.PutOutDoc", {{"sFileName", name}, {"sType", "t"}});
  }
  Value approver(std::int32_t report) { return set.result("RptPropItemInfo.CheckRptIsAudit", {{"lngRptID", report}}); }
  Value isFree(const std::string& name) {
    return set.result("RptPropItemInfo.CheckValidEISFName", {{"sEISFName", name}});
  }
  Value names() { return set.result("RptPropItemInfo.GetEISFileName"); }
};

TEST_F(RptPropItemInfoDocumentsOnAccountSet, AReportMarkedTwiceTellsTheFirstMarkAlone) {
  mark(7, 17, "张三");
  mark(7, 18, "李四");
  EXPECT_EQ(approver(7), Value("张三,17"));
  EXPECT_EQ(set.result("RptPropItemInfo.GetFUserID", {{"lngRptID", 7}}), Value(17));
}

TEST_F(RptPropItemInfoDocumentsOnAccountSet, AnUnmarkedReportIsEmptyAndItsUserZero) {
  EXPECT_EQ(approver(7), Value());
  EXPECT_EQ(set.result("RptPropItemInfo.GetFUserID", {{"lngRptID", 7}}), Value(0));
}

TEST_F(RptPropItemInfoDocumentsOnAccountSet, ANameIsFreeUntilADocumentBearsIt) {
  EXPECT_EQ(isFree("a.xls"), Value(true));
  store("a.xls");
  EXPECT_EQ(isFree("a.xls"), Value(false));
  store("a.xls");
  EXPECT_EQ(isFree("a.xls"), Value(false));
}

TEST_F(RptPropItemInfoDocumentsOnAccountSet, ANameWithAnApostropheFailsWithTheDatabasesError) {
  EXPECT_EQ(set.error("RptPropItemInfo.CheckValidEISFName", {{"sEISFName", "O'Brien"}}).number(), 0x80040E14);
}

TEST_F(RptPropItemInfoDocumentsOnAccountSet, TheListOfDocumentsJoinsNamesAndIdentifiers) {
  EXPECT_EQ(names(), Value(""));
  store("a");
  EXPECT_EQ(names(), Value("a||1"));
  store("b,c||d");
  EXPECT_EQ(names(), Value("a||1,b,c||d||2"));
}

}  // namespace
}  // namespace tolvane::test
