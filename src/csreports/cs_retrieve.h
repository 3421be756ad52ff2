// CsRetrieve: reads the companies' periodic statements.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "frame/method_table.h"
#include "frame/service.h"

namespace tolvane {

/// Hands out statements (t_CsRptContent), withdrawn statements (t_CsRptContentDel), report groups, currencies and the
/// settings of the subsystem.
///
/// A statement belongs to a group, a currency and a company. It is found by year and period, counted in the group's
/// cycle of 1, 3, 6 or 12 months; only when both are negative is it found by its day.
///
/// Most look-ups catch every failure and answer as if nothing had been found: each says so. The others let the failure
/// reach the caller unchanged. Texts go into SQL as they come, so an apostrophe in one makes such a failure.
class CsRetrieve : public Service {
 public:
  explicit CsRetrieve(Platform& platform) : Service(platform) {}

  [[nodiscard]] static ClassDescription description();

  // Statements (cs_retrieve_statements.cpp)

  /// The document of one statement. Type 5 is always looked up by day, type 0 means 1. False, and `vPlx` as it came,
  /// when there is none. Failures are raised.
  bool GetCsData(const std::string& sDsn, std::int32_t lYear, std::int32_t lPeriod, Date dDay,
                 std::int32_t lngRptGroupID, std::int32_t lCurrencyID, const std::string& sCompanyNum, Value& vPlx,
                 std::int32_t lRptType);
  /// The groups that have a statement in a currency at a date, one row for each statement: all columns of the group and
  /// the statement's FRptType, ordered by the group's number. Found are the day statements of `dDay`, the statements of
  /// type 5 whose day shares the slot of the group's cycle with `dDay`, and the period statements of `lYear` whose
  /// period covers month `lMonth`. False, and the list as it came, on any failure.
  bool GetExistRpt(const std::string& sDsn, std::int32_t lYear, std::int32_t lMonth, Date dDay,
                   std::int32_t lCurrencyID, ObjectRef& oExistRptList);
  /// The identifier of the first statement under a condition in SQL. 0 when there is none, when the condition is empty,
  /// and on any failure.
  std::int32_t IsExists(const std::string& sDsn, const std::string& vFilter);
  /// A status field of the first statement under a condition: 1 set, 3 not set or null, 2 no such statement, as a
  /// 16-bit integer. False, and `vValue` as it came, on any failure.
  bool CsDataStatusInfo(const std::string& sDsn, const std::string& sFilterStr, const std::string& sFieldName,
                        Value& vValue);

  // Groups, currencies, settings (cs_retrieve_groups.cpp)

  /// The groups of the older layout that are not converted yet, by name. Always 1. Failures are raised: an account set
  /// without the older tables has no such list.
  std::int32_t GetRptGroupList(const std::string& sDsn, ObjectRef& oRptGroupList);
  /// The groups, by name. Always 1. Failures are raised.
  std::int32_t GetRptGroupListNew(const std::string& sDsn, ObjectRef& oRptGroupList);
  /// The identifier of the group of that number; 0 when there is none and on any failure.
  std::int32_t GetRptGroupID(const std::string& sDsn, const std::string& sRptGroupNum);
  /// The identifier of a withdrawn statement of the group of that number (not of the group); 0 when there is none and
  /// on any failure.
  std::int32_t GetCsRptGroupID(const std::string& sDsn, const std::string& sCsRptNum);
  /// The group number of a withdrawn statement; "" when there is none and on any failure.
  std::string GetCsRptGroupNum(const std::string& sDsn, std::int32_t lCsRptID);
  /// The identifier of the currency of that number; 0 when there is none and on any failure.
  std::int32_t GetCurrencyID(const std::string& sDsn, std::string& sCurrencyNum);
  /// The number of a currency; "" when there is none and on any failure.
  std::string GetCurrencyNum(const std::string& sDsn, std::int32_t& lCurrencyID);
  /// All currencies in one text, "1,RMB||2,USD", in the database's order. Failures are raised.
  std::string GetNewCurrencyInfo(const std::string& sDsn);
  /// The number of the company that the account set belongs to; "" when it is not set and on any failure.
  std::string GetCurCompanyNum(const std::string& sDsn);
  /// A setting; "" when there is none and on any failure.
  std::string ReadProfileValue(const std::string& sDsn, const std::string& sKey);
  /// 1 when the account set has the tables of the older layout, whether or not a group is left in them, else 0.
  /// Failures are raised.
  std::int32_t IsNeedUpGrade(const std::string& sDsn);

  // Withdrawn statements (cs_retrieve_withdrawn.cpp)

  /// The document of a withdrawn statement, found by the numbers of group and currency. Type 5 is always looked up by
  /// day; type 0 stays 0. False, and `vPlx` as it came, when there is none and on any failure.
  bool GetDeleteCsRpt(const std::string& sDsn, const std::string& sRptGroupNum, std::int32_t lYear,
                      std::int32_t lPeriod, Date dDay, const std::string& sCurrencyNum, const std::string& sCompanyNum,
                      Value& vPlx, std::int32_t lRptType);
  /// The groups that have withdrawn statements, each once; nothing on any failure. Not detached.
  std::shared_ptr<Recordset> GetDelCsSample(const std::string& sDsn);
};

}  // namespace tolvane
