#include "host/doctor_command.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "host/call_runner.h"
#include "host/shipped_tables.h"
#include "host/usage_error.h"
#include "host/utf8.h"
#include "platform/conversions.h"
#include "platform/names.h"
#include "standalone/data_sources.h"
#include "tracing/json_values.h"

namespace tolvane::host {
namespace {

struct Advice {
  std::string_view sign;  // a SQLSTATE's beginning, or words of the message in lower case
  std::string_view text;
};

// The first that fits decides; drivers report much under one state, so words stand before states.
constexpr std::array advices{
    Advice{"can't open lib", "The driver is missing: install it, and name it as \"odbcinst -q -d\" lists it."},
    Advice{"data source name not found", "The driver or DSN is unknown: \"odbcinst -q -d\" lists the drivers."},
    Advice{"connection refused",
           "Nothing answers at that host and port: check Server and Port, and that the server runs."},
    Advice{"unable to connect", "The server cannot be reached: check Server, Port and the firewall between."},
    Advice{"password authentication failed", "The login was refused: check UID and PWD."},
    Advice{"cannot open database", "The database is not there, or the login may not use it: check Database."},
    Advice{"login failed", "The login was refused: check UID and PWD."},
    Advice{"does not exist", "The database is not there: check Database."},
    Advice{"timeout", "The server did not answer in time: check Server, Port and the network, or raise LoginTimeout."},
    Advice{"names no file", "Name the account set's file: Database=path."},
    Advice{"28", "The login was refused: check UID and PWD."},
    Advice{"3D", "The database is not there: check Database."},
    Advice{"08", "The server cannot be reached: check Server and Port, and that the server runs."},
    Advice{"IM", "The driver cannot be used: \"odbcinst -q -d\" lists the drivers."},
};

bool isState(std::string_view sign) {
  return sign.size() == 2;
}

bool hasColumn(const std::vector<FieldInfo>& columns, const std::string& name) {
  return std::any_of(columns.begin(), columns.end(),
                     [&](const FieldInfo& column) { return lowered(column.name) == lowered(name); });
}

class Doctor {
 public:
  Doctor(const Environment& environment, const DataSourceName& name) : environment_(environment), name_(name) {}

  /// Whether nothing is wrong.
  bool examine() {
    if (!checkConnection()) return false;
    if (checkTables()) {
      checkUser();
      checkRecordSets();
    }
    checkServer();
    return healthy_;
  }

 private:
  void good(const std::string& what) { environment_.out << "ok       " << what << '\n'; }
  void note(const std::string& what) { environment_.out << "note     " << what << '\n'; }
  void bad(const std::string& what) {
    environment_.out << "WRONG    " << what << '\n';
    healthy_ = false;
  }

  bool checkConnection() {
    try {
      connection_ = standalone::connect(environment_.engines, name_);
      good("connection: " + name_.publicText() + " answers");
      return true;
    } catch (const AutomationError& error) {
      bad("connection: " + error.description());
      const auto advice = adviceFor(error);
      if (!advice.empty()) note(advice);
      return false;
    }
  }

  bool checkTables() {
    std::size_t found = 0;
    std::size_t missing = 0;
    for (const auto& table : shippedTables()) {
      const auto columns = columnsOf(*connection_, table.name);
      if (columns.empty()) {
        if (table.older) continue;
        ++missing;
        bad("tables: " + table.name + " is missing");
        continue;
      }
      ++found;
      for (const auto& column : table.columns) {
        if (!hasColumn(columns, column)) bad("tables: " + table.name + " has no column " + column);
      }
    }
    if (found == 0) {
      bad("tables: the database holds no account set; \"tolvane init --dsn ...\" makes one");
    } else if (missing == 0 && healthy_) {
      good("tables: all " + std::to_string(found) + " are there with their columns");
    }
    return found > 0;
  }

  void checkUser() {
    try {
      const auto identity = standalone::identityIn(name_);
      standalone::requireUser(*connection_, name_, identity.userID);
      good("user: " + std::to_string(identity.userID) + " is a user of the account set");
    } catch (const AutomationError& error) {
      bad("user: " + error.description());
    }
  }

  // What the services rely on: a count that is known, a position that moves both ways, rows that are not held on the
  // server while others are asked for.
  void checkRecordSets() {
    try {
      const auto rows = connection_->newRecordset();
      rows->open("Select FUserID From t_User", CursorType::keyset, LockType::readOnly);
      const auto count = rows->recordCount();
      rows->moveNext();
      const auto counted = toInt32(connection_->execute("Select Count(*) From t_User")->value(std::size_t{0}));
      rows->moveFirst();
      if (count == counted) {
        good("record sets: counted and moved on this side of the connection");
      } else {
        bad("record sets: the driver gives " + std::to_string(count) + " of " + std::to_string(counted) + " rows");
      }
    } catch (const AutomationError& error) {
      bad("record sets: " + error.description());
    }
  }

  std::string answer(const std::string& sql) {
    try {
      const auto rows = connection_->execute(sql);
      if (rows->state() == ObjectState::closed || rows->eof()) return {};
      const auto value = rows->value(std::size_t{0});
      return value.isNull() ? std::string() : toText(value);
    } catch (const AutomationError&) {
      // Databases that are no SQL Server do not know the question.
      return {};
    }
  }

  void checkServer() {
    const auto collation = answer("Select Cast(DatabasePropertyEx(DB_Name(), 'Collation') As nvarchar(128))");
    if (!collation.empty() && lowered(collation).find("_cs") != std::string::npos) {
      bad("collation: " + collation + " tells letter cases apart; names of reports would no longer be found");
    } else if (!collation.empty()) {
      good("collation: " + collation);
    } else {
      note("collation: not asked, the database is no SQL Server");
    }
    const auto isolation =
        answer("Select Cast(transaction_isolation_level As int) From sys.dm_exec_sessions Where session_id = @@SPID");
    if (isolation == "2") {
      good("isolation: read committed");
    } else if (!isolation.empty()) {
      note("isolation: level " + isolation + " instead of read committed (2)");
    }
  }

  const Environment& environment_;
  const DataSourceName& name_;
  std::shared_ptr<EngineConnection> connection_;
  bool healthy_ = true;
};

}  // namespace

std::string adviceFor(const AutomationError& error) {
  const auto words = lowered(error.description());
  for (const auto& advice : advices) {
    const bool fits = isState(advice.sign) ? error.database().sqlState.starts_with(advice.sign)
                                           : words.find(advice.sign) != std::string::npos;
    if (fits) return std::string(advice.text);
  }
  return {};
}

int runDoctorCommand(const Environment& environment, const DoctorOptions& options) {
  if (!options.dsn) throw UsageError("No data source is named: give --dsn TEXT or set TOLVANE_DSN.");
  if (!isUtf8(*options.dsn)) throw UsageError("The data-source name is not UTF-8.");
  try {
    const auto name = DataSourceName::parse(*options.dsn);
    return Doctor(environment, name).examine() ? exitDone : exitRaised;
  } catch (...) {
    const AutomationError error = toAutomationError(std::current_exception());
    environment.err << "tolvane: " << tracing::hexNumber(error.number()) << ": " << error.description() << '\n';
    return exitRaised;
  }
}

}  // namespace tolvane::host
