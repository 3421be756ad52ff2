#include "fuzzed_batches.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <chrono>
#include <random>
#include <string_view>
#include <vector>

#include "embedded/time_limit.h"
#include "platform/error.h"
#include "tsql/compiler.h"
#include "tsql/function_table.h"

namespace tolvane::fuzz {
namespace {

constexpr std::chrono::seconds timeForInput{2};
constexpr int longestValue = 1 << 20;
constexpr int rowsRead = 64;

constexpr std::array setUp{
    "create table g (id int not null primary key, name nvarchar(20) null, qty int null, price money null)",
    "insert g values (1,'Apple',10,1.5),(2,'banana',null,2),(3,'apple ',5,null),(4,null,7,0.25)",
    "create table h (gid int, note varchar(10))",
    "insert into h values(1,'one') insert h values(1,'uno') insert h select 4,'four' insert h (note) values ('none')",
    "create table p (id int identity primary key, code varchar(5) not null, n int null, d datetime null default "
    "(getdate()), m money not null default 0)",
    "insert p (code) values ('a') insert p (code, n, d) values ('b', 2, '2012-02-29')",
    "create table v (n int) insert v values (1),(2),(3)",
    "create table t1 (a tinyint, b smallint, c bigint, d bit, e real, f float, g decimal(6,2), h smallmoney, i "
    "smalldatetime, j date, k char(3), l nchar(3), m nvarchar(max), n text, o ntext, p binary(2), q varbinary(max), r "
    "image, s uniqueidentifier)",
    "insert t1 values "
    "(1,2,3,1,1.5,2.5,3.25,4.5,'2012-01-01','2012-01-02','k','l','m','n','o',0x0102,0x03,0x04,newid())",
    "insert t1 (a) values (null)",
};

/// Limits of SQLite that the engine leaves to it: refusing is right, and its words are good enough.
constexpr std::array<std::string_view, 9> limitsOfSqlite{
    "parser stack overflow", "too many", "at most",    "too large",     "too big",
    "too complex",           "too long", "pattern is", "out of memory",
};

void read(Recordset& rows) {
  for (int row = 0; row < rowsRead && rows.state() == ObjectState::open && !rows.eof(); ++row, rows.moveNext()) {
    for (std::size_t i = 0; i < rows.fields().size(); ++i) (void)rows.value(i);
  }
}

bool refusedBySqlite(const AutomationError& error) {
  if (error.database().nativeNumber != 0) return false;  // an error of the language, which may quote the batch
  const auto& words = error.description();
  if (words.find("could not run the statement: ") == std::string::npos) return false;
  return std::none_of(limitsOfSqlite.begin(), limitsOfSqlite.end(),
                      [&](std::string_view limit) { return words.find(limit) != std::string::npos; });
}

bool mayCommit(std::string batch) {
  for (char& c : batch) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return batch.find("COMMIT") != std::string::npos || batch.find("ROLLBACK") != std::string::npos;
}

// Words for the mutator, which exchanges whole tokens: bytes alone seldom come to another statement.
std::vector<std::string> vocabulary() {
  std::vector<std::string> words;
  for (const char* word : {"select",
                           "distinct",
                           "top",
                           "percent",
                           "with ties",
                           "from",
                           "where",
                           "group by",
                           "having",
                           "order by",
                           "desc",
                           "union all",
                           "union",
                           "except",
                           "intersect",
                           "join",
                           "left join",
                           "full join",
                           "right join",
                           "cross join",
                           "on",
                           "case",
                           "when",
                           "then",
                           "else",
                           "end",
                           "in",
                           "not",
                           "like",
                           "escape",
                           "between",
                           "and",
                           "or",
                           "is null",
                           "exists",
                           "any",
                           "all",
                           "with",
                           "as",
                           "over",
                           "partition by",
                           "row_number()",
                           "into",
                           "insert",
                           "values",
                           "update",
                           "set",
                           "delete",
                           "create table",
                           "alter table",
                           "add",
                           "drop table",
                           "truncate table",
                           "unique",
                           "primary key",
                           "identity",
                           "default",
                           "check",
                           "references",
                           "if",
                           "begin",
                           "while",
                           "break",
                           "continue",
                           "declare",
                           "print",
                           "begin tran",
                           "rollback",
                           "(nolock)",
                           "null",
                           "@x",
                           "@s",
                           "@@rowcount",
                           "@@error",
                           "@@trancount",
                           "@@identity",
                           "g",
                           "h",
                           "p",
                           "v",
                           "t1",
                           "#t",
                           "id",
                           "name",
                           "qty",
                           "price",
                           "gid",
                           "note",
                           "code",
                           "n",
                           "d",
                           "m",
                           "*",
                           "g.*",
                           "0",
                           "1",
                           "-1",
                           "2147483647",
                           "2147483648",
                           "9223372036854775807",
                           "1e308",
                           "1.5",
                           "0.00001",
                           "12345678901234567890",
                           "''",
                           "'a'",
                           "N'\xE4\xB8\xAD'",
                           "'2012-02-29'",
                           "'[a-z]%'",
                           "'%'",
                           "0x",
                           "0x00FF",
                           "$1.5",
                           "int",
                           "bigint",
                           "tinyint",
                           "bit",
                           "float",
                           "money",
                           "decimal(38,10)",
                           "numeric(5,2)",
                           "datetime",
                           "smalldatetime",
                           "date",
                           "varchar(10)",
                           "nvarchar(max)",
                           "char(3)",
                           "varbinary(8)",
                           "uniqueidentifier",
                           "(",
                           ")",
                           ",",
                           ".",
                           ";",
                           "=",
                           "<>",
                           "sysobjects",
                           "syscolumns",
                           "information_schema.columns",
                           "?"}) {
    words.emplace_back(word);
  }
  for (const auto& row : tsql::functionRows()) words.push_back(std::string(row.name) + "(");
  for (const auto& row : tsql::aggregateRows()) words.push_back(std::string(row.name) + "(");
  for (const auto& row : tsql::operatorRows()) words.emplace_back(row.symbol);
  return words;
}

}  // namespace

FuzzedAccountSet::FuzzedAccountSet() {
  open();
}

FuzzedAccountSet::~FuzzedAccountSet() {
  close();
}

void FuzzedAccountSet::open() {
  std::random_device random;
  do {
    folder_ = std::filesystem::temp_directory_path() / ("tsql_fuzz_" + std::to_string(random()));
  } while (!std::filesystem::create_directory(folder_));
  const auto file = folder_ / "set.ais";
  embedded::Database::create(file);
  auto session = std::make_shared<embedded::Session>(file, std::chrono::seconds(1));
  sqlite3_limit(session->database().get(), SQLITE_LIMIT_LENGTH, longestValue);
  connection_ = std::make_unique<embedded::EmbeddedConnection>(std::move(session));
  for (const char* statement : setUp) connection_->execute(statement, unspecifiedOptions);
}

void FuzzedAccountSet::close() {
  connection_.reset();
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

std::optional<std::string> FuzzedAccountSet::run(const std::string& batch) {
  const bool lasting = mayCommit(batch);
  std::optional<std::string> found;
  if (!lasting) connection_->begin();
  {
    const embedded::TimeLimit limit(connection_->session().database(), timeForInput);
    try {
      for (auto rows = connection_->execute(batch, unspecifiedOptions); rows; rows = rows->nextRecordset()) read(*rows);
    } catch (const AutomationError& error) {
      if (refusedBySqlite(error)) found = error.description();
    } catch (const std::exception& error) {
      found = error.what();
    }
  }
  connection_->rollback();
  if (lasting) {
    close();
    open();
  }
  return found;
}

std::string mutated(const std::string& batch, std::minstd_rand& random) {
  static const auto words = vocabulary();
  const auto shape = tsql::shape(batch);
  const auto count = shape.tokens.size();  // the last one is the end
  const auto& token = shape.tokens[random() % count];
  const auto& other = shape.tokens[random() % count];
  const std::string before = batch.substr(0, token.begin);
  const std::string after = batch.substr(token.end);
  const std::string self = batch.substr(token.begin, token.end - token.begin);
  switch (random() % 4) {
    case 0:
      return before + after;
    case 1:
      return before + " " + words[random() % words.size()] + " " + after;
    case 2:
      return before + self + " " + words[random() % words.size()] + " " + after;
    default:
      return before + " " + batch.substr(other.begin, other.end - other.begin) + " " + after;
  }
}

}  // namespace tolvane::fuzz
