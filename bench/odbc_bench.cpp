// Data access through ODBC beside a plain program on the ODBC interface, both through the SQLite driver.
#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>
#include <stdlib.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "odbc/odbc_engine.h"
#include "platform/bytes.h"
#include "ratio.h"

namespace tolvane::bench {
namespace {

constexpr int listedReports = 20000;
constexpr int lookUps = 10000;
constexpr std::size_t documentSize = 1024 * 1024;
constexpr const char* listText =
    "SELECT FRptID, FRptName, FSysName, FOwner, FYear, FPeriod, FRptType, FLastOperator, FLastDate FROM t_Rpt_Content";

// A database file with the reports, made once for all cases.
struct Store {
  std::filesystem::path folder;
  std::shared_ptr<EngineConnection> connection;

  Store() {
    std::string pattern = "/tmp/tolvane-bench-XXXXXX";
    folder = ::mkdtemp(pattern.data());
    connection = odbc::OdbcEngine().open(DataSourceName::parse("Driver=SQLite3;Database=" + file()));
    connection->execute(
        "create table t_Rpt_Content (FRptID integer primary key, FRptName nvarchar(255), FSysName nvarchar(255),"
        " FOwner int, FYear int, FPeriod int, FRptType int, FLastOperator int, FLastDate datetime,"
        " FRptData longvarbinary)");
    connection->begin();
    for (int id = 1; id <= listedReports; ++id) {
      const auto number = std::to_string(id);
      connection->execute("insert into t_Rpt_Content values (" + number + ", '报表" + number +
                          "', '报表系统', 1, 2012, 3, 1, 1, '2012-03-15 10:00:00', null)");
    }
    connection->commit();
    const auto rows = connection->newRecordset();
    rows->open("select FRptID, FRptData from t_Rpt_Content where FRptID = 1", CursorType::keyset, LockType::optimistic);
    rows->setValue("FRptData", Value(Bytes(std::vector<std::uint8_t>(documentSize, 7))));
    rows->update();
  }
  ~Store() {
    connection.reset();
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
  }
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;

  [[nodiscard]] std::string file() const { return (folder / "set.db").string(); }
};

Store& store() {
  static Store one;
  return one;
}

void require(SQLRETURN result) {
  if (!SQL_SUCCEEDED(result)) throw std::runtime_error("the plain program fails");
}

std::u16string wide(const std::string& ascii) {
  return {ascii.begin(), ascii.end()};
}

// What one would write by hand: bound columns, texts as they come.
class PlainProgram {
 public:
  PlainProgram() {
    require(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment_));
    require(SQLSetEnvAttr(environment_, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0));
    require(SQLAllocHandle(SQL_HANDLE_DBC, environment_, &connection_));
    auto text = wide("Driver=SQLite3;Database=" + store().file());
    require(SQLDriverConnectW(connection_, nullptr, reinterpret_cast<SQLWCHAR*>(text.data()), SQL_NTS, nullptr, 0,
                              nullptr, SQL_DRIVER_NOPROMPT));
    require(SQLAllocHandle(SQL_HANDLE_STMT, connection_, &statement_));
  }
  PlainProgram(const PlainProgram&) = delete;
  PlainProgram& operator=(const PlainProgram&) = delete;
  ~PlainProgram() {
    SQLFreeHandle(SQL_HANDLE_STMT, statement_);
    SQLDisconnect(connection_);
    SQLFreeHandle(SQL_HANDLE_DBC, connection_);
    SQLFreeHandle(SQL_HANDLE_ENV, environment_);
  }

  void list() {
    run(listText);
    struct Row {
      std::array<SQLINTEGER, 6> numbers;
      std::u16string name;
      std::u16string system;
      SQL_TIMESTAMP_STRUCT date;
    };
    std::vector<Row> rows;
    std::array<SQLINTEGER, 6> numbers{};
    std::array<char16_t, 256> name{};
    std::array<char16_t, 256> system{};
    SQL_TIMESTAMP_STRUCT date{};
    std::array<SQLLEN, 9> sizes{};
    bind(1, SQL_C_SLONG, &numbers[0], sizeof(SQLINTEGER), sizes[0]);
    bind(2, SQL_C_WCHAR, name.data(), sizeof name, sizes[1]);
    bind(3, SQL_C_WCHAR, system.data(), sizeof system, sizes[2]);
    for (SQLUSMALLINT i = 1; i < 6; ++i) bind(i + 3, SQL_C_SLONG, &numbers[i], sizeof(SQLINTEGER), sizes[i + 2]);
    bind(9, SQL_C_TYPE_TIMESTAMP, &date, sizeof date, sizes[8]);
    while (SQL_SUCCEEDED(SQLFetch(statement_))) rows.push_back({numbers, name.data(), system.data(), date});
    close();
    if (rows.size() != listedReports) throw std::runtime_error("rows are missing");
  }

  void document() {
    run("select FRptData from t_Rpt_Content where FRptID = 1");
    require(SQLFetch(statement_));
    std::vector<std::uint8_t> bytes(documentSize);
    SQLLEN size = 0;
    require(SQLGetData(statement_, 1, SQL_C_BINARY, bytes.data(), static_cast<SQLLEN>(bytes.size()), &size));
    close();
  }

  void lookUp() {
    for (int i = 1; i <= lookUps; ++i) {
      run("select FRptName from t_Rpt_Content where FRptID = " + std::to_string(i));
      std::array<char16_t, 256> name{};
      SQLLEN size = 0;
      require(SQLFetch(statement_));
      require(SQLGetData(statement_, 1, SQL_C_WCHAR, name.data(), sizeof name, &size));
      close();
    }
  }

 private:
  void run(const std::string& sql) {
    auto text = wide(sql);
    require(SQLExecDirectW(statement_, reinterpret_cast<SQLWCHAR*>(text.data()), SQL_NTS));
  }
  void bind(int column, SQLSMALLINT type, void* data, std::size_t room, SQLLEN& size) {
    require(SQLBindCol(statement_, static_cast<SQLUSMALLINT>(column), type, data, static_cast<SQLLEN>(room), &size));
  }
  void close() {
    SQLFreeStmt(statement_, SQL_CLOSE);
    SQLFreeStmt(statement_, SQL_UNBIND);
  }

  SQLHANDLE environment_ = SQL_NULL_HANDLE;
  SQLHANDLE connection_ = SQL_NULL_HANDLE;
  SQLHANDLE statement_ = SQL_NULL_HANDLE;
};

PlainProgram& plain() {
  static PlainProgram one;
  return one;
}

void list() {
  if (store().connection->execute(listText)->recordCount() != listedReports)
    throw std::runtime_error("rows are missing");
}

void document() {
  const auto rows = store().connection->execute("select FRptData from t_Rpt_Content where FRptID = 1");
  if (rows->value("FRptData").get<Bytes>()->size() != documentSize) throw std::runtime_error("bytes are missing");
}

void lookUp() {
  for (int i = 1; i <= lookUps; ++i) {
    (void)store()
        .connection->execute("select FRptName from t_Rpt_Content where FRptID = " + std::to_string(i))
        ->value(std::size_t{0});
  }
}

}  // namespace

void registerCases() {
  compare("odbc list of 20,000 reports", 1.3, list, [] { plain().list(); });
  compare("odbc document of 1 MiB", 1.1, document, [] { plain().document(); });
  compare("odbc 10,000 look-ups", 1.3, lookUp, [] { plain().lookUp(); });
}

}  // namespace tolvane::bench
