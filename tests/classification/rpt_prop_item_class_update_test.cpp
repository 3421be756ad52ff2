// Maintaining classification standards, on a real account set.
#include "classification/classification_store.h"

namespace tolvane::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

struct RptPropItemClassUpdateOnAccountSet : ClassificationStore {
  std::vector<std::string> standard(std::int32_t id) {
    return set.rows(sql("Select * From t_Rpt_PropClass Where FPropClsID=", id));
  }
  std::string createError(const Value& properties) {
    return shown(set.error("RptPropItemClassUpdate.Create", {{"Properties", properties}}));
  }
  void rename(std::int32_t id, const std::string& name) {
    set.call("RptPropItemClassUpdate.Update", {{"PropClsID", id}, {"Properties", bag({{"FName", name}})}});
  }
  std::string renameError(std::int32_t id, const Named& properties) {
    return shown(set.error("RptPropItemClassUpdate.Update", {{"PropClsID", id}, {"Properties", bag(properties)}}));
  }
  void remove(std::int32_t id) { set.call("RptPropItemClassUpdate.Delete", {{"PropClsID", id}}); }
  std::string removeError(std::int32_t id) {
    return shown(set.error("RptPropItemClassUpdate.Delete", {{"PropClsID", id}}));
  }
  std::string viewAfterRemoving(const std::string& view, std::int32_t id) {
    set.sql("Delete From t_Rpt_View");
    set.sql("Insert Into t_Rpt_View Values (1,'" + view + "')");
    remove(id);
    return set.rows("Select FViewCode From t_Rpt_View").at(0);
  }
};

TEST_F(RptPropItemClassUpdateOnAccountSet, TheFirstStandardOfAnAccountSetGets1001AndTheNext1002) {
  set.sql("Delete From t_Rpt_PropClass Where FPropClsID>1");
  EXPECT_EQ(createStandard("部门"), Value(0));
  createStandard("用途");
  EXPECT_THAT(set.rows("Select * From t_Rpt_PropClass Where FPropClsID>1 Order By FPropClsID"),
              ElementsAre("1001|1001|部门|部门|部门", "1002|1002|用途|用途|用途"));
}

TEST_F(RptPropItemClassUpdateOnAccountSet, TheFirstStandardOfATableWithoutRowsGets1001) {
  set.sql("Delete From t_Rpt_PropClass");
  createStandard("部门");
  EXPECT_THAT(standard(1001), ElementsAre("1001|1001|部门|部门|部门"));
}

TEST_F(RptPropItemClassUpdateOnAccountSet, CreateAnswersZeroAndWidensTheCatalogueByAColumnOfZeros) {
  const auto report = save("a");
  EXPECT_EQ(createStandard("部门"), Value(0));
  EXPECT_EQ(set.value(sql("Select F1002 From t_Rpt_Content Where FRptID=", report)), Value(std::int16_t{0}));
  save("b");
  EXPECT_EQ(count("t_Rpt_Content Where F1002=0"), 2);
}

TEST_F(RptPropItemClassUpdateOnAccountSet, AStandardThatGetsADeletedOnesIdentifierFindsTheOldColumn) {
  createStandard("部门");
  remove(1002);
  EXPECT_TRUE(hasColumn("F1002"));
  createStandard("用途");
  EXPECT_THAT(standard(1002), ElementsAre("1002|1002|用途|用途|用途"));
  EXPECT_TRUE(hasColumn("F1002"));
}

TEST_F(RptPropItemClassUpdateOnAccountSet, CreateLeavesNeitherColumnNorRowNorMenuWhenTheMenuIsRefused) {
  const auto before = menu();
  breakTheMenu();
  createError(bag({{"FName", "部门"}}));
  EXPECT_FALSE(hasColumn("F1002"));
  EXPECT_THAT(standard(1002), IsEmpty());
  EXPECT_EQ(menu(), before);
}

TEST_F(RptPropItemClassUpdateOnAccountSet, CreateRefusesAnEmptyName) {
  const char* refused = "0x80044047 Tolvane.RptPropClsUpdate.Create: 分类标准的名称不得为空！";
  EXPECT_EQ(createError(bag({{"FName", ""}})), refused);
  EXPECT_EQ(createError(bag({{"FNumber", "7"}})), refused);
  EXPECT_EQ(createError(bag({{"FName", Empty{}}})), refused);
}

