#include "frame/result_forms.h"

#include <gmock/gmock.h>

#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

struct ResultForms : testing::Test {
  RecordingPlatform platform;
  std::shared_ptr<Connection> connection = platform.application()->getContext()->getConnection();

  std::shared_ptr<Recordset> rows() {
    platform.answer("Select", {{"FRptID", "FRptName"}, {{std::int32_t{1}, "Cash"}, {std::int32_t{2}, Null{}}}});
    return connection->execute("Select");
  }
};

TEST_F(ResultForms, ABagHoldsTheFieldsInTheirOrder) {
  const auto bag = propertyBag(platform, *rows());
  ASSERT_EQ(bag->count(), 2);
  EXPECT_EQ(bag->name(1), "FRptID");
  EXPECT_EQ(bag->name(2), "FRptName");
  EXPECT_EQ(bag->item("FRptName"), Value("Cash"));
}

TEST_F(ResultForms, ANullFieldIsAnEntryWithANullValue) {
  const auto set = rows();
  set->moveNext();
  const auto bag = propertyBag(platform, *set);
  EXPECT_EQ(bag->count(), 2);
  EXPECT_EQ(bag->item("FRptName"), Value(Null{}));
}

TEST_F(ResultForms, ABagLeavesTheRecordSetWhereItStands) {
  const auto set = rows();
  (void)propertyBag(platform, *set);
  EXPECT_EQ(set->value("FRptID"), Value(std::int32_t{1}));
}

TEST_F(ResultForms, ARowListHasABagForEveryRow) {
  const auto set = rows();
  const auto list = rowList(platform, *set);
  ASSERT_EQ(list->count(), 2);
  EXPECT_EQ(list->item(2).objectAs<PropertyBag>()->item("FRptID"), Value(std::int32_t{2}));
  EXPECT_TRUE(set->eof());
}

TEST_F(ResultForms, ARowListBeginsAtTheCurrentRow) {
  const auto set = rows();
  set->moveNext();
  EXPECT_EQ(rowList(platform, *set)->count(), 1);
}

TEST_F(ResultForms, ARowListWithoutRowsIsAnEmptyListNotNothing) {
  const auto list = rowList(platform, *connection->execute("none"));
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->count(), 0);
}

TEST_F(ResultForms, ADetachedRecordSetStaysReadable) {
  const auto set = detached(rows());
  EXPECT_EQ(set->value("FRptName"), Value("Cash"));
  EXPECT_EQ(platform.log.back(), "Detach");
}

}  // namespace
}  // namespace tolvane::test
