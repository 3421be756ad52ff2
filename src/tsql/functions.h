#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "tsql/catalogue.h"
#include "tsql/collation.h"
#include "tsql/datetime.h"
#include "tsql/datum.h"

namespace tolvane::tsql {

// The two seeds of RAND; RAND(n) sets the first one, RAND() goes on from where it is.
struct RandomState {
  std::int32_t first = 12345;
  std::int32_t second = 67890;
};

// A row of sys.objects.
struct DatabaseObject {
  std::int64_t id = 0;
  std::int64_t parent = 0;  // the table of a constraint, else 0
  std::string type;         // U, V, PK, UQ, F, C or D
  std::string name;
};

// What run-time functions ask of the connection that runs the statement. Used by one thread at a time.
class Session {
 public:
  Session() = default;
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  virtual ~Session() = default;

  // The clock of the running statement in local time: the same answer for its whole duration.
  [[nodiscard]] virtual DateTime now() const = 0;
  // The same moment in the time of the meridian of Greenwich.
  [[nodiscard]] virtual DateTime utcNow() const = 0;
  // @@ROWCOUNT, @@ERROR, @@TRANCOUNT: of the statement before this one.
  [[nodiscard]] virtual std::int64_t rowCount() const = 0;
  [[nodiscard]] virtual std::int32_t lastError() const = 0;
  [[nodiscard]] virtual std::int32_t transactionCount() const = 0;
  // @@IDENTITY and SCOPE_IDENTITY(); nothing before the first INSERT into a table with an identity column.
  [[nodiscard]] virtual std::optional<std::int64_t> identity() const = 0;
  [[nodiscard]] virtual std::optional<std::int64_t> scopeIdentity() const = 0;
  // The value that the identity column of a table got last, nothing before its first one; and a new one, which may be a
  // row's own.
  [[nodiscard]] virtual std::optional<std::int64_t> lastIdentityOf(std::string_view table) = 0;
  virtual void gaveIdentity(std::string_view table, std::int64_t value, bool isLast) = 0;
  // DB_NAME(), USER_NAME(), @@VERSION.
  [[nodiscard]] virtual std::string databaseName() const = 0;
  [[nodiscard]] virtual std::string userName() const = 0;
  [[nodiscard]] virtual std::string version() const = 0;
  // OBJECT_ID(name[, type]): the number of a table, view or constraint, nothing when there is no such object. An empty
  // type means any.
  [[nodiscard]] virtual std::optional<std::int64_t> objectId(std::string_view name, std::string_view type) const = 0;
  // OBJECT_NAME(number): nothing when no object has that number.
  [[nodiscard]] virtual std::optional<DatabaseObject> object(std::int64_t id) const = 0;
  // The numbers of all constraints of tables that stay.
  [[nodiscard]] virtual std::vector<std::int64_t> constraints() const = 0;
  // The table that a name means, with or without the names before it; null when there is none.
  [[nodiscard]] virtual const Table* tableNamed(std::string_view name) const = 0;
  // The table or view that a number means; null when there is none, or when it is a temporary table's.
  [[nodiscard]] virtual const Table* tableNumbered(std::int64_t id) const = 0;
  // SET DATEFIRST: 1 is Monday, 7 (as us_english has it) Sunday.
  [[nodiscard]] virtual int dateFirst() const { return 7; }
  // The connection's generator behind RAND; seeded by the session when the connection opens.
  [[nodiscard]] virtual RandomState& random() = 0;
  // Sixteen bytes that no other call gives, for NEWID; version and variant bits are set by the caller.
  [[nodiscard]] virtual std::array<std::byte, 16> uniqueBytes() = 0;
};

// One call of a run-time function. The number of arguments is within the function's bounds.
struct Call {
  std::span<const Datum> args;
  const Collation& collation;
  Session& session;
};

// A scalar function. Throws SqlError, and nothing else but std::bad_alloc.
struct Function {
  std::string_view name;  // as SQLite knows it: "ts_len"
  int minArgs;
  int maxArgs;         // -1: any number
  bool deterministic;  // same arguments: same result as long as one statement runs (the clock, RAND without a seed)
  Result (*run)(Call& call);
};

// The running state of an aggregate over one group.
class AggregateState {
 public:
  AggregateState() = default;
  AggregateState(const AggregateState&) = delete;
  AggregateState& operator=(const AggregateState&) = delete;
  virtual ~AggregateState() = default;

  // Takes in one row; throws SqlError.
  virtual void step(Call& call) = 0;
  // Takes back the row that was taken in first of those that are left; throws SqlError.
  virtual void leave(Call& call);
  // The answer for the rows taken in so far, also for none; throws SqlError.
  [[nodiscard]] virtual Result finish() = 0;
};

struct Aggregate {
  std::string_view name;  // as SQLite knows it: "ts_sum"
  int args;               // -1: any number
  std::unique_ptr<AggregateState> (*create)();
};

// All functions and aggregates of the engine, each name once; a loop over them registers everything with the database.
struct Registry {
  std::span<const Function> functions;
  std::span<const Aggregate> aggregates;
};
[[nodiscard]] const Registry& registry();

// The function or aggregate of that name; null when there is none.
[[nodiscard]] const Function* findFunction(std::string_view name);
[[nodiscard]] const Aggregate* findAggregate(std::string_view name);

}  // namespace tolvane::tsql
