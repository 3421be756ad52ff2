#include "host/shipped_tables.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <string_view>

#include "platform/error.h"
#include "standalone/share_folder.h"
#include "standalone/text_file.h"

namespace tolvane::host {
namespace {

constexpr std::string_view creating = "create table ";

std::string readScript(const char* name) {
  const auto path = standalone::findShared("schema") / name;
  auto text = standalone::readTextFile(path);
  if (!text) {
    throw AutomationError(errorNumber(RuntimeError::fileNotFound), std::string(applicationName),
                          "The file " + path.string() + ", which is shipped with the program, cannot be read.");
  }
  return std::move(*text);
}

std::string firstWord(const std::string& line) {
  std::istringstream words(line);
  std::string word;
  words >> word;
  return word;
}

bool isConstraint(const std::string& word) {
  static constexpr std::array<std::string_view, 5> words{"constraint", "primary", "unique", "foreign", "check"};
  return std::find(words.begin(), words.end(), word) != words.end();
}

}  // namespace

std::vector<ShippedTable> tablesIn(const std::string& script) {
  std::vector<ShippedTable> tables;
  bool inside = false;
  std::istringstream lines(script);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(creating)) {
      tables.push_back({firstWord(line.substr(creating.size())), {}, {}, false});
      inside = true;
      continue;
    }
    if (line.starts_with(")")) inside = false;
    const auto word = firstWord(line);
    if (!inside || word.empty() || word.starts_with("--") || isConstraint(word)) continue;
    tables.back().columns.push_back(word);
    if (line.find(" identity(") != std::string::npos) tables.back().identity = word;
  }
  return tables;
}

std::vector<ShippedTable> shippedTables() {
  auto tables = tablesIn(readScript("accountset.sql"));
  for (auto& table : tablesIn(readScript("older_cs.sql"))) {
    table.older = true;
    tables.push_back(std::move(table));
  }
  return tables;
}

std::vector<FieldInfo> columnsOf(Connection& connection, const std::string& table) {
  try {
    return connection.execute("Select * From " + table + " Where 1 = 0")->fields();
  } catch (const AutomationError& error) {
    if (error.number() == oledb::noTable) return {};
    throw;
  }
}

}  // namespace tolvane::host
