// The security component, answered from the account set's own tables.
#pragma once

#include <memory>
#include <string>

#include "platform/suite.h"
#include "standalone/session.h"

namespace tolvane::standalone {

/// Answers on the session's current data source; error 91 before one is open, 5 for a key that is no user number.
class TableSecurity : public Security {
 public:
  explicit TableSecurity(std::shared_ptr<Session> session) : session_(std::move(session)) {}
  /// Error 6 for identifiers beyond 32767.
  [[nodiscard]] std::int16_t getCurrentUserID(const std::string& userKey) override;
  /// The user's primary group is 1, or t_Group puts the user into group 1.
  [[nodiscard]] bool isAdministrator(const std::string& userKey) override;
  /// True for an administrator, and when a row of t_ObjectAccess for the object grants every asked bit to the user, to
  /// one of the user's groups or to the primary group. The source is for the suite's log only.
  [[nodiscard]] bool accessCheck(const std::string& userKey, std::int32_t objectType, std::int32_t objectID,
                                 std::int32_t accessMask, const std::string& source) override;

 private:
  [[nodiscard]] bool found(const std::string& query);

  std::shared_ptr<Session> session_;
};

}  // namespace tolvane::standalone
