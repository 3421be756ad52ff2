// The companies' statements: saving, fetching, and the conversion of the older layout.
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "plain_sqlite.h"
#include "platform/calendar.h"
#include "ratio.h"
#include "support/account_set.h"
#include "support/older_layout.h"

namespace tolvane::bench {
namespace {

using test::AccountSet;
using test::Named;

constexpr std::size_t documentSize = 64 * 1024;
constexpr std::int32_t convertedValues = 100'000;
constexpr std::int32_t valuesThere = 1'000'000;

std::vector<std::uint8_t> document() {
  std::vector<std::uint8_t> bytes(documentSize);
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::uint8_t>(i * 31 + i / 7);
  return bytes;
}

/// An account set with one statement in it, which is saved and fetched again and again.
struct Statements {
  AccountSet set;
  Value content{Bytes(document())};
  PlainDatabase plain;

  Statements() : plain((save(), set.path())) {}

  static Named name() {
    return {{"lYear", std::int32_t{2012}},      {"lPeriod", std::int32_t{1}},     {"dDay", dateOf(2012, 3, 31)},
            {"lngRptGroupID", std::int32_t{3}}, {"lCurrencyID", std::int32_t{1}}, {"sCompanyNum", "001"}};
  }
  void save() {
    Named arguments = name();
    arguments.emplace_back("varRptContent", content);
    set.call("CsUpdate.SaveCsData", std::move(arguments));
  }
  void fetch() { set.call("CsRetrieve.GetCsData", name()); }
};

Statements& statements() {
  static Statements one;
  return one;
}

constexpr const char* plainCondition =
    "FROM t_CsRptContent WHERE FRptGroupID=?1 AND FRptType=1 AND FCurrencyID=1 AND FCompanyNum='001' AND FYear=2012 "
    "AND FPeriod=1";

std::function<void()> plainFetch() {
  auto statement = std::make_shared<PlainStatement>(
      statements().plain.prepare((std::string("SELECT FRptContent ") + plainCondition).c_str()));
  return [statement] {
    statement->bind(1, 3);
    if (!statement->step() || statement->bytes(0).size() != documentSize) throw std::runtime_error("no document");
    statement->reset();
  };
}

std::function<void()> plainSave() {
  auto& database = statements().plain;
  auto find =
      std::make_shared<PlainStatement>(database.prepare((std::string("SELECT FRptID ") + plainCondition).c_str()));
  auto store =
      std::make_shared<PlainStatement>(database.prepare("UPDATE t_CsRptContent SET FRptContent=?1 WHERE FRptID=?2"));
  return [&database, find, store, bytes = document()] {
    database.execute("BEGIN IMMEDIATE");
    find->bind(1, 3);
    if (!find->step()) throw std::runtime_error("no statement");
    const auto id = find->integer(0);
    find->reset();
    store->bind(1, bytes).bind(2, id).run();
    database.execute("COMMIT");
  };
}

/// An account set with one group of the older layout, whose one item has many values, and values of another item in the
/// new table already. Each conversion starts with those of the last one taken away.
struct Older {
  AccountSet set;
  PlainDatabase plain;

  explicit Older(std::int32_t there) : plain((fill(set, there), set.path())) {}

  static void fill(AccountSet& set, std::int32_t there) {
    test::addOlderLayout(set, 1, 0, 0);
    PlainDatabase file(set.path());
    file.execute("BEGIN");
    auto old = file.prepare(
        "INSERT INTO t_Rpt_CsRptItemData (FItemNum,FYear,FPeriod,FAmount,FAccuAmount,FIsNew) VALUES "
        "('I1',?1,1,'12.5000','100.2500',1)");
    for (std::int32_t year = 1; year <= convertedValues; ++year) old.bind(1, year).run();
    auto present = file.prepare(
        "INSERT INTO t_CsRptItemData VALUES ('001','H1','RMB',0,?1,1,'1900-01-01 00:00:00.000','1','1',0)");
    for (std::int32_t year = 1; year <= there; ++year) present.bind(1, year).run();
    file.execute("COMMIT");
  }

  void reset() {
    plain.execute("BEGIN IMMEDIATE");
    plain.execute("DELETE FROM t_CsRptItemData WHERE FCompanyNum='001' COLLATE TSQL AND FItemNum='I1' COLLATE TSQL");
    plain.execute("UPDATE t_Rpt_CsRptGroup SET FCycleID=1");
    plain.execute("COMMIT");
  }
  void convert() {
    reset();
    const auto result = set.result("CsUpdate.UpGradeOneCsRpt", {{"lngOldRptGroupID", std::int32_t{1}},
                                                                {"lngNewRptGroupID", std::int32_t{1}},
                                                                {"lCurrencyID", std::int32_t{1}},
                                                                {"sCurrencyNum", "RMB"}});
    if (!(result == Value(std::int32_t{1}))) throw std::runtime_error("not converted");
  }
  /// The same two steps for every value, prepared.
  void convertPlainly() {
    reset();
    auto values = plain.prepare(
        "SELECT FYear,FPeriod,FAmount,FAccuAmount,FIsNew FROM t_Rpt_CsRptItemData WHERE "
        "FItemNum='I1'");
    auto find = plain.prepare(
        "SELECT 1 FROM t_CsRptItemData WHERE FCompanyNum='001' COLLATE TSQL AND FItemNum='I1' COLLATE TSQL AND "
        "FCurrencyNum='RMB' COLLATE TSQL AND FDataClass=0 AND FYear=?1 AND FPeriod=?2 AND FDay='1900-01-01 "
        "00:00:00.000'");
    auto insert = plain.prepare(
        "INSERT INTO t_CsRptItemData VALUES ('001','I1','RMB',0,?1,?2,'1900-01-01 00:00:00.000',?3,?4,?5)");
    plain.execute("BEGIN IMMEDIATE");
    while (values.step()) {
      find.bind(1, values.integer(0)).bind(2, values.integer(1));
      const bool isThere = find.step();
      find.reset();
      if (isThere) continue;
      const std::string amount = values.text(2);
      const std::string accumulated = values.text(3);
      insert.bind(1, values.integer(0)).bind(2, values.integer(1)).bind(3, amount).bind(4, accumulated);
      insert.bind(5, values.integer(4)).run();
    }
    plain.execute("COMMIT");
  }
};

Older& olderAlone() {
  static Older one(0);
  return one;
}

Older& olderBesideMany() {
  static Older one(valuesThere);
  return one;
}

}  // namespace

void registerCases() {
  // Made here, or the first measured run would bear it.
  (void)olderAlone();
  (void)olderBesideMany();
  compare(
      "GetCsData, 64 KiB", 1.3, [] { statements().fetch(); }, plainFetch());
  compare(
      "SaveCsData, 64 KiB", 1.5, [] { statements().save(); }, plainSave());
  compare(
      "UpGradeOneCsRpt, 100,000 item values", 1.5, [] { olderAlone().convert(); },
      [] { olderAlone().convertPlainly(); });
  // Here the other side is the conversion itself, into an empty table.
  compare(
      "UpGradeOneCsRpt with 1,000,000 values there, against none there", 1.1, [] { olderBesideMany().convert(); },
      [] { olderAlone().convert(); });
}

}  // namespace tolvane::bench
