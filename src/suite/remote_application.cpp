#include "suite/remote_application.h"

#include "platform/conversions.h"
#include "platform/error.h"
#include "suite/remote_connection.h"

namespace tolvane::suite {

using automation::LateBound;
using automation::RemoteMember;
using automation::Variant;

namespace {

LateBound requiredObject(const LateBound& object, RemoteMember& member) {
  LateBound result = readObject(object, member);
  if (!result) raise(RuntimeError::objectNotSet);
  return result;
}

}  // namespace

std::int32_t RemoteLogin::currentUserID() {
  return readInt32(login_, suite_->login.currentUserID);
}

std::string RemoteLogin::userKey() {
  return readText(login_, suite_->login.userKey);
}

std::string RemoteLogin::languageCode() {
  return readText(login_, suite_->login.languageCode);
}

void RemoteContext::openDataSource(const std::string& dsn) {
  Variant discarded;
  context_.call(libraries_.suite->context.openDataSource, dsn, Variant::reference(discarded.receive()));
}

std::shared_ptr<Login> RemoteContext::getLoginInfo() {
  return std::make_shared<RemoteLogin>(libraries_.suite,
                                       requiredObject(context_, libraries_.suite->context.getLoginInfo));
}

std::shared_ptr<Connection> RemoteContext::getConnection() {
  return std::make_shared<RemoteConnection>(libraries_.ado,
                                            requiredObject(context_, libraries_.suite->context.getConnection));
}

void RemoteContext::beginWork() {
  context_.call(libraries_.suite->context.beginWork);
}

void RemoteContext::completeWork() {
  context_.call(libraries_.suite->context.completeWork);
}

std::string RemoteContext::callText() {
  return readText(context_, libraries_.suite->callText(*context_.get()));
}

std::shared_ptr<Context> RemoteApplication::getContext() {
  return std::make_shared<RemoteContext>(libraries_,
                                         requiredObject(application_, libraries_.suite->application.getContext));
}

void RemoteApplication::beginCall(TransactionMode mode) {
  application_.call(libraries_.suite->application.beginCall, static_cast<std::int32_t>(mode));
}

bool RemoteApplication::endCall() {
  return readBoolean(application_, libraries_.suite->application.endCall);
}

void RemoteApplication::abortCall() {
  application_.call(libraries_.suite->application.abortCall);
}

}  // namespace tolvane::suite
