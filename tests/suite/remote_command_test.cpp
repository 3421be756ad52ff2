#include "suite/remote_command.h"

#include "fake_object.h"
#include "suite/remote_recordset.h"

namespace tolvane::suite {
namespace {

using automation::ComPtr;

class RemoteCommandTest : public SuiteTest {
 protected:
  RemoteCommandTest() { command_->gives(L"Parameters", parameters_); }

  FakeClass recordsets_{[this] { return ComPtr<IDispatch>(rows_.get()); }};
  std::shared_ptr<AdoLibrary> ado_ = std::make_shared<AdoLibrary>(recordsets_.name(), L"ADODB.Command");
  ComPtr<FakeObject> connection_ = fake("connection", ado_->connection);
  ComPtr<FakeObject> rows_ = fake("rows", ado_->recordset);
  ComPtr<FakeObject> command_ = fake("command", ado_->command);
  ComPtr<FakeObject> parameters_ = fake("parameters", ado_->parameters);
  ComPtr<FakeObject> parameter_ = fake("parameter", ado_->field);
};

TEST_F(RemoteCommandTest, ATextWithParametersIsSaidInAdosOrder) {
  command_->gives(L"CreateParameter", parameter_);
  command_->gives(L"Execute", rows_);
  RemoteCommand remote(ado_, bound(command_), bound(connection_));
  remote.setCommandType(CommandType::text);
  remote.setCommandText("Select FValue From t Where FCategory = ? And FKey = ?");
  remote.appendParameter({DataType::varWChar, ParameterDirection::input, 80, Value("Base")});
  remote.appendParameter({DataType::integer, ParameterDirection::input, 0, Value(Null{})});
  const auto rows = remote.execute();
  EXPECT_EQ(
      said(),
      (Conversation{"set command.ActiveConnection = connection", "let command.CommandType = I4 1",
                    "let command.CommandText = \"Select FValue From t Where FCategory = ? And FKey = ?\"",
                    "ask command.Parameters", "call command.CreateParameter(\"\", I4 202, I4 1, I4 80, \"Base\")",
                    "call parameters.Append(parameter)", "call command.CreateParameter(\"\", I4 3, I4 1, I4 0, Null)",
                    "call parameters.Append(parameter)", "call command.Execute"}));
  EXPECT_EQ(dynamic_cast<RemoteRecordset&>(*rows).dispatch(), rows_.get());
}

TEST_F(RemoteCommandTest, TheTimeLimitIsPassedOn) {
  RemoteCommand remote(ado_, bound(command_), bound(connection_));
  remote.setCommandTimeout(0);
  EXPECT_EQ(said().back(), "let command.CommandTimeout = I4 0");
}

TEST_F(RemoteCommandTest, WhereAdoGivesNoRecordSetAClosedOneIsGiven) {
  RemoteCommand remote(ado_, bound(command_), bound(connection_));
  rows_->gives(L"State", Value(std::int32_t{0}));
  EXPECT_EQ(remote.execute()->state(), ObjectState::closed);
}

TEST_F(RemoteCommandTest, AConnectionThatAdoDoesNotTakeIsItsError) {
  command_->fails(L"ActiveConnection", AutomationError(AdoError::invalidArgument, "ADODB.Command"));
  const auto error = errorOf([&] { RemoteCommand(ado_, bound(command_), bound(connection_)); });
  EXPECT_EQ(error.number(), errorNumber(AdoError::invalidArgument));
}

}  // namespace
}  // namespace tolvane::suite
