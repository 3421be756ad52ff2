#include "standalone_com/suite_components.h"

#include <gtest/gtest.h>

#include "automation/text.h"
#include "standalone_com/client.h"

namespace tolvane::standalone_com {
namespace {

using automation::Variant;
using testing::Client;
using testing::errorOf;
using testing::TryOut;

Client listWithOneEntry() {
  const Client entry = Client::create("Dictionary");
  entry.put(L"Item", "FSubFuncID", 701);
  for (const char* key : {"FFuncName", "FFuncName_Cht", "FFuncName_En", "FClassName", "FClassParam"}) {
    entry.put(L"Item", key, "新建");
  }
  const Client list = Client::create("Vector");
  list.get(L"Add", entry);
  return list;
}

TEST(SuiteComponentsTest, SecurityAnswersForTheDataSourceThatTheThreadOpened) {
  const TryOut tryOut;
  const Client security = Client::create("Security");
  EXPECT_EQ(security.get(L"GetCurrentUserID", "5"), Value(std::int16_t{5}));
  tryOut.run("insert into t_User (FUserID) values (5)");
  EXPECT_EQ(security.get(L"IsAdministrator", "1"), Value(true));
  EXPECT_EQ(security.get(L"IsAdministrator", "5"), Value(false));
}

TEST(SuiteComponentsTest, AccessCheckTakesItsNumbersByReference) {
  const TryOut tryOut;
  std::int32_t type = 50;
  std::int32_t object = 0;
  std::int32_t mask = 0x8000000;
  automation::Bstr source(std::string_view("Tolvane.SrvRptRetrieve"));
  EXPECT_EQ(Client::create("Security")
                .get(L"AccessCheck", "1", Variant::reference(type), Variant::reference(object),
                     Variant::reference(mask), true, Variant::reference(source.reference())),
            Value(true));
}

TEST(SuiteComponentsTest, SecurityNeedsADataSource) {
  EXPECT_EQ(errorOf([] { Client::create("Security").get(L"IsAdministrator", "1"); }).substr(0, 8), "800A005B");
}

TEST(SuiteComponentsTest, TheLoaderTranslatesByItsLanguagesFile) {
  const Client loader = Client::create("Loader");
  loader.put(L"ResFileBaseName", "ebo");
  loader.put(L"LanguageID", "en");
  EXPECT_EQ(loader.get(L"ResFileBaseName"), Value("ebo"));
  EXPECT_EQ(loader.get(L"LanguageID"), Value("en"));
  EXPECT_NE(loader.get(L"LoadString", "报表名称不得为空字符串"), Value("报表名称不得为空字符串"));
  EXPECT_EQ(loader.get(L"LoadString", "no such text"), Value("no such text"));
  loader.get(L"Unload");
}

TEST(SuiteComponentsTest, TheDataFlowWorksInTheHostsTransaction) {
  const TryOut tryOut;
  const Client flow = Client::create("DataFlow");
  (void)tryOut.application().get(L"BeginCall", 2);
  (void)tryOut.application().object(L"GetContext").get(L"OpenDataSource", tryOut.dsn());
  flow.get(L"RefreshSubFunc", "1", std::int16_t{7}, listWithOneEntry(), true, true);
  EXPECT_EQ(tryOut.asked("Select FFuncName From t_LocalSubFunc"), Value("新建"));
  (void)tryOut.application().get(L"AbortCall");
  EXPECT_EQ(tryOut.asked("Select Count(*) From t_LocalSubFunc"), Value(0));
}

TEST(SuiteComponentsTest, TheDataFlowNeedsADataSource) {
  const Client flow = Client::create("DataFlow");
  EXPECT_EQ(errorOf([&] { flow.get(L"RefreshDetailFunc", "", 7, listWithOneEntry(), true, true); }).substr(0, 8),
            "800A005B");
}

TEST(SuiteComponentsTest, TheDataFlowNeedsAList) {
  const TryOut tryOut;
  const Client flow = Client::create("DataFlow");
  EXPECT_EQ(errorOf([&] { flow.get(L"RefreshDetailFunc", "", 7, 5, true, true); }).substr(0, 8), "800A01A8");
  EXPECT_EQ(errorOf([&] { flow.get(L"RefreshDetailFunc", "", 7); }).substr(0, 8), "800A01C1");
  EXPECT_EQ(errorOf([&] { flow.get(L"RefreshDetailFunc", "", 7, tryOut.application(), true, true); }).substr(0, 8),
            "800A01B6");
}

}  // namespace
}  // namespace tolvane::standalone_com
