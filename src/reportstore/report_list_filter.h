// The columns of SrvRptRetrieve.GetList, and the conditions that a caller's filter puts on them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/objects.h"

namespace tolvane {

class ReportListFilter {
 public:
  /// `nameColumn`: the report name's column in the caller's language.
  explicit ReportListFilter(std::string_view nameColumn);

  /// Adds the column in which reports carry their item of a standard; the accounting regime's is there from the start.
  void addStandard(std::int32_t standard);

  /// The select list over t_Rpt_Content as "a", behind the right code.
  [[nodiscard]] std::string columns() const;

  /// Appends one equality for each entry of the caller's bag: numbers as they are, texts and days quoted, Null as "is
  /// null". Answers the first entry that names no column of the list; `condition` does not matter then.
  [[nodiscard]] std::optional<std::string> addConditions(const PropertyBag& filter, std::string& condition) const;

 private:
  struct Column {
    std::string source;  ///< the expression in t_Rpt_Content
    std::string name;
  };
  std::vector<Column> columns_;
};

}  // namespace tolvane
