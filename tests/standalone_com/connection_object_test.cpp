#include "standalone_com/connection_object.h"

#include <gtest/gtest.h>

#include "standalone_com/client.h"

namespace tolvane::standalone_com {
namespace {

using automation::Variant;
using testing::Client;
using testing::errorOf;
using testing::TryOut;

class ConnectionObjectTest : public ::testing::Test {
 protected:
  void SetUp() override {
    tryOut_.run("create table t_Try (FName nvarchar(10) not null)");
    tryOut_.run("insert into t_Try values (N'a')");
    tryOut_.run("insert into t_Try values (N'b')");
  }
  std::int32_t affectedBy(const std::string& sql) {
    std::int32_t affected = 99;
    (void)connection().get(L"Execute", sql, Variant::reference(affected));
    return affected;
  }
  const Client& connection() { return tryOut_.connection(); }

  TryOut tryOut_;
};

TEST_F(ConnectionObjectTest, TellsHowManyRowsAStatementAffected) {
  EXPECT_EQ(affectedBy("update t_Try set FName = N'c'"), 2);
  EXPECT_EQ(affectedBy("delete from t_Try where FName = N'none'"), 0);
  EXPECT_EQ(affectedBy("Select * From t_Try"), -1);
}

TEST_F(ConnectionObjectTest, AStatementWithoutRowsGivesAClosedSet) {
  EXPECT_EQ(connection().object(L"Execute", "delete from t_Try").get(L"State"), Value(0));
}

TEST_F(ConnectionObjectTest, GivesNothingWhenNoRowsAreWanted) {
  EXPECT_FALSE(connection().object(L"Execute", "Select * From t_Try", Variant::missing(), 128));
}

TEST_F(ConnectionObjectTest, ErrorsOfTheDatabaseKeepNumberSourceAndDescription) {
  EXPECT_EQ(errorOf([&] { tryOut_.run("Select * From t_Nothing"); }),
            "80040E37 Microsoft OLE DB Provider for SQL Server: Invalid object name 't_Nothing'.");
  EXPECT_EQ(errorOf([&] { tryOut_.run(" "); }).substr(0, 8), "80040E0C");
}

TEST_F(ConnectionObjectTest, IsOpenedWithADataSourceName) {
  const Client own = Client::create("Connection");
  EXPECT_EQ(own.get(L"State"), Value(0));
  EXPECT_EQ(errorOf([&] { (void)own.get(L"Execute", "Select 1"); }),
            "800A0E78 ADODB.Connection: Operation is not allowed when the object is closed.");
  (void)own.get(L"Open", tryOut_.dsn());
  EXPECT_EQ(own.get(L"State"), Value(1));
  EXPECT_EQ(errorOf([&] { (void)own.get(L"Open", tryOut_.dsn()); }),
            "800A0E79 ADODB.Connection: Operation is not allowed when the object is open.");
  (void)own.get(L"Close");
  EXPECT_EQ(own.get(L"State"), Value(0));
}

TEST_F(ConnectionObjectTest, ClosingItDoesNotCloseTheContextsOwn) {
  (void)connection().get(L"Close");
  const Client context = tryOut_.application().object(L"GetContext");
  (void)context.get(L"OpenDataSource", tryOut_.dsn());
  EXPECT_EQ(context.object(L"GetConnection").get(L"State"), Value(1));
}

TEST_F(ConnectionObjectTest, HoldsTransactionsOfItsOwn) {
  (void)connection().get(L"BeginTrans");
  tryOut_.run("delete from t_Try");
  (void)connection().get(L"RollbackTrans");
  EXPECT_EQ(tryOut_.asked("Select Count(*) From t_Try"), Value(2));
  (void)connection().get(L"BeginTrans");
  tryOut_.run("delete from t_Try");
  (void)connection().get(L"CommitTrans");
  EXPECT_EQ(tryOut_.asked("Select Count(*) From t_Try"), Value(0));
}

TEST_F(ConnectionObjectTest, TakesServerAndClientCursorsOnly) {
  connection().put(L"CursorLocation", 2);
  EXPECT_EQ(connection().get(L"CursorLocation"), Value(2));
  EXPECT_TRUE(errorOf([&] { connection().put(L"CursorLocation", 7); }).starts_with("800A0BB9 ADODB.Connection"));
}

}  // namespace
}  // namespace tolvane::standalone_com
