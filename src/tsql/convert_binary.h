#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tsql/collation.h"
#include "tsql/datetime.h"
#include "tsql/datum.h"
#include "tsql/decimal.h"
#include "tsql/type.h"

// The half of convert.h where bytes are the source or the target, uniqueidentifier with its sixteen bytes among them.
namespace tolvane::tsql {

// The last bytes as a big-endian number, as many as the type has.
[[nodiscard]] std::int64_t integerOfBytes(BytesView bytes, const Type& to);
// The same, in ten-thousandths.
[[nodiscard]] Decimal moneyOfBytes(BytesView bytes, const Type& to);
// Precision, scale, a byte of no meaning, 1 for positive, and the magnitude, the least significant byte first. Nothing
// where they are no decimal number.
[[nodiscard]] std::optional<Decimal> decimalOfBytes(BytesView bytes);
// Four bytes of days and four of ticks; throws 241 where they are no datetime.
[[nodiscard]] DateTime dateTimeOfBytes(BytesView bytes);
// The same with two bytes for the days and two for the minutes.
[[nodiscard]] DateTime smallDateTimeOfBytes(BytesView bytes);
// Three bytes, the least one first: days since 0001-01-01.
[[nodiscard]] DateTime dateOfBytes(BytesView bytes);

// Style 0: the bytes are those of the text; 1: hexadecimal digits after 0x; 2: hexadecimal digits alone.
[[nodiscard]] std::string textOfBytes(BytesView bytes, const Type& from, const Type& to, int style,
                                      const Collation& collation);

// The value, which is not null, as bytes of the type, cut and padded to its length: numbers are cut on the left.
[[nodiscard]] Result toBinary(const Datum& value, const Type& from, const Type& to, std::optional<int> style,
                              const Collation& collation);

// Text of the form XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX, in braces or followed by anything, or sixteen bytes.
[[nodiscard]] Result toUniqueIdentifier(const Datum& value, const Type& from);
// The sixteen bytes, of which the first three groups are little-endian, as text.
[[nodiscard]] std::string uniqueIdentifierText(BytesView bytes);

}  // namespace tolvane::tsql
