#include "frame/menu_refresh.h"

#include <gmock/gmock.h>

#include "platform/error.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Record = std::vector<Value>;

constexpr auto itemQuery =
    "Execute select c.FPropClsID,i.FPropItemID,'(' + c.FName + ')-' + i.FName as FName,'(' + c.FName_Cht + ')-' + "
    "i.FName_Cht as FName_Cht,'(' + c.FName_En + ')-' + i.FName_En as FName_En from t_Rpt_PropClass c inner join "
    "t_Rpt_PropItem i on c.FPropClsID = i.FPropClsID order by c.FPropClsID,i.FPropItemID ";

/// Keeps the lists that reach the data-flow component.
class KeepingDataFlow : public DataFlow {
 public:
  explicit KeepingDataFlow(std::vector<std::shared_ptr<ItemList>>& lists) : lists_(lists) {}
  void refreshSubFunc(const std::string&, std::int16_t, const std::shared_ptr<ItemList>& entries, bool first,
                      bool second) override {
    EXPECT_TRUE(first && second);
    lists_.push_back(entries);
  }
  void refreshDetailFunc(const std::string&, std::int16_t, const std::shared_ptr<ItemList>& entries, bool first,
                         bool second) override {
    EXPECT_TRUE(first && second);
    lists_.push_back(entries);
  }

 private:
  std::vector<std::shared_ptr<ItemList>>& lists_;
};

struct KeepingPlatform : RecordingPlatform {
  std::vector<std::shared_ptr<ItemList>> lists;
  std::shared_ptr<DataFlow> newDataFlow(const std::shared_ptr<Context>&) override {
    return std::make_shared<KeepingDataFlow>(lists);
  }
};

template <typename PlatformKind>
struct MenuRefreshOn : testing::Test {
  PlatformKind platform;
  std::shared_ptr<Context> context = platform.application()->getContext();
  Call call{context, context->getConnection()};

  MenuRefreshOn() { platform.log.clear(); }

  void items(std::vector<Record> rows) {
    platform.answer("select c.FPropClsID", {{"FPropClsID", "FPropItemID", "FName", "FName_Cht", "FName_En"}, rows});
  }
  void reports(const std::string& query, std::vector<Record> rows) {
    platform.answer(query, {{"FRptName", "FRptName_Cht", "FRptName_En"}, rows});
  }
  static Record item(std::int32_t standard, std::int32_t id, const std::string& name) {
    return {standard, id, name, name + "c", name + "e"};
  }
  static Record report(const std::string& name) { return {name, name + "c", name + "e"}; }
};
using MenuRefresh = MenuRefreshOn<RecordingPlatform>;
using MenuEntries = MenuRefreshOn<KeepingPlatform>;

/// "key=value" of every entry of a bag, in order.
std::vector<std::string> entriesOf(const Value& value) {
  const auto bag = value.objectAs<PropertyBag>();
  std::vector<std::string> result;
  for (std::int32_t i = 1; i <= bag->count(); ++i) {
    const Value item = bag->item(bag->name(i));
    const auto* flag = item.get<bool>();
    const auto* number = item.get<std::int32_t>();
    const auto* text = item.get<std::string>();
    result.push_back(bag->name(i) + "=" +
                     (flag     ? (*flag ? "True" : "False")
                      : number ? std::to_string(*number)
                               : *text));
  }
  return result;
}

TEST_F(MenuRefresh, WithoutItemsTheMenuIsLeftAlone) {
  refreshFuncMenu(platform, call);
  EXPECT_THAT(platform.log, ElementsAre(itemQuery));
}

TEST_F(MenuRefresh, RunsInOrderOverStandardsItemsAndReports) {
  items({item(1, 1, "(N)-own"), item(1, 3, "(N)-tpl"), item(1001, 5, "(D)-sales")});
  reports("select r.FRptName,r.FRptName_Cht,r.FRptName_En from t_Rpt_Content r where FRptType = 1",
          {report("Cash"), report("Bank")});
  reports("select r.FRptName,r.FRptName_Cht,r.FRptName_En from t_Rpt_Content r inner join", {report("Sales")});
  refreshFuncMenu(platform, call);
  EXPECT_THAT(
      platform.log,
      ElementsAre(
          itemQuery, "RefreshSubFunc call 7 [701 新建报表...; 702 (N)-own; 703 (N)-tpl; 704 (D)-sales]",
          "RefreshDetailFunc call 7 [704 新建报表文件]", "Filter FName = '新建报表...'", "Filter FName = '(N)-own'",
          "Execute select r.FRptName,r.FRptName_Cht,r.FRptName_En from t_Rpt_Content r where FRptType = 1  and F1 = 0  "
          "and F1001 = 0  order by r.FRptID ",
          "RefreshDetailFunc call 7 [70201 Cash; 70202 Bank]", "Filter FName = '(N)-tpl'",
          "Execute select r.FRptName,r.FRptName_Cht,r.FRptName_En from t_Rpt_Content r where FRptType = 3  order by "
          "r.FRptID ",
          "RefreshDetailFunc call 7 []", "Filter FName = '(D)-sales'",
          "Execute select r.FRptName,r.FRptName_Cht,r.FRptName_En from t_Rpt_Content r inner join t_Rpt_PropItem i on "
          "r.F1001 = i.FPropItemID where i.FPropItemID = 5 order by i.FPropItemID ",
          "RefreshDetailFunc call 7 [70401 Sales]"));
}

