#include "tsql/engine_harness.h"

#include <sqlite3.h>

#include <array>
#include <cstdio>
#include <map>

#include "tsql/compiler.h"
#include "tsql/convert.h"
#include "tsql/decimal.h"
#include "tsql/error_reach.h"
#include "tsql/functions.h"
#include "tsql/unicode.h"
#include "tsql/unique_identifier_order.h"

namespace tolvane::tsql::testing {
namespace {

// ASCII letters without regard to case, and everything else by its bytes.
class AsciiCollation final : public Collation {
 public:
  int compare(std::string_view left, std::string_view right) const override {
    return folded(left).compare(folded(right));
  }
  char32_t fold(char32_t c) const override { return lower(c); }
  int compareCharacters(char32_t a, char32_t b) const override {
    return static_cast<int>(fold(a)) - static_cast<int>(fold(b));
  }
  char32_t upper(char32_t c) const override { return c >= 'a' && c <= 'z' ? c - 32 : c; }
  char32_t lower(char32_t c) const override { return c >= 'A' && c <= 'Z' ? c + 32 : c; }
  std::string toCodePage(std::string_view text) const override { return std::string(text); }
  std::string fromCodePage(std::string_view bytes) const override { return std::string(bytes); }

 private:
  std::string folded(std::string_view text) const {
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    std::string result(text);
    for (char& c : result) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
    return result;
  }
};

class HarnessSession final : public Session {
 public:
  DateTime now() const override { return parseStored("2012-03-15 13:02:03.123").value(); }
  DateTime utcNow() const override { return parseStored("2012-03-15 05:02:03.123").value(); }
  const Table* tableNamed(std::string_view) const override { return nullptr; }
  std::int64_t rowCount() const override { return rowCount_; }
  std::int32_t lastError() const override { return error_; }
  std::int32_t transactionCount() const override { return transactions_; }
  std::optional<std::int64_t> identity() const override { return identity_; }
  std::optional<std::int64_t> scopeIdentity() const override { return identity_; }
  std::optional<std::int64_t> lastIdentityOf(std::string_view table) override {
    const auto found = made_.find(std::string(table));
    return found == made_.end() ? std::nullopt : std::optional(found->second);
  }
  void gaveIdentity(std::string_view table, std::int64_t value, bool isLast) override {
    identity_ = value;
    if (isLast) made_[std::string(table)] = value;
  }
  std::string databaseName() const override { return "Accounts"; }
  std::string userName() const override { return "dbo"; }
  std::string version() const override { return "Test server"; }
  std::optional<std::int64_t> objectId(std::string_view name, std::string_view) const override {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(database_, "SELECT 1977058079-rowid FROM sqlite_schema WHERE lower(name)=lower(?1)", -1,
                       &statement, nullptr);
    sqlite3_bind_text(statement, 1, name.data(), static_cast<int>(name.size()), SQLITE_TRANSIENT);
    std::optional<std::int64_t> id;
    if (sqlite3_step(statement) == SQLITE_ROW) id = sqlite3_column_int64(statement, 0);
    sqlite3_finalize(statement);
    return id;
  }
  std::optional<DatabaseObject> object(std::int64_t) const override { return std::nullopt; }
  std::vector<std::int64_t> constraints() const override { return {}; }
  const Table* tableNumbered(std::int64_t) const override { return nullptr; }
  RandomState& random() override { return random_; }
  std::array<std::byte, 16> uniqueBytes() override { return {}; }

  std::map<std::string, std::int64_t> made_;  // the last identity values of tables
  sqlite3* database_ = nullptr;
  std::int64_t rowCount_ = 0;
  std::int32_t error_ = 0;
  std::int32_t transactions_ = 0;
  std::optional<std::int64_t> identity_;
  std::optional<SqlError> raised_;

