#include "tsql/sql_error.h"

#include <gtest/gtest.h>

namespace tolvane::tsql {
namespace {

TEST(SqlError, CarriesNumberSeverityAndFilledInText) {
  const SqlError error(Message::ConversionFailed, {"varchar", "12.5", "int"});
  EXPECT_EQ(error.number(), 245);
  EXPECT_EQ(error.severity(), 16);
  EXPECT_EQ(error.message(), "Conversion failed when converting the varchar value '12.5' to data type int.");
}

TEST(SqlError, InsertsAreNotSearchedForPlaceholders) {
  EXPECT_EQ(SqlError(Message::InvalidColumn, {"%1"}).message(), "Invalid column name '%1'.");
}

TEST(SqlError, EveryMessageHasItsNumberAndNoPlaceholderLeft) {
  for (int i = 0; i < static_cast<int>(Message::Count_); ++i) {
    const SqlError error(static_cast<Message>(i), {"a", "b", "c", "d"});
    EXPECT_GT(error.number(), 100) << error.message();
    EXPECT_EQ(error.message().find('%'), std::string::npos) << error.message();
  }
}

}  // namespace
}  // namespace tolvane::tsql