TEST_F(RptPropItemClassUpdateOnAccountSet, CreateRefusesANameInUseUnderTheSourceOfUpdate) {
  EXPECT_EQ(createError(bag({{"FName", "性质"}})),
            "0x80044047 Tolvane.RptPropClsUpdate.Update: 已存在分类标准名称性质");
  set.in("en");
  EXPECT_EQ(createError(bag({{"FName", "nature"}})),
            "0x80044047 Tolvane.RptPropClsUpdate.Update: There is already a classification standard named nature");
}

TEST_F(RptPropItemClassUpdateOnAccountSet, CreateTakesANameThatIsInUseInAnotherLanguage) {
  createStandard("Nature");
  EXPECT_THAT(standard(1002), ElementsAre("1002|1002|Nature|Nature|Nature"));
}

TEST_F(RptPropItemClassUpdateOnAccountSet, CreateOfANameWithAnApostropheFailsWithTheDatabasesError) {
  EXPECT_EQ(set.error("RptPropItemClassUpdate.Create", {{"Properties", bag({{"FName", "O'Brien"}})}}).number(),
            0x80040E14);
}

TEST_F(RptPropItemClassUpdateOnAccountSet, CreateTakesANumberForANameAndRefusesNullAndNothing) {
  set.result("RptPropItemClassUpdate.Create", {{"Properties", bag({{"FName", 2012}, {"unknown", "x"}})}});
  EXPECT_THAT(standard(1002), ElementsAre("1002|1002|2012|2012|2012"));
  EXPECT_EQ(set.error("RptPropItemClassUpdate.Create", {{"Properties", bag({{"FName", Null{}}})}}).number(),
            0x800A005E);
  EXPECT_EQ(set.error("RptPropItemClassUpdate.Create", {{"Properties", ObjectRef()}}).number(), 0x800A005B);
}

TEST_F(RptPropItemClassUpdateOnAccountSet, UpdateChangesTheNameInTheCallersLanguageAlone) {
  createStandard("部门");
  set.in("en");
  rename(1002, "Department");
  set.in("cht");
  rename(1002, "部門");
  EXPECT_THAT(standard(1002), ElementsAre("1002|1002|部门|部門|Department"));
}

TEST_F(RptPropItemClassUpdateOnAccountSet, UpdateToItsOwnNameIsNoConflict) {
  createStandard("部门");
  rename(1002, "部门");
  EXPECT_THAT(standard(1002), ElementsAre("1002|1002|部门|部门|部门"));
}

TEST_F(RptPropItemClassUpdateOnAccountSet, UpdateRefusesEveryBuiltInStandardWithTheNatureStandardsText) {
  const char* refused = "0x80044047 Tolvane.RptPropClsUpdate.Update: 分类标准性质 的名称不得修改！";
  for (const std::int32_t id : {1, 999, 0, -1}) EXPECT_EQ(renameError(id, {{"FName", "x"}}), refused) << id;
  set.in("en");
  EXPECT_EQ(renameError(999, {{"FName", "x"}}),
            "0x80044047 Tolvane.RptPropClsUpdate.Update: The name of the classification standard Nature must not be "
            "changed!");
}

TEST_F(RptPropItemClassUpdateOnAccountSet, UpdateRefusesAnEmptyName) {
  EXPECT_EQ(renameError(1001, {}), "0x80044047 Tolvane.RptPropClsUpdate.Update: 分类标准的名称不得为空！");
}

TEST_F(RptPropItemClassUpdateOnAccountSet, UpdateRefusesAnotherStandardsName) {
  EXPECT_EQ(renameError(1001, {{"FName", "性质"}}),
            "0x80044047 Tolvane.RptPropClsUpdate.Update: 已存在名称为性质 的分类标准！");
}

TEST_F(RptPropItemClassUpdateOnAccountSet, UpdateOfAMissingStandardNamesItsIdentifierUnderItsOwnNumber) {
  EXPECT_EQ(renameError(1500, {{"FName", "x"}}), "0x80044042 Tolvane.RptPropClsUpdate.Update: 1500");
}

