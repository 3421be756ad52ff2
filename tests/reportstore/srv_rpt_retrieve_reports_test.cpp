// Looking single reports up, on a real account set.
#include "reportstore/report_store.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;

struct SrvRptRetrieveReportsOnAccountSet : ReportStore {
  Outcome viaName(const std::string& name, std::int32_t type = 1) {
    return set.call("SrvRptRetrieve.GetRptViaName", {{"sRptName", name}, {"lRptType", type}});
  }
  std::shared_ptr<PropertyBag> header(const std::string& name, std::int32_t user = 1) {
    return set.result("SrvRptRetrieve.GetDetailByName", {{"sRptName", name}, {"lUserID", user}})
        .objectAs<PropertyBag>();
  }
  Value exists(const Named& what) { return set.result("SrvRptRetrieve.ExistenceCheck", what); }
  Value isFree(const std::string& name, std::int32_t type) {
    return set.result("SrvRptRetrieve.IsValidRpt", {{"sRptName", name}, {"lRptType", type}});
  }
};

TEST_F(SrvRptRetrieveReportsOnAccountSet, ADocumentComesBackByteForByte) {
  const auto id = save("资产负债表", 1, bytes(std::string_view("\x01\x00\xFFspreadsheet", 14)));
  const auto outcome = set.call("SrvRptRetrieve.GetRptPlx", {{"lRptID", id}});
  EXPECT_EQ(outcome.result, Value(true));
  EXPECT_EQ(outcome.out.at("vPlx"), bytes(std::string_view("\x01\x00\xFFspreadsheet", 14)));
  EXPECT_EQ(outcome.out.at("vPrinterBuf"), Value(Null{}));
}

TEST_F(SrvRptRetrieveReportsOnAccountSet, AMissingReportLeavesTheArgumentsAsTheyCame) {
  const auto outcome = set.call("SrvRptRetrieve.GetRptPlx",
                                {{"lRptID", std::int32_t{999}}, {"vPlx", "before"}, {"vPrinterBuf", "paper"}});
  EXPECT_EQ(outcome.result, Value(false));
  EXPECT_EQ(outcome.out.at("vPlx"), Value("before"));
  EXPECT_EQ(outcome.out.at("vPrinterBuf"), Value("paper"));
}

TEST_F(SrvRptRetrieveReportsOnAccountSet, AReportOfTypeTwoComesBackAsTheVariantItHolds) {
  const Value document = Array::of(ValueType::variant, {Value("一"), Value(std::int32_t{2}), Value(2.5)}, 1);
  const auto id = save("数据", 2, document);
  EXPECT_EQ(set.call("SrvRptRetrieve.GetRptPlx", {{"lRptID", id}}).out.at("vPlx"), document);
  EXPECT_EQ(viaName("数据", 2).out.at("vPlx"), document);
}

TEST_F(SrvRptRetrieveReportsOnAccountSet, ANameWithAnApostropheIsFoundAsItWasStored) {
  // Saving stores the apostrophe doubled; a row that another program wrote holds it once.
  const auto id = save("Cash");
  put(id, "FRptName='Cash''2'");
  EXPECT_EQ(viaName("Cash'2").result, Value(true));
  EXPECT_EQ(header("Cash'2")->item("FRptID"), Value(id));
  EXPECT_EQ(exists({{"sRptName", "Cash'2"}}), Value(id));
  EXPECT_EQ(isFree("Cash'2", 1), Value(false));
}

TEST_F(SrvRptRetrieveReportsOnAccountSet, ExistenceCheckByIdentifierIgnoresTheName) {
  const auto id = save("a");
  save("b");
  EXPECT_EQ(exists({{"lRptID", id}, {"sRptName", "b"}}), Value(id));
  EXPECT_EQ(exists({{"lRptID", 999}, {"sRptName", "b"}}), Value(0));
}

TEST_F(SrvRptRetrieveReportsOnAccountSet, ExistenceCheckWithANegativeIdentifierLooksTheNameUp) {
  const auto id = save("a");
  EXPECT_EQ(exists({{"lRptID", -1}, {"sRptName", "a"}}), Value(id));
}

