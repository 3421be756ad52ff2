// The whole path of a batch: text, tokens, tree, SQLite's text, rows. An input is a batch; it runs on an account set
// with a few tables. What counts as found, besides what the sanitizers find: anything that leaves the engine and is no
// AutomationError, a text that SQLite itself refuses (the engine should have), and a statement that its limit of time
// does not stop.
#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/embedded_connection.h"
#include "embedded/time_limit.h"
#include "platform/error.h"
#include "tsql/compiler.h"
#include "tsql/function_table.h"
#include "tsql/sql_error.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

using namespace tolvane;

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

[[noreturn]] void found(const std::string& what, std::string_view batch) {
  std::fprintf(stderr, "== found: %s\n%.*s\n", what.c_str(), static_cast<int>(batch.size()), batch.data());
  std::abort();
}

/// An account set in a folder of its own, with the tables.
class AccountSet {
 public:
  AccountSet() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tsql_fuzz_XXXXXX").string();
    if (!::mkdtemp(pattern.data())) std::abort();
    folder_ = pattern;
    const auto file = folder_ / "set.ais";
    embedded::Database::create(file);
    connection_ = std::make_unique<embedded::EmbeddedConnection>(
        std::make_shared<embedded::Session>(file, std::chrono::seconds(1)));
    for (const char* statement : setUp) connection_->execute(statement, unspecifiedOptions);
    sqlite3_limit(database().get(), SQLITE_LIMIT_LENGTH, longestValue);
  }
  AccountSet(const AccountSet&) = delete;
  AccountSet& operator=(const AccountSet&) = delete;
  ~AccountSet() {
    connection_.reset();
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  [[nodiscard]] embedded::EmbeddedConnection& connection() { return *connection_; }
  [[nodiscard]] embedded::Database& database() { return connection_->session().database(); }

 private:
  std::filesystem::path folder_;
  std::unique_ptr<embedded::EmbeddedConnection> connection_;
};

void read(Recordset& rows) {
  for (int row = 0; row < rowsRead && rows.state() == ObjectState::open && !rows.eof(); ++row, rows.moveNext()) {
    for (std::size_t i = 0; i < rows.fields().size(); ++i) (void)rows.value(i);
  }
}

void judge(const AutomationError& error, std::string_view batch) {
  constexpr std::string_view fromSqlite = "could not run the statement: ";
  if (error.database().nativeNumber != 0) return;  // an error of the language, which may quote the batch
  const auto& words = error.description();
  if (words.find(fromSqlite) == std::string::npos) return;
  for (const auto limit : limitsOfSqlite) {
    if (words.find(limit) != std::string::npos) return;
  }
  found(words, batch);
}

void run(AccountSet& set, const std::string& batch) {
  const embedded::TimeLimit limit(set.database(), timeForInput);
  try {
    for (auto rows = set.connection().execute(batch, unspecifiedOptions); rows; rows = rows->nextRecordset())
      read(*rows);
  } catch (const AutomationError& error) {
    judge(error, batch);
  } catch (const std::exception& error) {
    found(error.what(), batch);
  }
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

std::string mutatedTokens(const std::string& batch, std::minstd_rand& random) {
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

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned int seed) {
  std::minstd_rand random(seed);
  if (random() % 4 == 0) return LLVMFuzzerMutate(data, size, maxSize);
  std::string batch(reinterpret_cast<const char*>(data), size);
  try {
    for (auto times = random() % 3 + 1; times > 0; --times) batch = mutatedTokens(batch, random);
  } catch (const tsql::SqlError&) {
    return LLVMFuzzerMutate(data, size, maxSize);  // not made of tokens
  }
  if (batch.size() > maxSize) batch.resize(maxSize);
  std::copy(batch.begin(), batch.end(), data);
  return batch.size();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static auto set = std::make_unique<AccountSet>();
  const std::string batch(reinterpret_cast<const char*>(data), size);
  const bool kept = mayCommit(batch);
  auto& connection = set->connection();
  if (!kept) connection.begin();
  run(*set, batch);
  connection.rollback();
  if (kept) set = std::make_unique<AccountSet>();
  return 0;
}
