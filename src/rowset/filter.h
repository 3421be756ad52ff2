// The criteria of a record set's Filter.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/data_access.h"

namespace tolvane::rowset {

/// How an engine compares texts: its collation, for what is compared on this side.
class TextOrder {
 public:
  virtual ~TextOrder() = default;
  /// Below, at or above 0.
  [[nodiscard]] virtual int compare(std::string_view left, std::string_view right) const = 0;
  /// Two texts that count as the same have the same folded form; so have their parts.
  [[nodiscard]] virtual std::u32string folded(std::string_view text) const = 0;
};

/// Criteria taken apart. `Field op Value` joined by AND and OR, which have the same weight unless brackets say
/// otherwise; ops are < > <= >= <> = LIKE; values 'text' (quotes doubled inside), #date#, numbers; LIKE takes * or % at
/// the end or at both ends. Groups of OR may not be joined by AND.
class Filter {
 public:
  /// Raises 3001 for a text that is not of this form, 3265 for a column that is not among the fields.
  /// `order` is kept by reference: engines have one for the life of the process.
  Filter(std::string_view criteria, const std::vector<FieldInfo>& fields, const TextOrder& order);
  Filter(Filter&&) noexcept;
  Filter& operator=(Filter&&) noexcept;
  ~Filter();

  /// Whether a row satisfies the criteria; `column` gives the row's values. A null satisfies no comparison.
  [[nodiscard]] bool accepts(const std::function<Value(std::size_t)>& column) const;

  struct Node;

 private:
  std::unique_ptr<Node> root_;
  const TextOrder* order_;
};

}  // namespace tolvane::rowset
