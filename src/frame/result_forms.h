// The forms in which rows go back to a caller.
#pragma once

#include <memory>

#include "platform/platform.h"

namespace tolvane {

/// The current row as a bag: one entry for each field, under the field's name, in the order of the fields; null fields
/// hold Null.
[[nodiscard]] std::shared_ptr<PropertyBag> propertyBag(Platform& platform, Recordset& rows);

/// The rows from the current one to the end, each as a bag; an empty list when there is none, never nothing.
[[nodiscard]] std::shared_ptr<ItemList> rowList(Platform& platform, Recordset& rows);

/// The record set, detached from its connection.
[[nodiscard]] std::shared_ptr<Recordset> detached(std::shared_ptr<Recordset> rows);

}  // namespace tolvane
