// Functions that answer for the connection and its database.
#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "tsql/convert.h"
#include "tsql/convert_binary.h"
#include "tsql/function_groups.h"
#include "tsql/sql_error.h"
#include "tsql/unicode.h"

namespace tolvane::tsql {
namespace {

// A random identifier (version 4 of RFC 4122).
Result newid(Call& call) {
  auto bytes = call.session.uniqueBytes();
  // The third group is little-endian, so the version stands in its second byte.
  bytes[7] = (bytes[7] & std::byte{0x0F}) | std::byte{0x40};
  bytes[8] = (bytes[8] & std::byte{0x3F}) | std::byte{0x80};
  return uniqueIdentifierText(bytes);
}

// name[, type].
Result objectId(Call& call) {
  if (anyNull(call)) return {};
  const auto id = call.session.objectId(call.args[0].text(), call.args.size() > 1 ? call.args[1].text() : "");
  return id ? Result(*id) : Result();
}

Result objectName(Call& call) {
  if (anyNull(call)) return {};
  auto object = call.session.object(wholeNumber(call.args[0]));
  return object ? Result(std::move(object->name)) : Result();
}

// number: the table of a constraint, 0 of a table.
Result objectParent(Call& call) {
  const auto object = call.session.object(wholeNumber(call.args[0]));
  return object ? Result(object->parent) : Result();
}

// number: as in sys.objects, without blanks behind it.
Result objectType(Call& call) {
  auto object = call.session.object(wholeNumber(call.args[0]));
  return object ? Result(std::move(object->type)) : Result();
}

// The numbers of all constraints, as a list in JSON.
Result constraints(Call& call) {
  std::string list = "[";
  for (const std::int64_t number : call.session.constraints()) {
    if (list.size() > 1) list += ',';
    list += std::to_string(number);
  }
  return list + "]";
}

// A number that SQL Server gives to a name of its own.
struct Numbered {
  std::string_view name;
  int number;
};

template <std::size_t count>
Result nameOfNumber(const std::array<Numbered, count>& rows, std::int64_t number) {
  const auto row = std::ranges::find_if(rows, [number](const Numbered& each) { return each.number == number; });
  return row == rows.end() ? Result() : Result(std::string(row->name));
}

template <std::size_t count>
Result numberOfName(const std::array<Numbered, count>& rows, std::string_view name) {
  name = withoutTrailingBlanks(name);
  const auto row = std::ranges::find_if(rows, [name](const Numbered& each) { return sameName(each.name, name); });
  return row == rows.end() ? Result() : Result(row->number);
}

// The databases that every server has; the account set is the first one behind them.
constexpr std::array databases{Numbered{"master", 1}, Numbered{"tempdb", 2}, Numbered{"model", 3}, Numbered{"msdb", 4}};
constexpr int ownDatabase = 5;

// [number].
Result databaseName(Call& call) {
  if (call.args.empty()) return call.session.databaseName();
  if (anyNull(call)) return {};
  const std::int64_t number = wholeNumber(call.args[0]);
  return number == ownDatabase ? Result(call.session.databaseName()) : nameOfNumber(databases, number);
}

// [name].
Result databaseId(Call& call) {
  if (call.args.empty()) return ownDatabase;
  if (anyNull(call)) return {};
  const bool own = call.collation.compare(call.args[0].text(), call.session.databaseName()) == 0;
  return own ? Result(ownDatabase) : numberOfName(databases, call.args[0].text());
}

// Users and schemas that every database has.
constexpr std::array users{Numbered{"public", 0}, Numbered{"dbo", 1}, Numbered{"guest", 2},
                           Numbered{"INFORMATION_SCHEMA", 3}, Numbered{"sys", 4}};
constexpr std::array schemas{Numbered{"dbo", 1}, Numbered{"guest", 2}, Numbered{"INFORMATION_SCHEMA", 3},
                             Numbered{"sys", 4}};
constexpr int ownSchema = 1;

// [number].
Result userName(Call& call) {
  if (call.args.empty()) return call.session.userName();
  return anyNull(call) ? Result() : nameOfNumber(users, wholeNumber(call.args[0]));
}

// [name].
Result userId(Call& call) {
  if (call.args.empty()) return numberOfName(users, call.session.userName());
  return anyNull(call) ? Result() : numberOfName(users, call.args[0].text());
}

// [number].
Result schemaName(Call& call) {
  if (call.args.empty()) return nameOfNumber(schemas, ownSchema);
  return anyNull(call) ? Result() : nameOfNumber(schemas, wholeNumber(call.args[0]));
}

// [name].
Result schemaId(Call& call) {
  if (call.args.empty()) return ownSchema;
  return anyNull(call) ? Result() : numberOfName(schemas, call.args[0].text());
}

// Types that have a number and no values here.
constexpr std::array otherTypes{Numbered{"time", 41},        Numbered{"datetime2", 42},  Numbered{"datetimeoffset", 43},
                                Numbered{"sql_variant", 98}, Numbered{"numeric", 108},   Numbered{"hierarchyid", 128},
                                Numbered{"geometry", 129},   Numbered{"geography", 130}, Numbered{"xml", 241},
                                Numbered{"sysname", 256}};

// number.
Result typeName(Call& call) {
  if (anyNull(call)) return {};
  const std::int64_t number = wholeNumber(call.args[0]);
  for (int kind = 1; kind < kindCount; ++kind) {
    const TypeRow& row = typeRow(static_cast<TypeKind>(kind));
    if (row.systemType == number) return std::string(row.name);
  }
  return nameOfNumber(otherTypes, number);
}

// name.
Result typeId(Call& call) {
  if (anyNull(call)) return {};
  std::string_view name = withoutTrailingBlanks(call.args[0].text());
  if (name.size() > 2 && name.front() == '[' && name.back() == ']') name = name.substr(1, name.size() - 2);
  for (int kind = 1; kind < kindCount; ++kind) {
    const TypeRow& row = typeRow(static_cast<TypeKind>(kind));
    if (sameName(row.name, name)) return row.systemType;
  }
  return numberOfName(otherTypes, name);
}

// table, column.
Result columnLength(Call& call) {
  if (anyNull(call)) return {};
  const Table* table = call.session.tableNamed(call.args[0].text());
  const int ordinal = table == nullptr ? -1 : table->find(call.args[1].text());
  return ordinal < 0 ? Result() : Result(table->columns[static_cast<std::size_t>(ordinal)].type.storageLength());
}

// number of the table, number of the column.
Result columnName(Call& call) {
  if (anyNull(call)) return {};
  const Table* table = call.session.tableNumbered(wholeNumber(call.args[0]));
  const std::int64_t number = wholeNumber(call.args[1]);
  if (table == nullptr || number < 1 || std::cmp_greater(number, table->columns.size())) return {};
  return table->columns[static_cast<std::size_t>(number - 1)].name;
}

[[noreturn]] void refuseProperty(std::string_view function, std::string_view property) {
  throw SqlError(notSupportedNumber, 16,
                 "'" + std::string(property) + "': this property of " + std::string(function) + " is not supported.");
}

template <std::size_t count>
bool contains(const std::array<std::string_view, count>& names, std::string_view name) {
  return std::ranges::any_of(names, [name](std::string_view each) { return sameName(each, name); });
}

// number of the table, column, property.
Result columnProperty(Call& call) {
  static constexpr std::array<std::string_view, 3> never{"IsComputed", "IsRowGuidCol", "IsSparse"};
  if (anyNull(call)) return {};
  const Table* table = call.session.tableNumbered(wholeNumber(call.args[0]));
  const int ordinal = table == nullptr ? -1 : table->find(call.args[1].text());
  if (ordinal < 0) return {};
  const Column& column = table->columns[static_cast<std::size_t>(ordinal)];
  const std::string_view property = withoutTrailingBlanks(call.args[2].text());
  if (sameName(property, "AllowsNull")) return column.type.nullable ? 1 : 0;
  if (sameName(property, "ColumnId")) return ordinal + 1;
  if (sameName(property, "IsIdentity")) return column.identity ? 1 : 0;
  if (contains(never, property)) return 0;
  refuseProperty("COLUMNPROPERTY", property);
}

// A property that tells which kind an object is.
struct KindProperty {
  std::string_view name;
  std::string_view types;  // that have it, each with a blank behind it
};

constexpr std::array kindProperties{
    KindProperty{"IsTable", "U "},        KindProperty{"IsUserTable", "U "},
    KindProperty{"IsView", "V "},         KindProperty{"IsConstraint", "PK UQ F C D "},
    KindProperty{"IsPrimaryKey", "PK "},  KindProperty{"IsUniqueCnst", "UQ "},
    KindProperty{"IsForeignKey", "F "},   KindProperty{"IsCheckCnst", "C "},
    KindProperty{"IsDefaultCnst", "D "},  KindProperty{"IsDefault", ""},
    KindProperty{"IsInlineFunction", ""}, KindProperty{"IsMSShipped", ""},
    KindProperty{"IsProcedure", ""},      KindProperty{"IsRule", ""},
    KindProperty{"IsScalarFunction", ""}, KindProperty{"IsSystemTable", ""},
    KindProperty{"IsTableFunction", ""},  KindProperty{"IsTrigger", ""},
};

bool hasKey(const Table& table, bool primary) {
  return std::ranges::any_of(table.indexes,
                             [&](const Index& index) { return index.constraint && index.primary == primary; });
}

// number, property: null for a number that no object has, and for what only tables have.
Result objectProperty(Call& call) {
  if (anyNull(call)) return {};
  const auto object = call.session.object(wholeNumber(call.args[0]));
  if (!object) return {};
  const std::string_view property = withoutTrailingBlanks(call.args[1].text());
  for (const KindProperty& row : kindProperties) {
    if (sameName(property, row.name)) return row.types.find(object->type + " ") == std::string_view::npos ? 0 : 1;
  }
  if (sameName(property, "OwnerId") || sameName(property, "SchemaId")) return ownSchema;
  const Table* table = call.session.tableNumbered(object->id);
  const auto ofTable = [table](bool has) { return table == nullptr || table->view ? Result() : Result(has ? 1 : 0); };
  if (sameName(property, "TableHasIdentity")) return ofTable(table != nullptr && table->identityColumn() >= 0);
  if (sameName(property, "TableHasPrimaryKey")) return ofTable(table != nullptr && hasKey(*table, true));
  if (sameName(property, "TableHasUniqueCnst")) return ofTable(table != nullptr && hasKey(*table, false));
  refuseProperty("OBJECTPROPERTY", property);
}

const Column* identityOfTable(Call& call) {
  const Table* table = anyNull(call) ? nullptr : call.session.tableNamed(call.args[0].text());
  const int ordinal = table == nullptr ? -1 : table->identityColumn();
  return ordinal < 0 ? nullptr : &table->columns[static_cast<std::size_t>(ordinal)];
}

// table: null without an identity column.
Result identityIncrement(Call& call) {
  const Column* column = identityOfTable(call);
  return column == nullptr ? Result() : Result(std::to_string(column->increment));
}

Result identitySeed(Call& call) {
  const Column* column = identityOfTable(call);
  return column == nullptr ? Result() : Result(std::to_string(column->seed));
}

Result version(Call& call) {
  return call.session.version();
}

// The number of rows, or of percents, that TOP gives, and the greatest one there may be, -1 for any; -2 for the number
// of OFFSET and -3 for that of FETCH.
Result top(Call& call) {
  if (anyNull(call)) throw SqlError(Message::InvalidTop);
  const Datum& number = call.args[0];
  const double greatest = approximateNumber(call.args[1]);
  const double given = approximateNumber(number);
  if (greatest == -2 && given < 0) throw SqlError(Message::NegativeOffset);
  if (greatest == -3 && given < 1) throw SqlError(Message::EmptyFetch);
  if (greatest >= 0 && (given < 0 || given > greatest)) throw SqlError(Message::TopPercent);
  if (given < 0) throw SqlError(Message::NegativeTop);
  return Result(number);
}

// The step of a recursion, and how many there may be, 0 for any number.
Result depth(Call& call) {
  const std::int64_t step = wholeNumber(call.args[0]);
  const std::int64_t most = wholeNumber(call.args[1]);
  if (most > 0 && step > most) {
    throw SqlError(530, 16,
                   "The statement terminated. The maximum recursion " + std::to_string(most) +
                       " has been exhausted before statement completion.");
  }
  return step;
}

constexpr std::array functions{
    Function{"ts_newid", 0, 0, false, newid},
    Function{"ts_object_id", 1, 2, false, objectId},
    Function{"ts_object_name", 1, 2, false, objectName},
    Function{"ts_db_name", 0, 1, true, databaseName},
    Function{"ts_db_id", 0, 1, true, databaseId},
    Function{"ts_user_name", 0, 1, true, userName},
    Function{"ts_user_id", 0, 1, true, userId},
    Function{"ts_schema_name", 0, 1, true, schemaName},
    Function{"ts_schema_id", 0, 1, true, schemaId},
    Function{"ts_type_name", 1, 1, true, typeName},
    Function{"ts_type_id", 1, 1, true, typeId},
    Function{"ts_col_length", 2, 2, false, columnLength},
    Function{"ts_col_name", 2, 2, false, columnName},
    Function{"ts_columnproperty", 3, 3, false, columnProperty},
    Function{"ts_objectproperty", 2, 2, false, objectProperty},
    Function{"ts_ident_incr", 1, 1, false, identityIncrement},
    Function{"ts_ident_seed", 1, 1, false, identitySeed},
    Function{"ts_object_parent", 1, 1, false, objectParent},
    Function{"ts_object_type", 1, 1, false, objectType},
    Function{"ts_constraints", 0, 0, false, constraints},
    Function{"ts_version", 0, 0, true, version},
    Function{"ts_top", 2, 2, true, top},
    Function{"ts_depth", 2, 2, true, depth},
};

}  // namespace

std::span<const Function> systemFunctions() {
  return functions;
}

}  // namespace tolvane::tsql
