#include "host/compare_command.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <optional>
#include <vector>

#include "host/call_runner.h"
#include "host/progress_display.h"
#include "host/row_chunks.h"
#include "host/shipped_tables.h"
#include "host/usage_error.h"
#include "host/utf8.h"
#include "platform/calendar.h"
#include "platform/conversions.h"
#include "platform/names.h"
#include "standalone/data_sources.h"
#include "tracing/json_values.h"

namespace tolvane::host {
namespace {

constexpr std::size_t longestShown = 200;

// Two numbers of 64 bits that differ for different documents, for all that is likely.
std::string digest(const Bytes& bytes) {
  std::uint64_t first = 0xCBF29CE484222325U;
  std::uint64_t second = 0x9E3779B97F4A7C15U;
  for (const auto byte : bytes.view()) {
    first = (first ^ byte) * 0x100000001B3U;
    second = (second + byte) * 0xD6E8FEB86659FD93U;
    second ^= second >> 32U;
  }
  return "<" + std::to_string(bytes.size()) + " bytes " + std::to_string(first) + " " + std::to_string(second) + ">";
}

// Engines give the same number in different kinds and with more or fewer zeros.
std::string cellText(const Value& value) {
  if (value.isNull()) return "NULL";
  if (const auto* bytes = value.get<Bytes>()) return digest(*bytes);
  if (const auto* date = value.get<Date>()) return isoText(*date);
  if (const auto* text = value.get<std::string>()) return "'" + *text + "'";
  if (const auto* flag = value.get<bool>()) return *flag ? "True" : "False";
  if (value.get<double>() || value.get<float>()) return toText(value);
  auto text = exactText(toDecimal(value));
  if (text.find('.') == std::string::npos) return text;
  while (text.back() == '0') text.pop_back();
  if (text.back() == '.') text.pop_back();
  return text;
}

/// How often each row occurs, and what is different between the two sides of it.
using Rows = std::map<std::string, std::int64_t>;

Rows rowsOf(Connection& connection, const std::string& table, std::vector<FieldInfo> columns,
            const std::string& condition, std::int64_t& count) {
  std::sort(columns.begin(), columns.end(),
            [](const FieldInfo& a, const FieldInfo& b) { return lowered(a.name) < lowered(b.name); });
  std::string names;
  for (const auto& column : columns) names += (names.empty() ? "" : ", ") + column.name;
  Rows rows;
  const auto set = connection.execute("Select " + names + " From " + table + whereText(condition));
  for (; !set->eof(); set->moveNext()) {
    std::string line;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      line += (line.empty() ? "" : ", ") + lowered(columns[i].name) + "=" + cellText(set->value(i));
    }
    ++rows[line];
    ++count;
  }
  return rows;
}

std::vector<FieldInfo> commonColumns(const std::vector<FieldInfo>& one, const std::vector<FieldInfo>& other) {
  std::vector<FieldInfo> common;
  std::copy_if(one.begin(), one.end(), std::back_inserter(common), [&](const FieldInfo& column) {
    return std::any_of(other.begin(), other.end(),
                       [&](const FieldInfo& there) { return lowered(there.name) == lowered(column.name); });
  });
  return common;
}

struct Only {
  std::int64_t rows = 0;
  std::string first;
};

void addOnly(Only& only, const Rows& one, const Rows& other) {
  for (const auto& [line, count] : one) {
    const auto found = other.find(line);
    const auto more = count - (found == other.end() ? 0 : found->second);
    if (more <= 0) continue;
    if (only.rows == 0) only.first = line.substr(0, longestShown);
    only.rows += more;
  }
}

class Comparison {
 public:
  Comparison(const Environment& environment, Connection& a, Connection& b) : environment_(environment), a_(a), b_(b) {}

  /// Whether all tables are the same.
  bool run() {
    std::int64_t tables = 0;
    bool same = true;
    for (const auto& table : shippedTables()) {
      const auto inA = columnsOf(a_, table.name);
      const auto inB = columnsOf(b_, table.name);
      if (inA.empty() && inB.empty()) continue;
      ++tables;
      same = compare(table, inA, inB) && same;
    }
    if (same) environment_.out << "The same: " << tables << " tables, " << grouped(rows_) << " rows.\n";
    return same;
  }

 private:
  bool compare(const ShippedTable& shipped, const std::vector<FieldInfo>& inA, const std::vector<FieldInfo>& inB) {
    const auto& table = shipped.name;
    if (inA.empty() || inB.empty()) {
      environment_.out << table << ": only in " << (inA.empty() ? "B" : "A") << ".\n";
      return false;
    }
    Only onlyA;
    Only onlyB;
    std::int64_t ignored = 0;
    const auto count = toInt64(a_.execute("Select Count(*) From " + table)->value(std::size_t{0}));
    for (const auto& chunk : rowChunks(a_, table, commonColumns(inA, inB), shipped.identity, count)) {
      const auto a = rowsOf(a_, table, inA, chunk, rows_);
      const auto b = rowsOf(b_, table, inB, chunk, ignored);
      addOnly(onlyA, a, b);
      addOnly(onlyB, b, a);
    }
    if (onlyA.rows == 0 && onlyB.rows == 0) return true;
    environment_.out << table << ": " << grouped(onlyA.rows) << " rows only in A, " << grouped(onlyB.rows)
                     << " only in B.\n";
    if (onlyA.rows > 0) environment_.out << "  A: " << onlyA.first << '\n';
    if (onlyB.rows > 0) environment_.out << "  B: " << onlyB.first << '\n';
    return false;
  }

  const Environment& environment_;
  Connection& a_;
  Connection& b_;
  std::int64_t rows_ = 0;
};

}  // namespace

int runCompareCommand(const Environment& environment, const CompareOptions& options) {
  if (!isUtf8(options.a) || !isUtf8(options.b)) throw UsageError("A data-source name is not UTF-8.");
  try {
    const auto a = standalone::connect(environment.engines, DataSourceName::parse(options.a));
    const auto b = standalone::connect(environment.engines, DataSourceName::parse(options.b));
    return Comparison(environment, *a, *b).run() ? exitDone : exitRaised;
  } catch (...) {
    const AutomationError error = toAutomationError(std::current_exception());
    environment.err << "tolvane: " << tracing::hexNumber(error.number()) << ": " << error.description() << '\n';
    return exitRaised;
  }
}

}  // namespace tolvane::host
