#include "embedded/cursors.h"

#include <algorithm>

#include "tsql/catalogue.h"
#include "tsql/sql_error.h"

namespace tolvane::embedded {

Cursor& Cursors::declare(const std::string& name) {
  const auto [place, added] = cursors_.try_emplace(tsql::lowered(name));
  if (!added) throw tsql::SqlError(16915, 16, "A cursor with the name '" + name + "' already exists.");
  return place->second;
}

Cursor& Cursors::find(const std::string& name) {
  const auto found = cursors_.find(tsql::lowered(name));
  if (found == cursors_.end()) throw tsql::SqlError(16916, 16, "A cursor with the name '" + name + "' does not exist.");
  return found->second;
}

void Cursors::deallocate(const std::string& name) {
  (void)find(name);
  cursors_.erase(tsql::lowered(name));
}

void Cursors::tableChanges(std::string_view table) {
  for (auto& [name, cursor] : cursors_) {
    if (!cursor.open || cursor.keeps || cursor.stale) continue;
    cursor.stale = std::any_of(cursor.reads.begin(), cursor.reads.end(),
                               [&](const std::string& read) { return tsql::sameName(read, table); });
  }
}

void Cursors::rolledBack() {
  for (auto& [name, cursor] : cursors_) {
    if (cursor.keeps) continue;
    cursor.open = false;
    cursor.rows.clear();
  }
}

const std::vector<tsql::Result>* Cursors::fetch(Cursor& cursor, tsql::CursorStep::Verb verb, std::int64_t count) {
  using Verb = tsql::CursorStep::Verb;
  const auto rows = static_cast<std::int64_t>(cursor.rows.size());
  auto to = cursor.at;
  if (verb == Verb::Next) to += 1;
  if (verb == Verb::Prior) to -= 1;
  if (verb == Verb::First) to = 1;
  if (verb == Verb::Last) to = rows;
  if (verb == Verb::Relative) to += count;
  if (verb == Verb::Absolute) to = count >= 0 ? count : rows + 1 + count;
  cursor.at = std::clamp<std::int64_t>(to, 0, rows + 1);
  const bool there = cursor.at >= 1 && cursor.at <= rows;
  fetchStatus_ = there ? 0 : -1;
  return there ? &cursor.rows[static_cast<std::size_t>(cursor.at - 1)] : nullptr;
}

}  // namespace tolvane::embedded
