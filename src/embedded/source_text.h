#pragma once

#include <cstdint>
#include <string>

#include "tsql/catalogue.h"

namespace tolvane::embedded {

/// The statement that a record set's source stands for: itself, or all rows of a table when it is the name of one (or
/// is said to be by the option "table").
[[nodiscard]] std::string statementOf(const std::string& source, std::int32_t options,
                                      const tsql::Catalogue& catalogue);

}  // namespace tolvane::embedded
