#include "rowset/server_errors.h"

#include <algorithm>
#include <array>
#include <string>

namespace tolvane::rowset {
namespace {

struct NumberRow {
  int native;
  std::uint32_t oledb;
  std::string_view state;
};

// Server numbers with a number of their own in OLE DB; the syntax and naming errors are all errorsInCommand.
constexpr std::array numberRows{
    NumberRow{208, oledb::noTable, "42S02"},
    NumberRow{3701, oledb::noTable, "42S02"},
    NumberRow{4902, oledb::noTable, "42S02"},
    NumberRow{1088, oledb::noTable, "42S02"},
    NumberRow{4701, oledb::noTable, "42S02"},
    NumberRow{207, oledb::errorsInCommand, "42S22"},
    NumberRow{2627, oledb::integrityViolation, "23000"},
    NumberRow{2601, oledb::integrityViolation, "23000"},
    NumberRow{515, oledb::integrityViolation, "23000"},
    NumberRow{547, oledb::integrityViolation, "23000"},
    NumberRow{544, oledb::integrityViolation, "23000"},
    NumberRow{8152, oledb::dataOverflow, "22001"},
    NumberRow{8115, oledb::dataOverflow, "22003"},
    NumberRow{220, oledb::dataOverflow, "22003"},
    NumberRow{232, oledb::dataOverflow, "22003"},
    NumberRow{244, oledb::dataOverflow, "22003"},
    NumberRow{248, oledb::dataOverflow, "22003"},
    NumberRow{517, oledb::dataOverflow, "22007"},
    NumberRow{535, oledb::dataOverflow, "22003"},
    NumberRow{245, oledb::cantConvertValue, "22018"},
    NumberRow{8114, oledb::cantConvertValue, "22018"},
    NumberRow{241, oledb::cantConvertValue, "22007"},
    NumberRow{242, oledb::cantConvertValue, "22007"},
    NumberRow{295, oledb::cantConvertValue, "22007"},
    NumberRow{235, oledb::cantConvertValue, "22018"},
    NumberRow{8169, oledb::cantConvertValue, "22018"},
    NumberRow{8134, oledb::errorsInCommand, "22012"},
    NumberRow{512, oledb::errorsInCommand, "21000"},
    NumberRow{229, oledb::permissionDenied, "42000"},
    NumberRow{18456, oledb::authenticationFailed, "28000"},
    NumberRow{4060, oledb::unspecified, "42000"},
    NumberRow{1205, oledb::unspecified, "40001"},
    NumberRow{3902, oledb::unspecified, "25000"},
    NumberRow{3903, oledb::unspecified, "25000"},
};

const NumberRow* findRow(int native) {
  const auto* row =
      std::find_if(numberRows.begin(), numberRows.end(), [&](const NumberRow& r) { return r.native == native; });
  return row == numberRows.end() ? nullptr : row;
}

}  // namespace

bool knowsNumber(int nativeNumber) {
  return findRow(nativeNumber) != nullptr;
}

std::uint32_t oledbNumber(int nativeNumber) {
  const auto* row = findRow(nativeNumber);
  return row ? row->oledb : oledb::errorsInCommand;
}

std::string_view sqlState(int nativeNumber) {
  const auto* row = findRow(nativeNumber);
  return row ? row->state : "42000";
}

AutomationError timeoutError(std::string_view sql) {
  AutomationError result(oledb::abortLimitReached, std::string(databaseSource), "Timeout expired");
  result.withDatabase({std::string(sql), "HYT00", 0});
  return result;
}

AutomationError doesNotFit() {
  return {oledb::errorsOccurred, std::string(recordsetSource),
          "Multiple-step OLE DB operation generated errors. Check each OLE DB status value, if available. No work was "
          "done."};
}

}  // namespace tolvane::rowset
