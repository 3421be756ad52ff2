#include "frame/sql_text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace tolvane::test {
namespace {

TEST(SqlText, FragmentsKeepTheirBlanks) {
  EXPECT_EQ(sql("Select * ", " From t ", "", std::string("Where ")), "Select *  From t Where ");
}

TEST(SqlText, IntegersAreDecimalTextWithoutBlanks) {
  EXPECT_EQ(sql("F=", std::int32_t{7}, ",", std::int32_t{-7}, ",", std::int32_t{0}), "F=7,-7,0");
  EXPECT_EQ(sql(std::int16_t{-32768}, " ", std::int16_t{32767}), "-32768 32767");
  EXPECT_EQ(sql(std::numeric_limits<std::int32_t>::min()), "-2147483648");
  EXPECT_EQ(sql(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
  EXPECT_EQ(sql(std::numeric_limits<std::uint64_t>::max()), "18446744073709551615");
}

TEST(SqlText, TextsAreNotEscaped) {
  EXPECT_EQ(sql("='", "O'Brien", "'"), "='O'Brien'");
}

TEST(SqlText, DoublingTakesEveryApostrophe) {
  const std::pair<const char*, const char*> table[] = {{"", ""},    {"Cash", "Cash"}, {"O'Brien", "O''Brien"},
                                                       {"'", "''"}, {"''", "''''"},   {"'报'表'", "''报''表''"}};
  for (const auto& [text, expected] : table) EXPECT_EQ(doubled(text), expected);
}

}  // namespace
}  // namespace tolvane::test