 private:
  RandomState random_;
};

struct Shared {
  AsciiCollation collation;
  HarnessSession session;
};

Datum datumOf(sqlite3_value* value) {
  switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
      return Datum(static_cast<std::int64_t>(sqlite3_value_int64(value)));
    case SQLITE_FLOAT:
      return Datum(sqlite3_value_double(value));
    case SQLITE_TEXT: {
      const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
      return Datum(std::string_view(text, static_cast<std::size_t>(sqlite3_value_bytes(value))));
    }
    case SQLITE_BLOB: {
      const auto* bytes = static_cast<const std::byte*>(sqlite3_value_blob(value));
      return Datum(BytesView(bytes, static_cast<std::size_t>(sqlite3_value_bytes(value))));
    }
    default:
      return Datum();
  }
}

void give(sqlite3_context* context, const Result& result) {
  switch (result.kind()) {
    case Kind::Null:
      return sqlite3_result_null(context);
    case Kind::Integer:
      return sqlite3_result_int64(context, result.integer());
    case Kind::Real:
      return sqlite3_result_double(context, result.real());
    case Kind::Text:
      return sqlite3_result_text(context, result.text().data(), static_cast<int>(result.text().size()),
                                 SQLITE_TRANSIENT);
    case Kind::Blob:
      return sqlite3_result_blob(context, result.blob().data(), static_cast<int>(result.blob().size()),
                                 SQLITE_TRANSIENT);
  }
}

struct Registered {
  const Function* function = nullptr;
  const Aggregate* aggregate = nullptr;
  Shared* shared = nullptr;
};

void raise(sqlite3_context* context, Shared& shared, const SqlError& error) {
  shared.session.raised_ = error;
  sqlite3_result_error(context, error.what(), -1);
}

void callFunction(sqlite3_context* context, int count, sqlite3_value** values) {
  auto& registered = *static_cast<Registered*>(sqlite3_user_data(context));
  std::vector<Datum> args;
  for (int i = 0; i < count; ++i) args.push_back(datumOf(values[i]));
  Call call{args, registered.shared->collation, registered.shared->session};
  try {
    give(context, registered.function->run(call));
  } catch (const SqlError& error) {
    raise(context, *registered.shared, error);
  }
}

void stepAggregate(sqlite3_context* context, int count, sqlite3_value** values) {
  auto& registered = *static_cast<Registered*>(sqlite3_user_data(context));
  auto** state = static_cast<AggregateState**>(sqlite3_aggregate_context(context, sizeof(AggregateState*)));
  std::vector<Datum> args;
  for (int i = 0; i < count; ++i) args.push_back(datumOf(values[i]));
  Call call{args, registered.shared->collation, registered.shared->session};
  try {
    if (*state == nullptr) *state = registered.aggregate->create().release();
    (*state)->step(call);
  } catch (const SqlError& error) {
    raise(context, *registered.shared, error);
  }
}

void finishAggregate(sqlite3_context* context) {
  auto& registered = *static_cast<Registered*>(sqlite3_user_data(context));
  auto** slot = static_cast<AggregateState**>(sqlite3_aggregate_context(context, 0));
  const std::unique_ptr<AggregateState> state(
      slot != nullptr && *slot != nullptr ? *slot : registered.aggregate->create().release());
  try {
    give(context, state->finish());
  } catch (const SqlError& error) {
    raise(context, *registered.shared, error);
  }
}

void showAggregate(sqlite3_context* context) {
  auto& registered = *static_cast<Registered*>(sqlite3_user_data(context));
  auto** slot = static_cast<AggregateState**>(sqlite3_aggregate_context(context, 0));
  try {
    give(context, slot != nullptr && *slot != nullptr ? (*slot)->finish() : registered.aggregate->create()->finish());
  } catch (const SqlError& error) {
    raise(context, *registered.shared, error);
  }
}

void leaveAggregate(sqlite3_context* context, int count, sqlite3_value** values) {
  auto& registered = *static_cast<Registered*>(sqlite3_user_data(context));
  auto** state = static_cast<AggregateState**>(sqlite3_aggregate_context(context, 0));
  std::vector<Datum> args;
  for (int i = 0; i < count; ++i) args.push_back(datumOf(values[i]));
  Call call{args, registered.shared->collation, registered.shared->session};
  try {
    if (state != nullptr && *state != nullptr) (*state)->leave(call);
  } catch (const SqlError& error) {
    raise(context, *registered.shared, error);
  }
}

int compareTexts(void* shared, int leftSize, const void* left, int rightSize, const void* right) {
  return static_cast<Shared*>(shared)->collation.compare(
      {static_cast<const char*>(left), static_cast<std::size_t>(leftSize)},
      {static_cast<const char*>(right), static_cast<std::size_t>(rightSize)});
}

int compareIdentifiers(void*, int leftSize, const void* left, int rightSize, const void* right) {
  return compareUniqueIdentifiers({static_cast<const char*>(left), static_cast<std::size_t>(leftSize)},
                                  {static_cast<const char*>(right), static_cast<std::size_t>(rightSize)});
}

int compareDecimals(void*, int leftSize, const void* left, int rightSize, const void* right) {
  const auto a = Decimal::parse({static_cast<const char*>(left), static_cast<std::size_t>(leftSize)});
  const auto b = Decimal::parse({static_cast<const char*>(right), static_cast<std::size_t>(rightSize)});
  if (!a || !b) return 0;
  const auto order = a->compare(*b);
  return order < 0 ? -1 : order > 0 ? 1 : 0;
}

std::string shownValue(sqlite3_stmt* statement, int column) {
  switch (sqlite3_column_type(statement, column)) {
    case SQLITE_NULL:
      return "NULL";
    case SQLITE_FLOAT: {
      std::array<char, 40> text{};
      std::snprintf(text.data(), text.size(), "%.15g", sqlite3_column_double(statement, column));
      return text.data();
    }
    case SQLITE_BLOB: {
      std::string text = "0x";
      const auto* bytes = static_cast<const unsigned char*>(sqlite3_column_blob(statement, column));
      for (int i = 0; i < sqlite3_column_bytes(statement, column); ++i) {
        std::array<char, 3> digits{};
        std::snprintf(digits.data(), digits.size(), "%02X", bytes[i]);
        text += digits.data();
      }
      return text;
    }
    default:
      return {reinterpret_cast<const char*>(sqlite3_column_text(statement, column)),
              static_cast<std::size_t>(sqlite3_column_bytes(statement, column))};
  }
}

std::string shownError(const SqlError& error) {
  const std::string words = error.message().empty() ? "" : ": " + error.message();
  return "error " + std::to_string(error.number()) + words + "\n";
}

}  // namespace

