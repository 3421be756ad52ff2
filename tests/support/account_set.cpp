#include "support/account_set.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "catalogue/catalogue.h"
#include "embedded/embedded_engine.h"
#include "frame/dispatcher.h"
#include "frame/sql_text.h"
#include "platform/conversions.h"
#include "platform/engine.h"
#include "standalone/call.h"
#include "standalone/data_sources.h"
#include "standalone/objects.h"
#include "standalone/standalone_platform.h"
#ifdef TOLVANE_WITH_ODBC
#include "odbc/odbc_engine.h"
#endif

namespace tolvane::test {
namespace {

namespace fs = std::filesystem;

std::string fileText(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::shared_ptr<EngineConnection> open(embedded::EmbeddedEngine& engine, const std::string& path) {
  return engine.open(DataSourceName::parse(sql("Database=", path)));
}

/// Batches stand between lines that hold nothing but GO.
void runScript(Connection& connection, const std::string& script) {
  constexpr std::string_view separator = "\nGO\n";
  for (std::size_t start = 0; start < script.size();) {
    const std::size_t end = std::min(script.find(separator, start), script.size());
    connection.execute(script.substr(start, end - start));
    start = end + separator.size();
  }
}

std::string shippedScript() {
  return fileText(fs::path(TOLVANE_SOURCE_DIR) / "schema" / "accountset.sql");
}

fs::path temporaryName(std::string_view what) {
  static int count = 0;
  return fs::path(testing::TempDir()) / sql("tolvane-", what, "-", getpid(), "-", ++count, ".db");
}

void removeFile(const fs::path& path) {
  // A test that failed may still hold a connection, and Windows removes no file that is open.
  std::error_code ignored;
  for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(path.string() + suffix, ignored);
}

/// An account set made once a test program, copied for every test.
class Template {
 public:
  Template() : path_(temporaryName("template")) {
    removeFile(path_);
    embedded::EmbeddedEngine::createAccountSet(path_);
    {
      embedded::EmbeddedEngine engine;
      const auto connection = open(engine, path_.string());
      connection->begin();
      runScript(*connection, shippedScript());
      connection->commit();
    }
  }
  ~Template() {
    embedded::EmbeddedEngine::closeUnused();
    removeFile(path_);
  }
  Template(const Template&) = delete;
  Template& operator=(const Template&) = delete;

  /// With the write-ahead log: the engine may still keep the file open, and then much of it is only there.
  void copyTo(const fs::path& path) const {
    fs::copy_file(path_, path, fs::copy_options::overwrite_existing);
    const fs::path log = path_.string() + "-wal";
    if (fs::exists(log)) fs::copy_file(log, path.string() + "-wal", fs::copy_options::overwrite_existing);
  }

 private:
  fs::path path_;
};

const Template& shippedSchema() {
  static const Template one;
  return one;
}

std::string cellText(const Value& value) {
  if (value.isNull()) return "NULL";
  if (value.isEmpty()) return "EMPTY";
  if (const auto* bytes = value.get<Bytes>()) return sql("<", bytes->size(), " bytes>");
  return toText(value);
}

std::string rowText(Recordset& rows) {
  std::string text;
  for (std::size_t i = 0; i < rows.fields().size(); ++i) text += (i == 0 ? "" : "|") + cellText(rows.value(i));
  return text;
}

std::vector<std::string> allRows(Recordset& rows) {
  std::vector<std::string> result;
  for (; !rows.eof(); rows.moveNext()) result.push_back(rowText(rows));
  return result;
}

std::string bagText(const PropertyBag& bag) {
  std::string text;
  for (std::int32_t i = 1; i <= bag.count(); ++i) text += (i == 1 ? "" : "|") + cellText(bag.item(bag.name(i)));
  return text;
}

}  // namespace

standalone::Engines engines() {
  standalone::Engines engines{{standalone::defaultEngine, std::make_shared<embedded::EmbeddedEngine>()}};
#ifdef TOLVANE_WITH_ODBC
  engines.emplace("odbc", std::make_shared<odbc::OdbcEngine>());
#endif
  return engines;
}

struct AccountSet::Parts {
  standalone::Engines engines = test::engines();
  standalone::StandalonePlatform platform{{engines, fs::path(TOLVANE_SOURCE_DIR) / "resources"}};
};

AccountSet::AccountSet() : path_(temporaryName("accounts").string()), parts_(std::make_unique<Parts>()) {
  if (ServerDatabase::isNamed()) {
    server_ = std::make_unique<ServerDatabase>();
    path_ = server_->name();
    base_ = server_->dsn();
    runScript(*connection(), shippedScript());
    return;
  }
  base_ = tolvane::sql("Database=", path_);
  removeFile(path_);
  shippedSchema().copyTo(path_);
}

AccountSet::~AccountSet() {
  parts_.reset();
  if (server_) return;
  embedded::EmbeddedEngine::closeUnused();
  removeFile(path_);
}

std::shared_ptr<Connection> AccountSet::connection() const {
  return standalone::connect(parts_->engines, DataSourceName::parse(base_));
}

AccountSet& AccountSet::as(std::int32_t userID) {
  userID_ = userID;
  return *this;
}

AccountSet& AccountSet::in(std::string_view language) {
  language_ = language;
  return *this;
}

AccountSet& AccountSet::asNewUser(std::int32_t userID) {
  sql(tolvane::sql("Insert Into t_User (FUserID,FName) Values (", userID, ",'user ", userID, "')"));
  return as(userID);
}

std::string AccountSet::dsn() const {
  return tolvane::sql(base_, ";UserID=", userID_, ";Language=", language_);
}

Outcome AccountSet::call(std::string_view method, Named arguments) {
  const std::size_t dot = method.find('.');
  const ClassDescription* description = findClass(method.substr(0, dot));
  if (!description) throw std::invalid_argument(tolvane::sql("no class of ", method));
  const MethodDescription& described = findMethod(*description, method.substr(dot + 1));

  if (!described.isProperty) arguments.emplace_back(described.parameters.front().name, Value(dsn()));
  for (const ParameterDescription& parameter : described.parameters) {
    const bool given = std::any_of(arguments.begin(), arguments.end(),
                                   [&](const auto& argument) { return sameName(argument.first, parameter.name); });
    if (!given && parameter.direction == Direction::inOut) {
      arguments.emplace_back(parameter.name, emptyValue(parameter.type));
    }
  }
  standalone::Call call(parts_->platform.session(), description->transMode);
  const auto service = description->create(parts_->platform);
  auto bound = bindArguments(described, {{}, std::move(arguments)});
  Outcome outcome{invoke(*service, described, bound), {}};
  for (std::size_t i = 1; i < bound.size(); ++i) {
    if (described.parameters[i].direction == Direction::inOut) outcome.out[described.parameters[i].name] = bound[i];
  }
  call.finish();
  return outcome;
}

AutomationError AccountSet::error(std::string_view method, Named arguments) {
  try {
    call(method, std::move(arguments));
  } catch (const AutomationError& error) {
    return error;
  }
  ADD_FAILURE() << method << " raised no error";
  return {0, "", ""};
}

void AccountSet::sql(const std::string& text) {
  connection()->execute(text);
}

Value AccountSet::value(const std::string& text) {
  const auto rows = connection()->execute(text);
  return rows->eof() ? Value() : rows->value(0);
}

std::vector<std::string> AccountSet::rows(const std::string& text) {
  return allRows(*connection()->execute(text));
}

Value bag(const Named& entries) {
  auto result = std::make_shared<standalone::Dictionary>();
  for (const auto& [key, value] : entries) result->set(key, value);
  return result;
}

Value list(const std::vector<Value>& items) {
  auto result = std::make_shared<standalone::List>();
  for (const Value& item : items) result->add(item);
  return result;
}

Value bytes(std::string_view content) {
  return Bytes(std::vector<std::uint8_t>(content.begin(), content.end()));
}

Value int32Array(std::vector<std::int32_t> elements, std::int32_t lower) {
  return Array::of(ValueType::int32, {elements.begin(), elements.end()}, lower);
}

std::vector<std::string> rowsOf(const Value& rowListOrRecordset) {
  if (const auto rows = rowListOrRecordset.objectAs<Recordset>()) return allRows(*rows);
  const auto items = rowListOrRecordset.objectAs<ItemList>();
  if (!items) throw std::invalid_argument("neither row list nor record set");
  std::vector<std::string> result;
  for (std::int32_t i = 1; i <= items->count(); ++i) result.push_back(bagText(*items->item(i).objectAs<PropertyBag>()));
  return result;
}

std::vector<std::string> column(const Value& rowListOrRecordset, const std::string& name) {
  std::vector<std::string> result;
  if (const auto rows = rowListOrRecordset.objectAs<Recordset>()) {
    for (; !rows->eof(); rows->moveNext()) result.push_back(cellText(rows->value(name)));
    return result;
  }
  const auto items = rowListOrRecordset.objectAs<ItemList>();
  for (std::int32_t i = 1; i <= items->count(); ++i) {
    result.push_back(cellText(items->item(i).objectAs<PropertyBag>()->item(name)));
  }
  return result;
}

std::string shown(const AutomationError& error) {
  char number[11];
  std::snprintf(number, sizeof number, "0x%08X", error.number());
  return tolvane::sql(number, " ", error.source(), ": ", error.description());
}

}  // namespace tolvane::test
