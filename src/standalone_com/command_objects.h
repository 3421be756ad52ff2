// ADO's command and its parameters.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "automation/dispatch_object.h"
#include "standalone_com/connection_object.h"
#include "standalone_com/suite_thread.h"

namespace tolvane::standalone_com {

/// `Name`, `Type`, `Direction`, `Size`, `Value` (default). Only parameters that go in are taken: error 3708 for others.
class ParameterObject : public automation::DispatchObject {
 public:
  ParameterObject(std::string name, Parameter parameter) : name_(std::move(name)), parameter_(std::move(parameter)) {}
  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] const Parameter& parameter() const { return parameter_; }
  void setValue(Value value) { parameter_.value = std::move(value); }

 protected:
  [[nodiscard]] automation::Members members() const override;
  [[nodiscard]] automation::Variant call(DISPID member, const automation::MemberCall& call) override;

 private:
  std::string name_;
  Parameter parameter_;
};

using ParameterList = std::vector<automation::ComPtr<ParameterObject>>;

/// `Append(parameter)`, `Count`, `Item(name or position)` (default), `Delete(name or position)`; "for each".
class ParametersObject : public automation::DispatchObject {
 public:
  explicit ParametersObject(std::shared_ptr<ParameterList> list) : list_(std::move(list)) {}

  /// The parameter that a call asks for, or sets the value of, by name or position; error 3265 when there is none.
  [[nodiscard]] automation::Variant item(const automation::MemberCall& call) const;

 protected:
  [[nodiscard]] automation::Members members() const override;
  [[nodiscard]] automation::Variant call(DISPID member, const automation::MemberCall& call) override;

 private:
  [[nodiscard]] std::size_t indexOf(const Value& nameOrPosition) const;

  std::shared_ptr<ParameterList> list_;
};

/// `ActiveConnection`, `CommandText`, `CommandType`, `CommandTimeout`, `CreateParameter([Name][, Type][, Direction]
/// [, Size][, Value])`, `Parameters`, `Execute([out RecordsAffected])`.
class CommandObject : public automation::DispatchObject {
 public:
  explicit CommandObject(std::shared_ptr<SuiteThread> suite) : suite_(std::move(suite)) {}

  /// Runs it on its own connection, or on `otherwise` when it has none; error 3709 without either.
  [[nodiscard]] std::shared_ptr<Recordset> run(const automation::ComPtr<ConnectionObject>& otherwise);
  [[nodiscard]] const automation::ComPtr<ConnectionObject>& connection() const { return connection_; }
  [[nodiscard]] const std::string& text() const { return text_; }

 protected:
  [[nodiscard]] automation::Members members() const override;
  [[nodiscard]] automation::Variant call(DISPID member, const automation::MemberCall& call) override;

 private:
  [[nodiscard]] automation::Variant execute(const automation::MemberCall& call);
  [[nodiscard]] automation::Variant commandType(const automation::MemberCall& call);
  [[nodiscard]] automation::Variant commandTimeout(const automation::MemberCall& call);

  std::shared_ptr<SuiteThread> suite_;
  automation::ComPtr<ConnectionObject> connection_;
  std::string text_;
  CommandType type_ = CommandType::unknown;
  std::int32_t timeout_ = 30;
  std::shared_ptr<ParameterList> parameters_ = std::make_shared<ParameterList>();
};

}  // namespace tolvane::standalone_com
