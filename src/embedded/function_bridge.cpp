#include "embedded/function_bridge.h"

#include <array>
#include <memory>
#include <new>
#include <span>
#include <string>

#include "embedded/account_set_collation.h"
#include "rowset/decimal_order.h"
#include "tsql/unique_identifier_order.h"

namespace tolvane::embedded {
namespace {

constexpr std::size_t argumentsOnStack = 8;

tsql::Datum toDatum(sqlite3_value* value) {
  switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
      return {sqlite3_value_int64(value)};
    case SQLITE_FLOAT:
      return {sqlite3_value_double(value)};
    case SQLITE_TEXT: {
      const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
      return {std::string_view(text, static_cast<std::size_t>(sqlite3_value_bytes(value)))};
    }
    case SQLITE_BLOB: {
      const auto* bytes = static_cast<const std::byte*>(sqlite3_value_blob(value));
      return {tsql::BytesView(bytes, static_cast<std::size_t>(sqlite3_value_bytes(value)))};
    }
    default:
      return {};
  }
}

void giveResult(sqlite3_context* context, const tsql::Result& result) {
  switch (result.kind()) {
    case tsql::Kind::Null:
      return sqlite3_result_null(context);
    case tsql::Kind::Integer:
      return sqlite3_result_int64(context, result.integer());
    case tsql::Kind::Real:
      return sqlite3_result_double(context, result.real());
    case tsql::Kind::Text:
      return sqlite3_result_text64(context, result.text().data(), result.text().size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    case tsql::Kind::Blob:
      if (result.blob().empty()) return sqlite3_result_zeroblob(context, 0);
      return sqlite3_result_blob64(context, result.blob().data(), result.blob().size(), SQLITE_TRANSIENT);
  }
}

FunctionBridge::Entry& entryOf(sqlite3_context* context) {
  return *static_cast<FunctionBridge::Entry*>(sqlite3_user_data(context));
}

// The border between SQLite, which is C, and the functions: every exception ends here.
template <typename Run>
void guarded(sqlite3_context* context, Run&& run) noexcept {
  try {
    run();
  } catch (const tsql::SqlError& error) {
    entryOf(context).bridge->database().setFunctionError(error);
    sqlite3_result_error(context, error.what(), -1);
  } catch (const std::bad_alloc&) {
    sqlite3_result_error_nomem(context);
  } catch (const std::exception& error) {
    sqlite3_result_error(context, error.what(), -1);
  }
}

template <typename Use>
void withArguments(int count, sqlite3_value** values, Use&& use) {
  const auto size = static_cast<std::size_t>(count);
  std::array<tsql::Datum, argumentsOnStack> few;
  std::vector<tsql::Datum> many;
  std::span<tsql::Datum> arguments(few.data(), std::min(size, argumentsOnStack));
  if (size > argumentsOnStack) {
    many.resize(size);
    arguments = many;
  }
  for (std::size_t i = 0; i < size; ++i) arguments[i] = toDatum(values[i]);
  use(arguments);
}

void callFunction(sqlite3_context* context, int count, sqlite3_value** values) {
  guarded(context, [&] {
    withArguments(count, values, [&](std::span<const tsql::Datum> arguments) {
      auto& entry = entryOf(context);
      tsql::Call call{arguments, accountSetCollation(), entry.bridge->session()};
      giveResult(context, entry.function->run(call));
    });
  });
}

using StatePointer = std::unique_ptr<tsql::AggregateState>;

void stepAggregate(sqlite3_context* context, int count, sqlite3_value** values) {
  guarded(context, [&] {
    // SQLite gives zeroed memory for each group and keeps it until the final call, which always comes.
    void* memory = sqlite3_aggregate_context(context, sizeof(StatePointer));
    if (!memory) throw std::bad_alloc();
    auto& state = *static_cast<StatePointer*>(memory);
    auto& entry = entryOf(context);
    if (!state) std::construct_at(&state, entry.aggregate->create());
    withArguments(count, values, [&](std::span<const tsql::Datum> arguments) {
      tsql::Call call{arguments, accountSetCollation(), entry.bridge->session()};
      state->step(call);
    });
  });
}

void finishAggregate(sqlite3_context* context) {
  guarded(context, [&] {
    auto* state = static_cast<StatePointer*>(sqlite3_aggregate_context(context, 0));
    if (!state || !*state) return giveResult(context, entryOf(context).aggregate->create()->finish());
    const StatePointer taken = std::move(*state);
    std::destroy_at(state);
    giveResult(context, taken->finish());
  });
}

// The answer so far, while a window grows.
void showAggregate(sqlite3_context* context) {
  guarded(context, [&] {
    auto* state = static_cast<StatePointer*>(sqlite3_aggregate_context(context, 0));
    if (!state || !*state) return giveResult(context, entryOf(context).aggregate->create()->finish());
    giveResult(context, (*state)->finish());
  });
}

// A row leaves a window whose beginning moves.
void leaveAggregate(sqlite3_context* context, int count, sqlite3_value** values) {
  guarded(context, [&] {
    auto* state = static_cast<StatePointer*>(sqlite3_aggregate_context(context, 0));
    if (!state || !*state) return;
    auto& entry = entryOf(context);
    withArguments(count, values, [&](std::span<const tsql::Datum> arguments) {
      tsql::Call call{arguments, accountSetCollation(), entry.bridge->session()};
      (*state)->leave(call);
    });
  });
}

std::string_view view(int size, const void* text) {
  return {static_cast<const char*>(text), static_cast<std::size_t>(size)};
}

int compareTexts(void*, int leftSize, const void* left, int rightSize, const void* right) {
  return accountSetCollation().compare(view(leftSize, left), view(rightSize, right));
}

int compareDecimals(void*, int leftSize, const void* left, int rightSize, const void* right) {
  return rowset::compareDecimalTexts(view(leftSize, left), view(rightSize, right));
}

int compareIdentifiers(void*, int leftSize, const void* left, int rightSize, const void* right) {
  return tsql::compareUniqueIdentifiers(view(leftSize, left), view(rightSize, right));
}

void check(Database& database, int code) {
  if (code != SQLITE_OK) database.fail(code);
}

}  // namespace

FunctionBridge::FunctionBridge(Database& database, tsql::Session& session) : database_(database), session_(session) {
  const auto& registry = tsql::registry();
  entries_.reserve(registry.functions.size() + registry.aggregates.size());
  auto* db = database.get();
  for (const auto& function : registry.functions) {
    auto& entry = entries_.emplace_back(Entry{this, &function, nullptr});
    const int flags = SQLITE_UTF8 | SQLITE_INNOCUOUS | (function.deterministic ? SQLITE_DETERMINISTIC : 0);
    const int count = function.minArgs == function.maxArgs ? function.minArgs : -1;
    check(database, sqlite3_create_function_v2(db, std::string(function.name).c_str(), count, flags, &entry,
                                               callFunction, nullptr, nullptr, nullptr));
  }
  for (const auto& aggregate : registry.aggregates) {
    auto& entry = entries_.emplace_back(Entry{this, nullptr, &aggregate});
    check(database, sqlite3_create_window_function(db, std::string(aggregate.name).c_str(), aggregate.args,
                                                   SQLITE_UTF8 | SQLITE_INNOCUOUS, &entry, stepAggregate,
                                                   finishAggregate, showAggregate, leaveAggregate, nullptr));
  }
  check(database, sqlite3_create_collation_v2(db, "TSQL", SQLITE_UTF8, nullptr, compareTexts, nullptr));
  check(database, sqlite3_create_collation_v2(db, "TSQL_GUID", SQLITE_UTF8, nullptr, compareIdentifiers, nullptr));
  check(database, sqlite3_create_collation_v2(db, "TSQL_DECIMAL", SQLITE_UTF8, nullptr, compareDecimals, nullptr));
}

}  // namespace tolvane::embedded
