#include "tracing/traced_data_access.h"

#include <utility>
#include <vector>

namespace tolvane::tracing {
namespace {

class TracedRecordset : public Recordset {
 public:
  TracedRecordset(Tracer& tracer, std::shared_ptr<Recordset> inner) : tracer_(tracer), inner_(std::move(inner)) {}

  void open(const std::string& source, CursorType cursorType, LockType lockType, std::int32_t options) override {
    Json line = Tracer::line("Open");
    line["sql"] = tracer_.sql(source);
    line["cursorType"] = static_cast<std::int32_t>(cursorType);
    line["lockType"] = static_cast<std::int32_t>(lockType);
    line["options"] = options;
    tracer_.recordTimed(std::move(line), [&] { inner_->open(source, cursorType, lockType, options); });
  }
  void close() override {
    tracer_.record(Tracer::line("Close"), [&] { inner_->close(); });
  }
  ObjectState state() const override { return inner_->state(); }
  void setCursorLocation(CursorLocation location) override { inner_->setCursorLocation(location); }
  bool bof() override { return inner_->bof(); }
  bool eof() override { return inner_->eof(); }
  std::int32_t recordCount() override { return inner_->recordCount(); }
  void moveFirst() override { inner_->moveFirst(); }
  void moveNext() override { inner_->moveNext(); }
  void moveLast() override { inner_->moveLast(); }
  const std::vector<FieldInfo>& fields() override { return inner_->fields(); }
  Value value(std::size_t index) override { return inner_->value(index); }
  Value value(std::string_view name) override { return inner_->value(name); }

  void addNew() override {
    tracer_.record(Tracer::line("AddNew"), [&] { inner_->addNew(); });
  }
  void setValue(std::string_view name, const Value& value) override {
    Json line = Tracer::line("Set");
    line["field"] = name;
    line["value"] = tracer_.field(name, value);
    tracer_.record(std::move(line), [&] { inner_->setValue(name, value); });
  }
  void appendChunk(std::string_view name, const Value& chunk) override {
    Json line = Tracer::line("AppendChunk");
    line["field"] = name;
    if (const auto* bytes = chunk.get<Bytes>()) {
      line["bytes"] = bytes->size();
    } else {
      line["value"] = tracer_.field(name, chunk);
    }
    tracer_.record(std::move(line), [&] { inner_->appendChunk(name, chunk); });
  }
  void update() override {
    tracer_.record(Tracer::line("Update"), [&] { inner_->update(); });
  }
  void cancelUpdate() override {
    tracer_.record(Tracer::line("CancelUpdate"), [&] { inner_->cancelUpdate(); });
  }
  EditMode editMode() const override { return inner_->editMode(); }
  void setFilter(const std::string& criteria) override {
    Json line = Tracer::line("Filter");
    line["text"] = tracer_.sql(criteria);
    tracer_.record(std::move(line), [&] { inner_->setFilter(criteria); });
  }
  void detach() override {
    tracer_.record(Tracer::line("Detach"), [&] { inner_->detach(); });
  }
  std::shared_ptr<Recordset> nextRecordset() override { return traced(tracer_, inner_->nextRecordset()); }

 private:
  Tracer& tracer_;
  std::shared_ptr<Recordset> inner_;
};

class TracedCommand : public Command {
 public:
  TracedCommand(Tracer& tracer, std::shared_ptr<Command> inner) : tracer_(tracer), inner_(std::move(inner)) {}

  void setCommandText(const std::string& text) override {
    text_ = text;
    inner_->setCommandText(text);
  }
  void setCommandType(CommandType type) override {
    type_ = type;
    inner_->setCommandType(type);
  }
  void setCommandTimeout(std::int32_t seconds) override {
    timeout_ = seconds;
    inner_->setCommandTimeout(seconds);
  }
  void appendParameter(const Parameter& parameter) override {
    parameters_.push_back(parameter);
    inner_->appendParameter(parameter);
  }
  std::shared_ptr<Recordset> execute() override {
    Json line = Tracer::line("Command");
    line["sql"] = tracer_.sql(text_);
    line["commandType"] = static_cast<std::int32_t>(type_);
    line["commandTimeout"] = timeout_;
    line["params"] = Json::array();
    for (const auto& parameter : parameters_) {
      Json shown = Json::object();
      shown["type"] = static_cast<std::int32_t>(parameter.type);
      shown["size"] = parameter.size;
      shown["value"] = tracer_.parameter(text_, parameter.value);
      line["params"].push_back(std::move(shown));
    }
    return traced(tracer_, tracer_.recordTimed(std::move(line), [&] { return inner_->execute(); }));
  }

 private:
  Tracer& tracer_;
  std::shared_ptr<Command> inner_;
  std::string text_;
  CommandType type_ = CommandType::unknown;
  std::int32_t timeout_ = 30;
  std::vector<Parameter> parameters_;
};

class TracedConnection : public Connection {
 public:
  TracedConnection(Tracer& tracer, std::shared_ptr<Connection> inner) : tracer_(tracer), inner_(std::move(inner)) {}

  std::shared_ptr<Recordset> execute(const std::string& sql, std::int32_t options) override {
    Json line = Tracer::line("Execute");
    line["sql"] = tracer_.sql(sql);
    line["options"] = options;
    return traced(tracer_, tracer_.recordTimed(std::move(line), [&] { return inner_->execute(sql, options); }));
  }
  std::shared_ptr<Recordset> newRecordset() override { return traced(tracer_, inner_->newRecordset()); }
  std::shared_ptr<Command> newCommand() override {
    return std::make_shared<TracedCommand>(tracer_, inner_->newCommand());
  }

 private:
  Tracer& tracer_;
  std::shared_ptr<Connection> inner_;
};

}  // namespace

std::shared_ptr<Connection> traced(Tracer& tracer, std::shared_ptr<Connection> connection) {
  if (!connection) return nullptr;
  return std::make_shared<TracedConnection>(tracer, std::move(connection));
}

std::shared_ptr<Recordset> traced(Tracer& tracer, std::shared_ptr<Recordset> rows) {
  if (!rows) return nullptr;
  return std::make_shared<TracedRecordset>(tracer, std::move(rows));
}

}  // namespace tolvane::tracing
