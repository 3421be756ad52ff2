// The exact statements, cursors and order of operations behind the maintenance of classification standards.
#include <gmock/gmock.h>

#include "classification/rpt_prop_item_class_update.h"
#include "platform/error.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::_;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

const auto readsTheMenu = StartsWith("Execute select c.FPropClsID,i.FPropItemID,");

struct RptPropItemClassUpdateConversation : testing::Test {
  RecordingPlatform platform;
  RptPropItemClassUpdate service{platform};

  std::shared_ptr<PropertyBag> named(const Value& name) {
    auto bag = platform.newPropertyBag();
    bag->set("FName", name);
    return bag;
  }
  void largestIs(Value id) { platform.answer("Select Max(FPropClsID)", {{"MaxPropClsID"}, {{std::move(id)}}}); }
  void standardExists() {
    platform.answer("Select * From t_Rpt_PropClass", {{"FPropClsID"}, {{std::int32_t{1002}}}});
    platform.answer("Select FPropClsID from t_Rpt_PropClass", {{"FPropClsID"}, {{std::int32_t{1002}}}});
  }
  void reportsUnderIt(std::int32_t count) { platform.answer("Select Count(*)", {{"FRptCount"}, {{count}}}); }
};

TEST_F(RptPropItemClassUpdateConversation, CreateWidensTheCatalogueInsertsAndRefreshesTheMenu) {
  largestIs(std::int32_t{1001});
  EXPECT_EQ(service.Create("x", named("部门")), 0);
  EXPECT_THAT(
      platform.work(),
      ElementsAre("LanguageCode", "Open 1 3 Select FPropClsID From t_Rpt_PropClass Where FName='部门'",
                  "Open 1 3 Select Max(FPropClsID) as MaxPropClsID From t_Rpt_PropClass",
                  "Execute  if Not Exists(Select c.Name from syscolumns c,sysobjects o where c.Id=o.Id and "
                  "c.name='F1002' and o.name='t_Rpt_Content')   Begin  Alter Table t_Rpt_Content Add F1002 Smallint "
                  "not null default(0)  END",
                  "Execute Insert into t_Rpt_PropClass values( 1002, '1002' , '部门','部门','部门')", readsTheMenu,
                  "CompleteWork"));
}

TEST_F(RptPropItemClassUpdateConversation, CreateAnnouncesWorkInPlaceOfTheCompletionCall) {
  platform.log.clear();
  service.Create("x", named("a"));
  EXPECT_THAT(std::vector<std::string>(platform.log.begin(), platform.log.begin() + 2),
              ElementsAre("BeginWork", "GetContext"));
}

TEST_F(RptPropItemClassUpdateConversation, CreateComparesTheNameInTheCallersLanguageAsItStands) {
  platform.language = "cht";
  service.Create("x", named("O'Brien"));
  EXPECT_EQ(platform.statements().front(), "Open 1 3 Select FPropClsID From t_Rpt_PropClass Where FName_cht='O'Brien'");
}

TEST_F(RptPropItemClassUpdateConversation, CreateOfAnEmptyNameSendsNothing) {
  EXPECT_THROW(service.Create("x", platform.newPropertyBag()), AutomationError);
  EXPECT_THAT(platform.statements(), IsEmpty());
}

TEST_F(RptPropItemClassUpdateConversation, CreateDoesNotCompleteWhenTheMenuIsRefused) {
  platform.fail("Execute select c.FPropClsID", AutomationError(RuntimeError::invalidArgument, "x"));
  EXPECT_THROW(service.Create("x", named("a")), AutomationError);
  EXPECT_THAT(platform.log.back(), readsTheMenu);
}

struct Largest {
  Value used;
  const char* column;
  friend void PrintTo(const Largest& largest, std::ostream* out) { *out << largest.column; }
};
struct RptPropItemClassUpdateIdentifier : RptPropItemClassUpdateConversation, testing::WithParamInterface<Largest> {};

TEST_P(RptPropItemClassUpdateIdentifier, IsOneAboveTheLargestAndAtLeast1001) {
  largestIs(GetParam().used);
  service.Create("x", named("a"));
  EXPECT_THAT(platform.statements()[2], testing::HasSubstr(std::string("Add ") + GetParam().column + " Smallint"));
}

INSTANTIATE_TEST_SUITE_P(Identifiers, RptPropItemClassUpdateIdentifier,
                         testing::Values(Largest{Null{}, "F1001"}, Largest{std::int32_t{1}, "F1001"},
                                         Largest{std::int32_t{999}, "F1001"}, Largest{std::int32_t{1000}, "F1001"},
                                         Largest{std::int32_t{1001}, "F1002"},
                                         Largest{std::int32_t{2147483646}, "F2147483647"}));

TEST_F(RptPropItemClassUpdateConversation, CreateFailsWhenTheIdentifiersAreUsedUp) {
  largestIs(std::int32_t{2147483647});
  EXPECT_THROW(service.Create("x", named("a")), AutomationError);
  EXPECT_THAT(platform.statements(), testing::SizeIs(2));
}

TEST_F(RptPropItemClassUpdateConversation, UpdateWritesTheNameThroughTheRow) {
  standardExists();
  service.Update("x", 1002, named("用途"));
  EXPECT_THAT(platform.work(),
              ElementsAre("LanguageCode",
                          "Open 1 3 Select FPropClsID From t_Rpt_PropClass Where FName='用途' and FPropClsID <> 1002",
                          "Open 1 3 Select * From t_Rpt_PropClass Where FPropClsID=1002", "LanguageCode",
                          "Set FName='用途'", "Update", readsTheMenu, "CompleteWork"));
}

