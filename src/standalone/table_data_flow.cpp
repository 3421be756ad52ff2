#include "standalone/table_data_flow.h"

#include "platform/conversions.h"
#include "platform/error.h"

namespace tolvane::standalone {
namespace {

constexpr std::int32_t entriesPerSubFunction = 100;

std::string doubled(const std::string& text) {
  std::string result;
  for (const char c : text) {
    result += c;
    if (c == '\'') result += c;
  }
  return result;
}

std::shared_ptr<PropertyBag> bagAt(ItemList& entries, std::int32_t index) {
  auto bag = entries.item(index).objectAs<PropertyBag>();
  if (!bag) raise(RuntimeError::typeMismatch);
  return bag;
}

std::int32_t identifierOf(const PropertyBag& entry) {
  return toInt32(entry.item("FSubFuncID"));
}

/// What both tables have behind their keys, as the values of an insert.
std::string captionColumns() {
  return "FFuncName, FFuncName_Cht, FFuncName_En, FClassName, FClassParam, FRefresh";
}

std::string captionValues(const PropertyBag& entry) {
  std::string values;
  for (const char* key : {"FFuncName", "FFuncName_Cht", "FFuncName_En", "FClassName", "FClassParam"}) {
    values += "N'" + toText(entry.item(key)) + "', ";
  }
  return values + (toBoolean(entry.item("FRefresh")) ? "1" : "0");
}

/// The first sub-function of a system: 701 for system 7.
std::int32_t firstSubFunction(std::int16_t system) {
  return system * entriesPerSubFunction + 1;
}

std::int32_t parentOf(std::int32_t firstEntry, std::int16_t system) {
  const std::int32_t above = (firstEntry - 1) / entriesPerSubFunction;
  return above >= firstSubFunction(system) ? above : firstSubFunction(system);
}

}  // namespace

void TableDataFlow::refreshSubFunc(const std::string& callText, std::int16_t system,
                                   const std::shared_ptr<ItemList>& entries, bool, bool) {
  const std::string number = std::to_string(system);
  connection_->execute("delete from t_LocalDetailFunc where FSystem = " + number);
  connection_->execute("delete from t_LocalSubFunc where FSystem = " + number);
  for (std::int32_t i = 1; i <= entries->count(); ++i) {
    const auto entry = bagAt(*entries, i);
    connection_->execute("insert into t_LocalSubFunc (FArg, FSystem, FIndex, FSubFuncID, " + captionColumns() +
                         ") values (N'" + doubled(callText) + "', " + number + ", " + std::to_string(i) + ", " +
                         std::to_string(identifierOf(*entry)) + ", " + captionValues(*entry) + ")");
  }
}

void TableDataFlow::refreshDetailFunc(const std::string& callText, std::int16_t system,
                                      const std::shared_ptr<ItemList>& entries, bool, bool) {
  if (entries->count() == 0) return;
  const std::string number = std::to_string(system);
  const std::string parent = std::to_string(parentOf(identifierOf(*bagAt(*entries, 1)), system));
  connection_->execute("delete from t_LocalDetailFunc where FSystem = " + number + " and FSubFuncID = " + parent);
  for (std::int32_t i = 1; i <= entries->count(); ++i) {
    const auto entry = bagAt(*entries, i);
    connection_->execute("insert into t_LocalDetailFunc (FArg, FSystem, FSubFuncID, FIndex, FDetailFuncID, " +
                         captionColumns() + ") values (N'" + doubled(callText) + "', " + number + ", " + parent + ", " +
                         std::to_string(i) + ", " + std::to_string(identifierOf(*entry)) + ", " +
                         captionValues(*entry) + ")");
  }
}

}  // namespace tolvane::standalone