TEST_F(SrvRptRetrieveReportsOnAccountSet, ExistenceCheckOfNothingIsZero) {
  EXPECT_EQ(exists({}), Value(0));
}

TEST_F(SrvRptRetrieveReportsOnAccountSet, ExistenceCheckDoesNotWriteTheIdentifierBack) {
  save("a");
  EXPECT_EQ(set.call("SrvRptRetrieve.ExistenceCheck", {{"sRptName", "a"}}).out.at("lRptID"), Value(0));
}

TEST_F(SrvRptRetrieveReportsOnAccountSet, ANameThatOnlyAnotherTypeBearsIsFree) {
  save("a", 3);
  EXPECT_EQ(isFree("a", 1), Value(true));
  EXPECT_EQ(isFree("a", 3), Value(false));
}

TEST_F(SrvRptRetrieveReportsOnAccountSet, ANameIsLookedUpInTheCallersLanguage) {
  const auto id = save("中文");
  put(id, "FRptName_En='English', FRptName_Cht='繁體'");
  EXPECT_EQ(exists({{"sRptName", "中文"}}), Value(id));
  set.in("en");
  EXPECT_EQ(exists({{"sRptName", "English"}}), Value(id));
  EXPECT_EQ(exists({{"sRptName", "中文"}}), Value(0));
  set.in("cht");
  EXPECT_EQ(exists({{"sRptName", "繁體"}}), Value(id));
}

TEST_F(SrvRptRetrieveReportsOnAccountSet, GetDetailByNameFindsNoTemplateWhileGetRptViaNameDoes) {
  save("模板", 3);
  EXPECT_EQ(header("模板"), nullptr);
  EXPECT_EQ(viaName("模板", 3).result, Value(true));
  EXPECT_EQ(viaName("模板", 1).result, Value(false));
}

TEST_F(SrvRptRetrieveReportsOnAccountSet, GetDetailByNameHoldsANullRightWithoutARightRow) {
  save("a");
  EXPECT_EQ(header("a", 1)->item("FRightCode"), Value(4));
  EXPECT_EQ(header("a", 77)->item("FRightCode"), Value(Null{}));
}

TEST_F(SrvRptRetrieveReportsOnAccountSet, GetDetailByNameGivesTheHeadersFieldsInOrder) {
  save("a");
  const auto bag = header("a");
  std::vector<std::string> names;
  for (std::int32_t i = 1; i <= bag->count(); ++i) names.push_back(bag->name(i));
  EXPECT_THAT(names, ElementsAre("FRptID", "FRptName", "FSysName", "FYear", "FPeriod", "FOwner", "FRptType",
                                 "FLastOperator", "FLastDate", "FRightCode"));
}

TEST_F(SrvRptRetrieveReportsOnAccountSet, GetDetailByIDGivesAllColumnsTheDocumentToo) {
  const auto id = save("a");
  const auto bag = set.result("SrvRptRetrieve.GetDetailByID", {{"RptID", id}}).objectAs<PropertyBag>();
  EXPECT_EQ(bag->item("FRptData"), bytes("doc"));
  EXPECT_EQ(bag->item("FPrinterBuf"), Value(Null{}));
  EXPECT_EQ(bag->item("F1001"), Value(std::int16_t{0}));
}

TEST_F(SrvRptRetrieveReportsOnAccountSet, AMissingHeaderIsNothing) {
  EXPECT_TRUE(set.result("SrvRptRetrieve.GetDetailByID", {{"RptID", -1}}).isNothing());
  EXPECT_EQ(header("none"), nullptr);
}

TEST_F(SrvRptRetrieveReportsOnAccountSet, GetCurUserIDTellsTheCallerAndZeroForABadDataSource) {
  set.asNewUser(16394);
  EXPECT_EQ(set.result("SrvRptRetrieve.GetCurUserID"), Value(16394));
  set.as(4711);
  EXPECT_EQ(set.result("SrvRptRetrieve.GetCurUserID"), Value(0));
}

}  // namespace
}  // namespace tolvane::test
