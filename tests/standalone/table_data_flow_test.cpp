#include "standalone/table_data_flow.h"

#include <gtest/gtest.h>

#include "standalone/fake_engine.h"
#include "standalone/objects.h"

namespace tolvane::standalone {
namespace {

std::shared_ptr<Dictionary> entry(std::int32_t id, const std::string& caption, const std::string& className = "A.B") {
  auto bag = std::make_shared<Dictionary>();
  bag->set("FSubFuncID", id);
  bag->set("FFuncName", caption);
  bag->set("FFuncName_Cht", caption + "t");
  bag->set("FFuncName_En", caption + "e");
  bag->set("FClassName", className);
  bag->set("FClassParam", "p");
  return bag;
}

std::shared_ptr<ItemList> listOf(std::initializer_list<std::shared_ptr<Dictionary>> entries) {
  auto list = std::make_shared<List>();
  for (const auto& bag : entries) list->add(bag);
  return list;
}

class TableDataFlowTest : public ::testing::Test {
 protected:
  std::vector<std::string> subFunc(const std::shared_ptr<ItemList>& entries) {
    flow_.refreshSubFunc("17", 7, entries, true, true);
    return engine_.script->log;
  }
  std::vector<std::string> detailFunc(const std::shared_ptr<ItemList>& entries) {
    flow_.refreshDetailFunc("17", 7, entries, true, true);
    return engine_.script->log;
  }

  testing::FakeEngine engine_;
  TableDataFlow flow_{engine_.open(DataSourceName::parse("Database=x"))};
};

TEST_F(TableDataFlowTest, ReplacesTheSubFunctionsAndWhatHungUnderThem) {
  const auto bag = entry(701, "new");
  bag->set("FRefresh", true);
  const auto log = subFunc(listOf({bag, entry(702, "item")}));
  ASSERT_EQ(log.size(), 4U);
  EXPECT_EQ(log[0], "delete from t_LocalDetailFunc where FSystem = 7");
  EXPECT_EQ(log[1], "delete from t_LocalSubFunc where FSystem = 7");
  EXPECT_EQ(log[2],
            "insert into t_LocalSubFunc (FArg, FSystem, FIndex, FSubFuncID, FFuncName, FFuncName_Cht, FFuncName_En, "
            "FClassName, FClassParam, FRefresh) values (N'17', 7, 1, 701, N'new', N'newt', N'newe', N'A.B', N'p', 1)");
  EXPECT_TRUE(log[3].ends_with("(N'17', 7, 2, 702, N'item', N'itemt', N'iteme', N'A.B', N'p', 0)")) << log[3];
}

TEST_F(TableDataFlowTest, HangsEntriesUnderTheirSubFunction) {
  const auto log = detailFunc(listOf({entry(70201, "a"), entry(70202, "b")}));
  ASSERT_EQ(log.size(), 3U);
  EXPECT_EQ(log[0], "delete from t_LocalDetailFunc where FSystem = 7 and FSubFuncID = 702");
  EXPECT_EQ(
      log[1],
      "insert into t_LocalDetailFunc (FArg, FSystem, FSubFuncID, FIndex, FDetailFuncID, FFuncName, FFuncName_Cht, "
      "FFuncName_En, FClassName, FClassParam, FRefresh) values (N'17', 7, 702, 1, 70201, N'a', N'at', N'ae', "
      "N'A.B', N'p', 0)");
}

TEST_F(TableDataFlowTest, MoreThanAHundredEntriesStayUnderTheirSubFunction) {
  auto list = std::make_shared<List>();
  for (std::int32_t i = 1; i <= 101; ++i) list->add(entry(70200 + i, "r"));
  EXPECT_NE(detailFunc(list).back().find("7, 702, 101, 70301,"), std::string::npos);
}

TEST_F(TableDataFlowTest, TheOtherEntryHangsUnderTheFirstSubFunction) {
  const auto log = detailFunc(listOf({entry(705, "Other")}));
  EXPECT_EQ(log[0], "delete from t_LocalDetailFunc where FSystem = 7 and FSubFuncID = 701");
}

TEST_F(TableDataFlowTest, AnEmptyListNamesNoSubFunction) {
  EXPECT_TRUE(detailFunc(listOf({})).empty());
}

TEST_F(TableDataFlowTest, TextsGoIntoTheStatementAsTheyArrive) {
  const auto log = subFunc(listOf({entry(701, "O''Brien", "A.'B")}));
  EXPECT_NE(log.back().find("N'O''Brien', N'O''Brient'"), std::string::npos);
  EXPECT_NE(log.back().find("N'A.'B'"), std::string::npos);
}

}  // namespace
}  // namespace tolvane::standalone
