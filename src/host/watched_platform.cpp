#include "host/watched_platform.h"

#include <utility>

namespace tolvane::host {
namespace {

/// Does `work`; a failure is told and passes on.
template <typename Work>
auto watched(DatabaseWatcher& watcher, Work&& work) -> decltype(work()) {
  try {
    return work();
  } catch (const AutomationError& error) {
    watcher.failed(error);
    throw;
  }
}

class WatchedRecordset : public Recordset {
 public:
  WatchedRecordset(std::shared_ptr<Recordset> inner, DatabaseWatcher& watcher)
      : inner_(std::move(inner)), watcher_(watcher) {}

  void open(const std::string& source, CursorType cursorType, LockType lockType, std::int32_t options) override {
    watched(watcher_, [&] { inner_->open(source, cursorType, lockType, options); });
  }
  void close() override {
    watched(watcher_, [&] { inner_->close(); });
  }
  ObjectState state() const override { return inner_->state(); }
  void setCursorLocation(CursorLocation location) override { inner_->setCursorLocation(location); }
  bool bof() override {
    return watched(watcher_, [&] { return inner_->bof(); });
  }
  bool eof() override {
    return watched(watcher_, [&] { return inner_->eof(); });
  }
  std::int32_t recordCount() override {
    return watched(watcher_, [&] { return inner_->recordCount(); });
  }
  void moveFirst() override {
    watched(watcher_, [&] { inner_->moveFirst(); });
  }
  void moveNext() override {
    watched(watcher_, [&] { inner_->moveNext(); });
  }
  void moveLast() override {
    watched(watcher_, [&] { inner_->moveLast(); });
  }
  const std::vector<FieldInfo>& fields() override { return inner_->fields(); }
  Value value(std::size_t index) override {
    return watched(watcher_, [&] { return inner_->value(index); });
  }
  Value value(std::string_view name) override {
    return watched(watcher_, [&] { return inner_->value(name); });
  }
  void addNew() override {
    watched(watcher_, [&] { inner_->addNew(); });
  }
  void setValue(std::string_view name, const Value& value) override {
    watched(watcher_, [&] { inner_->setValue(name, value); });
  }
  void appendChunk(std::string_view name, const Value& chunk) override {
    watched(watcher_, [&] { inner_->appendChunk(name, chunk); });
  }
  void update() override {
    watched(watcher_, [&] { inner_->update(); });
    watcher_.rowPosted();
  }
  void cancelUpdate() override {
    watched(watcher_, [&] { inner_->cancelUpdate(); });
  }
  EditMode editMode() const override { return inner_->editMode(); }
  void setFilter(const std::string& criteria) override {
    watched(watcher_, [&] { inner_->setFilter(criteria); });
  }
  void detach() override {
    watched(watcher_, [&] { inner_->detach(); });
  }
  std::shared_ptr<Recordset> nextRecordset() override {
    const auto next = watched(watcher_, [&] { return inner_->nextRecordset(); });
    return next ? std::make_shared<WatchedRecordset>(next, watcher_) : nullptr;
  }

 private:
  std::shared_ptr<Recordset> inner_;
  DatabaseWatcher& watcher_;
};

class WatchedConnection : public Connection {
 public:
  WatchedConnection(std::shared_ptr<Connection> inner, DatabaseWatcher& watcher)
      : inner_(std::move(inner)), watcher_(watcher) {}

  std::shared_ptr<Recordset> execute(const std::string& sql, std::int32_t options) override {
    const auto rows = watched(watcher_, [&] { return inner_->execute(sql, options); });
    watcher_.executed(sql);
    return std::make_shared<WatchedRecordset>(rows, watcher_);
  }
  std::shared_ptr<Recordset> newRecordset() override {
    return std::make_shared<WatchedRecordset>(inner_->newRecordset(), watcher_);
  }
  std::shared_ptr<Command> newCommand() override { return inner_->newCommand(); }

 private:
  std::shared_ptr<Connection> inner_;
  DatabaseWatcher& watcher_;
};

class WatchedContext : public Context {
 public:
  WatchedContext(std::shared_ptr<Context> inner, DatabaseWatcher& watcher)
      : inner_(std::move(inner)), watcher_(watcher) {}

  void openDataSource(const std::string& dsn) override {
    watched(watcher_, [&] { inner_->openDataSource(dsn); });
  }
  std::shared_ptr<Login> getLoginInfo() override { return inner_->getLoginInfo(); }
  std::shared_ptr<Connection> getConnection() override {
    return std::make_shared<WatchedConnection>(inner_->getConnection(), watcher_);
  }
  void beginWork() override { inner_->beginWork(); }
  void completeWork() override { inner_->completeWork(); }
  std::string callText() override { return inner_->callText(); }

 private:
  std::shared_ptr<Context> inner_;
  DatabaseWatcher& watcher_;
};

class WatchedApplication : public GlobalApplication {
 public:
  WatchedApplication(std::shared_ptr<GlobalApplication> inner, DatabaseWatcher& watcher)
      : inner_(std::move(inner)), watcher_(watcher) {}
  std::shared_ptr<Context> getContext() override {
    return std::make_shared<WatchedContext>(inner_->getContext(), watcher_);
  }

 private:
  std::shared_ptr<GlobalApplication> inner_;
  DatabaseWatcher& watcher_;
};

}  // namespace

std::shared_ptr<GlobalApplication> WatchedPlatform::application() {
  return std::make_shared<WatchedApplication>(inner_.application(), watcher_);
}

}  // namespace tolvane::host
