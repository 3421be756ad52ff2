#include "reportstore/report_list_filter.h"

#include <algorithm>
#include <array>

#include "frame/method_table.h"
#include "frame/sql_text.h"
#include "platform/calendar.h"
#include "platform/conversions.h"

namespace tolvane {
namespace {

constexpr std::int32_t regimeStandard = 1001;
constexpr std::string_view rightColumn = "FRightCode";

std::string literal(const Value& value) {
  if (const auto* date = value.get<Date>()) return sql("'", compactText(*date), "'");
  if (const auto* text = value.get<std::string>()) return sql("'", doubled(*text), "'");
  if (const auto* flag = value.get<bool>()) return *flag ? "1" : "0";
  return toText(value);
}

}  // namespace

ReportListFilter::ReportListFilter(std::string_view nameColumn) {
  columns_.push_back({"a.FRptID", "FRptID"});
  columns_.push_back({sql("a.", nameColumn), "FRptName"});
  for (const char* name : {"FSysName", "FOwner", "FYear", "FPeriod", "FRptType", "FLastOperator", "FLastDate"}) {
    columns_.push_back({sql("a.", name), name});
  }
  columns_.push_back({"a.F1001", "F1001"});
}

void ReportListFilter::addStandard(std::int32_t standard) {
  if (standard == regimeStandard) return;
  columns_.push_back({sql("a.F", standard), sql("F", standard)});
}

std::string ReportListFilter::columns() const {
  std::string text;
  for (const Column& column : columns_) {
    if (!text.empty()) text += ",";
    text += sql(column.source, " ", column.name, " ");
  }
  return text;
}

std::optional<std::string> ReportListFilter::addConditions(const PropertyBag& filter, std::string& condition) const {
  for (std::int32_t i = 1; i <= filter.count(); ++i) {
    const std::string name = filter.name(i);
    const bool known =
        sameName(name, rightColumn) || std::any_of(columns_.begin(), columns_.end(),
                                                   [&](const Column& column) { return sameName(column.name, name); });
    if (!known) return name;
    const Value value = filter.item(name);
    condition += condition.empty() ? " Where " : " And ";
    condition += value.isNull() ? sql("a.", name, " is null") : sql("a.", name, "=", literal(value));
  }
  return std::nullopt;
}

}  // namespace tolvane
