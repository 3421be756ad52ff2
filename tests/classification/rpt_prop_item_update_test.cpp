// Maintaining classification items, on a real account set.
#include "classification/classification_store.h"

namespace tolvane::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

struct RptPropItemUpdateOnAccountSet : ClassificationStore {
  std::vector<std::string> item(std::int32_t id) {
    return set.rows(sql("Select * From t_Rpt_PropItem Where FPropItemID=", id));
  }
  std::string createError(std::int32_t standard, const Named& properties) {
    return shown(set.error("RptPropItemUpdate.Create", {{"PropClsID", standard}, {"Properties", bag(properties)}}));
  }
  void update(std::int32_t id, const Named& properties) {
    set.call("RptPropItemUpdate.Update", {{"PropItemID", id}, {"Properties", bag(properties)}});
  }
  std::string updateError(std::int32_t id, const Named& properties) {
    return shown(set.error("RptPropItemUpdate.Update", {{"PropItemID", id}, {"Properties", bag(properties)}}));
  }
  void remove(std::int32_t id) { set.call("RptPropItemUpdate.Delete", {{"PropItemID", id}}); }
  std::string removeError(std::int32_t id) {
    return shown(set.error("RptPropItemUpdate.Delete", {{"PropItemID", id}}));
  }
};

constexpr const char* builtIn =
    "0x80044047 Tolvane.RptPropItemUpdate.Create: 分类标准 性质 的分类属性不得增加、删除和修改！";

TEST_F(RptPropItemUpdateOnAccountSet, TheFirstItemOfAnAccountSetGets101) {
  set.sql("Delete From t_Rpt_PropItem Where FPropItemID>100");
  EXPECT_EQ(createItem(1001, "01", "甲"), Value(0));
  EXPECT_THAT(item(101), ElementsAre("1001|101|01|甲|甲|甲 "));
}

TEST_F(RptPropItemUpdateOnAccountSet, IdentifiersAreCountedOverAllStandards) {
  createStandard("部门");
  createItem(1001, "04", "甲");
  createItem(1002, "01", "乙");
  EXPECT_THAT(set.rows("Select FPropClsID,FPropItemID From t_Rpt_PropItem Where FPropItemID>125"),
              ElementsAre("1001|126", "1002|127"));
}

TEST_F(RptPropItemUpdateOnAccountSet, TheEnglishNameOfANewItemEndsWithOneBlankAndTheOthersDoNot) {
  createItem(1001, "04", "甲");
  EXPECT_THAT(set.rows("Select '['+FName+'] ['+FName_Cht+'] ['+FName_En+']' From t_Rpt_PropItem Where FPropItemID=126"),
              ElementsAre("[甲] [甲] [甲 ]"));
}

TEST_F(RptPropItemUpdateOnAccountSet, ANumberAndANameOfAnotherStandardAreAccepted) {
  createStandard("部门");
  EXPECT_EQ(createItem(1002, "01", "新会计准则"), Value(0));
}

TEST_F(RptPropItemUpdateOnAccountSet, CreateRefusesBuiltInStandards) {
  for (const std::int32_t standard : {1, 999, 0, -1}) {
    EXPECT_EQ(createError(standard, {{"FNumber", "1"}, {"FName", "n"}}), builtIn) << standard;
  }
}

TEST_F(RptPropItemUpdateOnAccountSet, CreateRefusesAMissingStandard) {
  EXPECT_EQ(createError(1500, {}), "0x80044047 Tolvane.RptPropItemUpdate.Create: 不存在分类标准ID 1500");
  set.in("en");
  EXPECT_EQ(createError(1500, {}),
            "0x80044047 Tolvane.RptPropItemUpdate.Create: There is no classification standard with the ID 1500");
}

TEST_F(RptPropItemUpdateOnAccountSet, CreateRefusesAnEmptyNumberOrNameWithAnExclamationMark) {
  const char* refused = "0x80044047 Tolvane.RptPropItemUpdate.Create: 分类属性的编号和名称不得为空！";
  EXPECT_EQ(createError(1001, {{"FName", "n"}}), refused);
  EXPECT_EQ(createError(1001, {{"FNumber", "1"}}), refused);
  EXPECT_EQ(createError(1001, {{"FNumber", "1"}, {"FName", ""}}), refused);
}

