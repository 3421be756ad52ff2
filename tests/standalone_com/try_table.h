// A table to try record sets on.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "standalone_com/client.h"

namespace tolvane::standalone_com::testing {

/// t_Try has three rows: 1 "资产" 12.5, 2 "b" without amount, 3 "c" 7.
class TryTable : public ::testing::Test {
 protected:
  static constexpr int keyset = 1;
  static constexpr int optimistic = 3;

  void SetUp() override {
    tryOut_.run(
        "create table t_Try (FID int not null identity(1,1), FName nvarchar(10) null, FAmount money null, "
        "FData image null, FNote ntext null, constraint PK_t_Try primary key (FID))");
    tryOut_.run("insert into t_Try (FName, FAmount) values (N'资产', 12.5)");
    tryOut_.run("insert into t_Try (FName) values (N'b')");
    tryOut_.run("insert into t_Try (FName, FAmount) values (N'c', 7)");
  }

  [[nodiscard]] const Client& connection() const { return tryOut_.connection(); }
  /// A set that can be written to.
  [[nodiscard]] Client opened(const std::string& sql = "Select * From t_Try Order By FID") const {
    const Client set = Client::create("Recordset");
    (void)set.get(L"Open", sql, connection(), keyset, optimistic);
    return set;
  }
  [[nodiscard]] static Value valueOf(const Client& set, const char* field) {
    return set.object(L"Fields", field).get(L"Value");
  }

  TryOut tryOut_;
};

}  // namespace tolvane::standalone_com::testing
