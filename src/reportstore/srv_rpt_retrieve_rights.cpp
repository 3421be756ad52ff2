// Rights on reports, views of the report list, free queries.
#include "frame/result_forms.h"
#include "frame/sql_text.h"
#include "platform/conversions.h"
#include "reportstore/srv_rpt_retrieve.h"

namespace tolvane {
namespace {

constexpr std::string_view defaultViewCode = "0001";
constexpr std::string_view defaultView = "1\\1001";

/// A view text that does not begin with a number stems from an older release and means the default view.
std::string normalisedView(const std::string& view) {
  if (view.empty()) return {};
  const std::string firstPart = view.substr(0, view.find('\\'));
  return isNumeric(firstPart) ? view : std::string(defaultView);
}

}  // namespace

bool SrvRptRetrieve::GetRptRight(const std::string& sDsn, std::int32_t lRptID, std::int32_t& lRightCode) {
  auto call = beginCall(sDsn);
  const std::int32_t userID = login().currentUserID();
  const auto rows =
      call.openKeyset(sql("Select FRightCode From T_Rpt_Right Where FUserID=", userID, " and FRptID = ", lRptID));
  const bool found = !isEmpty(*rows);
  if (found) lRightCode = toInt32(rows->value("FRightCode"));
  rows->close();
  return found;
}

bool SrvRptRetrieve::GetRptAuthorize(const std::string& sDsn, std::int32_t lRptID, Int32Array& lUserID,
                                     Int32Array& lRightCode) {
  auto call = beginCall(sDsn);
  const auto rows = call.openKeyset(sql("Select FUserID, FRightCode From T_Rpt_Right Where  FRptID =", lRptID));
  if (isEmpty(*rows)) return false;
  rows->moveLast();
  const std::int32_t count = rows->recordCount();
  rows->moveFirst();
  lUserID.redimension(1, static_cast<std::size_t>(count));
  lRightCode.redimension(1, static_cast<std::size_t>(count));
  for (std::int32_t i = 1; i <= count; ++i) {
    lUserID.at(i) = toInt32(rows->value("FUserID"));
    lRightCode.at(i) = toInt32(rows->value("FRightCode"));
    rows->moveNext();
  }
  rows->close();
  return true;
}

bool SrvRptRetrieve::GetViewCode(const std::string& sDsn, std::string& sOrderStr) {
  auto call = beginCall(sDsn);
  const std::int16_t userID = currentUserID16();
  const auto rows = call.openKeyset(sql("Select FViewCode From T_Rpt_View Where FUserID=", userID));
  sOrderStr = isEmpty(*rows) ? std::string(defaultViewCode) : toText(rows->value("FViewCode"));
  rows->close();
  return true;
}

std::string SrvRptRetrieve::GetUserRptView(const std::string& sDsn) {
  auto call = beginCall(sDsn);
  const std::int32_t userID = login().currentUserID();
  const auto rows = call.openKeyset(sql("Select * From t_Rpt_View Where FUserID=", userID));
  const std::string view = isEmpty(*rows) ? std::string(defaultView) : toText(rows->value("FViewCode"));
  const std::string result = normalisedView(view);
  rows->close();
  return result;
}

bool SrvRptRetrieve::GetSqlExecResult(const std::string& sDsn, const std::string& sSql, ObjectRef& oResult) {
  auto call = beginCall(sDsn);
  const auto rows = call.openKeyset(sSql);
  oResult = rowList(platform(), *rows);
  rows->close();
  return true;
}

}  // namespace tolvane
