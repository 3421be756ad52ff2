#include "frame/service.h"

#include <utility>

#include "frame/translation.h"
#include "platform/conversions.h"

namespace tolvane {

Call::Call(std::shared_ptr<Context> context, std::shared_ptr<Connection> connection)
    : context_(std::move(context)), connection_(std::move(connection)) {}

std::shared_ptr<Recordset> Call::openKeyset(const std::string& source) const {
  return open(source, CursorType::keyset, LockType::optimistic);
}

std::shared_ptr<Recordset> Call::open(const std::string& source, CursorType cursor, LockType lock) const {
  auto rows = connection_->newRecordset();
  rows->open(source, cursor, lock);
  return rows;
}

std::shared_ptr<Command> Call::newTextCommand() const {
  auto command = connection_->newCommand();
  command->setCommandType(CommandType::text);
  command->setCommandTimeout(0);
  return command;
}

Service::Service(Platform& platform)
    : platform_(platform), context_(platform.application()->getContext()), login_(context_->getLoginInfo()) {}

Service::~Service() {
  context_.reset();
  login_.reset();
}

Call Service::beginCall(const std::string& sDsn) {
  context_->completeWork();
  openConnection(sDsn);
  return Call(context_, context_->getConnection());
}

Call Service::beginWork(const std::string& sDsn) {
  context_->beginWork();
  openConnection(sDsn);
  return Call(context_, context_->getConnection());
}

void Service::openConnection(const std::string& sDsn) {
  context_ = platform_.application()->getContext();
  context_->openDataSource(sDsn);
  login_ = context_->getLoginInfo();
}

std::string Service::nameColumn(std::string_view base) {
  const std::string language = login_->languageCode();
  std::string column(base);
  return language == "chs" ? column : column + "_" + language;
}

std::string Service::translate(std::string_view text) {
  return tolvane::translate(platform_, text, login_->languageCode());
}

std::int16_t Service::currentUserID16() {
  return toInt16(login_->currentUserID());
}

}  // namespace tolvane
