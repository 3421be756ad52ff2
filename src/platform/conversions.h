// Automation's conversions between kinds of values. Each raises 13 for what cannot be converted, 6 for what does not
// fit and 94 for Null.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/value.h"

namespace tolvane {

/// Rounds halves to even. True is -1. Texts are numbers of the platform's form ("12", " -3.5 ", "1e3", "&HFF", "(5)").
[[nodiscard]] std::int32_t toInt32(const Value& value);
[[nodiscard]] std::int16_t toInt16(const Value& value);
[[nodiscard]] std::uint8_t toByte(const Value& value);
[[nodiscard]] std::int64_t toInt64(const Value& value);
[[nodiscard]] double toDouble(const Value& value);
[[nodiscard]] float toSingle(const Value& value);
[[nodiscard]] Currency toCurrency(const Value& value);
[[nodiscard]] Decimal toDecimal(const Value& value);
/// Any number but 0 is True; "True" and "False" in any letter case.
[[nodiscard]] bool toBoolean(const Value& value);
/// Numbers count days; texts are "yyyy-m-d", "yyyy/m/d", "yyyymmdd" with an optional time, or a time alone.
[[nodiscard]] Date toDate(const Value& value);
/// Decimal digits without thousands separators, at most 15 significant (Single 7); "True"/"False"; dates as "2012-3-15"
/// with " 12:00:00" behind when it is not midnight.
[[nodiscard]] std::string toText(const Value& value);

/// The value as `type`; objects, arrays and Missing convert to nothing else.
[[nodiscard]] Value changeType(const Value& value, ValueType type);

/// Whether the value is a number or a text of a number; dates, Null and arrays are not.
[[nodiscard]] bool isNumeric(const Value& value);
/// A text's number in the platform's form, if it is one.
[[nodiscard]] std::optional<double> parseNumber(std::string_view text);

/// Without the blanks (U+0020 only) at both ends.
[[nodiscard]] std::string_view trim(std::string_view text);
/// "12.3400" of a Currency, "0.1" of a Decimal: all digits kept.
[[nodiscard]] std::string exactText(Currency value);
[[nodiscard]] std::string exactText(const Decimal& value);
/// The reverse; nothing when the text is no plain decimal number or does not fit.
[[nodiscard]] std::optional<Decimal> parseDecimal(std::string_view text);
[[nodiscard]] std::optional<Currency> parseCurrency(std::string_view text);

}  // namespace tolvane
