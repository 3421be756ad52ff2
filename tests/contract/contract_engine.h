// What the shared data-access tests ask of an engine: a connection to a fresh database, and in what it may differ.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "platform/calendar.h"
#include "platform/conversions.h"
#include "platform/engine.h"
#include "platform/error.h"

namespace tolvane::contract {

/// In what engines differ where both are right. Tests ask these facts and never an engine's name.
struct Deviations {
  /// A query's error in a later row is raised when that row is reached; otherwise by the execution at once.
  bool laterRowsFailLate = false;
  /// After posting a new row the defaults of its other columns can be read without reading anew.
  bool defaultsReadableAfterPosting = false;
  /// The database takes T-SQL's functions and batches and answers with SQL Server's numbers and words. Where not, the
  /// tests of those are for other engines.
  bool speaksTransactSql = true;
  /// Errors have SQL Server's own numbers and words. Servers that speak T-SQL over another database's engine may have
  /// numbers and words of their own; ADO's number is the same.
  bool errorsAreSqlServers = true;
  /// The database has SQL Server's column types.
  bool hasSqlServerTypes = true;
  /// Several statements are sent as one text.
  bool takesBatches = true;
  /// After an error in a transaction nothing is sent but the rollback, since the server may have undone the transaction
  /// already.
  bool errorsEndTransactions = false;
  /// Errors bring the server's own number and the text that was sent, and the connection counts them. Automation hands
  /// on what ADO shows, and no more.
  bool tellsDatabaseDetail = true;
};

/// Keeps whatever a fresh database needs for as long as a test runs.
class ContractEngine {
 public:
  virtual ~ContractEngine() = default;
  /// A connection to the test's own database, which is empty; another call gives another connection to the same one.
  [[nodiscard]] virtual std::shared_ptr<EngineConnection> connect() = 0;
  [[nodiscard]] virtual Deviations deviations() const = 0;
  /// A test's statement in the database's own language.
  [[nodiscard]] virtual std::string sql(const std::string& transactSql) const { return transactSql; }
  /// The table that the tests are about.
  [[nodiscard]] virtual std::string peopleTable() const {
    return "create table People (Id int identity(1,1) not null, Name nvarchar(20) not null, Age int null,"
           " Born datetime null, Pay money null, Rate decimal(10,4) null, Active bit null default (1),"
           " Small smallint null, Tiny tinyint null, Big bigint null, Half real null, Whole float null,"
           " Note ntext null, Photo image null, Code varbinary(8) null, Mark uniqueidentifier null,"
           " constraint PK_People primary key (Id))";
  }
};

/// Ends a test that asks for what the engine's database is not: the fact's name and why.
#define TOLVANE_ASKS_FOR(fact) \
  if (!engine_->deviations().fact) GTEST_SKIP() << "asks for " #fact ", which this engine's database has not"

struct ContractParameter {
  std::string name;
  std::function<std::unique_ptr<ContractEngine>()> make;
};
/// How listings of the tests show it.
inline void PrintTo(const ContractParameter& parameter, std::ostream* out) {
  *out << parameter.name;
}

class DataAccessContract : public ::testing::TestWithParam<ContractParameter> {
 protected:
  DataAccessContract() : engine_(GetParam().make()), connection_(engine_->connect()) {
    run(engine_->peopleTable());
    run("create unique index UX_People_Name on People (Name)");
  }

  void addThree() {
    run("insert into People (Name, Age) values (N'Ann', 30)");
    run("insert into People (Name, Age) values (N'Bob', 40)");
    run("insert into People (Name, Age) values (N'Cid', null)");
  }

  std::shared_ptr<Recordset> run(const std::string& sql) { return connection_->execute(engine_->sql(sql)); }

  std::shared_ptr<Recordset> opened(const std::string& source, LockType lock = LockType::optimistic) {
    auto rows = connection_->newRecordset();
    rows->open(source, CursorType::keyset, lock);
    return rows;
  }

  /// The first value of the first row as text, "NULL" for Null.
  std::string scalar(const std::string& sql) {
    const auto rows = run(sql);
    const auto value = rows->value(std::size_t{0});
    return value.isNull() ? "NULL" : toText(value);
  }

  /// A column's texts from the current row on.
  static std::vector<std::string> rest(Recordset& rows, std::string_view column) {
    std::vector<std::string> texts;
    for (; !rows.eof(); rows.moveNext()) texts.push_back(toText(rows.value(column)));
    return texts;
  }

  std::unique_ptr<ContractEngine> engine_;
  std::shared_ptr<EngineConnection> connection_;
};

/// The error that `work` must end with.
template <typename Work>
AutomationError errorOf(Work&& work) {
  try {
    work();
  } catch (const AutomationError& error) {
    return error;
  }
  ADD_FAILURE() << "no error was raised";
  return {0, "", ""};
}

template <typename Work>
void expectAdo(AdoError expected, Work&& work) {
  const auto error = errorOf(std::forward<Work>(work));
  EXPECT_EQ(error.number(), errorNumber(expected)) << error.description();
  EXPECT_EQ(error.description(), errorText(expected));
}

template <typename Work>
void expectDatabase(std::uint32_t expected, Work&& work) {
  const auto error = errorOf(std::forward<Work>(work));
  EXPECT_EQ(error.number(), expected) << error.description();
}

inline Bytes documentOf(std::size_t size) {
  return Bytes::filled(size, [](std::span<std::uint8_t> to) {
    for (std::size_t i = 0; i < to.size(); ++i) to[i] = static_cast<std::uint8_t>(i * 31 + i / 256);
  });
}

}  // namespace tolvane::contract
