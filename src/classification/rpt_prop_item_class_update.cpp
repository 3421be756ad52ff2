#include "classification/rpt_prop_item_class_update.h"

#include <string_view>

#include "classification/identifier_ranges.h"
#include "classification/property_text.h"
#include "frame/menu_refresh.h"
#include "frame/service_errors.h"
#include "frame/sql_text.h"

namespace tolvane {
namespace {

// Clients know the refusals by these Sources; the one for a name in use is Update's in Create, too.
constexpr const char* createSource = "Tolvane.RptPropClsUpdate.Create";
constexpr const char* updateSource = "Tolvane.RptPropClsUpdate.Update";
constexpr const char* deleteSource = "Tolvane.RptPropClsUpdate.Delete";

[[noreturn]] void refuse(const char* source, std::string description) {
  throw AutomationError(service_error::ruleViolated, source, std::move(description));
}

void replaceAll(std::string& text, std::string_view part, std::string_view replacement) {
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + replacement.size())) {
    text.replace(at, part.size(), replacement);
  }
}

}  // namespace

ClassDescription RptPropItemClassUpdate::description() {
  using C = RptPropItemClassUpdate;
  return describe<C>("RptPropItemClassUpdate", TransactionMode::required, "Maintains classification standards.")
      .method(2, "Create", &C::Create, "Adds a standard and its column of the report catalogue.",
              {"sDsn", "Properties"})
      .method(3, "Update", &C::Update, "Renames a standard in the caller's language.",
              {"sDsn", "PropClsID", "Properties"})
      .method(4, "Delete", &C::Delete, "Removes a standard and its items.", {"sDsn", "PropClsID"});
}

std::int32_t RptPropItemClassUpdate::Create(const std::string& sDsn, const std::shared_ptr<PropertyBag>& Properties) {
  auto call = beginWork(sDsn);
  const std::string name = propertyText(Properties, "FName");
  if (name.empty()) refuse(createSource, translate("分类标准的名称不得为空！"));
  const auto sameName =
      call.openKeyset(sql("Select FPropClsID From t_Rpt_PropClass Where ", nameColumn("FName"), "='", name, "'"));
  if (!isEmpty(*sameName)) refuse(updateSource, translate("已存在分类标准名称") + name);

  const auto largest = call.openKeyset("Select Max(FPropClsID) as MaxPropClsID From t_Rpt_PropClass");
  const std::int32_t standard =
      nextIdentifier(isEmpty(*largest) ? Value(Null{}) : largest->value("MaxPropClsID"), builtInStandardsEnd);
  // The column may be there already, left by an earlier standard of this identifier.
  call.execute(sql(" if Not Exists(Select c.Name from syscolumns c,sysobjects o where c.Id=o.Id and c.name='F",
                   standard, "' and o.name='t_Rpt_Content')   Begin ", " Alter Table t_Rpt_Content Add F", standard,
                   " Smallint not null default(0)  END"));
  call.execute(sql("Insert into t_Rpt_PropClass values( ", standard, ", '", standard, "' , '", name, "','", name, "','",
                   name, "')"));
  refreshFuncMenu(platform(), call);
  call.complete();
  return 0;
}

void RptPropItemClassUpdate::Update(const std::string& sDsn, std::int32_t PropClsID,
                                    const std::shared_ptr<PropertyBag>& Properties) {
  auto call = beginWork(sDsn);
  if (PropClsID < builtInStandardsEnd) {
    refuse(updateSource, translate("分类标准") + translate("性质") + translate(" 的名称不得修改！"));
  }
  const std::string name = propertyText(Properties, "FName");
  if (name.empty()) refuse(updateSource, translate("分类标准的名称不得为空！"));
  const auto sameName = call.openKeyset(sql("Select FPropClsID From t_Rpt_PropClass Where ", nameColumn("FName"), "='",
                                            name, "' and FPropClsID <> ", PropClsID));
  if (!isEmpty(*sameName)) refuse(updateSource, translate("已存在名称为") + name + translate(" 的分类标准！"));

  const auto row = call.openKeyset(sql("Select * From t_Rpt_PropClass Where FPropClsID=", PropClsID));
  if (isEmpty(*row)) throw AutomationError(service_error::noSuchStandard, updateSource, sql(PropClsID));
  const std::string language = login().languageCode();
  if (language == "chs") row->setValue("FName", name);
  if (language == "cht") row->setValue("FName_cht", name);
  if (language == "en") row->setValue("FName_en", name);
  row->update();
  refreshFuncMenu(platform(), call);
  call.complete();
}

void RptPropItemClassUpdate::Delete(const std::string& sDsn, std::int32_t PropClsID) {
  auto call = beginWork(sDsn);
  if (PropClsID == natureStandard) refuse(deleteSource, translate("分类标准 性质 不得删除！"));
  const auto found = call.openKeyset(sql("Select FPropClsID from t_Rpt_PropClass Where FPropClsID=", PropClsID));
  if (isEmpty(*found)) refuse(deleteSource, translate("该分类标准在数据库中不存在！"));
  const auto used = call.openKeyset(sql("Select Count(*) FRptCount from t_Rpt_Content Where F", PropClsID, ">0"));
  const std::int32_t reports = toInt32(used->value("FRptCount"));
  if (reports > 0) {
    refuse(deleteSource, sql(translate("按照该标准分类的报表数为"), reports, translate("，不得删除本分类标准！")));
  }
  removeFromViews(call, PropClsID);
  call.execute(sql("Delete t_Rpt_PropItem Where FPropClsID=", PropClsID));
  call.execute(sql("Delete t_Rpt_PropClass Where FPropClsID=", PropClsID));
  refreshFuncMenu(platform(), call);
  call.complete();
}

void RptPropItemClassUpdate::removeFromViews(Call& call, std::int32_t PropClsID) {
  const std::string standard = sql(PropClsID);
  const auto views = call.openKeyset("Select * from t_Rpt_View");
  for (; !views->eof(); views->moveNext()) {
    const Value stored = views->value("FViewCode");
    if (stored.isNull()) continue;  // names no standard
    const std::string view = toText(stored);
    if (view.find(standard) == std::string::npos) continue;
    views->setValue("FViewCode", viewWithoutStandard(view, standard));
    views->update();
  }
  views->close();
}

std::string viewWithoutStandard(std::string view, const std::string& standard) {
  replaceAll(view, standard, "");
  replaceAll(view, "\\\\", "\\");
  if (view.starts_with('\\')) view.erase(0, 1);
  if (view.ends_with('\\')) view.pop_back();
  return view;
}

}  // namespace tolvane
