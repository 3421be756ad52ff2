// Functions that answer for the connection and its database.
#include <array>
#include <string>

#include "tsql/convert.h"
#include "tsql/convert_binary.h"
#include "tsql/function_groups.h"
#include "tsql/sql_error.h"

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
  auto name = call.session.objectName(wholeNumber(call.args[0]));
  return name ? Result(std::move(*name)) : Result();
}

Result databaseName(Call& call) {
  return call.session.databaseName();
}

Result userName(Call& call) {
  return call.session.userName();
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
    Function{"ts_object_name", 1, 1, false, objectName},
    Function{"ts_db_name", 0, 0, true, databaseName},
    Function{"ts_user_name", 0, 0, true, userName},
    Function{"ts_version", 0, 0, true, version},
    Function{"ts_top", 2, 2, true, top},
    Function{"ts_depth", 2, 2, true, depth},
};

}  // namespace

std::span<const Function> systemFunctions() {
  return functions;
}

}  // namespace tolvane::tsql