TEST_F(MenuRefresh, NatureItemFourListsWhatNoStandardFilesAndNotTheTemplates) {
  items({item(1, 4, "(N)-four")});
  refreshFuncMenu(platform, call);
  EXPECT_THAT(platform.statements().back(), testing::HasSubstr("where FRptType = 1  and F1 = 0  order by"));
}

TEST_F(MenuRefresh, EveryStandardIsExcludedOnce) {
  items({item(1, 1, "a"), item(1001, 5, "b"), item(1001, 6, "c"), item(1002, 7, "d")});
  refreshFuncMenu(platform, call);
  EXPECT_THAT(platform.statements()[1],
              testing::HasSubstr("where FRptType = 1  and F1 = 0  and F1001 = 0  and F1002 = 0  order by"));
}

TEST_F(MenuRefresh, ItemsOfOneCaptionBothShowTheFirstOnesReports) {
  items({item(1001, 5, "same"), item(1001, 6, "same")});
  refreshFuncMenu(platform, call);
  const auto sent = platform.statements();
  ASSERT_EQ(sent.size(), 3U);
  EXPECT_THAT(sent[1], testing::HasSubstr("FPropItemID = 5 "));
  EXPECT_THAT(sent[2], testing::HasSubstr("FPropItemID = 5 "));
}

TEST_F(MenuRefresh, AnErrorOfTheDataFlowComponentPasses) {
  items({item(1, 1, "a")});
  platform.fail("RefreshDetailFunc", AutomationError(oledb::unspecified, "flow", "no"));
  EXPECT_THROW(refreshFuncMenu(platform, call), AutomationError);
}

TEST_F(MenuRefresh, AnErrorOfAQueryPasses) {
  platform.fail("Execute", AutomationError(oledb::noTable, "Provider", "no"));
  EXPECT_THROW(refreshFuncMenu(platform, call), AutomationError);
}

TEST_F(MenuEntries, TheFirstEntryIsTheNewReport) {
  items({item(1, 1, "a")});
  refreshFuncMenu(platform, call);
  EXPECT_THAT(
      entriesOf(platform.lists[0]->item(1)),
      ElementsAre("FSubFuncID=701", "FFuncName=新建报表...", "FFuncName_Cht=新建報表...", "FFuncName_En=New Report...",
                  "FClassName=PirglView.GLData", "FClassParam=", "FRefresh=True"));
}

TEST_F(MenuEntries, ItemsAndReportsHaveTheirCaptionsDoubledInThreeLanguages) {
  items({item(1, 1, "(N)-o'n")});
  reports("select r.", {report("Br'en")});
  refreshFuncMenu(platform, call);
  ASSERT_EQ(platform.lists.size(), 3U);
  EXPECT_THAT(entriesOf(platform.lists[0]->item(2)),
              ElementsAre("FSubFuncID=702", "FFuncName=(N)-o''n", "FFuncName_Cht=(N)-o''nc", "FFuncName_En=(N)-o''ne",
                          "FClassName=PirglView.GLData", "FClassParam=", "FRefresh=True"));
  EXPECT_THAT(entriesOf(platform.lists[2]->item(1)),
              ElementsAre("FSubFuncID=70201", "FFuncName=Br''en", "FFuncName_Cht=Br''enc", "FFuncName_En=Br''ene",
                          "FClassName=NorvRpt.Application", "FClassParam=Other"));
}

TEST_F(MenuEntries, TheOtherListTakesTheLastItemsNumberAndHasNoRefreshFlag) {
  items({item(1, 1, "a"), item(1, 2, "b")});
  refreshFuncMenu(platform, call);
  ASSERT_EQ(platform.lists[1]->count(), 1);
  EXPECT_THAT(entriesOf(platform.lists[1]->item(1)),
              ElementsAre("FSubFuncID=703", "FFuncName=新建报表文件", "FFuncName_Cht=新建報表檔案",
                          "FFuncName_En=New Report Doc", "FClassName=NorvRpt.Application", "FClassParam=Other"));
}

TEST_F(MenuEntries, ACaptionThatIsNullIsEmpty) {
  items({{std::int32_t{1}, std::int32_t{1}, "a", Null{}, Null{}}});
  refreshFuncMenu(platform, call);
  EXPECT_THAT(entriesOf(platform.lists[0]->item(2)), testing::IsSupersetOf({"FFuncName_Cht=", "FFuncName_En="}));
}

}  // namespace
}  // namespace tolvane::test
