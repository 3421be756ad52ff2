// A fresh account set with verbs of report classification.
#pragma once

#include <gmock/gmock.h>

#include <string>

#include "frame/sql_text.h"
#include "platform/conversions.h"
#include "support/account_set.h"

namespace tolvane::test {

/// The shipped schema holds the nature standard 1 (items 1 to 3) and the accounting regimes 1001 (items 123 to 125).
class ClassificationStore : public testing::Test {
 protected:
  AccountSet set;

  Value createStandard(const std::string& name) {
    return set.result("RptPropItemClassUpdate.Create", {{"Properties", bag({{"FName", name}})}});
  }
  Value createItem(std::int32_t standard, const std::string& number, const std::string& name) {
    return set.result("RptPropItemUpdate.Create",
                      {{"PropClsID", standard}, {"Properties", bag({{"FNumber", number}, {"FName", name}})}});
  }
  std::int32_t save(const std::string& name, std::int32_t type = 1) {
    return *set.result("SrvRptUpdate.SavePlxToSrv", {{"sSysName", "报表系统"},
                                                     {"sRptName", name},
                                                     {"vPlx", bytes("doc")},
                                                     {"lOwner", 1},
                                                     {"lRptType", type}})
                .get<std::int32_t>();
  }
  void file(std::int32_t report, std::int32_t standard, std::int32_t item) {
    set.call("SrvRptUpdate.SetReportProp", {{"lRptID", report}, {"Properties", bag({{sql(standard), item}})}});
  }
  std::int32_t count(const std::string& fromWhere) { return toInt32(set.value("Select Count(*) From " + fromWhere)); }
  bool hasColumn(const std::string& column) {
    return count("syscolumns c,sysobjects o Where c.Id=o.Id And c.name='" + column + "' And o.name='t_Rpt_Content'") ==
           1;
  }
  std::vector<std::string> menu() {
    return set.rows("Select FSubFuncID,FFuncName From t_LocalSubFunc Order By FSubFuncID");
  }
  /// From here on the menu's store refuses every change.
  void breakTheMenu() { set.sql("Drop Table t_LocalDetailFunc"); }
};

}  // namespace tolvane::test
