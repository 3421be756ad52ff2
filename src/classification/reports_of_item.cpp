#include "classification/reports_of_item.h"

#include "frame/sql_text.h"
#include "platform/conversions.h"

namespace tolvane {
namespace {

constexpr std::int32_t ordinaryType = 1;
constexpr std::int32_t templateType = 3;

std::string templatesOfItem(const ItemReader& reader, std::string_view column, std::int32_t item) {
  if (reader.seesSharedReports) {
    return sql("Select ", reader.nameColumn, " As FRptName From t_Rpt_Content Where FRptType=3 And ", column, "=",
               item);
  }
  // Nothing is stored under type 8: this half gives no rows.
  return sql("Select ", reader.nameColumn, " As FRptName From t_Rpt_Content Where FRptType=8 ");
}

std::string ordinaryReportsOfItem(const ItemReader& reader, std::string_view column, std::int32_t item) {
  if (reader.isAdministrator) {
    return sql("Select ", reader.nameColumn, " As FRptName From t_Rpt_Content a Where a.FRptType=1 ", " And a.", column,
               "=", item);
  }
  if (reader.seesAllReports) {
    return sql("Select ", reader.nameColumn, " As FRptName From t_Rpt_Content a Where a.FRptType=1", " And a.", column,
               "=", item, " AND NOT EXISTS ( SELECT * FROM t_Rpt_Right WHERE FUserID=", reader.userID,
               " And FRightCode<1 And FRptID=a.FRptID )");
  }
  return sql("Select ", reader.nameColumn, " As FRptName From t_Rpt_Content a Where a.FRptType=1 ", " And a.", column,
             "=", item, " AND  EXISTS ( SELECT * FROM t_Rpt_Right b ", "WHERE b.FUserID=", reader.userID,
             " And b.FRightCode>=1 And a.FRptID=b.FRptID )");
}

std::string natureSelection(const ItemReader& reader, std::int32_t type) {
  const std::string select = sql("Select ", reader.nameColumn, " As FRptName From t_Rpt_Content a");
  if (reader.isAdministrator) return sql(select, " Where a.FRptType=", type);
  if (type != templateType) return sql(select, ",t_Rpt_Right b Where a.FRptType=1");
  return reader.seesSharedReports ? sql(select, " Where a.FRptType=3 ") : sql(select, " Where 1 = 0");
}

}  // namespace

std::optional<ItemName> splitItemName(std::string_view name) {
  const std::size_t end = name.find(")-");
  if (end == std::string_view::npos || end == 0) return std::nullopt;
  return ItemName{std::string(name.substr(1, end - 1)), std::string(name.substr(end + 2))};
}

std::string reportsOfItem(const ItemReader& reader, std::string_view standardNumber, std::int32_t item) {
  const std::string column = sql("F", standardNumber);
  return sql(templatesOfItem(reader, column, item), " UNION ALL ", ordinaryReportsOfItem(reader, column, item));
}

std::string reportsOfNatureItem(const ItemReader& reader, std::int32_t item, Recordset& otherStandards) {
  const std::int32_t type = item == 3 || item == 4 ? templateType : ordinaryType;
  std::string text = natureSelection(reader, type);
  for (; !otherStandards.eof(); otherStandards.moveNext()) {
    text += sql(" And a.F", toText(otherStandards.value("FNumber")), "=0");
  }
  if (reader.isAdministrator || type != ordinaryType) return text;
  if (reader.seesAllReports) {
    // Who sees all reports sees them under the nature items even when another standard files them.
    return sql("Select ", reader.nameColumn, " As FRptName From t_Rpt_Content a Where a.FRptType=1 ",
               " AND NOT EXISTS ( SELECT * FROM t_Rpt_Right b ", "WHERE b.FUserID=", reader.userID,
               " And b.FRightCode<1 And a.FRptID=b.FRptID )");
  }
  return sql(text, " And b.FUserID=", reader.userID, " And b.FRightCode >=1 And a.FRptID=b.FRptID");
}

}  // namespace tolvane
