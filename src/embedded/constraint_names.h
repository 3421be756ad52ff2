#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tolvane::embedded {

/// The names that a CREATE TABLE text gives its constraints; SQLite keeps them nowhere else. Empty for one without a
/// name.
struct ConstraintNames {
  struct Check {
    std::string name;
    std::vector<std::string> words;  ///< of the condition, names of columns among them
  };
  std::string primaryKey;
  std::vector<std::string> uniques;      ///< in the order of the text
  std::vector<std::string> foreignKeys;  ///< in the order of the text
  std::vector<Check> checks;
};

[[nodiscard]] ConstraintNames constraintNames(std::string_view createTable);

}  // namespace tolvane::embedded
