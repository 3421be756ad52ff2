#include "host/text_table.h"

#include <algorithm>

#include "host/utf8.h"

namespace tolvane::host {
namespace {

constexpr std::string_view gap = "  ";

std::string blanks(std::size_t count) {
  return std::string(count, ' ');
}

}  // namespace

TextTable::TextTable(std::vector<std::string> names) : names_(std::move(names)) {
  for (auto& name : names_) name = oneLine(name);
}

void TextTable::addRow(std::vector<Cell> cells) {
  for (auto& cell : cells) cell.text = oneLine(cell.text);
  rows_.push_back(std::move(cells));
}

void TextTable::print(std::ostream& out) const {
  std::vector<std::size_t> widths;
  std::vector<bool> right;
  for (std::size_t column = 0; column < names_.size(); ++column) {
    std::size_t width = displayWidth(names_[column]);
    bool numbers = false;
    bool others = false;
    for (const auto& row : rows_) {
      width = std::max(width, displayWidth(row[column].text));
      numbers = numbers || row[column].isNumber;
      others = others || (!row[column].isNumber && !row[column].isNull);
    }
    widths.push_back(width);
    right.push_back(numbers && !others);
  }
  const auto printLine = [&](auto textOf) {
    std::string line;
    for (std::size_t column = 0; column < names_.size(); ++column) {
      const std::string& text = textOf(column);
      const std::string padding = blanks(widths[column] - displayWidth(text));
      if (column > 0) line += gap;
      line += right[column] ? padding + text : text + padding;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
  };
  printLine([&](std::size_t column) -> const std::string& { return names_[column]; });
  std::vector<std::string> rules;
  for (const auto width : widths) rules.emplace_back(width, '-');
  printLine([&](std::size_t column) -> const std::string& { return rules[column]; });
  for (const auto& row : rows_) {
    printLine([&](std::size_t column) -> const std::string& { return row[column].text; });
  }
  out << '(' << rows_.size() << (rows_.size() == 1 ? " row)\n" : " rows)\n");
}

}  // namespace tolvane::host
