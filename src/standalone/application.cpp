#include "standalone/application.h"

#include "platform/error.h"
#include "standalone/call.h"

namespace tolvane::standalone {

void StandaloneContext::openDataSource(const std::string& dsn) {
  source_ = session_->open(dsn);
}

std::shared_ptr<Login> StandaloneContext::getLoginInfo() {
  return std::make_shared<StandaloneLogin>(source_.identity);
}

std::shared_ptr<Connection> StandaloneContext::getConnection() {
  if (!source_.connection) raise(RuntimeError::objectNotSet);
  return source_.connection;
}

void StandaloneContext::completeWork() {
  if (Call* call = session_->call()) call->vote();
}

std::string StandaloneContext::callText() {
  return std::to_string(source_.identity.userID);
}

}  // namespace tolvane::standalone
