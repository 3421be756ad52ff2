#include "odbc/row_writer.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "odbc/errors.h"
#include "odbc/values.h"
#include "platform/calendar.h"
#include "platform/conversions.h"
#include "platform/names.h"

namespace tolvane::odbc {
namespace {

void storeEdits(RowSet& set, std::size_t row, const RowEdits& edits) {
  for (const auto& [index, edit] : edits) {
    if (edit.isDocument) {
      set.rows.set(row, index, edit.chunks);
    } else {
      store(set.rows, row, index, edit.value);
    }
  }
}

std::vector<ParameterValue> valuesOf(const RowEdits& edits) {
  std::vector<ParameterValue> values;
  for (const auto& [index, edit] : edits) values.push_back(edit);
  return values;
}

// The columns of the set that the server fills and that are small enough to be read back with the insert.
std::vector<std::size_t> columnsToReturn(const Shape& shape, const RowEdits& edits) {
  std::vector<std::size_t> columns;
  for (std::size_t i = 0; i < shape.columns.size(); ++i) {
    const auto& column = shape.columns[i];
    if (!column.base.empty() && !column.isLong() && !edits.contains(i)) columns.push_back(i);
  }
  return columns;
}

std::size_t identityColumn(const Shape& shape) {
  const auto found =
      std::find_if(shape.columns.begin(), shape.columns.end(), [](const Column& column) { return column.identity; });
  return static_cast<std::size_t>(found - shape.columns.begin());
}

// Some servers do not say of a result's column that it is the identity. Then the catalogue is asked, if a column that
// was not set could be it.
void findIdentity(Session& session, Shape& shape, const RowEdits& edits) {
  if (identityColumn(shape) < shape.columns.size()) return;
  const auto couldBe = [&](std::size_t i) {
    const auto& column = shape.columns[i];
    const bool isWhole = column.type == DataType::integer || column.type == DataType::bigInt ||
                         column.type == DataType::smallInt || column.type == DataType::numeric;
    return isWhole && !column.base.empty() && !edits.contains(i);
  };
  bool any = false;
  for (std::size_t i = 0; i < shape.columns.size(); ++i) any = any || couldBe(i);
  if (!any) return;
  const auto& name = session.identityOf(shape.table);
  for (std::size_t i = 0; i < shape.columns.size() && !name.empty(); ++i) {
    auto& column = shape.columns[i];
    column.identity = couldBe(i) && sameName(column.base, name);
  }
}

std::string insertText(const Shape& shape, const RowEdits& edits) {
  if (edits.empty()) return "INSERT INTO " + shape.table + " DEFAULT VALUES";
  std::string names;
  std::string marks;
  for (const auto& [index, edit] : edits) {
    names += (names.empty() ? "" : ", ") + shape.columns[index].written;
    marks += marks.empty() ? "?" : ", ?";
  }
  return "INSERT INTO " + shape.table + " (" + names + ") VALUES (" + marks + ")";
}

// The first value of the last rows: a trigger's own rows stand before them.
Value firstValue(const BatchResult& result) {
  if (result.rowSets.empty()) return Null{};
  auto& set = *result.rowSets.back();
  return set.rows.rows() == 0 ? Value(Null{}) : toValue(set.rows, 0, 0, set.shape.columns[0]);
}

void storeIdentity(RowSet& set, std::size_t row, const Value& identity) {
  const auto index = identityColumn(set.shape);
  if (index == set.shape.columns.size() || identity.isNull()) return;
  store(set.rows, row, index, assigned(identity, set.shape.columns[index]));
}

// One row's condition, and the values of its marks.
struct Condition {
  std::string text;
  bool isKey = false;
  std::vector<ParameterValue> values;

