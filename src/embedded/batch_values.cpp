// The values that a batch gives to SQLite's statements.
#include "embedded/account_set_collation.h"
#include "embedded/batch_interpreter.h"
#include "tsql/convert.h"

namespace tolvane::embedded {
namespace {

bool sameType(const tsql::Type& a, const tsql::Type& b) {
  return a.orNull() == b.orNull();
}

Datum literalDatum(const tsql::Literal& literal) {
  if (literal.type.isInteger()) return {literal.integer};
  if (literal.type.isFloat()) return {literal.real};
  if (literal.type.isBinary())
    return {tsql::BytesView(reinterpret_cast<const std::byte*>(literal.text.data()), literal.text.size())};
  return {literal.text};
}

}  // namespace

Lease BatchRun::bound(const std::shared_ptr<StatementPool>& pool, const tsql::Statement& statement,
                      sqlite3_destructor_type lifetime) {
  Lease lease(session_->database(), pool);
  int position = 0;
  for (const auto& parameter : statement.parameters) bind(lease.get(), ++position, parameter, lifetime);
  return lease;
}

void BatchRun::bind(sqlite3_stmt* statement, int position, const tsql::Parameter& parameter,
                    sqlite3_destructor_type lifetime) {
  using Source = tsql::Parameter::Source;
  const auto index = static_cast<std::size_t>(parameter.index);
  const auto bindValue = [&](const Datum& value, sqlite3_destructor_type life) {
    if (!parameter.column.empty()) {
      const auto assigned = tsql::assign(value, parameter.from, parameter.to, parameter.column, accountSetCollation());
      return bindDatum(statement, position, assigned.datum(), SQLITE_TRANSIENT);
    }
    if (sameType(parameter.from, parameter.to)) return bindDatum(statement, position, value, life);
    const auto converted = tsql::convert(value, parameter.from, parameter.to, std::nullopt, accountSetCollation());
    bindDatum(statement, position, converted.datum(), SQLITE_TRANSIENT);
  };
  switch (parameter.source) {
    case Source::Literal:
      return bindValue(literalDatum(batch_.literals[index]), lifetime);
    case Source::Variable:
      return bindValue(variables_[index].datum(), lifetime);
    case Source::Placeholder:
      return bindPlaceholder(statement, position, parameter, lifetime);
    case Source::RowCount:
      return bindValue(Datum(session_->rowCount()), lifetime);
    case Source::Error:
      return bindValue(Datum(session_->lastError()), lifetime);
    case Source::TranCount:
      return bindValue(Datum(session_->transactionCount()), lifetime);
    case Source::Identity:
    case Source::ScopeIdentity: {
      const auto identity = session_->identity();
      if (!identity) return bindValue(Datum(), lifetime);
      return bindValue(Datum(std::to_string(*identity)), SQLITE_TRANSIENT);
    }
    case Source::RowColumn:
      return bindValue((*row_)[index].datum(), SQLITE_TRANSIENT);
    case Source::CaughtNumber:
    case Source::CaughtMessage:
    case Source::CaughtSeverity:
    case Source::CaughtState:
    case Source::CaughtLine:
    case Source::CaughtProcedure:
      return bindCaught(statement, position, parameter);
    case Source::XactState:
      return bindValue(Datum(session_->transactionState()), lifetime);
    case Source::DateFirst:
      return bindValue(Datum(session_->dateFirst()), lifetime);
    case Source::Fetch:
      return bindValue(Datum(session_->cursors().fetchStatus()), lifetime);
  }
}

void BatchRun::bindPlaceholder(sqlite3_stmt* statement, int position, const tsql::Parameter& parameter,
                               sqlite3_destructor_type lifetime) {
  const auto& value = placeholders_[static_cast<std::size_t>(parameter.index)];
  const Datum datum =
      value.document
          ? Datum(tsql::BytesView(reinterpret_cast<const std::byte*>(value.document->data()), value.document->size()))
          : value.value.datum();
  if (sameType(parameter.from, parameter.to) || (value.document && parameter.to.isBinary() && parameter.to.isLong())) {
    return bindDatum(statement, position, datum, lifetime);
  }
  const auto converted = tsql::convert(datum, parameter.from, parameter.to, std::nullopt, accountSetCollation());
  bindDatum(statement, position, converted.datum(), SQLITE_TRANSIENT);
}

void BatchRun::bindDatum(sqlite3_stmt* statement, int position, const Datum& value, sqlite3_destructor_type lifetime) {
  int code = SQLITE_OK;
  switch (value.kind()) {
    case tsql::Kind::Null:
      code = sqlite3_bind_null(statement, position);
      break;
    case tsql::Kind::Integer:
      code = sqlite3_bind_int64(statement, position, value.integer());
      break;
    case tsql::Kind::Real:
      code = sqlite3_bind_double(statement, position, value.real());
      break;
    case tsql::Kind::Text: {
      const auto text = value.text();
      // Without a place in memory SQLite would take an empty text for null.
      code =
          sqlite3_bind_text64(statement, position, text.empty() ? "" : text.data(), text.size(), lifetime, SQLITE_UTF8);
      break;
    }
    case tsql::Kind::Blob: {
      const auto bytes = value.blob();
      code = bytes.empty() ? sqlite3_bind_zeroblob(statement, position, 0)
                           : sqlite3_bind_blob64(statement, position, bytes.data(), bytes.size(), lifetime);
      break;
    }
  }
  if (code != SQLITE_OK) session_->database().fail(code);
}

}  // namespace tolvane::embedded
