#pragma once

#include <cstdint>
#include <optional>
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
  // Of an identity column whose values the engine makes. Where it is SQLite's row number instead, SQLite makes them.
  bool made = false;
  std::int64_t seed = 1;
  std::int64_t increment = 1;
};

// A key or index. `columns` are ordinals of Table::columns.
struct Index {
  std::string name;
  std::vector<int> columns;
  bool unique = false;
  bool primary = false;
  bool constraint = false;  // a constraint PRIMARY KEY or UNIQUE, not an index that was made as such
  std::string stored;       // its name in SQLite; empty where it stands in the table's own text and cannot go alone
};

// SQLite's names of the indexes of constraints end so.
inline constexpr std::string_view primaryIndexEnd = "/primary";
inline constexpr std::string_view uniqueIndexEnd = "/unique";

// A table or view. The object stays valid while the catalogue does not change its version.
struct Table {
  std::string name;
  std::vector<Column> columns;
  std::vector<Index> indexes;
  bool view = false;       // cannot be changed
  bool temporary = false;  // the name begins with '#'; lives in SQLite's temp schema
  std::string text;        // that made it in SQLite

  // The ordinal of a column, -1 where there is none; letter case does not matter.
  int find(std::string_view columnName) const;
  int identityColumn() const;  // ordinal, or -1

  // Takes name and kind of an index that was made by a text of its own from its name in SQLite.
  void nameIndex(Index& index, std::string_view stored) const;
};

// Reads seed and step back from the default that an identity column has in SQLite when the engine makes its values.
void readIdentity(Column& column);
// That default.
std::string identityDefault(std::string_view table, const Type& type, std::int64_t seed, std::int64_t increment);

// What the compiler asks about the account set. Implementations read SQLite's schema; tests bring their own.
// Not thread safe: one catalogue a connection.
class Catalogue {
 public:
  virtual ~Catalogue() = default;
  // The table of that name, nullptr where there is none. Letter case does not matter; no schema prefix, no quotes.
  virtual const Table* find(std::string_view name) const = 0;
  // The table that an index name belongs to, nullptr where there is no such index. For DROP INDEX.
  virtual const Table* findByIndex(std::string_view indexName) const = 0;
  // All tables, for what has to be known of every one of them.
  virtual std::vector<const Table*> tables() const = 0;
  // Grows whenever tables or columns change. A program is good for the version it was compiled with.
  virtual std::uint64_t version() const = 0;
};

// The parts of a name between points, in brackets or quotes or without them; nothing for what is no name.
std::optional<std::vector<std::string>> nameParts(std::string_view name);

// Equality of names: ASCII letter case does not matter, nothing else is folded.
bool sameName(std::string_view a, std::string_view b);

}  // namespace tolvane::tsql
