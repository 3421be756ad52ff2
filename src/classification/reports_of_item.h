// The statements behind RptPropItemClassInfo.GetRptByProp: the reports of one item, as one user may see them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/data_access.h"

namespace tolvane {

/// Who reads the list.
struct ItemReader {
  bool seesSharedReports = false;
  bool seesAllReports = false;
  bool isAdministrator = false;
  std::int16_t userID = 0;
  std::string nameColumn;  ///< of the report's name in the user's language
};

struct ItemName {
  std::string standard;
  std::string item;
};
/// Takes "(standard)-item" apart at the first "-" that stands behind a ")"; nothing when there is none.
[[nodiscard]] std::optional<ItemName> splitItemName(std::string_view name);

/// The reports under item `item` of the standard with that number: templates and ordinary reports.
[[nodiscard]] std::string reportsOfItem(const ItemReader& reader, std::string_view standardNumber, std::int32_t item);

/// The reports under an item of the nature standard: those of the item's type that none of the other standards files.
/// `otherStandards`: their FNumber.
[[nodiscard]] std::string reportsOfNatureItem(const ItemReader& reader, std::int32_t item, Recordset& otherStandards);

}  // namespace tolvane
