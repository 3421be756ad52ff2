// The call frame: what every public method of every class does around its own work.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/platform.h"

namespace tolvane {

/// One method's hold on the caller's data source, from the opened connection to the return.
class Call {
 public:
  Call(std::shared_ptr<Context> context, std::shared_ptr<Connection> connection);

  /// Connection.Execute with no options; raises what the database raises.
  std::shared_ptr<Recordset> execute(const std::string& sql) { return connection_->execute(sql); }
  /// A record set with a keyset cursor and optimistic locking: the usual read, and the only way of changing rows.
  [[nodiscard]] std::shared_ptr<Recordset> openKeyset(const std::string& source) const;
  [[nodiscard]] std::shared_ptr<Recordset> open(const std::string& source, CursorType cursor, LockType lock) const;
  /// A text command (type 1) that waits for ever (time-out 0).
  [[nodiscard]] std::shared_ptr<Command> newTextCommand() const;

  /// The completion call that ends transactional work.
  void complete() { context_->completeWork(); }

  [[nodiscard]] const std::shared_ptr<Connection>& connection() const { return connection_; }
  [[nodiscard]] const std::shared_ptr<Context>& context() const { return context_; }

 private:
  std::shared_ptr<Context> context_;
  std::shared_ptr<Connection> connection_;
};

/// Neither row before nor row after: how the services recognise an empty record set.
[[nodiscard]] inline bool isEmpty(Recordset& rows) {
  return rows.bof() && rows.eof();
}

/// The base of the twelve classes. It holds two references and no other state: the context, and the login object that
/// the context hands out; every opening of a data source renews both. An object is used from the thread that made it.
class Service {
 public:
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;
  virtual ~Service();

 protected:
  /// Takes context and login from the thread's application object.
  explicit Service(Platform& platform);

  /// The frame of a method that is not transactional: completion call, data source, connection.
  [[nodiscard]] Call beginCall(const std::string& sDsn);
  /// The frame of a transactional write: announces work in place of the completion call.
  [[nodiscard]] Call beginWork(const std::string& sDsn);
  /// Opens the data source with a context and a login of its own.
  void openConnection(const std::string& sDsn);

  /// The name column of the caller's language: `base` itself for "chs", otherwise `base` + "_" + the code. Asks for the
  /// language each time.
  [[nodiscard]] std::string nameColumn(std::string_view base);
  /// A Chinese text in the caller's language.
  [[nodiscard]] std::string translate(std::string_view text);

  [[nodiscard]] Platform& platform() { return platform_; }
  [[nodiscard]] Context& context() { return *context_; }
  [[nodiscard]] Login& login() { return *login_; }
  /// The caller's identifier in the narrow form that several tables and statements use; error 6 beyond 32767.
  [[nodiscard]] std::int16_t currentUserID16();

 private:
  Platform& platform_;
  std::shared_ptr<Context> context_;
  std::shared_ptr<Login> login_;
};

}  // namespace tolvane
