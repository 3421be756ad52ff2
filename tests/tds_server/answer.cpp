#include "tds_server/answer.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace tolvane::tds {
namespace {

constexpr std::int32_t ownNumber = 33557097;
constexpr std::int32_t generalNumber = 50000;
constexpr std::int32_t terminatedNumber = 3621;

// Errors after which SQL Server says that the statement was ended.
bool endsStatement(std::int32_t number) {
  static constexpr std::array<std::int32_t, 6> numbers{515, 547, 2601, 2627, 8115, 8152};
  return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

std::string lowered(std::string text) {
  for (char& c : text) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  return text;
}

std::vector<WireColumn> columnsOf(const embedded::ResultShape& shape) {
  std::vector<WireColumn> columns;
  for (const auto& column : shape.columns) columns.push_back({column.name, column.type, column.table, column.identity});
  return columns;
}

}  // namespace

void Answer::columns(const std::vector<WireColumn>& columns) {
  flushEnd(doneMore);
  Buffer token;
  put(token, Token::columns);
  put(token, static_cast<std::uint16_t>(columns.size()));
  for (auto column : columns) {
    if (column.name.empty()) column.name = imitation_.nameOfExpressions;
    if (imitation_.smallLetters) column.name = lowered(column.name);
    if (imitation_.hidesNotNull) column.type.nullable = true;
    if (imitation_.hidesIdentity) column.identity = false;
    putColumn(token, column);
  }
  tokens_.raw(token);
}

void Answer::row(const std::vector<WireColumn>& columns, const std::vector<embedded::Cell>& cells) {
  Buffer token;
  put(token, Token::row);
  for (std::size_t i = 0; i < columns.size(); ++i) putValue(token, columns[i].type, cells[i]);
  tokens_.raw(token);
}

bool Answer::rows(embedded::RowSet& set, const std::optional<Fault>& fault) {
  const auto described = columnsOf(set.shape());
  columns(described);
  std::uint64_t count = 0;
  std::vector<embedded::Cell> cells(described.size());
  for (; set.has(count); ++count) {
    if (fault && fault->when == Fault::When::afterRows && count == fault->rows) return false;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      cells[i] = set.cell(count, i);
      if (described[i].type.isLong()) cells[i].size = std::min(cells[i].size, textSize_);
    }
    row(described, cells);
  }
  end(doneCount, count);
  return true;
}

void Answer::rows(const std::vector<WireColumn>& described, const std::vector<std::vector<embedded::Cell>>& lines) {
  columns(described);
  for (const auto& line : lines) row(described, line);
  end(doneCount, lines.size());
}

void Answer::end(std::uint16_t status, std::uint64_t count) {
  flushEnd(doneMore);
  held_ = End{status, count};
}

void Answer::failed(const Notice& notice) {
  flushEnd(doneMore);
  auto sent = notice;
  if (imitation_.ownErrorNumbers) sent.number = ownNumber;
  tokens_.error(sent);
  if (endsStatement(notice.number)) tokens_.info({terminatedNumber, 0, "The statement has been terminated."});
  held_ = End{doneError, 0};
}

void Answer::failed(const AutomationError& error) {
  const auto number = error.database().nativeNumber;
  failed(Notice{number == 0 ? generalNumber : number, 16, error.description()});
}

void Answer::flushEnd(std::uint16_t more) {
  if (!held_) return;
  const auto kind = of_ == Of::batch ? Token::done : Token::doneInProcedure;
  tokens_.done(kind, static_cast<std::uint16_t>(held_->status | more), held_->count);
  held_.reset();
}

void Answer::finish() {
  if (of_ == Of::batch) {
    if (!held_) held_ = End{};
    flushEnd(0);
    return;
  }
  const bool hasFailed = held_ && (held_->status & doneError) != 0;
  flushEnd(doneMore);
  tokens_.returnStatus(0);
  for (const auto& [name, value] : outputs_) tokens_.returnValue(name, value);
  tokens_.done(Token::doneProcedure, hasFailed ? doneError : 0);
}

}  // namespace tolvane::tds
