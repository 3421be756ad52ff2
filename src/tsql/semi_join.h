#pragma once

#include <cstddef>
#include <optional>

#include "tsql/tree.h"

namespace tolvane::tsql {

// FROM ..., (SELECT DISTINCT e FROM ...) d WHERE x = d.e: the derived table has one column, no value of it twice, and
// is named nowhere else, so it only says which rows of the others stay. Asked for each of those rows, `e = x` can find
// its rows by an index and end with the first; as a table it is made whole first.
struct SemiJoin {
  std::size_t reference = 0;                   // of the derived table in the FROM list
  const tree::Expression* equality = nullptr;  // one of the conditions that WHERE joins by AND, or WHERE itself
  const tree::Expression* value = nullptr;     // x
};

// Judges by names and form alone; that the types are such that equal means the same is left to the caller.
[[nodiscard]] std::optional<SemiJoin> findSemiJoin(const tree::Select& select);

}  // namespace tolvane::tsql
