#include "host/text_table.h"

#include <gtest/gtest.h>

#include <sstream>

namespace tolvane::host {
namespace {

std::string printed(const TextTable& table) {
  std::ostringstream out;
  table.print(out);
  return out.str();
}

TEST(TextTableTest, AlignsNumbersRightAndCountsWideCharactersTwice) {
  TextTable table({"FRptID", "FName", "F"});
  table.addRow({{"1", true, false}, {"报表", false, false}, {"x", false, false}});
  table.addRow({{"NULL", false, true}, {"a", false, false}, {"y", false, false}});
  EXPECT_EQ(printed(table),
            "FRptID  FName  F\n"
            "------  -----  -\n"
            "     1  报表   x\n"
            "  NULL  a      y\n"
            "(2 rows)\n");
}

TEST(TextTableTest, PrintsTheColumnsOfAnEmptyResult) {
  EXPECT_EQ(printed(TextTable({"a", "b"})), "a  b\n-  -\n(0 rows)\n");
}

TEST(TextTableTest, KeepsEachRowOnItsLine) {
  TextTable table({"a"});
  table.addRow({{"x\ny", false, false}});
  EXPECT_EQ(printed(table), "a\n----\nx\\ny\n(1 row)\n");
}

}  // namespace
}  // namespace tolvane::host
