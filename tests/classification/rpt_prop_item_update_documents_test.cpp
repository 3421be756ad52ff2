// Writing audit marks and analysis documents, on a real account set.
#include "classification/classification_store.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct RptPropItemUpdateDocumentsOnAccountSet : ClassificationStore {
  Value mark(std::int32_t report, std::int32_t user, const std::string& name) {
    return set.result("RptPropItemUpdate.SetRptIsAudit",
                      {{"lngRptID", report}, {"lngUserID", user}, {"sUserName", name}});
  }
  std::vector<std::string> marks() { return set.rows("Select * From t_Rpt_LeaderAudit"); }
  Value store(const std::string& name, std::vector<Value> chunks, std::int32_t lower = 0) {
    return set.result(
        "RptPropItemUpdate.PutOutDoc",
        {{"sFileName", name}, {"sType", "excel"}, {"vDOC", Array::of(ValueType::variant, std::move(chunks), lower)}});
  }
  Value content(const Value& id) {
    return set.value(sql("Select FBinaryImg From t_Rpt_EISDOC Where FID=", toInt32(id)));
  }
  Value remove(const std::string& name, const Value& id) {
    return set.result("RptPropItemUpdate.DelEISDoc", {{"FName", name}, {"FID", id}});
  }
};

TEST_F(RptPropItemUpdateDocumentsOnAccountSet, MarkingAReportTwiceLeavesTwoMarks) {
  EXPECT_EQ(mark(7, 17, "张三"), Value(1));
  EXPECT_EQ(mark(7, 18, "李四"), Value(1));
  EXPECT_THAT(marks(), ElementsAre("7|17|张三", "7|18|李四"));
}

TEST_F(RptPropItemUpdateDocumentsOnAccountSet, AMarkThatTheDatabaseRefusesAnswersZeroAndIsNotLeft) {
  EXPECT_EQ(mark(7, 17, "O'Brien"), Value(0));
  EXPECT_THAT(marks(), IsEmpty());
}

TEST_F(RptPropItemUpdateDocumentsOnAccountSet, RevokingTakesAllMarksOffOneReport) {
  mark(7, 17, "a");
  mark(7, 18, "b");
  mark(8, 17, "a");
  EXPECT_EQ(set.result("RptPropItemUpdate.RevokeRptIsAudit", {{"lngRptID", 7}}), Value(1));
  EXPECT_THAT(marks(), ElementsAre("8|17|a"));
}

TEST_F(RptPropItemUpdateDocumentsOnAccountSet, RevokingWithoutAMarkAnswersOneAndWithoutATableZero) {
  EXPECT_EQ(set.result("RptPropItemUpdate.RevokeRptIsAudit", {{"lngRptID", 7}}), Value(1));
  set.sql("Drop Table t_Rpt_LeaderAudit");
  EXPECT_EQ(set.result("RptPropItemUpdate.RevokeRptIsAudit", {{"lngRptID", 7}}), Value(0));
}

TEST_F(RptPropItemUpdateDocumentsOnAccountSet, ADocumentIsItsChunksInOrderAndBornUncheckedToday) {
  const Value id = store("a.xls", {bytes("one "), bytes("two "), bytes("three")});
  EXPECT_EQ(content(id), bytes("one two three"));
  EXPECT_THAT(set.rows("Select FName,FType,FChecked From t_Rpt_EISDOC Where FLastDate=Convert(char(8),GetDate(),112)"),
              ElementsAre("a.xls|excel|0"));
}

TEST_F(RptPropItemUpdateDocumentsOnAccountSet, TheIdentifierIsTheOneThatTheDatabaseGave) {
  store("a", {});
  const Value id = store("b", {});
  EXPECT_THAT(set.rows("Select FID From t_Rpt_EISDOC Where FName='b'"), ElementsAre(toText(id)));
}

TEST_F(RptPropItemUpdateDocumentsOnAccountSet, ADocumentOfNoChunksHasNoBytes) {
  EXPECT_EQ(content(store("a", {})), Value(Null{}));
}

TEST_F(RptPropItemUpdateDocumentsOnAccountSet, AnArrayThatBeginsAboveZeroFailsAndStoresNothing) {
  const auto error =
      set.error("RptPropItemUpdate.PutOutDoc",
                {{"sFileName", "a"}, {"sType", "t"}, {"vDOC", Array::of(ValueType::variant, {bytes("x")}, 1)}});
  EXPECT_EQ(error.number(), 0x800A0009);
  EXPECT_EQ(count("t_Rpt_EISDOC"), 0);
}

TEST_F(RptPropItemUpdateDocumentsOnAccountSet, AnArrayThatBeginsBelowZeroIsStoredFromZeroOn) {
  EXPECT_EQ(content(store("a", {bytes("x"), bytes("y"), bytes("z")}, -1)), bytes("yz"));
}

TEST_F(RptPropItemUpdateDocumentsOnAccountSet, ANameMayExistTwice) {
  store("a", {bytes("1")});
  store("a", {bytes("2")});
  EXPECT_EQ(count("t_Rpt_EISDOC Where FName='a'"), 2);
}

TEST_F(RptPropItemUpdateDocumentsOnAccountSet, ANameWithAnApostropheIsStoredAsItIs) {
  store("O'Brien", {});
  EXPECT_THAT(set.rows("Select FName From t_Rpt_EISDOC"), ElementsAre("O'Brien"));
}

TEST_F(RptPropItemUpdateDocumentsOnAccountSet, DeletingWantsIdentifierAndNameToMatch) {
  const Value id = store("a", {});
  EXPECT_EQ(remove("b", id), Value(true));
  EXPECT_EQ(remove("a", toInt32(id) + 1), Value(true));
  EXPECT_EQ(count("t_Rpt_EISDOC"), 1);
  EXPECT_EQ(remove("a", id), Value(true));
  EXPECT_EQ(count("t_Rpt_EISDOC"), 0);
}

TEST_F(RptPropItemUpdateDocumentsOnAccountSet, DeletingByANameWithAnApostropheFailsWithTheDatabasesError) {
  EXPECT_EQ(set.error("RptPropItemUpdate.DelEISDoc", {{"FName", "O'Brien"}, {"FID", 1}}).number(), 0x80040E14);
}

}  // namespace
}  // namespace tolvane::test
