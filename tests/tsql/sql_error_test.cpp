#include "tsql/sql_error.h"

#include <gtest/gtest.h>

namespace tolvane::tsql {
namespace {

TEST(SqlError, CarriesNumberSeverityAndFilledInText) {
  const SqlError error = sqlError(Message::ConversionFailed, {"varchar", "12.5", "int"});
  EXPECT_EQ(error.number(), 245);
  EXPECT_EQ(severityOf(Message::ConversionFailed), 16);
  EXPECT_STREQ(error.what(), "Conversion failed when converting the varchar value '12.5' to data type int.");
}

TEST(SqlError, InsertsAreNotSearchedForPlaceholders) {
  EXPECT_STREQ(sqlError(Message::InvalidColumn, {"%1"}).what(), "Invalid column name '%1'.");
}

TEST(SqlError, EveryMessageHasItsNumberAndNoPlaceholderLeft) {
  for (int i = 0; i < static_cast<int>(Message::Count_); ++i) {
    const SqlError error = sqlError(static_cast<Message>(i), {"a", "b", "c", "d"});
    EXPECT_GT(error.number(), 100) << error.what();
    EXPECT_EQ(std::string(error.what()).find('%'), std::string::npos) << error.what();
  }
}

}  // namespace
}  // namespace tolvane::tsql
