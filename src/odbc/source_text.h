// What a record set's source says about the table behind it. Statements are sent as they are; this only reads them.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tolvane::odbc {

/// A source taken apart as far as an updatable record set needs it.
struct Source {
  std::string statement;  ///< what is sent
  /// The one table that the rows are of, as the statement writes it; empty when there is none, so that nothing can be
  /// posted.
  std::string table;
  /// Without WHERE and ORDER BY: "SELECT ... FROM t", which describes the columns without reading rows.
  std::string head;
  std::size_t listStart = 0;  ///< where the statement's list of columns begins, and the FROM behind it
  std::size_t listEnd = 0;
  bool hasWhere = false;
  bool allColumns = false;  ///< the list is "*"
  /// For a list of columns: the table's column that each one is, as written; empty for a computed one.
  std::vector<std::string> columns;

  /// Whether "head WHERE 1 = 0" has no row and the columns of the statement: rows of a whole table, none of whose
  /// columns is computed. An aggregate has a row even then.
  [[nodiscard]] bool isWholeTable() const;

  /// The same rows with other columns: the statement with another list.
  [[nodiscard]] std::string withList(const std::string& list) const;
};

/// `isTable` says that the text is a table's name; otherwise a text that is one name is taken for a table too, as ADO
/// does.
[[nodiscard]] Source readSource(const std::string& source, bool isTable);

/// "dbo.[a b]" is "dbo" and "a b".
[[nodiscard]] std::vector<std::string> nameParts(std::string_view name);

/// How many "?" stand in a text outside quotes, brackets and comments.
[[nodiscard]] std::size_t markCount(std::string_view text);

/// Whether a CREATE, ALTER or DROP stands anywhere in the text, so that what is known about tables may be old after it.
[[nodiscard]] bool mayChangeTables(std::string_view text);

}  // namespace tolvane::odbc
