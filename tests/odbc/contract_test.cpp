// The shared data-access tests through ODBC: on SQLite's and PostgreSQL's drivers, and on the server that
// TOLVANE_TEST_DSN names.
#include <regex>

#include "contract/connection_contract.h"
#include "contract/recordset_contract.h"
#include "odbc/odbc_engine.h"
#include "odbc/postgresql_server.h"
#include "odbc/sqlite_file.h"
#include "support/server_database.h"

namespace tolvane::contract {
namespace {

using odbc::PostgreSqlServer;

std::string replaced(std::string text, const std::string& pattern, const std::string& by) {
  return std::regex_replace(text, std::regex(pattern), by);
}

class SqliteContractEngine final : public ContractEngine {
 public:
  std::shared_ptr<EngineConnection> connect() override {
    return odbc::OdbcEngine().open(DataSourceName::parse(file_.dsn()));
  }
  [[nodiscard]] Deviations deviations() const override {
    return {
        .speaksTransactSql = false, .hasSqlServerTypes = false, .takesBatches = false, .errorsEndTransactions = true};
  }
  [[nodiscard]] std::string sql(const std::string& transactSql) const override {
    auto text = replaced(transactSql, "N'", "'");
    text = replaced(text, "0x([0-9A-F]+)", "x'$1'");
    text = replaced(text, "'20050131'", "'2005-01-31 00:00:00'");
    return replaced(text, "datalength", "length");
  }
  [[nodiscard]] std::string peopleTable() const override {
    return "create table People (Id integer primary key autoincrement, Name nvarchar(20) collate nocase not null,"
           " Age int null, Born datetime null, Pay decimal(19,4) null, Rate decimal(10,4) null,"
           " Active bit null default (1), Small smallint null, Tiny tinyint null, Big bigint null, Half real null,"
           " Whole double null, Note longvarchar null, Photo longvarbinary null, Code varbinary(8) null,"
           " Mark varchar(40) null)";
  }

 private:
  odbc::SqliteFile file_;
};

class PostgreSqlContractEngine final : public ContractEngine {
 public:
  PostgreSqlContractEngine() {
    if (!PostgreSqlServer::instance().why().empty()) return;
    connect()->execute("drop schema public cascade; create schema public");
  }
  std::shared_ptr<EngineConnection> connect() override {
    return odbc::OdbcEngine().open(DataSourceName::parse(PostgreSqlServer::instance().dsn()));
  }
  [[nodiscard]] Deviations deviations() const override {
    return {.defaultsReadableAfterPosting = true,
            .speaksTransactSql = false,
            .hasSqlServerTypes = false,
            .errorsEndTransactions = true};
  }
  [[nodiscard]] std::string sql(const std::string& transactSql) const override {
    auto text = replaced(transactSql, "N'", "'");
    text = replaced(text, "0x([0-9A-F]+)", "'\\x$1'");
    return replaced(text, "datalength", "octet_length");
  }
  [[nodiscard]] std::string peopleTable() const override {
    return "create table People (Id serial not null, Name varchar(20) not null, Age int null,"
           " Born timestamp null, Pay numeric(19,4) null, Rate numeric(10,4) null, Active boolean null default true,"
           " Small smallint null, Tiny smallint null, Big bigint null, Half real null, Whole float null,"
           " Note text null, Photo bytea null, Code bytea null, Mark uuid null,"
           " constraint PK_People primary key (Id))";
  }
};

/// A database of its own on a server that speaks TDS, as TOLVANE_TEST_DSN names it.
class ServerContractEngine final : public ContractEngine {
 public:
  ServerContractEngine() {
    const auto error = errorOf([&] { connect()->execute("select * from Nowhere"); });
    isSqlServer_ = error.description() == "Invalid object name 'Nowhere'.";
  }
  std::shared_ptr<EngineConnection> connect() override {
    return odbc::OdbcEngine().open(DataSourceName::parse(database_.dsn()));
  }
  [[nodiscard]] Deviations deviations() const override {
    return {.errorsAreSqlServers = isSqlServer_, .errorsEndTransactions = true};
  }

 private:
  test::ServerDatabase database_;
  bool isSqlServer_ = true;
};

template <typename Engine>
std::unique_ptr<ContractEngine> make() {
  return std::make_unique<Engine>();
}

std::string nameOf(const ::testing::TestParamInfo<ContractParameter>& tested) {
  return tested.param.name;
}

std::vector<ContractParameter> postgreSqlIfThere() {
  if (!PostgreSqlServer::isInstalled()) return {};
  return {{"PostgreSql", make<PostgreSqlContractEngine>}};
}

std::vector<ContractParameter> serverIfNamed() {
  if (!test::ServerDatabase::isNamed()) return {};
  return {{"Server", make<ServerContractEngine>}};
}

INSTANTIATE_TEST_SUITE_P(Sqlite, DataAccessContract,
                         ::testing::Values(ContractParameter{"Sqlite", make<SqliteContractEngine>}), nameOf);
INSTANTIATE_TEST_SUITE_P(PostgreSql, DataAccessContract, ::testing::ValuesIn(postgreSqlIfThere()), nameOf);
INSTANTIATE_TEST_SUITE_P(Server, DataAccessContract, ::testing::ValuesIn(serverIfNamed()), nameOf);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(DataAccessContract);

TEST(ContractTest, RunsOnTheServerThatIsNamed) {
  if (!test::ServerDatabase::isNamed()) GTEST_SKIP() << "TOLVANE_TEST_DSN names no server to run the suite on";
  EXPECT_TRUE(ServerContractEngine().connect());
}

TEST(ContractTest, RunsOnPostgreSqlWhereItIsInstalled) {
  if (!PostgreSqlServer::isInstalled()) GTEST_SKIP() << "no PostgreSQL server is installed (package postgresql)";
  EXPECT_EQ(PostgreSqlServer::instance().why(), "");
}

}  // namespace
}  // namespace tolvane::contract