TEST_F(RptPropItemUpdateOnAccountSet, CreateRefusesANumberOfTheStandard) {
  EXPECT_EQ(createError(1001, {{"FNumber", "01"}, {"FName", "n"}}),
            "0x80044047 Tolvane.RptPropItemUpdate.Create: 同一分类标准下，分类属性的编号不得重复！");
}

TEST_F(RptPropItemUpdateOnAccountSet, CreateRefusesANameOfTheStandardInTheCallersLanguage) {
  EXPECT_EQ(createError(1001, {{"FNumber", "09"}, {"FName", "新会计准则"}}),
            "0x80044047 Tolvane.RptPropItemUpdate.Create: 同一分类标准下，分类属性的名称不得重复！");
  set.in("en");
  EXPECT_EQ(createItem(1001, "09", "新会计准则"), Value(0));
}

TEST_F(RptPropItemUpdateOnAccountSet, CreateOfANameWithAnApostropheFailsWithTheDatabasesError) {
  EXPECT_EQ(set.error("RptPropItemUpdate.Create",
                      {{"PropClsID", 1001}, {"Properties", bag({{"FNumber", "9"}, {"FName", "O'Brien"}})}})
                .number(),
            0x80040E14);
}

TEST_F(RptPropItemUpdateOnAccountSet, CreateLeavesNoItemWhenTheMenuIsRefused) {
  breakTheMenu();
  createError(1001, {{"FNumber", "04"}, {"FName", "甲"}});
  EXPECT_THAT(item(126), IsEmpty());
}

TEST_F(RptPropItemUpdateOnAccountSet, UpdateChangesTheNumberAndTheNameInTheCallersLanguageAlone) {
  set.in("en");
  update(124, {{"FNumber", "99"}, {"FName", "New"}, {"FPropClsID", 1001}});
  EXPECT_THAT(item(124), ElementsAre("1001|124|99|新会计准则|新會計準則|New"));
}

TEST_F(RptPropItemUpdateOnAccountSet, UpdateLeavesTheReportsUnderTheItem) {
  const auto report = save("a");
  file(report, 1001, 124);
  update(124, {{"FNumber", "99"}, {"FName", "新"}, {"FPropClsID", 1001}});
  EXPECT_EQ(count("t_Rpt_Content Where F1001=124"), 1);
}

TEST_F(RptPropItemUpdateOnAccountSet, UpdateChecksInTheStandardOfTheBagAndLeavesTheItemInItsOwn) {
  createStandard("部门");
  createItem(1002, "01", "甲");
  EXPECT_EQ(updateError(126, {{"FNumber", "02"}, {"FName", "乙"}, {"FPropClsID", 1001}}),
            "0x80044047 Tolvane.RptPropItemUpdate.Update: 同一分类标准下，分类属性的编号不得重复！");
  update(126, {{"FNumber", "09"}, {"FName", "乙"}, {"FPropClsID", "1001"}});
  EXPECT_THAT(item(126), ElementsAre("1002|126|09|乙|甲|甲 "));
}

TEST_F(RptPropItemUpdateOnAccountSet, UpdateToItsOwnNumberAndNameIsNoConflict) {
  update(124, {{"FNumber", "02"}, {"FName", "新会计准则"}, {"FPropClsID", 1001}});
  EXPECT_THAT(item(124), testing::SizeIs(1));
}

TEST_F(RptPropItemUpdateOnAccountSet, UpdateRefusesANameOfTheStandard) {
  EXPECT_EQ(updateError(124, {{"FNumber", "02"}, {"FName", "企业会计制度"}, {"FPropClsID", 1001}}),
            "0x80044047 Tolvane.RptPropItemUpdate.Update: 同一分类标准下，分类属性的名称不得重复！");
}

TEST_F(RptPropItemUpdateOnAccountSet, UpdateRefusesBuiltInItemsUnderTheSourceOfCreate) {
  for (const std::int32_t id : {3, 99, 0, -1}) EXPECT_EQ(updateError(id, {}), builtIn) << id;
}

TEST_F(RptPropItemUpdateOnAccountSet, UpdateRefusesAMissingItem) {
  EXPECT_EQ(updateError(500, {}), "0x80044047 Tolvane.RptPropItemUpdate.Update: 不存在分类属性ID 500");
}

