// The data-flow component, which keeps the function menu in two tables of the account set.
#pragma once

#include <memory>
#include <string>

#include "platform/suite.h"

namespace tolvane::standalone {

/// Writes t_LocalSubFunc and t_LocalDetailFunc on the connection of the caller's context, in its transaction.
///
/// Captions and parameters arrive with their apostrophes doubled, since they go between the apostrophes of a statement
/// as they are; class names go there unchanged.
class TableDataFlow : public DataFlow {
 public:
  explicit TableDataFlow(std::shared_ptr<Connection> connection) : connection_(std::move(connection)) {}

  /// Replaces the system's sub-functions. The entries under the old ones go with them.
  void refreshSubFunc(const std::string& callText, std::int16_t system, const std::shared_ptr<ItemList>& entries,
                      bool first, bool second) override;
  /// Replaces the entries under the sub-function whose identifier x 100 lies below the entries' identifiers. An entry
  /// that lies below none (the "new report document" of the "Other" list) hangs under the system's first sub-function,
  /// 701 for reports. An empty list names no sub-function and changes nothing.
  void refreshDetailFunc(const std::string& callText, std::int16_t system, const std::shared_ptr<ItemList>& entries,
                         bool first, bool second) override;

 private:
  std::shared_ptr<Connection> connection_;
};

}  // namespace tolvane::standalone
