#include "tds_server/catalogue_procedures.h"

#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace tolvane::tds {
namespace {

using embedded::Cell;
using tsql::Type;
using tsql::TypeKind;

constexpr int nameLength = 128;

/// Lines of an answer, with the texts that their cells show.
class Lines {
 public:
  Lines(const embedded::Session& session, const Imitation& imitation) : imitation_(imitation) {
    database_ = session.databaseName();
  }

  Lines& text(const char* column, std::string_view value) {
    declare(column, Type::text(TypeKind::NVarChar, nameLength));
    line_.push_back(Cell::ofText(texts_.emplace_back(value)));
    return *this;
  }
  /// A name, in the letter case that the catalogue gives names.
  Lines& name(const char* column, std::string value) {
    if (imitation_.smallLetters) {
      for (char& c : value) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    }
    return text(column, value);
  }
  Lines& number(const char* column, std::int64_t value) {
    declare(column, Type::of(TypeKind::SmallInt));
    line_.push_back(Cell::ofInteger(value));
    return *this;
  }
  Lines& null(const char* column) {
    declare(column, Type::text(TypeKind::NVarChar, nameLength));
    line_.emplace_back();
    return *this;
  }
  Lines& table(const tsql::Table& table) {
    return text("TABLE_QUALIFIER", database_).text("TABLE_OWNER", "dbo").name("TABLE_NAME", table.name);
  }
  void endLine() {
    lines_.push_back(std::move(line_));
    line_.clear();
  }
  /// Ends the line that tells the columns without being one of the answer.
  void endHeading() { line_.clear(); }
  void send(Answer& answer) const { answer.rows(columns_, lines_); }

 private:
  void declare(const char* column, const Type& type) {
    if (line_.size() == columns_.size()) columns_.push_back({column, type, {}, false});
  }

  const Imitation& imitation_;
  std::string database_;
  std::vector<WireColumn> columns_;
  std::vector<Cell> line_;
  std::vector<std::vector<Cell>> lines_;
  std::deque<std::string> texts_;
};

void keyLine(Lines& lines, const tsql::Table& table, std::string_view column, int place, std::string_view index) {
  lines.table(table).name("COLUMN_NAME", std::string(column)).number("KEY_SEQ", place).text("PK_NAME", index);
}

void answerKeys(const tsql::Table* table, Lines& lines) {
  keyLine(lines, table ? *table : tsql::Table(), "", 0, "");
  lines.endHeading();
  if (!table) return;
  for (const auto& index : table->indexes) {
    int place = 0;
    for (const int column : index.columns) {
      if (!index.primary) break;
      keyLine(lines, *table, table->columns[static_cast<std::size_t>(column)].name, ++place, index.name);
      lines.endLine();
    }
  }
}

void indexLine(Lines& lines, const tsql::Table& table, const tsql::Index& index, std::string_view column, int place) {
  constexpr int otherIndex = 3;
  lines.table(table).number("NON_UNIQUE", index.unique ? 0 : 1).text("INDEX_QUALIFIER", table.name);
  lines.name("INDEX_NAME", index.name).number("TYPE", otherIndex).number("SEQ_IN_INDEX", place);
  lines.name("COLUMN_NAME", std::string(column)).text("COLLATION", "A").null("CARDINALITY").null("PAGES");
  lines.null("FILTER_CONDITION");
}

void answerIndexes(const tsql::Table* table, Lines& lines) {
  indexLine(lines, table ? *table : tsql::Table(), {}, "", 0);
  lines.endHeading();
  if (!table) return;
  for (const auto& index : table->indexes) {
    int place = 0;
    for (const int column : index.columns) {
      if (!index.unique) break;
      indexLine(lines, *table, index, table->columns[static_cast<std::size_t>(column)].name, ++place);
      lines.endLine();
    }
  }
}

void columnLine(Lines& lines, const tsql::Table& table, const tsql::Column& column, int place) {
  lines.table(table).name("COLUMN_NAME", column.name).number("DATA_TYPE", 0);
  lines.text("TYPE_NAME", std::string(column.type.baseName()) + (column.identity ? " identity" : ""))
      .number("NULLABLE", column.type.nullable ? 1 : 0);
  lines.number("ORDINAL_POSITION", place);
}

void answerColumns(const tsql::Table* table, Lines& lines) {
  columnLine(lines, table ? *table : tsql::Table(), {}, 0);
  lines.endHeading();
  int place = 0;
  if (!table) return;
  for (const auto& column : table->columns) {
    columnLine(lines, *table, column, ++place);
    lines.endLine();
  }
}

void answerTables(const tsql::Table* table, Lines& lines) {
  lines.table(table ? *table : tsql::Table()).text("TABLE_TYPE", "TABLE").null("REMARKS");
  table ? lines.endLine() : lines.endHeading();
}

}  // namespace

bool answerCatalogue(const RemoteCall& call, embedded::Session& session, const Imitation& imitation, Answer& answer) {
  // Drivers name the procedures with databases and owners before them.
  const auto dot = call.procedure.rfind('.');
  const auto procedure = call.procedure.substr(dot == std::string::npos ? 0 : dot + 1);
  std::string name;
  for (const auto& parameter : call.parameters) {
    if (parameter.name == "@table_name" || (name.empty() && parameter.name.empty())) name = parameter.text();
  }
  session.catalogue().refresh();
  const auto* table = session.catalogue().find(name);
  Lines lines(session, imitation);
  if (procedure == "sp_pkeys") {
    answerKeys(table, lines);
  } else if (procedure == "sp_statistics") {
    answerIndexes(table, lines);
  } else if (procedure == "sp_columns") {
    answerColumns(table, lines);
  } else if (procedure == "sp_tables") {
    answerTables(table, lines);
  } else {
    return false;
  }
  lines.send(answer);
  return true;
}

}  // namespace tolvane::tds
