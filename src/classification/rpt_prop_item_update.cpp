#include "classification/rpt_prop_item_update.h"

#include "classification/identifier_ranges.h"
#include "classification/property_text.h"
#include "frame/menu_refresh.h"
#include "frame/service_errors.h"
#include "frame/sql_text.h"

namespace tolvane {
namespace {

// Clients know the refusals by these Sources; built-in items are refused under Create's by all three methods.
constexpr const char* createSource = "Tolvane.RptPropItemUpdate.Create";
constexpr const char* updateSource = "Tolvane.RptPropItemUpdate.Update";
constexpr const char* deleteSource = "Tolvane.RptPropItemUpdate.Delete";

constexpr const char* builtInText = "分类标准 性质 的分类属性不得增加、删除和修改！";
constexpr const char* noItemText = "不存在分类属性ID ";
constexpr const char* numberTakenText = "同一分类标准下，分类属性的编号不得重复！";
constexpr const char* nameTakenText = "同一分类标准下，分类属性的名称不得重复！";

[[noreturn]] void refuse(const char* source, std::string description) {
  throw AutomationError(service_error::ruleViolated, source, std::move(description));
}

/// The column of the report catalogue in which reports carry their item of a standard: at least four digits.
std::string catalogueColumn(std::int32_t standard) {
  const std::string sign = standard < 0 ? "-" : "";
  std::string digits = sql(standard).substr(sign.size());
  if (digits.size() < 4) digits.insert(0, 4 - digits.size(), '0');
  return "F" + sign + digits;
}

}  // namespace

ClassDescription RptPropItemUpdate::description() {
  using C = RptPropItemUpdate;
  return describe<C>("RptPropItemUpdate", TransactionMode::required,
                     "Maintains classification items, audit marks and analysis documents.")
      .method(2, "Create", &C::Create, "Adds an item to a standard.", {"sDsn", "PropClsID", "Properties"})
      .method(3, "Update", &C::Update, "Changes an item's number, and its name in the caller's language.",
              {"sDsn", "PropItemID", "Properties"})
      .method(4, "Delete", &C::Delete, "Removes an item; its reports are filed under none.", {"sDsn", "PropItemID"})
      .method(5, "SetRptIsAudit", &C::SetRptIsAudit, "Marks a report as approved.",
              {"sDsn", "lngRptID", "lngUserID", "sUserName"})
      .method(6, "RevokeRptIsAudit", &C::RevokeRptIsAudit, "Takes all marks off a report.", {"sDsn", "lngRptID"})
      .method(7, "PutOutDoc", &C::PutOutDoc, "Stores an analysis document.", {"sDsn", "sFileName", "sType", "vDOC"})
      .method(8, "DelEISDoc", &C::DelEISDoc, "Removes an analysis document.", {"sDsn", "FName", "FID"});
}

std::int32_t RptPropItemUpdate::Create(const std::string& sDsn, std::int32_t PropClsID,
                                       const std::shared_ptr<PropertyBag>& Properties) {
  auto call = beginWork(sDsn);
  if (PropClsID < builtInStandardsEnd) refuse(createSource, translate(builtInText));
  const auto standard = call.openKeyset(sql("Select * From t_Rpt_PropClass Where FPropClsID=", PropClsID));
  if (isEmpty(*standard)) refuse(createSource, sql(translate("不存在分类标准ID "), PropClsID));
  const std::string number = propertyText(Properties, "FNumber");
  const std::string name = propertyText(Properties, "FName");
  if (number.empty() || name.empty()) refuse(createSource, translate("分类属性的编号和名称不得为空！"));

  const auto sameNumber = call.openKeyset(
      sql("Select * From t_Rpt_PropItem Where FPropClsID=", PropClsID, " and ", " FNumber='", number, "'"));
  if (!isEmpty(*sameNumber)) refuse(createSource, translate(numberTakenText));
  const auto sameName = call.openKeyset(
      sql("Select * From t_Rpt_PropItem Where FPropClsID=", PropClsID, " and ", nameColumn("FName"), "='", name, "'"));
  if (!isEmpty(*sameName)) refuse(createSource, translate(nameTakenText));

  const auto largest = call.openKeyset("Select Max(FPropItemID) as MaxPropItemID From t_Rpt_PropItem");
  const std::int32_t item =
      nextIdentifier(isEmpty(*largest) ? Value(Null{}) : largest->value("MaxPropItemID"), builtInItemsEnd);
  // The blank behind the English name is part of what clients find.
  call.execute(sql("Insert into t_Rpt_PropItem values( ", PropClsID, ", '", item, "' , '", number, "','", name, "','",
                   name, "','", name, " ')"));
  refreshFuncMenu(platform(), call);
  call.complete();
  return 0;
}

void RptPropItemUpdate::Update(const std::string& sDsn, std::int32_t PropItemID,
                               const std::shared_ptr<PropertyBag>& Properties) {
  auto call = beginWork(sDsn);
  if (PropItemID < builtInItemsEnd) refuse(createSource, translate(builtInText));
  const auto found = call.openKeyset(sql("Select * From t_Rpt_PropItem Where FPropItemID=", PropItemID));
  if (isEmpty(*found)) refuse(updateSource, sql(translate(noItemText), PropItemID));
  const std::string name = propertyText(Properties, "FName");
  const std::string number = propertyText(Properties, "FNumber");
  const std::int32_t standard = toInt32(Properties->getValue("FPropClsID"));
  if (number.empty() || name.empty()) refuse(updateSource, translate("分类属性的编号和名称不得为空 "));

  const auto sameNumber = call.openKeyset(sql("Select * From t_Rpt_PropItem Where FPropClsID=", standard,
                                              " and FPropItemID <> ", PropItemID, " and ", " FNumber='", number, "'"));
  if (!isEmpty(*sameNumber)) refuse(updateSource, translate(numberTakenText));
  const auto sameName =
      call.openKeyset(sql("Select * From t_Rpt_PropItem Where FPropClsID=", standard, " and FPropItemID <> ",
                          PropItemID, " and  ", nameColumn("FName"), "='", name, "'"));
  if (!isEmpty(*sameName)) refuse(updateSource, translate(nameTakenText));

  call.execute(sql(" Update t_Rpt_PropItem set ", " FNumber='", number, "',", nameColumn("FName"), "='", name, "'",
                   " Where FPropItemID=", PropItemID));
  refreshFuncMenu(platform(), call);
  call.complete();
}

void RptPropItemUpdate::Delete(const std::string& sDsn, std::int32_t PropItemID) {
  auto call = beginWork(sDsn);
  if (PropItemID < builtInItemsEnd) refuse(createSource, translate(builtInText));
  const auto found = call.openKeyset(sql("Select * From t_Rpt_PropItem Where FPropItemID=", PropItemID));
  if (isEmpty(*found)) refuse(deleteSource, sql(translate(noItemText), PropItemID));
  const std::string column = catalogueColumn(toInt32(found->value("FPropClsID")));
  call.execute(sql(" Delete t_Rpt_PropItem Where FPropItemID=", PropItemID));
  call.execute(sql(" Update t_Rpt_Content Set ", column, "=0 Where ", column, "=", PropItemID));
  refreshFuncMenu(platform(), call);
  call.complete();
}

}  // namespace tolvane
