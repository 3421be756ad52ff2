// A fresh account set with verbs of the report store.
#pragma once

#include <gmock/gmock.h>

#include <string>

#include "frame/sql_text.h"
#include "platform/conversions.h"
#include "support/account_set.h"

namespace tolvane::test {

class ReportStore : public testing::Test {
 protected:
  AccountSet set;

  /// Saves a report as the present caller; its identifier.
  std::int32_t save(const std::string& name, std::int32_t type = 1, const Value& document = bytes("doc"),
                    std::int32_t owner = 1) {
    return *set.result("SrvRptUpdate.SavePlxToSrv", {{"sSysName", "报表系统"},
                                                     {"sRptName", name},
                                                     {"vPlx", document},
                                                     {"lOwner", owner},
                                                     {"lRptType", type}})
                .get<std::int32_t>();
  }
  void grant(std::int32_t report, std::int32_t user, std::int32_t code) {
    set.sql(sql("Insert Into t_Rpt_Right Values (", report, ",", user, ",", code, ")"));
  }
  void put(std::int32_t report, const std::string& assignment) {
    set.sql(sql("Update t_Rpt_Content Set ", assignment, " Where FRptID=", report));
  }
  /// The report's column as text.
  std::string field(std::int32_t report, const std::string& column) {
    return set.rows(sql("Select ", column, " From t_Rpt_Content Where FRptID=", report)).at(0);
  }
  std::int32_t count(const std::string& fromWhere) { return toInt32(set.value("Select Count(*) From " + fromWhere)); }
};

}  // namespace tolvane::test
