// The T-SQL engine: what it costs above SQLite to run a statement again, to compile one, to compare and to sort texts.
#include <memory>
#include <string>

#include "embedded/embedded_engine.h"
#include "plain_sqlite.h"
#include "platform/conversions.h"
#include "platform/engine.h"
#include "ratio.h"
#include "support/account_set.h"

namespace tolvane::bench {
namespace {

constexpr int scannedRows = 100'000;
constexpr int sortedNames = 20'000;
constexpr int people = 1000;

/// Names of three Chinese characters in no order, none twice.
std::string nameOf(int number) {
  std::string name;
  for (int i = 0; i < 3; ++i) {
    const int character = 0x4E00 + (number * 7919 + i * 104729 + number / (i + 1)) % 20000;
    name += static_cast<char>(0xE0 | (character >> 12));
    name += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
    name += static_cast<char>(0x80 | (character & 0x3F));
  }
  return name + std::to_string(number);
}

/// An account set with the tables that are read, and a connection of either kind to it.
class Fixture {
 public:
  Fixture() : plain_((fill(), set_.path())), connection_(embedded::EmbeddedEngine().open(parsed())) {}

  [[nodiscard]] PlainDatabase& plain() { return plain_; }

  /// Runs a statement to its last row.
  void run(const std::string& statement) {
    const auto rows = connection_->execute(statement, unspecifiedOptions);
    for (; !rows->eof(); rows->moveNext()) (void)rows->value(std::size_t{0});
  }

 private:
  [[nodiscard]] DataSourceName parsed() const { return DataSourceName::parse("Database=" + set_.path()); }

  void fill() {
    set_.sql("create table People (ID int not null primary key, Name nvarchar(40) not null)");
    set_.sql("create table Scanned (ID int not null, Name varchar(40) not null)");
    set_.sql("create table Names (Name nvarchar(40) not null)");
    PlainDatabase file(set_.path());
    file.execute("BEGIN");
    fill(file, "INSERT INTO People VALUES(?1,?2)", people, nameOf);
    fill(file, "INSERT INTO Scanned VALUES(?1,?2)", scannedRows,
         [](int i) { return "Report of " + std::to_string(i); });
    fill(file, "INSERT INTO Names SELECT ?2 WHERE ?1>=0", sortedNames, nameOf);
    file.execute("COMMIT");
  }

  template <typename Name>
  void fill(PlainDatabase& file, const char* sql, int rows, Name name) {
    auto insert = file.prepare(sql);
    for (int i = 0; i < rows; ++i) {
      const std::string text = name(i);
      insert.bind(1, static_cast<std::int64_t>(i)).bind(2, text).run();
    }
  }

  test::AccountSet set_;
  PlainDatabase plain_;
  std::shared_ptr<EngineConnection> connection_;
};

/// Reads the first column of every row of a prepared statement.
void read(PlainStatement& statement) {
  while (statement.step()) (void)statement.text(0);
  statement.reset();
}

/// The list behind the function menu; `name` makes it another statement each time.
std::string menuList(int number) {
  const std::string name = "n" + std::to_string(number);
  return "SELECT c.FPropClsID,i.FPropItemID,'('+c.FName+')-'+i.FName AS " + name +
         ",'('+c.FName_Cht+')-'+i.FName_Cht AS FName_Cht,'('+c.FName_En+')-'+i.FName_En AS FName_En FROM "
         "t_Rpt_PropClass c INNER JOIN t_Rpt_PropItem i ON c.FPropClsID=i.FPropClsID ORDER BY "
         "c.FPropClsID,i.FPropItemID";
}

}  // namespace

void registerCases() {
  static Fixture fixture;
  static int number = 0;

  static auto byKey = fixture.plain().prepare("SELECT Name FROM People WHERE ID=?1");
  compare(
      "a statement again, other literals", 4.0,
      [] { fixture.run("SELECT Name FROM People WHERE ID=" + std::to_string(++number % people)); },
      [] {
        byKey.bind(1, static_cast<std::int64_t>(++number % people));
        read(byKey);
      });

  compare(
      "a new statement, the menu's list", 6.0, [] { fixture.run(menuList(++number)); },
      [] {
        auto statement = fixture.plain().prepare(
            "SELECT c.FPropClsID,i.FPropItemID,'('||c.FName||')-'||i.FName,'('||c.FName_Cht||')-'||i.FName_Cht,"
            "'('||c.FName_En||')-'||i.FName_En FROM t_Rpt_PropClass c INNER JOIN t_Rpt_PropItem i ON "
            "c.FPropClsID=i.FPropClsID ORDER BY c.FPropClsID,i.FPropItemID");
        read(statement);
      });

  static auto scan = fixture.plain().prepare("SELECT count(*) FROM Scanned WHERE Name=?1 COLLATE NOCASE");
  compare(
      "100,000 rows compared with a text", 1.5,
      [] { fixture.run("SELECT count(*) FROM Scanned WHERE Name='REPORT OF 50000'"); },
      [] {
        scan.bind(1, "REPORT OF 50000");
        read(scan);
      });

  static auto sort = fixture.plain().prepare("SELECT Name FROM Names ORDER BY Name COLLATE BINARY");
  compare(
      "20,000 Chinese names sorted", 5.0, [] { fixture.run("SELECT Name FROM Names ORDER BY Name"); },
      [] { read(sort); });
}

}  // namespace tolvane::bench
