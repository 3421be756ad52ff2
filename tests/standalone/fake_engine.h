// An engine without a database: answers are written into it before, and everything asked of it is written down.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/engine.h"
#include "platform/error.h"

namespace tolvane::testing {

using Rows = std::vector<std::vector<Value>>;

/// A result: columns and rows, or an error.
struct Answer {
  std::vector<FieldInfo> fields;
  Rows rows;
  std::uint32_t error = 0;
};

/// What happens on the engine's connections.
struct Script {
  /// Answers by the statement's beginning; the longest that fits is taken. Without one the result is closed.
  std::map<std::string, Answer> answers;
  std::vector<std::string> log;

  const Answer* find(const std::string& sql) const {
    const Answer* found = nullptr;
    std::size_t length = 0;
    for (const auto& [start, answer] : answers) {
      if (sql.starts_with(start) && start.size() >= length) {
        found = &answer;
        length = start.size();
      }
    }
    return found;
  }
};

class FakeRecordset : public Recordset {
 public:
  explicit FakeRecordset(std::shared_ptr<Script> script) : script_(std::move(script)) {}
  FakeRecordset(std::shared_ptr<Script> script, Answer answer)
      : script_(std::move(script)), answer_(std::move(answer)), open_(!answer_.fields.empty()) {}

  void open(const std::string& source, CursorType, LockType, std::int32_t) override {
    script_->log.push_back("open " + source);
    if (const Answer* answer = script_->find(source)) {
      if (answer->error != 0) throw AutomationError(answer->error, "Fake", "refused");
      answer_ = *answer;
    }
    open_ = true;
    row_ = 0;
  }
  void close() override { open_ = false; }
  ObjectState state() const override { return open_ ? ObjectState::open : ObjectState::closed; }
  void setCursorLocation(CursorLocation) override {}
  bool bof() override { return answer_.rows.empty(); }
  bool eof() override { return row_ >= answer_.rows.size(); }
  std::int32_t recordCount() override { return static_cast<std::int32_t>(answer_.rows.size()); }
  void moveFirst() override { row_ = 0; }
  void moveNext() override { ++row_; }
  void moveLast() override { row_ = answer_.rows.empty() ? 0 : answer_.rows.size() - 1; }
  const std::vector<FieldInfo>& fields() override { return answer_.fields; }
  Value value(std::size_t index) override { return answer_.rows.at(row_).at(index); }
  Value value(std::string_view name) override {
    for (std::size_t i = 0; i < answer_.fields.size(); ++i) {
      if (answer_.fields[i].name == name) return value(i);
    }
    throw AutomationError(AdoError::itemNotFound, "Fake");
  }
  void addNew() override { script_->log.push_back("addNew"); }
  void setValue(std::string_view name, const Value&) override { script_->log.push_back("set " + std::string(name)); }
  void appendChunk(std::string_view name, const Value&) override {
    script_->log.push_back("append " + std::string(name));
  }
  void update() override { script_->log.push_back("update"); }
  void cancelUpdate() override { script_->log.push_back("cancelUpdate"); }
  EditMode editMode() const override { return EditMode::none; }
  void setFilter(const std::string& criteria) override { script_->log.push_back("filter " + criteria); }
  void detach() override {}
  std::shared_ptr<Recordset> nextRecordset() override { return nullptr; }

 private:
  std::shared_ptr<Script> script_;
  Answer answer_;
  bool open_ = false;
  std::size_t row_ = 0;
};

class FakeConnection : public EngineConnection {
 public:
  explicit FakeConnection(std::shared_ptr<Script> script) : script_(std::move(script)) {}

  std::shared_ptr<Recordset> execute(const std::string& sql, std::int32_t = unspecifiedOptions) override {
    script_->log.push_back(sql);
    const Answer* answer = script_->find(sql);
    if (!answer) return std::make_shared<FakeRecordset>(script_);
    if (answer->error != 0) {
      ++failures_;
      throw AutomationError(answer->error, "Fake", "refused");
    }
    return std::make_shared<FakeRecordset>(script_, *answer);
  }
  std::shared_ptr<Recordset> newRecordset() override { return std::make_shared<FakeRecordset>(script_); }
  std::shared_ptr<Command> newCommand() override;
  void begin() override {
    script_->log.push_back("begin");
    inTransaction_ = true;
  }
  void commit() override {
    script_->log.push_back("commit");
    if (failsToCommit) throw AutomationError(oledb::unspecified, "Fake", "disk full");
    inTransaction_ = false;
  }
  void rollback() override {
    script_->log.push_back("rollback");
    inTransaction_ = false;
  }
  bool inTransaction() const override { return inTransaction_; }
  std::uint64_t failureCount() const override { return failures_; }

  bool failsToCommit = false;

 private:
  std::shared_ptr<Script> script_;
  bool inTransaction_ = false;
  std::uint64_t failures_ = 0;
};

class FakeCommand : public Command {
 public:
  FakeCommand(FakeConnection& connection) : connection_(connection) {}
  void setCommandText(const std::string& text) override { text_ = text; }
  void setCommandType(CommandType) override {}
  void setCommandTimeout(std::int32_t) override {}
  void appendParameter(const Parameter&) override {}
  std::shared_ptr<Recordset> execute() override { return connection_.execute(text_); }

 private:
  FakeConnection& connection_;
  std::string text_;
};

inline std::shared_ptr<Command> FakeConnection::newCommand() {
  return std::make_shared<FakeCommand>(*this);
}

/// Opens a new connection each time; `script` is shared by all.
class FakeEngine : public Engine {
 public:
  std::shared_ptr<EngineConnection> open(const DataSourceName& name) override {
    if (name.get("Database") == "missing.db") {
      throw AutomationError(oledb::unspecified, "Fake", "missing.db does not exist");
    }
    connections.push_back(std::make_shared<FakeConnection>(script));
    return connections.back();
  }

  std::shared_ptr<Script> script = std::make_shared<Script>();
  std::vector<std::shared_ptr<FakeConnection>> connections;
};

/// One row of one integer column.
inline Answer one(std::int32_t number, const std::string& column = "FUserID") {
  return {{{column, DataType::integer, 4, false}}, {{number}}, 0};
}
inline Answer none(const std::string& column = "FUserID") {
  return {{{column, DataType::integer, 4, false}}, {}, 0};
}
inline Answer failing(std::uint32_t number) {
  return {{}, {}, number};
}

}  // namespace tolvane::testing
