// The exact statements, cursors and order of operations behind the maintenance of classification items.
#include <gmock/gmock.h>

#include "classification/rpt_prop_item_update.h"
#include "platform/error.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::_;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

const auto readsTheMenu = StartsWith("Execute select c.FPropClsID,i.FPropItemID,");

struct RptPropItemUpdateConversation : testing::Test {
  RecordingPlatform platform;
  RptPropItemUpdate service{platform};
  std::shared_ptr<PropertyBag> properties = platform.newPropertyBag();

  void give(const Value& number, const Value& name) {
    properties->set("FNumber", number);
    properties->set("FName", name);
  }
  void standardExists() { platform.answer("Select * From t_Rpt_PropClass", {{"FPropClsID"}, {{std::int32_t{1001}}}}); }
  void itemExistsIn(std::int32_t standard) {
    platform.answer("Select * From t_Rpt_PropItem Where FPropItemID=", {{"FPropClsID"}, {{standard}}});
  }
  void largestIs(Value id) { platform.answer("Select Max(FPropItemID)", {{"MaxPropItemID"}, {{std::move(id)}}}); }
};

TEST_F(RptPropItemUpdateConversation, CreateInsertsWithABlankBehindTheEnglishName) {
  standardExists();
  largestIs(std::int32_t{125});
  give("04", "其他");
  EXPECT_EQ(service.Create("x", 1001, properties), 0);
  EXPECT_THAT(
      platform.work(),
      ElementsAre("Open 1 3 Select * From t_Rpt_PropClass Where FPropClsID=1001",
                  "Open 1 3 Select * From t_Rpt_PropItem Where FPropClsID=1001 and  FNumber='04'", "LanguageCode",
                  "Open 1 3 Select * From t_Rpt_PropItem Where FPropClsID=1001 and FName='其他'",
                  "Open 1 3 Select Max(FPropItemID) as MaxPropItemID From t_Rpt_PropItem",
                  "Execute Insert into t_Rpt_PropItem values( 1001, '126' , '04','其他','其他','其他 ')", readsTheMenu,
                  "CompleteWork"));
}

TEST_F(RptPropItemUpdateConversation, CreateAnnouncesWorkInPlaceOfTheCompletionCall) {
  standardExists();
  give("04", "n");
  platform.log.clear();
  service.Create("x", 1001, properties);
  EXPECT_EQ(platform.log.front(), "BeginWork");
}

TEST_F(RptPropItemUpdateConversation, CreateUnderABuiltInStandardSendsNothing) {
  give("04", "n");
  EXPECT_THROW(service.Create("x", 999, properties), AutomationError);
  EXPECT_THAT(platform.statements(), IsEmpty());
}

TEST_F(RptPropItemUpdateConversation, CreateLooksForTheStandardBeforeItReadsTheBag) {
  EXPECT_THROW(service.Create("x", 1001, nullptr), AutomationError);
  EXPECT_THAT(platform.statements(), SizeIs(1));
}

struct Largest {
  Value used;
  const char* inserted;
  friend void PrintTo(const Largest& largest, std::ostream* out) { *out << largest.inserted; }
};
struct RptPropItemUpdateIdentifier : RptPropItemUpdateConversation, testing::WithParamInterface<Largest> {};

TEST_P(RptPropItemUpdateIdentifier, IsOneAboveTheLargestAndAtLeast101) {
  standardExists();
  largestIs(GetParam().used);
  give("04", "n");
  service.Create("x", 1001, properties);
  EXPECT_THAT(platform.statements()[4], StartsWith(std::string("Execute Insert into t_Rpt_PropItem values( 1001, '") +
                                                   GetParam().inserted + "'"));
}

INSTANTIATE_TEST_SUITE_P(Identifiers, RptPropItemUpdateIdentifier,
                         testing::Values(Largest{Null{}, "101"}, Largest{std::int32_t{3}, "101"},
                                         Largest{std::int32_t{100}, "101"}, Largest{std::int32_t{101}, "102"}));

TEST_F(RptPropItemUpdateConversation, UpdateChecksInTheBagsStandardAndChangesTheItemAlone) {
  platform.language = "en";
  itemExistsIn(1001);
  give("05", "New");
  properties->set("FPropClsID", "1002");
  service.Update("x", 126, properties);
  EXPECT_THAT(
      platform.work(),
      ElementsAre(
          "Open 1 3 Select * From t_Rpt_PropItem Where FPropItemID=126",
          "Open 1 3 Select * From t_Rpt_PropItem Where FPropClsID=1002 and FPropItemID <> 126 and  FNumber='05'",
          "LanguageCode",
          "Open 1 3 Select * From t_Rpt_PropItem Where FPropClsID=1002 and FPropItemID <> 126 and  "
          "FName_en='New'",
          "LanguageCode", "Execute  Update t_Rpt_PropItem set  FNumber='05',FName_en='New' Where FPropItemID=126",
          readsTheMenu, "CompleteWork"));
}

TEST_F(RptPropItemUpdateConversation, UpdateWithoutAStandardChecksInStandardZero) {
  itemExistsIn(1001);
  give("05", "n");
  service.Update("x", 126, properties);
  EXPECT_THAT(platform.statements()[1], StartsWith("Open 1 3 Select * From t_Rpt_PropItem Where FPropClsID=0 and "));
}

TEST_F(RptPropItemUpdateConversation, UpdateRefusesAStandardThatIsNoNumber) {
  itemExistsIn(1001);
  give("05", "n");
  properties->set("FPropClsID", "first");
  EXPECT_THROW(service.Update("x", 126, properties), AutomationError);
  EXPECT_THAT(platform.statements(), SizeIs(1));
}

TEST_F(RptPropItemUpdateConversation, UpdateOfABuiltInItemSendsNothing) {
  EXPECT_THROW(service.Update("x", 99, properties), AutomationError);
  EXPECT_THAT(platform.statements(), IsEmpty());
}

TEST_F(RptPropItemUpdateConversation, DeleteUnfilesTheReportsOfTheItem) {
  itemExistsIn(1001);
  service.Delete("x", 126);
  EXPECT_THAT(platform.work(),
              ElementsAre("Open 1 3 Select * From t_Rpt_PropItem Where FPropItemID=126",
                          "Execute  Delete t_Rpt_PropItem Where FPropItemID=126",
                          "Execute  Update t_Rpt_Content Set F1001=0 Where F1001=126", readsTheMenu, "CompleteWork"));
}

struct Column {
  std::int32_t standard;
  const char* column;
  friend void PrintTo(const Column& column, std::ostream* out) { *out << column.column; }
};
struct RptPropItemUpdateColumn : RptPropItemUpdateConversation, testing::WithParamInterface<Column> {};

TEST_P(RptPropItemUpdateColumn, HasAtLeastFourDigits) {
  itemExistsIn(GetParam().standard);
  service.Delete("x", 126);
  EXPECT_THAT(platform.statements()[2],
              StartsWith(std::string("Execute  Update t_Rpt_Content Set ") + GetParam().column + "=0 "));
}

INSTANTIATE_TEST_SUITE_P(Columns, RptPropItemUpdateColumn,
                         testing::Values(Column{1, "F0001"}, Column{999, "F0999"}, Column{1001, "F1001"},
                                         Column{12345, "F12345"}, Column{-5, "F-0005"}));

TEST_F(RptPropItemUpdateConversation, DeleteOfABuiltInItemSendsNothing) {
  EXPECT_THROW(service.Delete("x", 99), AutomationError);
  EXPECT_THAT(platform.statements(), IsEmpty());
}

}  // namespace
}  // namespace tolvane::test