struct LanguageColumn {
  const char* language;
  const char* written;
  friend void PrintTo(const LanguageColumn& column, std::ostream* out) { *out << column.language; }
};
struct RptPropItemClassUpdateName : RptPropItemClassUpdateConversation, testing::WithParamInterface<LanguageColumn> {};

TEST_P(RptPropItemClassUpdateName, GoesIntoTheColumnOfTheCallersLanguageAlone) {
  standardExists();
  platform.language = GetParam().language;
  service.Update("x", 1002, named("n"));
  EXPECT_THAT(platform.work(),
              ElementsAre(_, _, _, "LanguageCode", GetParam().written, "Update", readsTheMenu, "CompleteWork"));
}

INSTANTIATE_TEST_SUITE_P(Languages, RptPropItemClassUpdateName,
                         testing::Values(LanguageColumn{"chs", "Set FName='n'"},
                                         LanguageColumn{"cht", "Set FName_cht='n'"},
                                         LanguageColumn{"en", "Set FName_en='n'"}));

TEST_F(RptPropItemClassUpdateConversation, UpdateInAnUnknownLanguageSavesTheRowAsItIs) {
  standardExists();
  platform.language = "fr";
  service.Update("x", 1002, named("n"));
  EXPECT_THAT(platform.work(), ElementsAre(_, _, _, "LanguageCode", "Update", readsTheMenu, "CompleteWork"));
}

TEST_F(RptPropItemClassUpdateConversation, UpdateOfABuiltInStandardSendsNothingAndDoesNotLookAtTheBag) {
  EXPECT_THROW(service.Update("x", 999, nullptr), AutomationError);
  EXPECT_THAT(platform.statements(), IsEmpty());
}

TEST_F(RptPropItemClassUpdateConversation, UpdateTranslatesThePiecesOfItsRefusalOneByOne) {
  platform.language = "en";
  platform.translations = {{"分类标准", "A"}, {"性质", "B"}, {"的名称不得修改！", "C"}};
  try {
    service.Update("x", 1, named("n"));
    FAIL();
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.description(), "AB C");
  }
}

TEST_F(RptPropItemClassUpdateConversation, DeleteRemovesItemsThenTheStandard) {
  standardExists();
  reportsUnderIt(0);
  service.Delete("x", 1002);
  EXPECT_THAT(
      platform.work(),
      ElementsAre("Open 1 3 Select FPropClsID from t_Rpt_PropClass Where FPropClsID=1002",
                  "Open 1 3 Select Count(*) FRptCount from t_Rpt_Content Where F1002>0",
                  "Open 1 3 Select * from t_Rpt_View", "Close", "Execute Delete t_Rpt_PropItem Where FPropClsID=1002",
                  "Execute Delete t_Rpt_PropClass Where FPropClsID=1002", readsTheMenu, "CompleteWork"));
}

TEST_F(RptPropItemClassUpdateConversation, DeleteUpdatesTheViewsThatHoldTheIdentifierAndNoOthers) {
  standardExists();
  reportsUnderIt(0);
  platform.answer("Select * from t_Rpt_View", {{"FUserID", "FViewCode"},
                                               {{std::int32_t{1}, "1\\1002"},
                                                {std::int32_t{2}, "1\\1001"},
                                                {std::int32_t{3}, Null{}},
                                                {std::int32_t{4}, "\\"},
                                                {std::int32_t{5}, "1002"}}});
  service.Delete("x", 1002);
  EXPECT_THAT(platform.work(), ElementsAre(_, _, "Open 1 3 Select * from t_Rpt_View", "Set FViewCode='1'", "Update",
                                           "Set FViewCode=''", "Update", "Close", _, _, _, "CompleteWork"));
}

TEST_F(RptPropItemClassUpdateConversation, DeleteOfTheNatureStandardSendsNothing) {
  EXPECT_THROW(service.Delete("x", 1), AutomationError);
  EXPECT_THAT(platform.statements(), IsEmpty());
}

TEST_F(RptPropItemClassUpdateConversation, DeleteOfAStandardInUseStopsAfterTheCount) {
  standardExists();
  reportsUnderIt(2);
  EXPECT_THROW(service.Delete("x", 1002), AutomationError);
  EXPECT_THAT(platform.statements(), testing::SizeIs(2));
}

TEST(ViewWithoutStandard, LosesTheStandardsDigitsWhereverTheyStand) {
  EXPECT_EQ(viewWithoutStandard("1001\\1002\\1003", "1001"), "1002\\1003");
  EXPECT_EQ(viewWithoutStandard("1001\\1002\\1003", "1002"), "1001\\1003");
  EXPECT_EQ(viewWithoutStandard("1001\\1002\\1003", "1003"), "1001\\1002");
  EXPECT_EQ(viewWithoutStandard("1001", "1001"), "");
  EXPECT_EQ(viewWithoutStandard("1001\\1001", "1001"), "");
  EXPECT_EQ(viewWithoutStandard("12", "2"), "1");
}

TEST(ViewWithoutStandard, LosesThemWithinALongerIdentifierToo) {
  EXPECT_EQ(viewWithoutStandard("1\\10012\\1003", "1001"), "1\\2\\1003");
}

TEST(ViewWithoutStandard, HasItsSeparatorsTidiedOnceAndNotUntilNoneIsDouble) {
  EXPECT_EQ(viewWithoutStandard("\\1001\\", "1001"), "");
  EXPECT_EQ(viewWithoutStandard("5\\1001\\1001\\1001\\6", "1001"), "5\\\\6");
  EXPECT_EQ(viewWithoutStandard("\\\\\\\\1001", "1001"), "");
}

}  // namespace
}  // namespace tolvane::test
