// A database of its own for a test, on a server that speaks TDS and lives as long as the test program.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "odbc/odbc_engine.h"
#include "platform/conversions.h"
#include "platform/error.h"
#include "tds_server/tds_server.h"

namespace tolvane::odbc {

inline std::shared_ptr<EngineConnection> openedSource(const std::string& dsn) {
  return OdbcEngine().open(DataSourceName::parse(dsn));
}

/// The error that `work` must end with.
template <typename Work>
AutomationError raisedBy(Work&& work) {
  try {
    work();
  } catch (const AutomationError& error) {
    return error;
  }
  ADD_FAILURE() << "no error was raised";
  return {0, "", ""};
}

class TdsDatabaseTest : public ::testing::Test {
 protected:
  TdsDatabaseTest() {
    server().state().createDatabase(name_);
    connect();
    run("create table v (k int identity(1,1) not null, a int null, c nvarchar(20) null, x ntext null, z image null,"
        " constraint PK_v primary key (k))");
    (void)server().state().takeTexts();
  }
  ~TdsDatabaseTest() override {
    server().state().imitate({});
    connection_.reset();
    server().state().dropDatabase(name_);
  }

  static tds::TdsServer& server() {
    static tds::TdsServer one;
    return one;
  }
  [[nodiscard]] std::string dsn(const std::string& more = {}) const { return server().dsn(name_, more); }
  void connect() { connection_ = openedSource(dsn()); }

  std::shared_ptr<Recordset> run(const std::string& sql) { return connection_->execute(sql); }
  std::string scalar(const std::string& sql) {
    const auto value = run(sql)->value(std::size_t{0});
    return value.isNull() ? "NULL" : toText(value);
  }
  std::shared_ptr<Recordset> opened(const std::string& source) {
    auto rows = connection_->newRecordset();
    rows->open(source, CursorType::keyset, LockType::optimistic);
    return rows;
  }

  std::string name_ = "test" + std::to_string(++count_);
  std::shared_ptr<EngineConnection> connection_;

 private:
  static inline int count_ = 0;
};

}  // namespace tolvane::odbc