TEST_F(RptPropItemClassUpdateOnAccountSet, DeleteRemovesTheStandardAndItsItemsAndKeepsTheColumn) {
  createStandard("部门");
  createItem(1002, "01", "财务部");
  remove(1002);
  EXPECT_THAT(standard(1002), IsEmpty());
  EXPECT_EQ(count("t_Rpt_PropItem Where FPropClsID=1002"), 0);
  EXPECT_TRUE(hasColumn("F1002"));
  EXPECT_THAT(menu(), testing::SizeIs(7));
}

TEST_F(RptPropItemClassUpdateOnAccountSet, DeleteRefusesTheNatureStandard) {
  EXPECT_EQ(removeError(1), "0x80044047 Tolvane.RptPropClsUpdate.Delete: 分类标准 性质 不得删除！");
}

TEST_F(RptPropItemClassUpdateOnAccountSet, DeleteRefusesAMissingStandard) {
  const char* refused = "0x80044047 Tolvane.RptPropClsUpdate.Delete: 该分类标准在数据库中不存在！";
  for (const std::int32_t id : {0, -1, 1500, 2147483647}) EXPECT_EQ(removeError(id), refused) << id;
}

TEST_F(RptPropItemClassUpdateOnAccountSet, DeleteRefusesAStandardUnderWhichReportsAreFiledAndTellsHowMany) {
  file(save("a"), 1001, 124);
  file(save("b"), 1001, 125);
  EXPECT_EQ(removeError(1001),
            "0x80044047 Tolvane.RptPropClsUpdate.Delete: 按照该标准分类的报表数为2，不得删除本分类标准！");
  EXPECT_THAT(standard(1001), testing::SizeIs(1));
}

TEST_F(RptPropItemClassUpdateOnAccountSet, DeleteTakesABuiltInStandardThatIsNotNatureWhenNoReportUsesIt) {
  set.sql("Insert Into t_Rpt_PropClass Values (2,'2','旧','旧','Old')");
  set.sql("Alter Table t_Rpt_Content Add F2 smallint not null default(0)");
  remove(2);
  EXPECT_THAT(standard(2), IsEmpty());
}

TEST_F(RptPropItemClassUpdateOnAccountSet, DeleteTakesTheIdentifierOutOfTheSavedViews) {
  EXPECT_EQ(viewAfterRemoving("1001\\1002\\1003", 1001), "1002\\1003");
}

TEST_F(RptPropItemClassUpdateOnAccountSet, DeleteTakesTheIdentifierOutOfTheMiddleOfASavedView) {
  createStandard("部门");
  EXPECT_EQ(viewAfterRemoving("1001\\1002\\1003", 1002), "1001\\1003");
}

TEST_F(RptPropItemClassUpdateOnAccountSet, DeleteTakesTheDigitsOutOfALongerIdentifierToo) {
  EXPECT_EQ(viewAfterRemoving("1\\10012", 1001), "1\\2");
}

TEST_F(RptPropItemClassUpdateOnAccountSet, DeleteLeavesAViewOfSeparatorsAloneAndEmptiesTheStandardsOwn) {
  EXPECT_EQ(viewAfterRemoving("\\\\\\", 1001), "\\\\\\");
}

TEST_F(RptPropItemClassUpdateOnAccountSet, DeleteEmptiesAViewOfTheStandardAlone) {
  set.sql("Insert Into t_Rpt_View Values (7,null)");
  EXPECT_EQ(viewAfterRemoving("\\1001\\", 1001), "");
}

TEST_F(RptPropItemClassUpdateOnAccountSet, DeleteLeavesStandardItemsAndViewsWhenTheMenuIsRefused) {
  set.sql("Insert Into t_Rpt_View Values (1,'1\\1001')");
  breakTheMenu();
  removeError(1001);
  EXPECT_THAT(standard(1001), testing::SizeIs(1));
  EXPECT_EQ(count("t_Rpt_PropItem Where FPropClsID=1001"), 3);
  EXPECT_THAT(set.rows("Select FViewCode From t_Rpt_View"), ElementsAre("1\\1001"));
}

TEST_F(RptPropItemClassUpdateOnAccountSet, EveryChangeRebuildsTheMenu) {
  createStandard("部门");
  createItem(1002, "01", "财务部");
  EXPECT_THAT(menu(), Contains("708|(部门)-财务部"));
  rename(1002, "科室");
  EXPECT_THAT(menu(), Contains("708|(科室)-财务部"));
}

}  // namespace
}  // namespace tolvane::test
