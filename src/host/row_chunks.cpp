#include "host/row_chunks.h"

#include <algorithm>

#include "platform/conversions.h"

namespace tolvane::host {
namespace {

constexpr std::int64_t mostRows = 5000;
// Documents are as large as people make them.
constexpr std::int64_t mostRowsWithDocuments = 16;

bool isWhole(const FieldInfo& column) {
  return column.type == DataType::integer || column.type == DataType::smallInt ||
         column.type == DataType::unsignedTinyInt;
}

std::string dividingColumn(Connection& connection, const std::string& table, const std::vector<FieldInfo>& columns,
                           const std::string& identity) {
  if (!identity.empty()) return identity;
  std::string best;
  std::int64_t most = 1;
  for (const auto& column : columns) {
    if (!isWhole(column)) continue;
    const auto text = "Select Count(Distinct " + column.name + ") From " + table;
    const auto values = toInt64(connection.execute(text)->value(std::size_t{0}));
    if (values <= most) continue;
    most = values;
    best = column.name;
  }
  return best;
}

// The values behind which a portion ends, the last one left out.
std::vector<std::string> endings(Connection& connection, const std::string& table, const std::string& column,
                                 std::int64_t size) {
  std::vector<std::string> ends;
  const auto groups = connection.execute("Select " + column + ", Count(*) From " + table + " Where " + column +
                                         " Is Not Null Group By " + column + " Order By " + column);
  std::int64_t inPortion = 0;
  for (; !groups->eof(); groups->moveNext()) {
    inPortion += toInt64(groups->value(std::size_t{1}));
    if (inPortion < size) continue;
    ends.push_back(toText(groups->value(std::size_t{0})));
    inPortion = 0;
  }
  if (inPortion == 0 && !ends.empty()) ends.pop_back();
  return ends;
}

}  // namespace

std::vector<std::string> rowChunks(Connection& connection, const std::string& table,
                                   const std::vector<FieldInfo>& columns, const std::string& identity,
                                   std::int64_t rows) {
  const bool hasDocuments = std::any_of(columns.begin(), columns.end(),
                                        [](const FieldInfo& column) { return column.type == DataType::longVarBinary; });
  const auto size = hasDocuments ? mostRowsWithDocuments : mostRows;
  if (rows <= size) return {""};
  const auto column = dividingColumn(connection, table, columns, identity);
  if (column.empty()) return {""};
  std::vector<std::string> conditions;
  std::string before;
  for (const auto& end : endings(connection, table, column, size)) {
    const auto upTo = column + " <= " + end;
    conditions.push_back(before.empty() ? "(" + column + " Is Null Or " + upTo + ")" : before + " And " + upTo);
    before = column + " > " + end;
  }
  conditions.push_back(before);
  return conditions;
}

std::string whereText(const std::string& condition) {
  return condition.empty() ? std::string() : " Where " + condition;
}

}  // namespace tolvane::host
