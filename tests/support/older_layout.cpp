#include "support/older_layout.h"

#include <fstream>

#include "frame/sql_text.h"

namespace tolvane::test {

void addOlderTables(AccountSet& set) {
  std::ifstream script(std::string(TOLVANE_SOURCE_DIR) + "/schema/older_cs.sql");
  ASSERT_TRUE(script.good());
  std::string batch;
  for (std::string line; std::getline(script, line);) {
    if (line != "GO") {
      batch += line + "\n";
      continue;
    }
    set.sql(batch);
    batch.clear();
  }
}

void addOlderLayout(AccountSet& set, std::int32_t groups, std::int32_t statements, std::int32_t values) {
  addOlderTables(set);
  for (std::int32_t group = 1; group <= groups; ++group) {
    set.sql(
        sql("insert into t_Rpt_CsRptGroup (FRptGroupID, FRptGroupNum, FRptGroupName, FCycleID, FBaseRptStyle) "
            "values (",
            group, ",'P", group, "','Old ", group, "',3,7)"));
    set.sql(sql("insert into t_Rpt_CsRptItem (FRptGroupID, FItemNum) values (", group, ",'I", group, "')"));
    for (std::int32_t i = 1; i <= statements; ++i) {
      set.sql(sql("insert into t_Rpt_CsRptContent (FRptGroupName, FYear, FPeriod, FRptContent) values ('Old ", group,
                  "',2011,", i, ",0x4142)"));
    }
    for (std::int32_t i = 1; i <= values; ++i) {
      set.sql(sql("insert into t_Rpt_CsRptItemData (FItemNum, FYear, FPeriod, FAmount) values ('I", group, "',2011,", i,
                  ",12.5)"));
    }
  }
}

}  // namespace tolvane::test
