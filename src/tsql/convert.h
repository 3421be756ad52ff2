#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tsql/collation.h"
#include "tsql/datetime.h"
#include "tsql/datum.h"
#include "tsql/decimal.h"
#include "tsql/type.h"

namespace tolvane::tsql {

// CAST, CONVERT and every implicit conversion: the value of one T-SQL type as another, in the stored form of that type.
// Null stays null. Without a style each pair has its own default. Text that is too long for the type is cut, as CAST
// does. Throws SqlError for a value that does not convert or does not fit, and for a pair of types that has no
// conversion (which the compiler refuses before it comes here).
[[nodiscard]] Result convert(const Datum& value, const Type& from, const Type& to, std::optional<int> style,
                             const Collation& collation);

// The same for a value that goes into a column ("table.column"): text and bytes that do not fit are error 8152, blanks
// and zero bytes at the end apart; null in a column that takes none is error 515, which names the statement's verb.
[[nodiscard]] Result assign(const Datum& value, const Type& from, const Type& to, std::string_view column,
                            const Collation& collation, std::string_view verb = "INSERT");

// The stored forms read back, whatever the storage: an exact number, and a date. Throw SqlError for anything else.
[[nodiscard]] Decimal exactNumber(const Datum& value);
[[nodiscard]] double approximateNumber(const Datum& value);
[[nodiscard]] DateTime dateTimeOf(const Datum& value);

// A whole number, as functions take it for positions and counts: fractions are cut.
[[nodiscard]] std::int64_t wholeNumber(const Datum& value);

// What DATALENGTH tells: bytes that SQL Server's storage of the value takes.
[[nodiscard]] std::int64_t dataLength(const Datum& value, const Type& type, const Collation& collation);

[[nodiscard]] bool fitsInteger(std::int64_t value, TypeKind kind);
// A whole number in the range of the integer type; throws what SQL Server raises for one of type `from` that is not.
[[nodiscard]] std::int64_t withinInteger(std::int64_t value, TypeKind kind, TypeKind from);
// At the scale of the money or decimal type, rounded; throws 8115 naming the source ("numeric", "float", "expression").
[[nodiscard]] std::string exactText(const Decimal& value, const Type& to, std::string_view source);

// The name of the type as error messages write it: decimal is "numeric".
[[nodiscard]] std::string_view messageName(const Type& type);

}  // namespace tolvane::tsql
