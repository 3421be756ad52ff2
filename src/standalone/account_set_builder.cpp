#include "standalone/account_set_builder.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "platform/error.h"
#include "standalone/sql_batches.h"
#include "standalone/text_file.h"

namespace tolvane::standalone {
namespace {

using Json = nlohmann::ordered_json;

// The sample that the documents belong to, and the one that needs the tables of the older layout.
constexpr std::string_view demonstration = "demo";
constexpr std::string_view olderLayout = "older";

[[noreturn]] void refuse(RuntimeError error, const std::string& description) {
  throw AutomationError(errorNumber(error), std::string(applicationName), description);
}

std::string readShipped(const std::filesystem::path& path) {
  auto text = readTextFile(path);
  if (!text)
    refuse(RuntimeError::fileNotFound,
           "The file " + path.string() + ", which is shipped with the program, cannot be read.");
  return std::move(*text);
}

std::string quotedSql(const std::string& text) {
  std::string result = "N'";
  for (const char c : text) {
    result += c;
    if (c == '\'') result += c;
  }
  return result + "'";
}

Bytes documentOf(const std::filesystem::path& path) {
  const std::string content = readShipped(path);
  return Bytes(std::vector<std::uint8_t>(content.begin(), content.end()));
}

}  // namespace

AccountSetBuilder::AccountSetBuilder(std::filesystem::path schema, std::filesystem::path samples)
    : schema_(std::move(schema)), samples_(std::move(samples)) {}

void AccountSetBuilder::build(Connection& connection, const std::optional<std::string>& sample) const {
  if (sample) requireSample(*sample);
  runScript(connection, schema_ / "accountset.sql");
  if (!sample) return;
  if (*sample == olderLayout) buildOlderLayout(connection);
  runScript(connection, samples_ / (*sample + ".sql"));
  if (*sample == demonstration) storeDocuments(connection);
}

void AccountSetBuilder::buildOlderLayout(Connection& connection) const {
  runScript(connection, schema_ / "older_cs.sql");
}

void AccountSetBuilder::requireSample(const std::string& sample) const {
  std::vector<std::string> names;
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator(samples_, ignored)) {
    if (entry.path().extension() == ".sql") names.push_back(entry.path().stem().string());
  }
  if (std::find(names.begin(), names.end(), sample) != names.end()) return;
  std::sort(names.begin(), names.end());
  std::string known;
  for (const auto& name : names) known += (known.empty() ? "" : ", ") + name;
  refuse(RuntimeError::invalidArgument,
         "There is no sample " + sample + "; there is " + (known.empty() ? "none" : known) + ".");
}

void AccountSetBuilder::runScript(Connection& connection, const std::filesystem::path& path) const {
  std::size_t number = 0;
  for (const auto& batch : splitBatches(readShipped(path))) {
    ++number;
    try {
      for (auto rows = connection.execute(batch); rows; rows = rows->nextRecordset()) continue;
    } catch (const AutomationError& error) {
      throw AutomationError(
          error.number(), error.source(),
          path.filename().string() + ", batch " + std::to_string(number) + ": " + error.description());
    }
  }
}

void AccountSetBuilder::storeDocuments(Connection& connection) const {
  const auto path = samples_ / "documents.json";
  const auto list = Json::parse(readShipped(path), nullptr, false);
  if (!list.is_array()) refuse(RuntimeError::typeMismatch, "The file " + path.string() + " is not a JSON list.");
  for (const auto& entry : list) {
    const std::string name = entry.value("name", "");
    auto rows = connection.newRecordset();
    rows->open("Select FRptID, FRptData, FPrinterBuf From t_Rpt_Content Where FRptName = " + quotedSql(name) +
                   " And FRptType = " + std::to_string(entry.value("type", 0)),
               CursorType::keyset, LockType::optimistic);
    if (rows->eof())
      refuse(RuntimeError::invalidArgument,
             "documents.json names the report " + name + ", which the sample does not have.");
    rows->setValue("FRptData", documentOf(samples_ / entry.value("file", "")));
    if (entry.contains("printer")) rows->setValue("FPrinterBuf", documentOf(samples_ / entry.value("printer", "")));
    rows->update();
    rows->close();
  }
}

}  // namespace tolvane::standalone
