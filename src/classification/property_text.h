// What callers' property bags say about a standard or an item.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/conversions.h"
#include "platform/error.h"
#include "platform/objects.h"

namespace tolvane {

/// The text under `key`, empty when the bag has no such entry. Error 91 without a bag, 94 for Null, 13 for what is no
/// text.
[[nodiscard]] inline std::string propertyText(const std::shared_ptr<PropertyBag>& properties, std::string_view key) {
  if (!properties) raise(RuntimeError::objectNotSet);
  return toText(properties->getValue(key, ""));
}

}  // namespace tolvane