struct EngineHarness::State : Catalogue {
  Shared shared;
  sqlite3* database = nullptr;
  std::vector<std::unique_ptr<Registered>> registered;
  mutable std::map<std::string, std::unique_ptr<Table>> tableMap;
  std::uint64_t schema = 1;
  std::vector<Result> variables;
  std::string identityInsert;     // the table that has it ON
  std::vector<Result> rowValues;  // that AssignStep::forRow is run for
  int leaving = 0;                // breakOuter or continueOuter on its way out of deferred steps

  // --- the catalogue, read anew after each definition
  const Table* find(std::string_view name) const override {
    for (const auto& [key, table] : tableMap) {
      if (sameName(table->name, name)) return table.get();
    }
    return nullptr;
  }
  const Table* findByIndex(std::string_view name) const override {
    for (const auto& [key, table] : tableMap) {
      for (const Index& index : table->indexes) {
        if (sameName(index.name, name)) return table.get();
      }
    }
    return nullptr;
  }
  std::vector<const Table*> tables() const override {
    std::vector<const Table*> all;
    for (const auto& [key, table] : tableMap) all.push_back(table.get());
    return all;
  }
  std::uint64_t version() const override { return schema; }

  template <typename Row>
  void each(const std::string& text, Row row) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database, text.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
      throw SqlError(50001, 16, std::string("SQLite: ") + sqlite3_errmsg(database) + " in " + text);
    }
    while (sqlite3_step(statement) == SQLITE_ROW) row(statement);
    sqlite3_finalize(statement);
  }

  void readSchema(const std::string& schemaName) {
    each("SELECT name FROM " + schemaName + ".sqlite_schema WHERE type='table' AND name NOT LIKE 'sqlite_%'",
         [&](sqlite3_stmt* s) {
           auto table = std::make_unique<Table>();
           table->name = shownValue(s, 0);
           table->temporary = schemaName == "temp";
           const std::string name = table->name;
           tableMap[name] = std::move(table);
         });
    for (auto& [name, table] : tableMap) {
      if (table->temporary != (schemaName == "temp")) continue;
      readTable(*table, schemaName);
    }
  }

  void readTable(Table& table, const std::string& schemaName) {
    bool identity = false;
    each("SELECT sql FROM " + schemaName + ".sqlite_schema WHERE name='" + table.name + "'", [&](sqlite3_stmt* s) {
      table.text = shownValue(s, 0);
      identity = table.text.find("AUTOINCREMENT") != std::string::npos;
    });
    each("SELECT name,type,\"notnull\",dflt_value,pk FROM pragma_table_info('" + table.name + "')",
         [&](sqlite3_stmt* s) {
           Column column;
           column.name = shownValue(s, 0);
           const auto type = Type::fromDeclared(shownValue(s, 1));
           if (!type) throw SqlError(50002, 16, "no type " + shownValue(s, 1));
           const bool key = sqlite3_column_int(s, 4) != 0;
           column.type = type->orNull(sqlite3_column_int(s, 2) == 0 && !key);
           column.identity = identity && key;
           if (sqlite3_column_type(s, 3) != SQLITE_NULL) column.defaultText = shownValue(s, 3);
           readIdentity(column);
           table.columns.push_back(column);
         });
    each("SELECT name,\"unique\",origin FROM pragma_index_list('" + table.name + "')", [&](sqlite3_stmt* s) {
      Index index;
      const std::string stored = shownValue(s, 0);
      index.name = stored;
      index.unique = sqlite3_column_int(s, 1) != 0;
      index.primary = shownValue(s, 2) == "pk";
      if (shownValue(s, 2) == "c") table.nameIndex(index, stored);
      each("SELECT cid FROM pragma_index_info('" + stored + "')", [&](sqlite3_stmt* c) {
        if (sqlite3_column_int(c, 0) >= 0) index.columns.push_back(sqlite3_column_int(c, 0));
      });
      table.indexes.push_back(std::move(index));
    });
  }

  void readCatalogue() {
    tableMap.clear();
    readSchema("main");
    readSchema("temp");
    ++schema;
  }

  // --- running
  void bind(sqlite3_stmt* statement, int position, const Datum& value) {
    switch (value.kind()) {
      case Kind::Null:
        sqlite3_bind_null(statement, position);
        break;
      case Kind::Integer:
        sqlite3_bind_int64(statement, position, value.integer());
        break;
      case Kind::Real:
        sqlite3_bind_double(statement, position, value.real());
        break;
      case Kind::Text:
        sqlite3_bind_text(statement, position, value.text().data(), static_cast<int>(value.text().size()),
                          SQLITE_TRANSIENT);
        break;
      case Kind::Blob:
        sqlite3_bind_blob(statement, position, value.blob().data(), static_cast<int>(value.blob().size()),
                          SQLITE_TRANSIENT);
        break;
    }
  }

  Result valueOf(const Parameter& parameter, const ShapedBatch& batch) {
    switch (parameter.source) {
      case Parameter::Source::Literal: {
        const Literal& literal = batch.literals[static_cast<std::size_t>(parameter.index)];
        if (literal.type.kind == TypeKind::Int) return Result(literal.integer);
        if (literal.type.kind == TypeKind::Float) return Result(literal.real);
        if (literal.type.isBinary()) {
          const auto* bytes = reinterpret_cast<const std::byte*>(literal.text.data());
          return Result(Bytes(bytes, bytes + literal.text.size()));
        }
        return Result(std::string(literal.text));
      }
      case Parameter::Source::Variable:
        return variables[static_cast<std::size_t>(parameter.index)];
      case Parameter::Source::RowColumn:
        return rowValues[static_cast<std::size_t>(parameter.index)];
      case Parameter::Source::RowCount:
        return Result(shared.session.rowCount_);
      case Parameter::Source::Error:
        return Result(shared.session.error_);
      case Parameter::Source::DateFirst:
        return Result(7);
      case Parameter::Source::XactState:
        return Result(shared.session.transactions_ > 0 ? 1 : 0);
      case Parameter::Source::TranCount:
        return Result(shared.session.transactions_);
      case Parameter::Source::Identity:
      case Parameter::Source::ScopeIdentity:
        return shared.session.identity_ ? Result(std::to_string(*shared.session.identity_)) : Result();
      default:
        return Result();
    }
  }

  // Runs one statement; `row` sees each row.
  template <typename Row>
  void execute(const Statement& text, const ShapedBatch& batch, Row row) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database, text.text.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
      throw SqlError(50001, 16, std::string("SQLite: ") + sqlite3_errmsg(database) + " in " + text.text);
    }
    const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> owner(statement, sqlite3_finalize);
    if (sqlite3_bind_parameter_count(statement) != static_cast<int>(text.parameters.size())) {
      throw SqlError(50003, 16, "parameters do not fit: " + text.text);
    }
    for (std::size_t i = 0; i < text.parameters.size(); ++i) {
      const Parameter& parameter = text.parameters[i];
      Result value = valueOf(parameter, batch);
      if (!parameter.column.empty()) {
        value = assign(value.datum(), parameter.from, parameter.to, parameter.column, shared.collation);
      } else if (parameter.from != parameter.to) {
        value = convert(value.datum(), parameter.from, parameter.to, std::nullopt, shared.collation);
      }
      bind(statement, static_cast<int>(i) + 1, value.datum());
    }
    shared.session.raised_.reset();
    int code = SQLITE_OK;
    while ((code = sqlite3_step(statement)) == SQLITE_ROW) row(statement);
    if (code == SQLITE_DONE) return;
    if (shared.session.raised_) throw *shared.session.raised_;
    const std::string message = sqlite3_errmsg(database);
    const int extended = sqlite3_extended_errcode(database);
    if (extended == SQLITE_CONSTRAINT_UNIQUE || extended == SQLITE_CONSTRAINT_PRIMARYKEY) throw SqlError(2627, 14, "");
    if (extended == SQLITE_CONSTRAINT_NOTNULL) throw SqlError(515, 16, "");
    if ((extended & 0xFF) == SQLITE_CONSTRAINT) throw SqlError(547, 16, "");
    throw SqlError(50001, 16, "SQLite: " + message + " in " + text.text);
  }

  Result read(sqlite3_stmt* statement, int column) { return Result(datumOf(sqlite3_column_value(statement, column))); }

  std::string steps(const Program& program, const ShapedBatch& batch, bool& ended) {
    std::string output;
    int next = 0;
    while (next >= 0 && next < static_cast<int>(program.steps.size()) && !ended) {
      const Step& step = program.steps[static_cast<std::size_t>(next++)];
      try {
        std::visit([&](const auto& body) { output += run(body, program, batch, next, ended); }, step.body);
        if (!std::holds_alternative<DeferredStep>(step.body)) shared.session.error_ = 0;
        if (next < 0) ended = true;
      } catch (const SqlError& error) {
        output += shownError(error);
        shared.session.error_ = error.number();
        if (reachOf(error) == ErrorReach::Batch) ended = true;
      }
    }
    return output;
  }

  std::string run(const QueryStep& step, const Program&, const ShapedBatch& batch, int&, bool&) {
    std::string output;
    std::int64_t rows = 0;
    try {
      execute(step.query.statement, batch, [&](sqlite3_stmt* s) {
        ++rows;
        for (int i = 0; i < sqlite3_column_count(s); ++i) output += (i > 0 ? " | " : "") + shownValue(s, i);
        output += "\n";
      });
    } catch (const SqlError& error) {
      shared.session.rowCount_ = 0;
      throw;
    }
    if (step.query.rows) {
      // The variants of the text must at least be accepted.
      execute({step.query.rows->textWithRow, step.query.statement.parameters}, batch, [](sqlite3_stmt*) {});
      execute({step.query.rows->textWithoutLong, step.query.statement.parameters}, batch, [](sqlite3_stmt*) {});
    }
    shared.session.rowCount_ = rows;
    return output;
  }
  std::string run(const ExecuteStep& step, const Program&, const ShapedBatch& batch, int&, bool&) {
    if (step.givesIdentity == ExecuteStep::GivesIdentity::Yes && identityInsert != step.table) {
      throw SqlError(544, 16,
                     "Cannot insert explicit value for identity column in table '" + step.table +
                         "' when IDENTITY_INSERT is set to OFF.");
    }
    sqlite3_exec(database, "SAVEPOINT statement", nullptr, nullptr, nullptr);
    try {
      for (std::size_t i = 0; i < step.statements.size(); ++i) {
        execute(step.statements[i], batch, [](sqlite3_stmt*) {});
        if (static_cast<int>(i) == step.counted) shared.session.rowCount_ = sqlite3_changes(database);
      }
    } catch (const SqlError&) {
      sqlite3_exec(database, "ROLLBACK TO statement; RELEASE statement", nullptr, nullptr, nullptr);
      throw;
    }
    sqlite3_exec(database, "RELEASE statement", nullptr, nullptr, nullptr);
    if (step.setsIdentity && !step.makesIdentity) shared.session.identity_ = sqlite3_last_insert_rowid(database);
    return {};
  }
  std::string run(const DdlStep& step, const Program&, const ShapedBatch& batch, int&, bool&) {
    for (const auto& refusal : step.refusals) {
      execute(refusal.query, batch, [&](sqlite3_stmt*) { throw SqlError(refusal.number, 16, refusal.message); });
    }
    for (const auto& statement : step.preparations) execute(statement, batch, [](sqlite3_stmt*) {});
    for (const auto& change : step.redefinitions) redefine(change);
    for (const auto& statement : step.statements) execute(statement, batch, [](sqlite3_stmt*) {});
    readCatalogue();
    return {};
  }
  void redefine(const Redefinition& change) {
    sqlite3_db_config(database, SQLITE_DBCONFIG_WRITABLE_SCHEMA, 1, nullptr);
    sqlite3_stmt* update = nullptr;
    sqlite3_prepare_v2(database, "UPDATE sqlite_schema SET sql=?1 WHERE name=?2", -1, &update, nullptr);
    sqlite3_bind_text(update, 1, change.text.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(update, 2, change.table.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_step(update);
    sqlite3_finalize(update);
    sqlite3_exec(database, "PRAGMA writable_schema=RESET", nullptr, nullptr, nullptr);
  }
  std::string run(const JumpUnlessStep& step, const Program&, const ShapedBatch& batch, int& next, bool&) {
    bool holds = false;
    execute(step.condition.statement, batch, [&](sqlite3_stmt* s) { holds = sqlite3_column_int(s, 0) == 1; });
    if (!holds) next = step.target;
    return {};
  }
  std::string run(const JumpStep& step, const Program&, const ShapedBatch&, int& next, bool&) {
    next = step.target;
    if (next < JumpStep::endOfBatch) {
      leaving = next;
      next = static_cast<int>(1U << 30);
    }
    return {};
  }
  std::string run(const AssignStep& step, const Program&, const ShapedBatch& batch, int&, bool&) {
    std::int64_t rows = 0;
    if (!step.forRow.empty()) return runRowByRow(step, batch);
    execute(step.query.statement, batch, [&](sqlite3_stmt* s) {
      ++rows;
      for (std::size_t i = 0; i < step.slots.size(); ++i) {
        variables[static_cast<std::size_t>(step.slots[i])] = read(s, static_cast<int>(i));
      }
    });
    shared.session.rowCount_ = rows;
    return {};
  }
  std::string runRowByRow(const AssignStep& step, const ShapedBatch& batch) {
    shared.session.rowCount_ = 0;
    execute(step.query.statement, batch, [&](sqlite3_stmt* s) {
      ++shared.session.rowCount_;
      rowValues.clear();
      for (int i = 0; i < sqlite3_column_count(s); ++i) rowValues.push_back(read(s, i));
      for (std::size_t i = 0; i < step.slots.size(); ++i) {
        execute(step.forRow[i], batch,
                [&](sqlite3_stmt* value) { variables[static_cast<std::size_t>(step.slots[i])] = read(value, 0); });
      }
    });
    return {};
  }
  std::string run(const PrintStep& step, const Program&, const ShapedBatch& batch, int&, bool&) {
    std::string output;
    execute(step.query.statement, batch, [&](sqlite3_stmt* s) { output = shownValue(s, 0) + "\n"; });
    return output;
  }
  std::string run(const TransactionStep& step, const Program&, const ShapedBatch&, int&, bool&) {
    auto& depth = shared.session.transactions_;
    if (step.verb == TransactionStep::Verb::Begin) {
      if (depth++ == 0) sqlite3_exec(database, "BEGIN", nullptr, nullptr, nullptr);
      return {};
    }
    const bool commits = step.verb == TransactionStep::Verb::Commit;
    if (depth == 0) throw SqlError(commits ? Message::CommitWithoutBegin : Message::RollbackWithoutBegin);
    depth = commits ? depth - 1 : 0;
    if (depth == 0) sqlite3_exec(database, commits ? "COMMIT" : "ROLLBACK", nullptr, nullptr, nullptr);
    return {};
  }
  std::string run(const ErrorStep& step, const Program&, const ShapedBatch&, int&, bool&) {
    throw SqlError(step.number, 16, step.message);
  }
  std::string run(const RaiseStep& step, const Program&, const ShapedBatch& batch, int&, bool&) {
    std::string text;
    int severity = 0;
    execute(step.query.statement, batch, [&](sqlite3_stmt* s) {
      text = shownValue(s, 0);
      severity = sqlite3_column_int(s, 1);
    });
    if (severity > 10) throw SqlError(50000, severity, text);
    return text + "\n";
  }
  std::string run(const ThrowStep& step, const Program&, const ShapedBatch& batch, int&, bool&) {
    SqlError error(0, 16, "");
    if (step.query) {
      execute(step.query->statement, batch,
              [&](sqlite3_stmt* s) { error = SqlError(sqlite3_column_int(s, 0), 16, shownValue(s, 1)).asThrown(); });
    }
    throw error;
  }
  std::string run(const RunTextStep&, const Program&, const ShapedBatch&, int&, bool&) {
    throw SqlError(50004, 16, "texts are run by the embedded engine only");
  }
  std::string run(const CursorStep&, const Program&, const ShapedBatch&, int&, bool&) {
    throw SqlError(50004, 16, "cursors are run by the embedded engine only");
  }
  std::string run(const OptionStep& step, const Program&, const ShapedBatch&, int&, bool&) {
    if (!step.table.empty()) identityInsert = step.on ? step.table : std::string();
    return {};
  }
  std::string run(const DeferredStep& step, const Program& program, const ShapedBatch& batch, int& next, bool& ended) {
    const Program inner = compileDeferred(batch, program, step, *this);
    std::string output = steps(inner, batch, ended);
    const int left = std::exchange(leaving, 0);
    if (left != 0)
      run(JumpStep{left == JumpStep::breakOuter ? step.breakTo : step.continueTo}, program, batch, next, ended);
    return output;
  }
};

EngineHarness::EngineHarness() : state_(std::make_unique<State>()) {
  sqlite3_open(":memory:", &state_->database);
  state_->shared.session.database_ = state_->database;
  sqlite3_exec(state_->database, "PRAGMA foreign_keys=ON", nullptr, nullptr, nullptr);
  for (const Function& function : registry().functions) {
    state_->registered.push_back(std::make_unique<Registered>(Registered{&function, nullptr, &state_->shared}));
    const int flags = SQLITE_UTF8 | (function.deterministic ? SQLITE_DETERMINISTIC : 0);
    const int least = function.maxArgs < 0 ? -1 : function.minArgs;  // -1: SQLite's word for any number
    for (int count = least; count <= function.maxArgs; ++count) {
      sqlite3_create_function_v2(state_->database, std::string(function.name).c_str(), count, flags,
                                 state_->registered.back().get(), callFunction, nullptr, nullptr, nullptr);
    }
  }
  for (const Aggregate& aggregate : registry().aggregates) {
    state_->registered.push_back(std::make_unique<Registered>(Registered{nullptr, &aggregate, &state_->shared}));
    sqlite3_create_window_function(state_->database, std::string(aggregate.name).c_str(), aggregate.args, SQLITE_UTF8,
                                   state_->registered.back().get(), stepAggregate, finishAggregate, showAggregate,
                                   leaveAggregate, nullptr);
  }
  sqlite3_create_collation_v2(state_->database, "TSQL", SQLITE_UTF8, &state_->shared, compareTexts, nullptr);
  sqlite3_create_collation_v2(state_->database, "TSQL_GUID", SQLITE_UTF8, nullptr, compareIdentifiers, nullptr);
  sqlite3_create_collation_v2(state_->database, "TSQL_DECIMAL", SQLITE_UTF8, nullptr, compareDecimals, nullptr);
}

EngineHarness::~EngineHarness() {
  sqlite3_close(state_->database);
}

std::string EngineHarness::run(std::string_view text) {
  try {
    const ShapedBatch batch = shape(text);
    const Program program = compile(batch, *state_);
    state_->variables.assign(program.variables.size(), Result());
    bool ended = false;
    return state_->steps(program, batch, ended);
  } catch (const SqlError& error) {
    return shownError(error);
  }
}

std::string EngineHarness::columns(std::string_view text) {
  try {
    const ShapedBatch batch = shape(text);
    const Program program = compile(batch, *state_);
    std::string result;
    for (const Step& step : program.steps) {
      const auto* query = std::get_if<QueryStep>(&step.body);
      if (query == nullptr) continue;
      for (const auto& column : query->query.columns) {
        result += (result.empty() ? "" : ", ") + column.name + (column.name.empty() ? "" : " ") + column.type.name() +
                  (column.type.nullable ? "" : " not null");
      }
      break;
    }
    return result;
  } catch (const SqlError& error) {
    return shownError(error);
  }
}

std::string EngineHarness::texts(std::string_view text) {
  try {
    const ShapedBatch batch = shape(text);
    const Program program = compile(batch, *state_);
    std::string result;
    for (const Step& step : program.steps) {
      if (const auto* query = std::get_if<QueryStep>(&step.body)) result += query->query.statement.text + "\n";
      if (const auto* jump = std::get_if<JumpUnlessStep>(&step.body)) result += jump->condition.statement.text + "\n";
      if (const auto* changes = std::get_if<ExecuteStep>(&step.body)) {
        for (const auto& statement : changes->statements) result += statement.text + "\n";
      }
      if (const auto* definitions = std::get_if<DdlStep>(&step.body)) {
        for (const auto& statement : definitions->statements) result += statement.text + "\n";
      }
    }
    return result;
  } catch (const SqlError& error) {
    return shownError(error);
  }
}

std::string EngineHarness::sqlite(const std::string& text) {
  std::string output;
  state_->each(text, [&](sqlite3_stmt* s) {
    for (int i = 0; i < sqlite3_column_count(s); ++i) output += (i > 0 ? " | " : "") + shownValue(s, i);
    output += "\n";
  });
  return output;
}

}  // namespace tolvane::tsql::testing
