// Rows and columns for people.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace tolvane::host {

/// Gathers cells and prints them aligned, wide characters counted as two columns. Columns that hold nothing but numbers
/// are aligned to the right.
class TextTable {
 public:
  struct Cell {
    std::string text;
    bool isNumber = false;
    bool isNull = false;
  };

  explicit TextTable(std::vector<std::string> names);
  void addRow(std::vector<Cell> cells);
  /// The table and a line with the number of rows.
  void print(std::ostream& out) const;

 private:
  std::vector<std::string> names_;
  std::vector<std::vector<Cell>> rows_;
};

}  // namespace tolvane::host
