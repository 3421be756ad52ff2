// Converting the older layout. Real groups hold thousands of documents and hundreds of thousands of values, so nothing
// is gathered: rows pass one at a time, and the sets that are opened only to add rows are never read.
#include <charconv>
#include <concepts>

#include "csreports/cs_update.h"
#include "csreports/statement_key.h"
#include "frame/sql_text.h"
#include "platform/calendar.h"
#include "platform/conversions.h"
#include "platform/error.h"

namespace tolvane {

/// What the rows of one conversion have in common.
struct CsUpdate::Conversion {
  std::int32_t oldGroupID;
  std::int32_t newGroupID;
  std::int32_t currencyID;
  const std::string& currencyNum;
  std::string companyNum;
};

namespace {

/// The day of everything that belongs to a period.
Date dayOfPeriods() {
  return dateOf(1900, 1, 1);
}

std::string ownCompany(Call& call) {
  const auto rows = call.openKeyset("Select FValue From t_CsSysParam where FKey='CompanyNum'");
  const std::string number = rows->recordCount() >= 1 ? toText(rows->value("FValue")) : std::string();
  rows->close();
  return number;
}

template <std::floating_point Number>
std::string allDigits(Number number) {
  char digits[32];
  return {digits, std::to_chars(digits, digits + sizeof digits, number).ptr};
}

/// An amount as it stands in SQL text: 0 for null. Money and decimals have all their digits; a float has as many as it
/// takes to be read back as the same number, which is more than the fifteen that people are shown.
std::string amountText(const Value& amount) {
  if (amount.isNull()) return "0";
  if (const auto* real = amount.get<double>()) return allDigits(*real);
  if (const auto* single = amount.get<float>()) return allDigits(*single);
  return toText(amount);
}

}  // namespace

std::int32_t CsUpdate::UpGradeOneCsRpt(const std::string& sDsn, std::int32_t lngOldRptGroupID,
                                       std::int32_t lngNewRptGroupID, std::int32_t lCurrencyID,
                                       const std::string& sCurrencyNum) {
  try {
    auto call = beginCall(sDsn);
    convertGroup(call, {lngOldRptGroupID, lngNewRptGroupID, lCurrencyID, sCurrencyNum, ownCompany(call)});
    return 1;
  } catch (const AutomationError&) {
    return 0;
  }
}

void CsUpdate::convertGroup(Call& call, const Conversion& conversion) {
  const auto group = call.openKeyset(sql("Select * from t_Rpt_CsRptGroup Where FRptGroupID=", conversion.oldGroupID));
  if (group->recordCount() < 1) return;
  convertStatements(call, conversion, toText(group->value("FRptGroupName")));
  convertItems(call, conversion);
  call.execute(sql("Update t_Rpt_CsRptGroup Set FCycleID=10000 Where FRptGroupID=", conversion.oldGroupID));
}

void CsUpdate::convertStatements(Call& call, const Conversion& conversion, const std::string& oldGroupName) {
  const auto old = call.openKeyset(sql("Select * from t_Rpt_CsRptContent where FRptGroupName='", oldGroupName, "'"));
  const std::int32_t count = old->recordCount();
  if (count < 1) return;
  old->moveFirst();
  const auto added = call.openKeyset("Select * from t_CsRptContent");
  for (std::int32_t i = 0; i < count; ++i) {
    const std::int32_t year = toInt32(old->value("FYear"));
    added->addNew();
    added->setValue("FRptGroupID", conversion.newGroupID);
    added->setValue("frpttype", static_cast<std::int16_t>(statement_type::ordinary));
    added->setValue("FCurrencyID", conversion.currencyID);
    added->setValue("FCompanyNum", conversion.companyNum);
    added->setValue("FYear", year);
    added->setValue("FPeriod", old->value("FPeriod"));
    added->setValue("FDay", year > 0 ? Value(dayOfPeriods()) : old->value("FDay"));
    added->setValue("FIsChecked", old->value("FIsChecked"));
    added->setValue("FIsAccepted", old->value("FIsAccepted"));
    added->setValue("FRptContent", old->value("FRptContent"));
    added->update();
    old->moveNext();
  }
}

void CsUpdate::convertItems(Call& call, const Conversion& conversion) {
  const auto items =
      call.openKeyset(sql("Select FItemNum From t_Rpt_CsRptItem Where FRptGroupID=", conversion.oldGroupID));
  const std::int32_t count = items->recordCount();
  if (count < 1) return;
  // Never read and never written through, since the values go in by statement: an account set without the table fails
  // here, before the first of them. Let go at once, because a record set that stays open on a table that statements
  // write to has to be read whole before the first of them.
  (void)call.openKeyset("Select * From t_CsRptItemData");
  items->moveFirst();
  for (std::int32_t i = 0; i < count; ++i) {
    convertItemValues(call, conversion, toText(items->value("FItemNum")));
    items->moveNext();
  }
}

void CsUpdate::convertItemValues(Call& call, const Conversion& conversion, const std::string& itemNum) {
  const auto old = call.openKeyset(sql("Select * From t_Rpt_CsRptItemData Where FItemNum='", itemNum, "'"));
  const std::int32_t count = old->recordCount();
  if (count >= 1) old->moveFirst();
  for (std::int32_t i = 0; i < count; ++i) {
    const std::int32_t year = toInt32(old->value("FYear"));
    const std::int32_t period = toInt32(old->value("FPeriod"));
    const std::string day = dayText(year < 1 ? toDate(old->value("FDay")) : dayOfPeriods());
    const std::string amount = amountText(old->value("FAmount"));
    const std::string accumulated = amountText(old->value("FAccuAmount"));
    const Value flag = old->value("FIsNew");
    const std::int32_t isNew = !flag.isNull() && toBoolean(flag) ? 1 : 0;
    call.execute(sql(" IF Not Exists(", "Select FCompanyNum From t_CsRptItemData Where FCompanyNum='",
                     conversion.companyNum, "' And ", "FItemNum='", itemNum, "' And FCurrencyNum='",
                     conversion.currencyNum, "' And ", "FDataClass=0 And FYear=", year, " And FPeriod=", period,
                     " And FDay='", day, "'", ")", " INSERT INTO t_CsRptItemData  VALUES ('", conversion.companyNum,
                     "','", itemNum, "','", conversion.currencyNum, "',0,", year, ",", period, ",'", day, "',", amount,
                     ",", accumulated, ",", isNew, ")"));
    old->moveNext();
  }
  old->close();
}

}  // namespace tolvane
