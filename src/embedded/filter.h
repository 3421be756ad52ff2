// The criteria of a record set's Filter.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/data_access.h"

namespace tolvane::embedded {

/// Criteria taken apart. `Field op Value` joined by AND and OR, which have the same weight unless brackets say
/// otherwise; ops are < > <= >= <> = LIKE; values 'text' (quotes doubled inside), #date#, numbers; LIKE takes * or % at
/// the end or at both ends. Groups of OR may not be joined by AND.
class Filter {
 public:
  /// Raises 3001 for a text that is not of this form, 3265 for a column that is not among the fields.
  Filter(std::string_view criteria, const std::vector<FieldInfo>& fields);
  Filter(Filter&&) noexcept;
  Filter& operator=(Filter&&) noexcept;
  ~Filter();

  /// Whether a row satisfies the criteria; `column` gives the row's values. A null satisfies no comparison.
  [[nodiscard]] bool accepts(const std::function<Value(std::size_t)>& column) const;

  struct Node;

 private:
  std::unique_ptr<Node> root_;
};

}  // namespace tolvane::embedded
