#include "frame/menu_refresh.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "frame/sql_text.h"
#include "platform/conversions.h"

namespace tolvane {
namespace {

constexpr std::int16_t reportSystem = 7;
constexpr std::int32_t newReportID = 701;
constexpr std::int32_t natureStandard = 1;
constexpr std::int32_t templateItem = 3;

constexpr std::string_view viewClass = "PirglView.GLData";
constexpr std::string_view reportClass = "NorvRpt.Application";
constexpr std::string_view otherParameter = "Other";

/// The caption in the suite's three languages.
struct Caption {
  std::string simplified;
  std::string traditional;
  std::string english;
};

std::string textOf(const Value& value) {
  return value.isNull() ? std::string() : toText(value);
}

Caption captionOf(Recordset& rows, const std::string& column) {
  return {textOf(rows.value(column)), textOf(rows.value(column + "_Cht")), textOf(rows.value(column + "_En"))};
}

/// An entry of the menu. Captions and parameter go into the data-flow component's SQL as they are, hence the doubling.
std::shared_ptr<PropertyBag> entry(Platform& platform, std::int32_t id, const Caption& caption,
                                   std::string_view className, std::string_view parameter) {
  auto bag = platform.newPropertyBag();
  bag->set("FSubFuncID", id);
  bag->set("FFuncName", doubled(caption.simplified));
  bag->set("FFuncName_Cht", doubled(caption.traditional));
  bag->set("FFuncName_En", doubled(caption.english));
  bag->set("FClassName", className);
  bag->set("FClassParam", doubled(parameter));
  return bag;
}

std::shared_ptr<PropertyBag> subFunction(Platform& platform, std::int32_t id, const Caption& caption) {
  auto bag = entry(platform, id, caption, viewClass, "");
  bag->set("FRefresh", true);
  return bag;
}

std::shared_ptr<PropertyBag> reportEntry(Platform& platform, std::int32_t id, const Caption& caption) {
  return entry(platform, id, caption, reportClass, otherParameter);
}

/// The sub-functions, and what the walk over the items learns on its way.
struct SubFunctions {
  std::shared_ptr<ItemList> entries;
  std::int32_t lastID = newReportID;
  std::string unclassified;  ///< " and F1 = 0  and F1001 = 0 ...": filed under no item of any standard
};

SubFunctions collectSubFunctions(Platform& platform, Recordset& items) {
  SubFunctions result{platform.newItemList(), newReportID, {}};
  result.entries->add(subFunction(platform, newReportID, {"新建报表...", "新建報表...", "New Report..."}));
  std::int32_t previousStandard = 0;
  for (; !items.eof(); items.moveNext()) {
    const std::int32_t standard = toInt32(items.value("FPropClsID"));
    if (standard != previousStandard) result.unclassified += sql(" and F", standard, " = 0 ");
    previousStandard = standard;
    result.entries->add(subFunction(platform, ++result.lastID, captionOf(items, "FName")));
  }
  return result;
}

std::string reportsOfItem(std::int32_t standard, std::int32_t item, const std::string& unclassified) {
  if (standard != natureStandard) {
    return sql("select r.FRptName,r.FRptName_Cht,r.FRptName_En ", "from t_Rpt_Content r inner join ",
               "t_Rpt_PropItem i on r.F", standard, " = i.FPropItemID ", "where i.FPropItemID = ", item, " ",
               "order by i.FPropItemID ");
  }
  // Only item 3 stands for the templates here, while the list of an item's reports takes 3 and 4 for them.
  if (item == templateItem) {
    return sql("select r.FRptName,r.FRptName_Cht,r.FRptName_En ", "from t_Rpt_Content r ", "where FRptType = 3 ", " ",
               "order by r.FRptID ");
  }
  return sql("select r.FRptName,r.FRptName_Cht,r.FRptName_En ", "from t_Rpt_Content r ", "where FRptType = 1 ",
             unclassified, " ", "order by r.FRptID ");
}

std::shared_ptr<ItemList> reportEntries(Platform& platform, Recordset& reports, std::int32_t subFunctionID) {
  auto entries = platform.newItemList();
  std::int32_t id = subFunctionID * 100;
  for (; !reports.eof(); reports.moveNext()) entries->add(reportEntry(platform, ++id, captionOf(reports, "FRptName")));
  return entries;
}

}  // namespace

void refreshFuncMenu(Platform& platform, Call& call) {
  const auto items =
      call.execute(sql("select ", "c.FPropClsID,i.FPropItemID,", "'(' + c.FName + ')-' + i.FName as FName,",
                       "'(' + c.FName_Cht + ')-' + i.FName_Cht as FName_Cht,",
                       "'(' + c.FName_En + ')-' + i.FName_En as FName_En ", "from ", "t_Rpt_PropClass c inner join ",
                       "t_Rpt_PropItem i on c.FPropClsID = i.FPropClsID ", "order by c.FPropClsID,i.FPropItemID "));
  if (!items || items->recordCount() == 0) return;

  const auto dataFlow = platform.newDataFlow(call.context());
  const std::string callText = call.context()->callText();
  const SubFunctions functions = collectSubFunctions(platform, *items);
  dataFlow->refreshSubFunc(callText, reportSystem, functions.entries, true, true);

  // The entry shares its number with the last item's; the two stand in different lists.
  auto other = platform.newItemList();
  other->add(reportEntry(platform, functions.lastID, {"新建报表文件", "新建報表檔案", "New Report Doc"}));
  dataFlow->refreshDetailFunc(callText, reportSystem, other, true, true);

  items->moveFirst();
  for (std::int32_t i = 1; i <= functions.entries->count(); ++i) {
    const auto parent = functions.entries->item(i).objectAs<PropertyBag>();
    items->setFilter(sql("FName = '", toText(parent->item("FFuncName")), "'"));
    if (items->eof()) continue;
    const auto reports = call.execute(reportsOfItem(toInt32(items->value("FPropClsID")),
                                                    toInt32(items->value("FPropItemID")), functions.unclassified));
    const auto entries = reportEntries(platform, *reports, toInt32(parent->item("FSubFuncID")));
    dataFlow->refreshDetailFunc(callText, reportSystem, entries, true, true);
  }
}

}  // namespace tolvane
