// Groups of both layouts, currencies, settings.
#include "csreports/cs_retrieve.h"
#include "frame/result_forms.h"
#include "frame/sql_text.h"
#include "platform/conversions.h"
#include "platform/error.h"

namespace tolvane {
namespace {

/// What `find` finds, or the type's empty value when it fails: a look-up's default is the same for both.
template <typename Find>
auto orDefault(const Find& find) -> decltype(find()) {
  try {
    return find();
  } catch (const AutomationError&) {
    return {};
  }
}

}  // namespace

std::int32_t CsRetrieve::GetRptGroupList(const std::string& sDsn, ObjectRef& oRptGroupList) {
  auto call = beginCall(sDsn);
  const auto rows = call.open(sql("Select * ", " From t_Rpt_CsRptGroup Where  FCycleID<>10000 Order By FRptGroupName"),
                              CursorType::forwardOnly, LockType::readOnly);
  oRptGroupList = rowList(platform(), *rows);
  return 1;
}

std::int32_t CsRetrieve::GetRptGroupListNew(const std::string& sDsn, ObjectRef& oRptGroupList) {
  auto call = beginCall(sDsn);
  const auto rows =
      call.open("Select * From t_CsRptGroup Order By FRptGroupName", CursorType::forwardOnly, LockType::readOnly);
  oRptGroupList = rowList(platform(), *rows);
  return 1;
}

std::int32_t CsRetrieve::GetRptGroupID(const std::string& sDsn, const std::string& sRptGroupNum) {
  return orDefault([&] {
    auto call = beginCall(sDsn);
    const auto rows = call.execute(sql("Select FRptGroupID From t_CsRptGroup Where FRptGroupNum='", sRptGroupNum, "'"));
    if (isEmpty(*rows)) return std::int32_t{0};
    rows->moveFirst();
    return toInt32(rows->value("FRptGroupID"));
  });
}

// The two look-ups around FRptGroupNum that follow work on the withdrawn statements, whatever their names suggest; the
// group's own identifier is GetRptGroupID's.

std::int32_t CsRetrieve::GetCsRptGroupID(const std::string& sDsn, const std::string& sCsRptNum) {
  return orDefault([&] {
    auto call = beginCall(sDsn);
    const auto rows = call.openKeyset(sql("Select FRptID From t_CsRptContentDel Where FRptGroupNum='", sCsRptNum, "'"));
    std::int32_t id = 0;
    if (rows->recordCount() >= 1) {
      rows->moveFirst();
      id = toInt32(rows->value("FRptID"));
    }
    rows->close();
    return id;
  });
}

std::string CsRetrieve::GetCsRptGroupNum(const std::string& sDsn, std::int32_t lCsRptID) {
  return orDefault([&] {
    auto call = beginCall(sDsn);
    const auto rows = call.openKeyset(sql("Select FRptGroupNum From t_CsRptContentDel Where FRptID=", lCsRptID));
    const std::string number = rows->recordCount() >= 1 ? toText(rows->value("FRptGroupNum")) : std::string();
    rows->close();
    return number;
  });
}

std::int32_t CsRetrieve::GetCurrencyID(const std::string& sDsn, std::string& sCurrencyNum) {
  return orDefault([&] {
    auto call = beginCall(sDsn);
    const auto rows = call.execute(sql("Select FCurrencyID From t_CsCurrency Where FNumber='", sCurrencyNum, "'"));
    return isEmpty(*rows) ? std::int32_t{0} : toInt32(rows->value("FCurrencyID"));
  });
}

std::string CsRetrieve::GetCurrencyNum(const std::string& sDsn, std::int32_t& lCurrencyID) {
  return orDefault([&] {
    auto call = beginCall(sDsn);
    const auto rows = call.execute(sql("Select FNumber From t_CsCurrency Where FCurrencyID=", lCurrencyID));
    return isEmpty(*rows) ? std::string() : toText(rows->value("FNumber"));
  });
}

std::string CsRetrieve::GetNewCurrencyInfo(const std::string& sDsn) {
  auto call = beginCall(sDsn);
  const auto rows = call.openKeyset("Select DISTINCT FCurrencyID,FNumber From t_CsCurrency");
  std::string all;
  if (rows->recordCount() > 0) {
    for (rows->moveFirst(); !rows->eof(); rows->moveNext()) {
      if (!all.empty()) all += "||";
      all += toText(rows->value("FCurrencyID")) + "," + toText(rows->value("FNumber"));
    }
  }
  rows->close();
  return all;
}

std::string CsRetrieve::GetCurCompanyNum(const std::string& sDsn) {
  return orDefault([&] {
    auto call = beginCall(sDsn);
    const auto rows = call.open("Select FValue From t_CsSysParam where FKey='CompanyNum'", CursorType::forwardOnly,
                                LockType::readOnly);
    // Not asked whether there is a row: reading one that is not there fails, and a failure is answered with "".
    const std::string number = toText(rows->value("FValue"));
    rows->close();
    return number;
  });
}

std::string CsRetrieve::ReadProfileValue(const std::string& sDsn, const std::string& sKey) {
  return orDefault([&] {
    auto call = beginCall(sDsn);
    const auto rows = call.open(sql("Select FValue From t_CsSysParam Where FKey='", sKey, "'"), CursorType::keyset,
                                LockType::readOnly);
    const std::string value = isEmpty(*rows) ? std::string() : toText(rows->value("FValue"));
    rows->close();
    return value;
  });
}

std::int32_t CsRetrieve::IsNeedUpGrade(const std::string& sDsn) {
  auto call = beginCall(sDsn);
  const auto rows = call.openKeyset(sql("If Exists (select * from sysobjects where name = 't_Rpt_CsRptGroup' )",
                                        "Select 1 as Result ", " Else ", "Select 0 as Result "));
  const std::int32_t needed = toInt32(rows->value("Result")) == 1 ? 1 : 0;
  rows->close();
  return needed;
}

}  // namespace tolvane