  void add(const Column& column, Value value) {
    text += (text.empty() ? "" : " AND ") + column.written;
    if (value.isNull()) {
      text += " IS NULL";
      return;
    }
    text += " = ?";
    values.push_back({column, std::move(value), {}, false});
  }
};

// Floating-point numbers and fractions of a second may differ between the column and what is sent for it.
bool isComparable(const Column& column, const Value& value) {
  if (column.base.empty() || column.isLong()) return false;
  if (column.type == DataType::single || column.type == DataType::real) return false;
  if (const auto* date = value.get<Date>()) return toCalendar(*date).millisecond == 0;
  return !value.get<Bytes>();
}

std::int64_t changedRows(const Dialect& dialect, const BatchResult& result) {
  if (!dialect.countsInBatch) return result.changed;
  const auto count = firstValue(result);
  return count.isNull() ? -1 : toInt64(count);
}

// The columns of the set by which its rows can be told from others, and the values that they had.
Condition originalValues(RowSet& set, std::size_t row) {
  Condition condition;
  for (std::size_t i = 0; i < set.shape.columns.size(); ++i) {
    const auto& column = set.shape.columns[i];
    auto value = toValue(set.rows, row, i, column);
    if (isComparable(column, value)) condition.add(column, std::move(value));
  }
  return condition;
}

// The key of a row of a set that does not hold it: the same rows are read again with it. The row is the one at the same
// place, if it is still as it was; servers give rows of one statement in one order as long as nobody changes them.
std::optional<Condition> hiddenKey(Session& session, RowSet& set, const Source& source, std::size_t row) {
  // A copy: what is known of tables may be forgotten when the statement is sent once more.
  const auto names = session.keyOf(set.shape.table);
  if (names.empty() || source.allColumns) return std::nullopt;
  std::string list;
  std::vector<std::size_t> compared;
  for (std::size_t i = 0; i < set.shape.columns.size(); ++i) {
    if (!isComparable(set.shape.columns[i], toValue(set.rows, row, i, set.shape.columns[i]))) continue;
    compared.push_back(i);
    list += set.shape.columns[i].written + ", ";
  }
  for (const auto& name : names) list += session.dialect().quoted(name) + (name == names.back() ? "" : ", ");
  const auto result = runBatch(session, source.withList(list));
  if (result.rowSets.empty() || result.rowSets.front()->rows.rows() <= row) return std::nullopt;
  auto& again = *result.rowSets.front();
  for (std::size_t i = 0; i < compared.size(); ++i) {
    const auto before = toValue(set.rows, row, compared[i], set.shape.columns[compared[i]]);
    if (!(toValue(again.rows, row, i, again.shape.columns[i]) == before)) return std::nullopt;
  }
  Condition condition;
  condition.isKey = true;
  for (std::size_t i = 0; i < names.size(); ++i) {
    auto column = again.shape.columns[compared.size() + i];
    column.written = session.dialect().quoted(names[i]);
    condition.add(column, toValue(again.rows, row, compared.size() + i, column));
  }
  return condition;
}

Condition conditionOf(Session& session, RowSet& set, const Source& source, std::size_t row) {
  Condition condition;
  condition.isKey = true;
  for (const auto i : keyColumns(session, set.shape)) {
    condition.add(set.shape.columns[i], toValue(set.rows, row, i, set.shape.columns[i]));
  }
  if (condition.text.empty()) {
    if (auto hidden = hiddenKey(session, set, source, row)) return std::move(*hidden);
    condition = originalValues(set, row);
  }
  if (condition.text.empty())
    throw AutomationError(AdoError::featureNotAvailable, std::string(rowset::recordsetSource));
  return condition;
}

void updateOne(Session& session, const std::string& sql, const BatchOptions& options) {
  const auto result = runBatch(session, sql, options);
  if (changedRows(session.dialect(), result) == 1) return;
  session.guarded(sql, [&] { throw rowIsGone(sql); });
}

}  // namespace

std::vector<std::size_t> keyColumns(Session& session, const Shape& shape) {
  const auto identity = identityColumn(shape);
  if (identity < shape.columns.size()) return {identity};
  std::vector<std::size_t> columns;
  for (const auto& name : session.keyOf(shape.table)) {
    const auto found = std::find_if(shape.columns.begin(), shape.columns.end(),
                                    [&](const Column& column) { return sameName(column.base, name); });
    if (found == shape.columns.end()) return {};
    columns.push_back(static_cast<std::size_t>(found - shape.columns.begin()));
  }
  return columns;
}

std::size_t insertRow(Session& session, RowSet& set, const RowEdits& edits) {
  const auto& dialect = session.dialect();
  if (dialect.identity == IdentityReading::scopeIdentity) findIdentity(session, set.shape, edits);
  auto sql = insertText(set.shape, edits);
  BatchOptions options;
  options.parameters = valuesOf(edits);
  const bool hasIdentity = identityColumn(set.shape) < set.shape.columns.size();
  std::vector<std::size_t> returned;
  if (dialect.identity == IdentityReading::scopeIdentity && hasIdentity) {
    sql += "; SELECT CAST(SCOPE_IDENTITY() AS decimal(28,0))";
  } else if (dialect.identity == IdentityReading::returning) {
    returned = columnsToReturn(set.shape, edits);
    for (const auto index : returned) {
      sql += (index == returned.front() ? " RETURNING " : ", ") + set.shape.columns[index].written;
    }
  }
  const auto result = runBatch(session, sql, options);
  const auto row = set.rows.addRow();
  storeEdits(set, row, edits);
  if (!returned.empty() && !result.rowSets.empty() && result.rowSets.back()->rows.rows() > 0) {
    const auto& back = *result.rowSets.back();
    for (std::size_t i = 0; i < returned.size(); ++i) set.rows.set(row, returned[i], back.rows.cell(0, i));
  } else if (hasIdentity && dialect.identity == IdentityReading::scopeIdentity) {
    storeIdentity(set, row, firstValue(result));
  } else if (hasIdentity && dialect.identity == IdentityReading::lastInsertRowId) {
    storeIdentity(set, row, firstValue(runBatch(session, "SELECT last_insert_rowid()")));
  }
  return row;
}

void updateRow(Session& session, RowSet& set, const Source& source, std::size_t row, const RowEdits& edits) {
  if (edits.empty()) return;
  const auto& dialect = session.dialect();
  std::string assignments;
  for (const auto& [index, edit] : edits) {
    assignments += (assignments.empty() ? "" : ", ") + set.shape.columns[index].written + " = ?";
  }
  const auto condition = conditionOf(session, set, source, row);
  auto sql = "UPDATE " + set.shape.table + " SET " + assignments + " WHERE " + condition.text;
  if (dialect.countsInBatch) sql += "; SELECT @@ROWCOUNT";
  BatchOptions options;
  options.parameters = valuesOf(edits);
  options.parameters.insert(options.parameters.end(), condition.values.begin(), condition.values.end());
  // Without a key more than one row may be met; then none may stay changed.
  const bool own = !condition.isKey && !session.inTransaction();
  if (own) session.begin();
  try {
    updateOne(session, sql, options);
    if (own) session.commit();
  } catch (const AutomationError&) {
    if (own) session.rollback();
    throw;
  }
  storeEdits(set, row, edits);
}

}  // namespace tolvane::odbc
