#include "suite/remote_connection.h"

#include "fake_object.h"
#include "suite/remote_recordset.h"

namespace tolvane::suite {
namespace {

using automation::ComPtr;

class RemoteConnectionTest : public SuiteTest {
 protected:
  RemoteConnectionTest() { remote_ = std::make_shared<RemoteConnection>(ado_, bound(connection_)); }

  FakeClass recordsets_{[this] { return ComPtr<IDispatch>(rows_.get()); }};
  FakeClass commands_{[this] { return ComPtr<IDispatch>(command_.get()); }};
  std::shared_ptr<AdoLibrary> ado_ = std::make_shared<AdoLibrary>(recordsets_.name(), commands_.name());
  ComPtr<FakeObject> connection_ = fake("connection", ado_->connection);
  ComPtr<FakeObject> rows_ = fake("rows", ado_->recordset);
  ComPtr<FakeObject> command_ = fake("command", ado_->command);
  std::shared_ptr<RemoteConnection> remote_;
};

TEST_F(RemoteConnectionTest, ExecutePassesTheTextNoCountAndTheOptions) {
  connection_->gives(L"Execute", rows_);
  const auto rows = remote_->execute("select '资产'", -1);
  EXPECT_EQ(said(), (Conversation{"call connection.Execute(\"select '资产'\", missing, I4 -1)"}));
  EXPECT_EQ(dynamic_cast<RemoteRecordset&>(*rows).dispatch(), rows_.get());
}

TEST_F(RemoteConnectionTest, WhereAdoGivesNoRecordSetAClosedOneIsGiven) {
  rows_->gives(L"State", Value(std::int32_t{0}));
  EXPECT_EQ(remote_->execute("delete from t", 128)->state(), ObjectState::closed);
  EXPECT_EQ(said(), (Conversation{"call connection.Execute(\"delete from t\", missing, I4 128)", "ask rows.State"}));
}

TEST_F(RemoteConnectionTest, AnErrorArrivesWithItsNumberSourceAndDescription) {
  AutomationError sent(oledb::errorsInCommand, "Microsoft OLE DB Provider for SQL Server", "列名 'x' 无效。");
  sent.withHelp("server.hlp", 17);
  connection_->fails(L"Execute", sent);
  const auto error = errorOf([&] { remote_->execute("select x", -1); });
  EXPECT_EQ(error.number(), oledb::errorsInCommand);
  EXPECT_EQ(error.source(), "Microsoft OLE DB Provider for SQL Server");
  EXPECT_EQ(error.description(), "列名 'x' 无效。");
  EXPECT_EQ(error.helpFile(), "server.hlp");
  EXPECT_EQ(error.helpContext(), 17U);
}

TEST_F(RemoteConnectionTest, MembersAreLookedUpOnceForAllConnectionsOfAThread) {
  connection_->gives(L"Execute", rows_);
  (void)remote_->execute("select 1", -1);
  (void)remote_->execute("select 2", -1);
  const auto other = fake("other", ado_->connection);
  other->gives(L"Execute", rows_);
  (void)RemoteConnection(ado_, bound(other)).execute("select 3", -1);
  EXPECT_EQ(connection_->lookUps(L"Execute") + other->lookUps(L"Execute"), 1);
}

TEST_F(RemoteConnectionTest, ANewRecordSetIsAskedNothingUntilItIsUsed) {
  const auto rows = remote_->newRecordset();
  EXPECT_EQ(said(), Conversation{});
  EXPECT_EQ(dynamic_cast<RemoteRecordset&>(*rows).dispatch(), rows_.get());
}

TEST_F(RemoteConnectionTest, ANewCommandIsTiedToTheConnection) {
  (void)remote_->newCommand();
  EXPECT_EQ(said(), (Conversation{"set command.ActiveConnection = connection"}));
}

TEST_F(RemoteConnectionTest, WithoutAdoNothingIsCreated) {
  const auto ado = std::make_shared<AdoLibrary>(L"Missing.Recordset", L"Missing.Command");
  RemoteConnection remote(ado, bound(connection_));
  const auto error = errorOf([&] { (void)remote.newRecordset(); });
  EXPECT_EQ(error.number(), errorNumber(RuntimeError::cannotCreateObject));
  EXPECT_EQ(error.description(), "ActiveX component can't create object: 'Missing.Recordset'");
}

TEST_F(RemoteConnectionTest, AConnectionWithoutTheMemberIsError438) {
  RemoteConnection remote(ado_, bound(fake("no connection", ado_->parameters)));
  EXPECT_EQ(errorOf([&] { remote.execute("select 1", -1); }).number(), errorNumber(RuntimeError::memberNotFound));
}

TEST_F(RemoteConnectionTest, AnAnswerThatIsNoObjectIsError424) {
  connection_->gives(L"Execute", Value("rows"));
  EXPECT_EQ(errorOf([&] { remote_->execute("select 1", -1); }).number(), errorNumber(RuntimeError::objectRequired));
}

}  // namespace
}  // namespace tolvane::suite
