// Lists of reports.
#include "frame/identity.h"
#include "frame/result_forms.h"
#include "frame/sql_text.h"
#include "platform/conversions.h"
#include "platform/error.h"
#include "reportstore/report_list_filter.h"
#include "reportstore/report_types.h"
#include "reportstore/srv_rpt_retrieve.h"
#include "reportstore/view_order.h"

namespace tolvane {
namespace {

// What the report lists ask the suite before they trust a list mode.
constexpr std::int32_t rightsObjectType = 50;
constexpr std::int32_t rightsObjectID = 0;
constexpr std::int32_t rightsMask = 0x8000000;

constexpr std::int32_t ownReports = 1;
constexpr std::int32_t sharedReports = 2;
constexpr std::int32_t allReports = 3;

/// The columns of the web function menu; the name is always the Chinese one.
constexpr std::string_view menuColumns =
    " (B.FRptID+10000000) as FDetailFuncID, "
    " B.FRptName as FFuncName,"
    " 0 FFuncType,"
    " 'Other' as FClassParam,"
    " '701' as FSubFuncID,"
    " 'TarnRpt.Application' as FClassName,"
    " B.FYear,"
    " B.FPeriod,"
    " B.FRptType,"
    " B.FLastOperator,"
    " B.FLastDate";

std::string orderOf(const std::string& sViewCode) {
  return sViewCode.empty() ? " Order by FSysName, FRptType " : viewToOrder(sViewCode);
}

}  // namespace

std::string SrvRptRetrieve::listColumns() {
  return sql(" B.FRptID, ", " B.", nameColumn("FRptName"), " as FRptName,", " B.FSysName,", " B.FOwner,", " B.FYear,",
             " B.FPeriod,", " B.FRptType,", " B.FLastOperator,", " B.FLastDate");
}

std::string SrvRptRetrieve::rightsFilter(std::int32_t& listMode, std::int16_t userID) {
  try {
    // The answer does not matter here, only whether the suite can give one.
    (void)accessCheck(platform(), context(), rightsObjectType, rightsObjectID, rightsMask, "Tolvane.SrvRptRetrieve");
  } catch (const AutomationError&) {
    listMode = allReports;
  }
  switch (listMode) {
    case ownReports:
      return sql(" And B.FOwner =", userID);
    case sharedReports:
      return sql(" And A.FUserID =", userID, " And A.FRightCode >=", right_code::listed);
    default:
      return {};
  }
}

bool SrvRptRetrieve::listReports(Call& call, ObjectRef& objRptInfo, const std::string& order, std::int32_t listMode) {
  const std::int16_t userID = currentUserID16();
  const std::string filter = rightsFilter(listMode, userID);
  const std::string columns = listColumns();
  const std::string reports = listMode == allReports ? sql("Select Distinct ", right_code::full, " as FRightCode,",
                                                           columns, " From T_Rpt_Content B  ", " Where B.FRptType = 1 ")
                                                     : sql("Select Distinct A.FRightCode as FRightCode, ", columns,
                                                           " From T_Rpt_Right A, T_Rpt_Content B  ",
                                                           " Where A.FRptID = B.FRptID and B.FRptType = 1 ", filter);
  const std::string templates = sql("Select Distinct ", right_code::full, " as FRightCode,", columns,
                                    " From T_Rpt_Content B  ", " Where B.FRptType = 3");
  objRptInfo = rowList(platform(), *call.openKeyset(sql(reports, " UNION ", templates, order)));
  return true;
}

bool SrvRptRetrieve::GetRptlist(const std::string& sDsn, ObjectRef& objRptInfo, const std::string& sViewCode,
                                std::int32_t lGetStyle) {
  auto call = beginCall(sDsn);
  return listReports(call, objRptInfo, orderOf(sViewCode), lGetStyle);
}

bool SrvRptRetrieve::GetRptlistOrderBy(const std::string& sDsn, ObjectRef& objRptInfo, const std::string& sOrderStr,
                                       std::int32_t lGetStyle) {
  auto call = beginCall(sDsn);
  const std::string order = trim(sOrderStr).empty() ? sOrderStr : sql(" Order By ", sOrderStr, " ");
  return listReports(call, objRptInfo, order, lGetStyle);
}

bool SrvRptRetrieve::GetRptlistWeb(const std::string& sDsn, ObjectRef& objRptInfo, const std::string& sViewCode,
                                   std::int32_t /*lGetStyle*/) {
  auto call = beginCall(sDsn);
  const std::string order = orderOf(sViewCode);
  const std::int32_t userID = login().currentUserID();
  const std::string statement =
      isAdministrator(platform(), context())
          ? sql("Select Distinct ", right_code::full, " as FRightCode,", listColumns(), " From T_Rpt_Content B  ",
                " Where B.FRptType = 1 ", order)
          : sql("Select Distinct A.FRightCode as FRightCode, ", listColumns(), " From T_Rpt_Right A, T_Rpt_Content B  ",
                " Where A.FRptID = B.FRptID and B.FRptType = 1 ", " And A.FUserID =", userID,
                " And A.FRightCode >=", right_code::listed, order);
  objRptInfo = rowList(platform(), *call.openKeyset(statement));
  return true;
}

std::shared_ptr<Recordset> SrvRptRetrieve::GetRptRS(const std::string& sDsn) {
  auto call = beginCall(sDsn);
  if (isAdministrator(platform(), context())) {
    return detached(call.execute(sql("select distinct top 32 4 as FRightCode,", menuColumns, " From T_Rpt_Content B  ",
                                     " Where B.FRptType = 1 and B.FVisibleInList = '1'")));
  }
  const auto userID = [this] { return getCurrentUserID(platform(), context()); };
  return detached(call.execute(
      sql("Select Distinct * from ", " (select case when b.FOwner = ", userID(),
          " then 4 else A.FRightCode end as FRightCode, ", menuColumns, " From T_Rpt_Right A, T_Rpt_Content B  ",
          " Where A.FRptID = B.FRptID and B.FRptType = 1 and B.FVisibleInList = '1' and A.FRightCode <> '0' and "
          "A.FUserID = ",
          userID(), " Union all ", " select 4 as FRightCode, ", menuColumns, " From T_Rpt_Content B  ",
          " Where B.FRptType = 1 and B.FVisibleInList = '1' and B.FOwner = ", userID(), " ) a ")));
}

std::shared_ptr<Recordset> SrvRptRetrieve::GetSchemeRptList(const std::string& sDsn) {
  auto call = beginCall(sDsn);
  if (isAdministrator(platform(), context())) {
    return call.openKeyset(sql("Select FRptID, ", nameColumn("FRptName"),
                               " as FRptName From t_Rpt_Content Where FRptType=1 AND FRptID NOT IN (Select FRptID From "
                               "t_Rpt_LeaderAudit)"));
  }
  const std::int32_t userID = login().currentUserID();
  return call.openKeyset(sql("Select a.FRptID,a.", nameColumn("FRptName"), " as FRptName From t_Rpt_Content a ",
                             " Inner Join t_Rpt_Right b  On a.FRptID=b.FRptID and b.FRightCode>=2 and b.FUserID=",
                             userID, " Where a.FRptType=1 AND a.FRptID NOT IN (Select FRptID From t_Rpt_LeaderAudit)"));
}

std::shared_ptr<ItemList> SrvRptRetrieve::GetList(const std::string& sDsn, const std::shared_ptr<PropertyBag>& Filter) {
  auto call = beginCall(sDsn);
  ReportListFilter list(nameColumn("FRptName"));
  const auto standards = call.open("Select * from t_Rpt_PropClass Where FPropClsID >= 1000", CursorType::forwardOnly,
                                   LockType::optimistic);
  for (; !standards->eof(); standards->moveNext()) list.addStandard(toInt32(standards->value("FPropClsID")));
  standards->close();

  const std::string full = sql(" Select 4 as   FRightCode, ", list.columns());
  const std::string templates = sql(" Union all ", full, " From t_Rpt_Content a Where a.FRptType = 3 ");
  std::string reports;
  if (isAdministrator(platform(), context())) {
    reports = sql(full, " From t_Rpt_Content a Where a.FRptType = 1 ");
  } else {
    const std::int32_t userID = login().currentUserID();
    reports = sql(full, " From t_Rpt_Content a Where a.FRptType = 1 And a.FOwner = ", userID, " Union all ",
                  " Select b.FRightCode, ", list.columns(), " From t_Rpt_Content a Inner Join t_Rpt_Right b ",
                  " On a.FRptID = b.FRptID Where a.FRptType = 1 And a.FOwner <> ", userID, " And b.FUserID = ", userID,
                  " And b.FRightCode >= ", right_code::listed);
  }
  std::string condition;
  if (Filter) {
    if (const auto unknown = list.addConditions(*Filter, condition)) {
      throw AutomationError(errorNumber(RuntimeError::invalidArgument), "Tolvane.SrvRptRetrieve.GetList",
                            sql(translate("报表列表中不存在字段 "), *unknown));
    }
  }
  const auto rows = call.open(sql(" Select Distinct * from ( ", reports, templates, " ) a ", condition),
                              CursorType::forwardOnly, LockType::optimistic);
  return rowList(platform(), *rows);
}

}  // namespace tolvane
