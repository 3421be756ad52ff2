#include "frame/result_forms.h"

#include <utility>

namespace tolvane {

std::shared_ptr<PropertyBag> propertyBag(Platform& platform, Recordset& rows) {
  auto bag = platform.newPropertyBag();
  const auto& fields = rows.fields();
  for (std::size_t i = 0; i < fields.size(); ++i) bag->set(fields[i].name, rows.value(i));
  return bag;
}

std::shared_ptr<ItemList> rowList(Platform& platform, Recordset& rows) {
  auto list = platform.newItemList();
  for (; !rows.eof(); rows.moveNext()) list->add(propertyBag(platform, rows));
  return list;
}

std::shared_ptr<Recordset> detached(std::shared_ptr<Recordset> rows) {
  rows->detach();
  return rows;
}

}  // namespace tolvane
