// SrvRptRetrieve: reads the server report store.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "frame/method_table.h"
#include "frame/service.h"

namespace tolvane {

/// Hands out report documents, headers, lists and rights of the report store (t_Rpt_Content, t_Rpt_Right, t_Rpt_View).
///
/// A missing report is no error: the answer is False, 0 or nothing. A failure of the database reaches the caller
/// unchanged. Names are compared in the name column of the caller's language.
class SrvRptRetrieve : public Service {
 public:
  explicit SrvRptRetrieve(Platform& platform) : Service(platform) {}

  [[nodiscard]] static ClassDescription description();

  // Single reports (srv_rpt_retrieve_reports.cpp)

  /// The document and the print settings of report `lRptID`; a report of type 2 gives the variant that its document
  /// holds. False, and both arguments as they came, when there is no such report.
  bool GetRptPlx(const std::string& sDsn, std::int32_t lRptID, Value& vPlx, Value& vPrinterBuf);
  /// The same for the report of that name and type.
  bool GetRptViaName(const std::string& sDsn, const std::string& sRptName, Value& vPlx, Value& vPrinterBuf,
                     std::int32_t lRptType);
  /// All columns of the report's row, or nothing.
  std::shared_ptr<PropertyBag> GetDetailByID(const std::string& sDsn, std::int32_t RptID);
  /// Header of the type-1 report of that name with `lUserID`'s right code (Null without a right row), or nothing.
  std::shared_ptr<PropertyBag> GetDetailByName(const std::string& sDsn, const std::string& sRptName,
                                               std::int32_t lUserID);
  /// The identifier of a report: by `lRptID` when it is 1 or more, else by name and type. 0 when there is none, or
  /// nothing was asked. `lRptID` is never written back.
  std::int32_t ExistenceCheck(const std::string& sDsn, std::int32_t& lRptID, const std::string& sRptName,
                              std::int32_t lRptType);
  /// Whether no report of that type bears the name yet.
  bool IsValidRpt(const std::string& sDsn, const std::string& sRptName, std::int32_t lRptType);
  /// The calling user's identifier; 0 on any failure.
  std::int32_t GetCurUserID(const Value& sDsn);

  // Lists (srv_rpt_retrieve_lists.cpp)

  /// Reports as the caller may see them, and all templates, as a row list ordered by `sViewCode`'s words. `lGetStyle`:
  /// 1 own reports, 2 shared ones, 3 all. Always True.
  bool GetRptlist(const std::string& sDsn, ObjectRef& objRptInfo, const std::string& sViewCode, std::int32_t lGetStyle);
  /// The same, ordered by the columns that `sOrderStr` names.
  bool GetRptlistOrderBy(const std::string& sDsn, ObjectRef& objRptInfo, const std::string& sOrderStr,
                         std::int32_t lGetStyle);
  /// The list of the web pages: type-1 reports with a right of 1 or more (administrators: all). `lGetStyle` has no
  /// effect.
  bool GetRptlistWeb(const std::string& sDsn, ObjectRef& objRptInfo, const std::string& sViewCode,
                     std::int32_t lGetStyle);
  /// The entries of the web function menu, detached; at most 32 for an administrator.
  std::shared_ptr<Recordset> GetRptRS(const std::string& sDsn);
  /// The reports that may be put into a batch print scheme: right 2 or more, not under audit. Not detached.
  std::shared_ptr<Recordset> GetSchemeRptList(const std::string& sDsn);
  /// Ordinary reports that the caller may see and all templates, with their items in every user-defined standard. Each
  /// entry of `Filter` asks for equality on one column of the list; error 5 names an entry that is no such column.
  std::shared_ptr<ItemList> GetList(const std::string& sDsn, const std::shared_ptr<PropertyBag>& Filter);

  // Rights and views (srv_rpt_retrieve_rights.cpp)

  /// The caller's own right row on a report. False, and `lRightCode` as it came, without one, even for the owner.
  bool GetRptRight(const std::string& sDsn, std::int32_t lRptID, std::int32_t& lRightCode);
  /// All users' rights on a report, in two arrays with bounds 1 to n. False, and the arrays as they came, without any.
  bool GetRptAuthorize(const std::string& sDsn, std::int32_t lRptID, Int32Array& lUserID, Int32Array& lRightCode);
  /// The stored order of the caller's report list, "0001" when there is none. Always True.
  bool GetViewCode(const std::string& sDsn, std::string& sOrderStr);
  /// The same in the newer form, "1\1001" when there is none or it does not begin with a number.
  std::string GetUserRptView(const std::string& sDsn);
  /// Runs any query and gives its rows as a row list. Always True.
  bool GetSqlExecResult(const std::string& sDsn, const std::string& sSql, ObjectRef& oResult);

 private:
  /// "Select * From T_Rpt_Content Where ..." for a name and a type.
  std::string selectByName(const std::string& sRptName, std::int32_t lRptType);
  /// Puts the first row's document and print settings into a caller's variants.
  void handOutDocument(Recordset& rows, Value& vPlx, Value& vPrinterBuf);

  /// The columns of the report lists, with the name in the caller's language.
  std::string listColumns();
  /// The condition that a list mode puts on the reports of a user. The mode becomes 3, all reports, when the suite
  /// cannot tell the user's rights.
  std::string rightsFilter(std::int32_t& listMode, std::int16_t userID);
  /// What GetRptlist and GetRptlistOrderBy share: everything but the order.
  bool listReports(Call& call, ObjectRef& objRptInfo, const std::string& order, std::int32_t listMode);
};

}  // namespace tolvane