TEST_F(RptPropItemUpdateOnAccountSet, UpdateRefusesAnEmptyNumberOrNameWithATrailingBlankAndNoMark) {
  const char* refused = "0x80044047 Tolvane.RptPropItemUpdate.Update: 分类属性的编号和名称不得为空 ";
  EXPECT_EQ(updateError(124, {{"FName", "n"}, {"FPropClsID", 1001}}), refused);
  EXPECT_EQ(updateError(124, {{"FNumber", "1"}, {"FPropClsID", 1001}}), refused);
  set.in("en");
  EXPECT_EQ(updateError(124, {}),
            "0x80044047 Tolvane.RptPropItemUpdate.Update: The number and the name of a classification item must not "
            "be empty ");
}

TEST_F(RptPropItemUpdateOnAccountSet, UpdateRefusesAStandardThatIsNoNumberOrNull) {
  const auto number = [&](const Value& standard) {
    return set
        .error("RptPropItemUpdate.Update",
               {{"PropItemID", 124}, {"Properties", bag({{"FNumber", "1"}, {"FName", "n"}, {"FPropClsID", standard}})}})
        .number();
  };
  EXPECT_EQ(number("first"), 0x800A000D);
  EXPECT_EQ(number(""), 0x800A000D);
  EXPECT_EQ(number(Null{}), 0x800A005E);
  EXPECT_EQ(number("99999999999"), 0x800A0006);
}

TEST_F(RptPropItemUpdateOnAccountSet, UpdateWithoutAStandardFindsNoConflict) {
  update(124, {{"FNumber", "01"}, {"FName", "企业会计制度"}});
  EXPECT_THAT(item(124), ElementsAre("1001|124|01|企业会计制度|新會計準則|New Accounting Standards"));
}

TEST_F(RptPropItemUpdateOnAccountSet, DeleteUnfilesTheReportsOfTheItemAndOfNoOther) {
  createStandard("部门");
  const auto first = save("a");
  const auto second = save("b");
  file(first, 1001, 124);
  file(second, 1001, 125);
  set.sql(sql("Update t_Rpt_Content Set F1002=124 Where FRptID=", first));
  remove(124);
  EXPECT_THAT(item(124), IsEmpty());
  EXPECT_THAT(set.rows("Select F1001,F1002 From t_Rpt_Content Order By FRptID"), ElementsAre("0|124", "125|0"));
}

TEST_F(RptPropItemUpdateOnAccountSet, DeleteRefusesBuiltInItemsUnderTheSourceOfCreate) {
  for (const std::int32_t id : {3, 99, 0, -1}) EXPECT_EQ(removeError(id), builtIn) << id;
}

TEST_F(RptPropItemUpdateOnAccountSet, DeleteRefusesAMissingItem) {
  EXPECT_EQ(removeError(500), "0x80044047 Tolvane.RptPropItemUpdate.Delete: 不存在分类属性ID 500");
}

TEST_F(RptPropItemUpdateOnAccountSet, DeleteOfAnItemWhoseStandardHasNoColumnFailsAndKeepsTheItem) {
  set.sql("Insert Into t_Rpt_PropItem Values (77,200,'1','n','n','n')");
  EXPECT_EQ(set.error("RptPropItemUpdate.Delete", {{"PropItemID", 200}}).number(), 0x80040E14);
  EXPECT_THAT(item(200), testing::SizeIs(1));
}

TEST_F(RptPropItemUpdateOnAccountSet, EveryChangeRebuildsTheMenu) {
  createItem(1001, "04", "甲");
  EXPECT_THAT(menu(), Contains("708|(会计制度)-甲"));
  update(126, {{"FNumber", "04"}, {"FName", "乙"}, {"FPropClsID", 1001}});
  EXPECT_THAT(menu(), Contains("708|(会计制度)-乙"));
  remove(126);
  EXPECT_THAT(menu(), Not(Contains(testing::StartsWith("708|"))));
}

TEST_F(RptPropItemUpdateOnAccountSet, AReportUnderTwoStandardsIsInTheMenuUnderAnItemOfEach) {
  createStandard("部门");
  createItem(1002, "01", "财务部");
  const auto report = save("a");
  file(report, 1001, 124);
  file(report, 1002, 126);
  save("unfiled");
  EXPECT_THAT(set.rows("Select FSubFuncID From t_LocalDetailFunc Where FFuncName='a' Order By FSubFuncID"),
              ElementsAre("706", "708"));
}

}  // namespace
}  // namespace tolvane::test
