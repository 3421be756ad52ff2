// The adapter through FreeTDS on a server that speaks TDS: what goes over the wire, and what happens when it breaks.
#include <limits>

#include "odbc/tds_database.h"
#include "platform/calendar.h"

namespace tolvane::odbc {
namespace {

using tds::Fault;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

Bytes documentOf(std::size_t size) {
  return Bytes::filled(size, [](std::span<std::uint8_t> to) {
    for (std::size_t i = 0; i < to.size(); ++i) to[i] = static_cast<std::uint8_t>(i * 31 + i / 256);
  });
}

class TdsValues : public TdsDatabaseTest {};
class TdsTransactions : public TdsDatabaseTest {};
class TdsFailures : public TdsDatabaseTest {};

TEST_F(TdsValues, ValuesGoInAsTheyComeOut) {
  run("create table w (k int not null primary key, n decimal(20,4) null, m money null, t datetime null, l bigint null,"
      " d float null, b bit null, g uniqueidentifier null, i tinyint null, s varchar(20) null, y varbinary(20) null)");
  const auto rows = opened("w");
  rows->addNew();
  rows->setValue("k", Value(std::int32_t{1}));
  rows->setValue("n", Value("-1234567890123456.78905"));
  rows->setValue("m", Value("-922337203685477.5808"));
  rows->setValue("t", Value(Date{dateOf(2012, 3, 15).days + 0.5}));
  rows->setValue("l", Value("-9007199254740993"));
  rows->setValue("d", Value(0.1));
  rows->setValue("b", Value(true));
  rows->setValue("g", Value("{6F9619FF-8B86-D011-B42D-00C04FC964FF}"));
  rows->setValue("i", Value(std::int32_t{200}));
  rows->setValue("s", Value("资产 x"));
  rows->setValue("y", Value(documentOf(20)));
  rows->update();
  const auto read = run("select * from w");
  EXPECT_EQ(toText(read->value("n")), "-1234567890123456.7891");
  EXPECT_EQ(read->value("m"), Value(Currency{std::numeric_limits<std::int64_t>::min()}));
  EXPECT_EQ(read->value("t"), Value(Date{dateOf(2012, 3, 15).days + 0.5}));
  EXPECT_EQ(toText(read->value("l")), "-9007199254740993");
  EXPECT_EQ(read->value("d"), Value(0.1));
  EXPECT_EQ(read->value("b"), Value(true));
  EXPECT_EQ(read->value("g"), Value("{6F9619FF-8B86-D011-B42D-00C04FC964FF}"));
  EXPECT_EQ(read->value("i"), Value(std::uint8_t{200}));
  EXPECT_EQ(read->value("s"), Value("资产 x"));
  EXPECT_EQ(read->value("y"), Value(documentOf(20)));
}

TEST_F(TdsValues, NullGoesIntoAColumnOfEveryType) {
  run("create table w (k int not null primary key, n decimal(20,4) null, m money null, t datetime null, l bigint null,"
      " d float null, r real null, b bit null, g uniqueidentifier null, i tinyint null, s varchar(20) null,"
      " y varbinary(20) null, x ntext null, z image null, q nvarchar(max) null, p varbinary(max) null)");
  const auto rows = opened("w");
  rows->addNew();
  rows->setValue("k", Value(std::int32_t{1}));
  for (std::size_t i = 1; i < rows->fields().size(); ++i) rows->setValue(rows->fields()[i].name, Value(Null{}));
  rows->update();
  const auto read = run("select * from w");
  for (std::size_t i = 1; i < read->fields().size(); ++i) EXPECT_TRUE(read->value(i).isNull()) << i;
}

TEST_F(TdsValues, TheLongTypesOfBothGenerationsGoBothWaysUncut) {
  run("create table w (k int not null primary key, x ntext null, z image null, q nvarchar(max) null,"
      " p varbinary(max) null)");
  const auto document = documentOf(1'000'000);
  std::string text;
  for (int i = 0; i < 100'000; ++i) text += "资x";
  const auto rows = opened("w");
  rows->addNew();
  rows->setValue("k", Value(std::int32_t{1}));
  rows->setValue("x", Value(text));
  rows->setValue("q", Value(text));
  rows->appendChunk("z", Value(Bytes(document.owner(), document.view().subspan(0, 300'000))));
  rows->appendChunk("z", Value(Bytes(document.owner(), document.view().subspan(300'000))));
  rows->setValue("p", Value(document));
  rows->update();
  const auto read = run("select * from w");
  for (const char* column : {"z", "p"}) EXPECT_EQ(read->value(column), Value(document)) << column;
  for (const char* column : {"x", "q"}) EXPECT_EQ(read->value(column), Value(text)) << column;
}

TEST_F(TdsValues, ANewRowsIdentityComesWithTheInsert) {
  const auto rows = opened("v");
  (void)server().state().takeTexts();
  rows->addNew();
  rows->setValue("a", Value(std::int32_t{5}));
  rows->update();
  EXPECT_EQ(rows->value("k"), Value(std::int32_t{1}));
  EXPECT_THAT(server().state().takeTexts(),
              ElementsAre("INSERT INTO v ([a]) VALUES (@P1); SELECT CAST(SCOPE_IDENTITY() AS decimal(28,0))"));
}

TEST_F(TdsValues, ADetachedDocumentOutlivesItsConnectionAndItsDatabase) {
  run("insert into v (z) values (0x0102)");
  const auto rows = opened("select * from v");
  rows->detach();
  server().state().endConnections();
  EXPECT_EQ(rows->value("z"), Value(Bytes({1, 2})));
}

TEST_F(TdsTransactions, AnErrorOfASecondStatementIsNotLostBehindTheRowsOfTheFirst) {
  run("insert into v (a) values (1)");
  const auto error = raisedBy([&] { run("select a from v; select * from nowhere"); });
  EXPECT_EQ(error.number(), oledb::noTable);
  EXPECT_EQ(error.database().nativeNumber, 208);
}

TEST_F(TdsTransactions, AnErrorBehindTheFirstRowsOfAQueryIsNotLost) {
  run("insert into v (a) values (1); insert into v (a) values (0); insert into v (a) values (1)");
  EXPECT_EQ(raisedBy([&] { run("select 10 / a from v order by k"); }).database().nativeNumber, 8134);
  EXPECT_EQ(raisedBy([&] { run("select 10 / a, x from v order by k"); }).database().nativeNumber, 8134);
}

TEST_F(TdsTransactions, StatementsBehindAFailedOneStillRun) {
  const auto error = raisedBy([&] {
    run("insert into v (a) values (1); insert into v (c) values (N'a name of more than twenty letters');"
        " insert into v (a) values (3)");
  });
  EXPECT_EQ(error.number(), oledb::dataOverflow);
  EXPECT_EQ(scalar("select count(*) from v"), "2");
}

TEST_F(TdsTransactions, ATransactionIsTheHosts) {
  connection_->begin();
  run("insert into v (a) values (1)");
  connection_->commit();
  connection_->begin();
  run("insert into v (a) values (2)");
  connection_->rollback();
  run("insert into v (a) values (3)");
  server().state().endConnections();
  connect();
  EXPECT_EQ(scalar("select sum(a) from v"), "4");
}

TEST_F(TdsTransactions, AfterAnErrorNothingIsSentButTheRollback) {
  connection_->begin();
  (void)raisedBy([&] { run("select * from nowhere"); });
  (void)server().state().takeTexts();
  (void)raisedBy([&] { run("insert into v (a) values (2)"); });
  (void)raisedBy([&] { connection_->commit(); });
  connection_->rollback();
  for (const auto& text : server().state().takeTexts()) EXPECT_EQ(text, "ROLLBACK");
  EXPECT_EQ(scalar("select count(*) from v"), "0");
}

TEST_F(TdsFailures, AConnectionThatTheServerClosedIsOpenedAnewAtTheNextCall) {
  const auto before = connection_;
  server().state().endConnections();
  connect();
  EXPECT_EQ(connection_, before);
  EXPECT_EQ(scalar("select count(*) from v"), "0");
}

TEST_F(TdsFailures, ATransactionBeginsOnANewConnectionWhenTheOldOneIsLost) {
  connect();
  server().state().endConnections();
  connection_->begin();
  run("insert into v (a) values (1)");
  connection_->commit();
  EXPECT_EQ(scalar("select count(*) from v"), "1");
  EXPECT_EQ(connection_->failureCount(), 0U);
}

TEST_F(TdsTransactions, ACallInATransactionAsksTheServerNothingBeforeIt) {
  connect();
  connection_->begin();
  run("insert into v (a) values (1)");
  EXPECT_THAT(server().state().takeTexts(), ElementsAre("BEGIN", "insert into v (a) values (1)"));
  connection_->rollback();
}

TEST_F(TdsFailures, ALostConnectionStaysLostUntilTheNextCall) {
  server().state().endConnections();
  (void)raisedBy([&] { run("select 1"); });
  const auto error = raisedBy([&] { run("select 1"); });
  EXPECT_THAT(error.description(), HasSubstr("is lost. The next call opens it anew."));
  EXPECT_THAT(error.description(), HasSubstr("PWD=***"));
}

TEST_F(TdsFailures, AServerGoneInTheMiddleOfAFetchIsAnError) {
  for (int i = 0; i < 200; ++i) run("insert into v (a, c) values (1, N'a row of some length')");
  for (const char* query : {"select a, c from v", "select a, c, x from v"}) {
    server().state().plan({query, Fault::When::afterRows, 150});
    EXPECT_EQ(raisedBy([&] { run(query); }).number(), oledb::unspecified) << query;
    connect();
  }
  EXPECT_EQ(scalar("select count(*) from v"), "200");
}

TEST_F(TdsFailures, AServerGoneInTheMiddleOfAnUpdateLeavesNothingHalfDone) {
  run("insert into v (a) values (1)");
  connection_->begin();
  run("update v set c = N'changed'");
  const auto rows = opened("select * from v where a = 1");
  rows->setValue("a", Value(std::int32_t{2}));
  server().state().plan({"UPDATE v", Fault::When::afterRunning, 0});
  EXPECT_EQ(raisedBy([&] { rows->update(); }).number(), oledb::unspecified);
  (void)raisedBy([&] { connection_->commit(); });
  connection_->rollback();
  connect();
  EXPECT_EQ(scalar("select a from v"), "1");
  EXPECT_EQ(scalar("select c from v"), "NULL");
}

TEST_F(TdsFailures, AServerGoneWhileADocumentIsSentIsAnError) {
  const auto rows = opened("v");
  rows->addNew();
  rows->setValue("z", Value(documentOf(2'000'000)));
  server().state().plan({"INSERT INTO v", Fault::When::beforeRunning, 0});
  EXPECT_EQ(raisedBy([&] { rows->update(); }).number(), oledb::unspecified);
  connect();
  EXPECT_EQ(scalar("select count(*) from v"), "0");
}

TEST_F(TdsFailures, ACommitThatTheServerDoesNotAnswerIsAnError) {
  connection_->begin();
  run("insert into v (a) values (1)");
  server().state().plan({"COMMIT", Fault::When::beforeRunning, 0});
  EXPECT_EQ(raisedBy([&] { connection_->commit(); }).number(), oledb::unspecified);
  connection_->rollback();
  connect();
  EXPECT_EQ(scalar("select count(*) from v"), "0");
}

TEST_F(TdsFailures, AWrongPasswordIsRefusedAndNotShown) {
  auto text = dsn();
  text.replace(text.find("se;cr"), 2, "no");
  const auto error = raisedBy([&] { (void)openedSource(text); });
  EXPECT_EQ(error.number(), oledb::authenticationFailed);
  EXPECT_EQ(error.database().nativeNumber, 18456);
  EXPECT_THAT(error.description(), HasSubstr("Login failed for user 'tester'."));
  EXPECT_THAT(error.description(), ::testing::Not(HasSubstr("no;cr")));
}

TEST_F(TdsFailures, ADatabaseThatWasDroppedIsNamedInTheError) {
  connection_.reset();
  server().state().dropDatabase(name_);
  const auto error = raisedBy([&] {
    connect();
    run("select 1");
  });
  EXPECT_THAT(error.description(), HasSubstr("Cannot open database \"" + name_ + "\" requested by the login."));
  server().state().createDatabase(name_);
}

TEST_F(TdsFailures, AServerThatIsNotThereIsSaid) {
  tds::TdsServer other;
  other.stop();
  const auto error = raisedBy([&] { (void)openedSource(other.dsn()); });
  EXPECT_EQ(error.number(), oledb::unspecified);
  EXPECT_THAT(error.description(), HasSubstr("Unable to connect"));
}

TEST_F(TdsFailures, ACommandThatTakesTooLongIsStoppedAndTheConnectionStaysGood) {
  const auto command = connection_->newCommand();
  command->setCommandText("waitfor delay '00:00:20'");
  command->setCommandTimeout(1);
  EXPECT_EQ(raisedBy([&] { (void)command->execute(); }).number(), oledb::abortLimitReached);
  connect();
  EXPECT_EQ(scalar("select count(*) from v"), "0");
}

TEST_F(TdsFailures, FailedCallsLeaveNoConnectionBehind) {
  for (int i = 0; i < 5; ++i) {
    connection_->begin();
    run("insert into v (a) values (1)");
    server().state().endConnections();
    (void)raisedBy([&] { run("select 1"); });
    connection_->rollback();
    connect();
  }
  EXPECT_EQ(server().state().connections(), 1U);
}

}  // namespace
}  // namespace tolvane::odbc
