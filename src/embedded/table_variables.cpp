#include "embedded/table_variables.h"

#include <utility>

#include "embedded/program_cache.h"
#include "embedded/session.h"
#include "embedded/values.h"
#include "tsql/sqlite_text.h"

namespace tolvane::embedded {
namespace {

std::string tableName(const tsql::TableVariable& variable) {
  return "temp." + tsql::quoted(variable.table->name);
}

void bindStored(sqlite3_stmt* statement, int position, const tsql::Result& value) {
  switch (value.kind()) {
    case tsql::Kind::Null:
      sqlite3_bind_null(statement, position);
      break;
    case tsql::Kind::Integer:
      sqlite3_bind_int64(statement, position, value.integer());
      break;
    case tsql::Kind::Real:
      sqlite3_bind_double(statement, position, value.real());
      break;
    case tsql::Kind::Text:
      sqlite3_bind_text64(statement, position, value.text().data(), value.text().size(), SQLITE_TRANSIENT, SQLITE_UTF8);
      break;
    case tsql::Kind::Blob:
      sqlite3_bind_blob64(statement, position,
                          value.blob().empty() ? static_cast<const void*>("") : value.blob().data(),
                          value.blob().size(), SQLITE_TRANSIENT);
      break;
  }
}

void bindName(sqlite3_stmt* statement, const std::string& name) {
  sqlite3_bind_text(statement, 1, name.data(), static_cast<int>(name.size()), SQLITE_STATIC);
}

}  // namespace

bool TableVariables::exists(const std::string& name) {
  const auto found = session_.own("SELECT 1 FROM temp.sqlite_schema WHERE name=?1");
  bindName(found.get(), name);
  return session_.database().stepOwn(found.get());
}

void TableVariables::make(const tsql::TableVariable& variable) {
  made_.erase(variable.table->name);
  session_.beforeDefinition();
  session_.runOwn("DROP TABLE IF EXISTS " + tableName(variable));
  for (const auto& statement : variable.definition) session_.runOwn(statement);
  made_[variable.table->name] = variable.definition;
  session_.setDefinitionsChanged();
}

void TableVariables::empty(const tsql::TableVariable& variable) {
  session_.runOwn("DELETE FROM " + tableName(variable));
  if (variable.table->identityColumn() < 0) return;
  forgetLastIdentity(variable.table->name);
  // What follows the table and its indexes says where the identity begins.
  for (const auto& statement : variable.definition) {
    if (statement.starts_with("INSERT")) session_.runOwn(statement);
  }
}

void TableVariables::forgetLastIdentity(const std::string& table) {
  const auto sequence = session_.own("DELETE FROM temp.sqlite_sequence WHERE name=?1");
  bindName(sequence.get(), table);
  while (session_.database().stepOwn(sequence.get())) {
  }
}

void TableVariables::setLastIdentity(const std::string& table, std::int64_t value) {
  forgetLastIdentity(table);
  const auto sequence = session_.own("INSERT INTO temp.sqlite_sequence(name,seq) VALUES(?1,?2)");
  bindName(sequence.get(), table);
  sqlite3_bind_int64(sequence.get(), 2, value);
  while (session_.database().stepOwn(sequence.get())) {
  }
}

bool TableVariables::begin(const std::vector<tsql::TableVariable>& variables) {
  bool changed = false;
  for (const auto& variable : variables) {
    const auto made = made_.find(variable.table->name);
    const bool asBefore = made != made_.end() && made->second == variable.definition && exists(variable.table->name);
    if (asBefore) {
      empty(variable);
    } else {
      make(variable);
      changed = true;
    }
  }
  live_ = variables;
  return changed;
}

void TableVariables::end() noexcept {
  try {
    for (const auto& variable : std::exchange(live_, {})) empty(variable);
  } catch (const std::exception&) {
    // They are emptied once more before they are used again.
  }
}

void TableVariables::keep() {
  kept_.clear();
  for (const auto& variable : live_) {
    Kept kept;
    {
      const auto rows = session_.own("SELECT * FROM " + tableName(variable) + " ORDER BY _rowid_");
      while (session_.database().stepOwn(rows.get())) {
        std::vector<tsql::Result> row;
        for (int i = 0; i < sqlite3_column_count(rows.get()); ++i) row.push_back(columnResult(rows.get(), i));
        kept.rows.push_back(std::move(row));
      }
    }
    if (variable.table->identityColumn() >= 0) {
      const auto sequence = session_.own("SELECT seq FROM temp.sqlite_sequence WHERE name=?1");
      bindName(sequence.get(), variable.table->name);
      if (session_.database().stepOwn(sequence.get())) kept.lastIdentity = sqlite3_column_int64(sequence.get(), 0);
    }
    kept_.push_back(std::move(kept));
  }
}

void TableVariables::putBack() {
  for (std::size_t i = 0; i < kept_.size(); ++i) {
    const auto& variable = live_[i];
    if (exists(variable.table->name)) {
      empty(variable);
    } else {
      make(variable);
    }
    std::string places;
    for (std::size_t c = 0; c < variable.table->columns.size(); ++c) places += c > 0 ? ",?" : "?";
    for (const auto& row : kept_[i].rows) {
      const auto insert = session_.own("INSERT INTO " + tableName(variable) + " VALUES(" + places + ")");
      for (std::size_t c = 0; c < row.size(); ++c) bindStored(insert.get(), static_cast<int>(c) + 1, row[c]);
      while (session_.database().stepOwn(insert.get())) {
      }
    }
    if (kept_[i].lastIdentity) setLastIdentity(variable.table->name, *kept_[i].lastIdentity);
  }
  kept_.clear();
}

}  // namespace tolvane::embedded
