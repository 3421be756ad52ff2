#include "standalone/table_security.h"

#include <charconv>

#include "platform/conversions.h"
#include "platform/error.h"

namespace tolvane::standalone {
namespace {

/// The key as decimal text, fit for a statement.
std::string userIn(const std::string& userKey) {
  std::int32_t user = 0;
  const auto [end, error] = std::from_chars(userKey.data(), userKey.data() + userKey.size(), user);
  if (error != std::errc() || end != userKey.data() + userKey.size()) raise(RuntimeError::invalidArgument);
  return std::to_string(user);
}

}  // namespace

std::int16_t TableSecurity::getCurrentUserID(const std::string& userKey) {
  return toInt16(userIn(userKey));
}

bool TableSecurity::found(const std::string& query) {
  if (!session_->current().connection) raise(RuntimeError::objectNotSet);
  return !session_->current().connection->execute(query)->eof();
}

bool TableSecurity::isAdministrator(const std::string& userKey) {
  const std::string user = userIn(userKey);
  return found("Select FUserID From t_User Where FUserID = " + user + " And FPrimaryGroup = 1") ||
         found("Select FUserID From t_Group Where FGroupID = 1 And FUserID = " + user);
}

bool TableSecurity::accessCheck(const std::string& userKey, std::int32_t objectType, std::int32_t objectID,
                                std::int32_t accessMask, const std::string&) {
  if (isAdministrator(userKey)) return true;
  const std::string user = userIn(userKey);
  const auto grants = session_->current().connection->execute(
      "Select FAccessMask From t_ObjectAccess Where FObjectType = " + std::to_string(objectType) +
      " And FObjectID = " + std::to_string(objectID) + " And (FGroupID = " + user +
      " Or FGroupID In (Select FGroupID From t_Group Where FUserID = " + user +
      ") Or FGroupID In (Select FPrimaryGroup From t_User Where FUserID = " + user + "))");
  for (; !grants->eof(); grants->moveNext()) {
    const Value mask = grants->value("FAccessMask");
    if (!mask.isNull() && (toInt32(mask) & accessMask) == accessMask) return true;
  }
  return false;
}

}  // namespace tolvane::standalone
