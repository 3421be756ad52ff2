// The values of identity columns that the engine makes itself.
#include <array>
#include <limits>
#include <string>

#include "tsql/function_groups.h"
#include "tsql/sql_error.h"
#include "tsql/table_text.h"
#include "tsql/type.h"

namespace tolvane::tsql {
namespace {

struct Range {
  std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
  std::int64_t highest = std::numeric_limits<std::int64_t>::max();
};

Range rangeOf(const Type& type) {
  switch (type.kind) {
    case TypeKind::TinyInt:
      return {0, std::numeric_limits<std::uint8_t>::max()};
    case TypeKind::SmallInt:
      return {std::numeric_limits<std::int16_t>::min(), std::numeric_limits<std::int16_t>::max()};
    case TypeKind::Int:
      return {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()};
    default:
      break;
  }
  constexpr int digitsOfAll = 18;
  if (type.kind != TypeKind::Decimal || type.precision > digitsOfAll) return {};
  std::int64_t bound = 1;
  for (int i = 0; i < type.precision; ++i) bound *= 10;
  return {1 - bound, bound - 1};
}

[[noreturn]] void failOverflow(const Type& type) {
  const std::string_view name = type.kind == TypeKind::Decimal ? "numeric" : type.baseName();
  throw SqlError(Message::ArithmeticOverflow, {"IDENTITY", name});
}

struct Identity {
  std::string_view table;
  Type type;
  std::int64_t seed;
  std::int64_t step;

  // The arguments of a call from the table's name on.
  static Identity of(std::span<const Datum> args) {
    return {args[0].text(), Type::unpack(args[1].integer()), args[2].integer(), args[3].integer()};
  }
};

Result stored(const Identity& identity, std::int64_t value) {
  if (identity.type.kind == TypeKind::Decimal) return Result(std::to_string(value));
  return Result(value);
}

// table, packed type, seed, step.
Result nextIdentity(Call& call) {
  const auto identity = Identity::of(call.args);
  const Range range = rangeOf(identity.type);
  const auto last = call.session.lastIdentityOf(identity.table);
  std::int64_t value = identity.seed;
  if (last && __builtin_add_overflow(*last, identity.step, &value)) failOverflow(identity.type);
  if (value < range.lowest || value > range.highest) failOverflow(identity.type);
  call.session.gaveIdentity(identity.table, value, true);
  return stored(identity, value);
}

// The value of a row under SET IDENTITY_INSERT, then the same. The values go on behind the furthest one.
Result givenIdentity(Call& call) {
  const Datum& given = call.args[0];
  if (given.isNull()) return {};
  const auto identity = Identity::of(call.args.subspan(1));
  std::int64_t value = 0;
  if (given.kind() == Kind::Integer) {
    value = given.integer();
  } else {
    constexpr std::size_t digits = 18;
    if (given.text().size() > digits)
      throw SqlError(notSupportedNumber, 16, "An identity value of that size is not supported.");
    value = std::stoll(std::string(given.text()));
  }
  const auto last = call.session.lastIdentityOf(identity.table);
  const bool grows = identity.step > 0;
  const bool further =
      last ? (grows ? value > *last : value < *last) : (grows ? value >= identity.seed : value <= identity.seed);
  call.session.gaveIdentity(identity.table, value, further);
  return stored(identity, value);
}

// The CREATE TABLE text of SQLite and a column of it: its default as it was written, in the form that SQL Server keeps.
Result defaultText(Call& call) {
  if (anyNull(call)) return {};
  auto table = TableText::of(call.args[0].text());
  const auto* column = table ? table->find(call.args[1].text()) : nullptr;
  const auto* clause = column ? column->find("DEFAULT") : nullptr;
  constexpr std::string_view keyword = "DEFAULT ";
  if (!clause || clause->text.size() <= keyword.size()) return {};
  if (!clause->note.empty()) return Result(clause->note);
  const std::string value = clause->text.substr(keyword.size());
  if (value.starts_with("(ts_identity(") || value.starts_with("ts_identity(")) return {};
  // A table that was made before its words were kept.
  const auto type = Type::fromDeclared(column->type);
  if (type && type->isInteger() && value.find_first_not_of("-0123456789") == std::string::npos) {
    return Result("((" + value + "))");
  }
  if (type && type->isText() && value.starts_with('\'')) {
    return Result((type->isUnicode() ? "(N" : "(") + value + ")");
  }
  throw SqlError(notSupportedNumber, 16,
                 "The definition of the default of column '" + column->name + "' is not supported.");
}

constexpr std::array functions{
    Function{"ts_identity", 4, 4, false, nextIdentity},
    Function{"ts_identity_given", 5, 5, false, givenIdentity},
    Function{"ts_default_text", 2, 2, true, defaultText},
};

}  // namespace

std::span<const Function> identityFunctions() {
  return functions;
}

}  // namespace tolvane::tsql
