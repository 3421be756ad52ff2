#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tolvane::embedded {

/// The names that a CREATE TABLE text gives its keys; SQLite keeps them nowhere else. Empty for a key without a name.
struct ConstraintNames {
  std::string primaryKey;
  std::vector<std::string> uniques;  ///< in the order of the text
};

[[nodiscard]] ConstraintNames constraintNames(std::string_view createTable);

}  // namespace tolvane::embedded
