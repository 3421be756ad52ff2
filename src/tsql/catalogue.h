#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tsql/type.h"

namespace tolvane::tsql {

// A column of a table of the account set, as the compiler needs it.
struct Column {
  std::string name;  // as it was created; compared without regard to letter case
  Type type;         // with nullability
  bool identity = false;
  std::string defaultText;  // SQLite text of the default, empty without one
};

// A key or index. `columns` are ordinals of Table::columns.
struct Index {
  std::string name;
  std::vector<int> columns;
  bool unique = false;
  bool primary = false;
};

// A table or view. The object stays valid while the catalogue does not change its version.
struct Table {
  std::string name;
  std::vector<Column> columns;
  std::vector<Index> indexes;
  bool view = false;       // cannot be changed
  bool temporary = false;  // the name begins with '#'; lives in SQLite's temp schema

  // The ordinal of a column, -1 where there is none; letter case does not matter.
  int find(std::string_view columnName) const;
  int identityColumn() const;  // ordinal, or -1
};

// What the compiler asks about the account set. Implementations read SQLite's schema; tests bring their own.
// Not thread safe: one catalogue a connection.
class Catalogue {
 public:
  virtual ~Catalogue() = default;
  // The table of that name, nullptr where there is none. Letter case does not matter; no schema prefix, no quotes.
  virtual const Table* find(std::string_view name) const = 0;
  // The table that an index name belongs to, nullptr where there is no such index. For DROP INDEX.
  virtual const Table* findByIndex(std::string_view indexName) const = 0;
  // Grows whenever tables or columns change. A program is good for the version it was compiled with.
  virtual std::uint64_t version() const = 0;
};

// Equality of names: ASCII letter case does not matter, nothing else is folded.
bool sameName(std::string_view a, std::string_view b);

}  // namespace tolvane::tsql
