// The adapter's mechanics on real drivers: types, long data, lost connections, bad input.
#include "odbc/odbc_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "odbc/postgresql_server.h"
#include "odbc/sqlite_file.h"
#include "platform/calendar.h"
#include "platform/conversions.h"
#include "platform/error.h"

namespace tolvane::odbc {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

std::shared_ptr<EngineConnection> opened(const std::string& dsn) {
  return OdbcEngine().open(DataSourceName::parse(dsn));
}

template <typename Work>
AutomationError errorOf(Work&& work) {
  try {
    work();
  } catch (const AutomationError& error) {
    return error;
  }
  ADD_FAILURE() << "no error was raised";
  return {0, "", ""};
}

Bytes documentOf(std::size_t size) {
  return Bytes::filled(size, [](std::span<std::uint8_t> to) {
    for (std::size_t i = 0; i < to.size(); ++i) to[i] = static_cast<std::uint8_t>(i * 31 + i / 256);
  });
}

std::string scalar(Connection& connection, const std::string& sql) {
  const auto value = connection.execute(sql)->value(std::size_t{0});
  return value.isNull() ? "NULL" : toText(value);
}

class SqliteDriverTest : public ::testing::Test {
 protected:
  SqliteDriverTest() : connection_(opened(file_.dsn())) {}
  SqliteFile file_;
  std::shared_ptr<EngineConnection> connection_;
};

class PostgreSqlDriverTest : public ::testing::Test {
 protected:
  void SetUp() override {
    TOLVANE_NEEDS_POSTGRESQL();
    connection_ = opened(PostgreSqlServer::instance().dsn());
    connection_->execute("drop schema public cascade; create schema public");
    other_ = opened(PostgreSqlServer::instance().dsn("postgres", "ApplicationName=other"));
  }
  void TearDown() override {
    if (connection_) connection_->rollback();
  }
  /// Ends the server's side of the connection.
  void endBackend() {
    const auto pid = pid_.empty() ? scalar(*connection_, "select pg_backend_pid()") : pid_;
    other_->execute("select pg_terminate_backend(" + pid + ", 5000)");
  }
  std::string pid_;
  std::shared_ptr<EngineConnection> connection_;
  std::shared_ptr<EngineConnection> other_;
};

TEST_F(PostgreSqlDriverTest, ValuesHaveAutomationsTypes) {
  connection_->execute(
      "create table v (b boolean, s smallint, i integer, l bigint, r real, d double precision, n numeric(20,4),"
      " t timestamp, y date, u uuid, c varchar(10), x text, z bytea)");
  connection_->execute(
      "insert into v values (true, -2, 7, -9007199254740993, 0.5, 2.25, -12.5, '1850-01-02 06:00:00', '2012-03-15',"
      " '6f9619ff-8b86-d011-b42d-00c04fc964ff', 'Ann', '资产', '\\x0102')");
  const auto rows = connection_->execute("select * from v");
  EXPECT_EQ(rows->value("b"), Value(true));
  EXPECT_EQ(rows->value("s"), Value(std::int16_t{-2}));
  EXPECT_EQ(rows->value("i"), Value(std::int32_t{7}));
  EXPECT_EQ(rows->value("l"), Value(Decimal{0, 9007199254740993U, 0, true}));
  EXPECT_EQ(rows->value("r"), Value(0.5F));
  EXPECT_EQ(rows->value("d"), Value(2.25));
  EXPECT_EQ(rows->value("n"), Value(Decimal{0, 125000, 4, true}));
  EXPECT_EQ(rows->value("t"), Value(Date{dateOf(1850, 1, 2).days - 0.25}));
  EXPECT_EQ(rows->value("y"), Value(dateOf(2012, 3, 15)));
  EXPECT_EQ(rows->value("u"), Value("{6F9619FF-8B86-D011-B42D-00C04FC964FF}"));
  EXPECT_EQ(rows->value("c"), Value("Ann"));
  EXPECT_EQ(rows->value("x"), Value("资产"));
  EXPECT_EQ(rows->value("z"), Value(Bytes({1, 2})));
}

TEST_F(PostgreSqlDriverTest, ValuesGoInAsTheyComeOut) {
  connection_->execute(
      "create table v (k integer primary key, n numeric(20,4), t timestamp, l bigint, d float8, b boolean)");
  const auto rows = connection_->newRecordset();
  rows->open("v", CursorType::keyset, LockType::optimistic);
  rows->addNew();
  rows->setValue("k", Value(std::int32_t{1}));
  rows->setValue("n", Value("1234567890123456.78905"));
  rows->setValue("t", Value(Date{dateOf(2012, 3, 15).days + 0.5}));
  rows->setValue("l", Value("9007199254740993"));
  rows->setValue("d", Value(0.1));
  rows->setValue("b", Value(true));
  rows->update();
  const auto read = connection_->execute("select * from v");
  EXPECT_EQ(toText(read->value("n")), "1234567890123456.7891");
  EXPECT_EQ(read->value("t"), Value(Date{dateOf(2012, 3, 15).days + 0.5}));
  EXPECT_EQ(toText(read->value("l")), "9007199254740993");
  EXPECT_EQ(read->value("d"), Value(0.1));
  EXPECT_EQ(read->value("b"), Value(true));
}

TEST_F(PostgreSqlDriverTest, LongDataGoBothWaysUncut) {
  connection_->execute("create table v (k integer primary key, x text, z bytea)");
  const auto rows = connection_->newRecordset();
  rows->open("v", CursorType::keyset, LockType::optimistic);
  const auto document = documentOf(5'000'000);
  std::string text;
  for (int i = 0; i < 200'000; ++i) text += "资x";
  rows->addNew();
  rows->setValue("k", Value(std::int32_t{1}));
  rows->appendChunk("z", Value(Bytes(document.owner(), document.view().subspan(0, 2'000'000))));
  rows->appendChunk("z", Value(Bytes(document.owner(), document.view().subspan(2'000'000))));
  rows->setValue("x", Value(text));
  rows->update();
  EXPECT_EQ(rows->value("z"), Value(document));
  const auto read = connection_->execute("select z, x from v");
  EXPECT_EQ(read->value("z"), Value(document));
  EXPECT_EQ(read->value("x"), Value(text));
}

TEST_F(PostgreSqlDriverTest, ASetOpenedToAddRowsFetchesNone) {
  connection_->execute(
      "create table v (k integer primary key, a integer);"
      " insert into v select i, i from generate_series(1, 1000) i;"
      " create function seen(integer) returns integer language plpgsql as"
      " $$ begin raise exception 'a row was read'; end $$;"
      " create view w as select k, seen(a) as a from v");
  const auto rows = connection_->newRecordset();
  rows->open("select * from w", CursorType::keyset, LockType::optimistic);
  EXPECT_EQ(rows->fields().size(), 2U);
  EXPECT_THAT(errorOf([&] { (void)rows->eof(); }).description(), HasSubstr("a row was read"));
}

TEST_F(PostgreSqlDriverTest, WithoutAKeyARowIsFoundByItsOriginalValuesAndTwoAreAnError) {
  connection_->execute("create table v (a integer, c varchar(10)); insert into v values (1, 'x'), (2, 'y'), (2, 'y')");
  const auto rows = connection_->newRecordset();
  rows->open("select * from v where a > 0", CursorType::keyset, LockType::optimistic);
  rows->setValue("c", Value("z"));
  rows->update();
  EXPECT_EQ(scalar(*connection_, "select c from v where a = 1"), "z");
  rows->moveNext();
  rows->setValue("c", Value("z"));
  EXPECT_EQ(errorOf([&] { rows->update(); }).number(), oledb::concurrencyViolation);
  EXPECT_EQ(scalar(*connection_, "select count(*) from v where c = 'y'"), "2");
  EXPECT_FALSE(connection_->inTransaction());
}

TEST_F(PostgreSqlDriverTest, AUniqueIndexServesWhereThereIsNoPrimaryKey) {
  connection_->execute(
      "create table v (a integer, c varchar(10), f real); create unique index ux on v (a);"
      " insert into v values (1, 'x', 0.1)");
  const auto rows = connection_->newRecordset();
  rows->open("select * from v where a = 1", CursorType::keyset, LockType::optimistic);
  connection_->execute("update v set c = 'changed by another'::varchar(10)");
  rows->setValue("f", Value(0.5));
  rows->update();
  EXPECT_EQ(scalar(*connection_, "select f from v"), "0.5");
}

TEST_F(PostgreSqlDriverTest, AnErrorOfALaterStatementIsNotLost) {
  connection_->execute("create table v (a integer primary key)");
  const auto error =
      errorOf([&] { connection_->execute("select 1; insert into v values (1); insert into v values (1)"); });
  EXPECT_EQ(error.number(), oledb::integrityViolation);
  EXPECT_EQ(error.database().sqlState, "23505");
}

TEST_F(PostgreSqlDriverTest, AfterAnErrorInATransactionOnlyTheRollbackIsSent) {
  connection_->execute("create table v (a integer primary key)");
  connection_->begin();
  connection_->execute("insert into v values (1)");
  (void)errorOf([&] { connection_->execute("select * from nowhere"); });
  const auto error = errorOf([&] { connection_->execute("insert into v values (2)"); });
  EXPECT_EQ(error.description(),
            "An earlier error has ended the transaction. Nothing more is done in it; roll it back.");
  EXPECT_EQ(errorOf([&] { connection_->commit(); }).number(), oledb::unspecified);
  connection_->rollback();
  EXPECT_EQ(scalar(*connection_, "select count(*) from v"), "0");
}

TEST_F(PostgreSqlDriverTest, AConnectionThatTheServerClosedIsOpenedAnewAtTheNextCall) {
  endBackend();
  const auto again = opened(PostgreSqlServer::instance().dsn());
  EXPECT_EQ(again, connection_);
  EXPECT_EQ(scalar(*again, "select 1"), "1");
}

TEST_F(PostgreSqlDriverTest, ALostConnectionStaysLostUntilTheNextCall) {
  endBackend();
  (void)errorOf([&] { connection_->execute("select 1"); });
  const auto error = errorOf([&] { connection_->execute("select 1"); });
  EXPECT_EQ(error.number(), oledb::unspecified);
  EXPECT_THAT(error.description(), HasSubstr("is lost. The next call opens it anew."));
  EXPECT_THAT(error.description(), HasSubstr("PWD=***"));
  connection_ = opened(PostgreSqlServer::instance().dsn());
}

TEST_F(PostgreSqlDriverTest, AConnectionLostInATransactionIsAnErrorAndLeavesNothingHalfDone) {
  connection_->execute("create table v (a integer primary key)");
  connection_->begin();
  connection_->execute("insert into v values (1)");
  pid_ = scalar(*connection_, "select pg_backend_pid()");
  endBackend();
  (void)errorOf([&] { connection_->execute("insert into v values (2)"); });
  EXPECT_EQ(opened(PostgreSqlServer::instance().dsn()), connection_);
  (void)errorOf([&] { connection_->execute("insert into v values (3)"); });
  (void)errorOf([&] { connection_->commit(); });
  connection_->rollback();
  connection_ = opened(PostgreSqlServer::instance().dsn());
  EXPECT_EQ(scalar(*connection_, "select count(*) from v"), "0");
}

TEST_F(PostgreSqlDriverTest, AServerGoneInTheMiddleOfAFetchIsAnError) {
  const auto error = errorOf(
      [&] { connection_->execute("select i, pg_terminate_backend(pg_backend_pid()) from generate_series(1, 9) i"); });
  EXPECT_EQ(error.number(), oledb::unspecified);
  connection_ = opened(PostgreSqlServer::instance().dsn());
  EXPECT_EQ(scalar(*connection_, "select 1"), "1");
}

TEST_F(PostgreSqlDriverTest, ADatabaseThatWasDroppedIsNamedInTheError) {
  connection_->execute("create database dropped");
  const auto dsn = PostgreSqlServer::instance().dsn("dropped");
  EXPECT_EQ(scalar(*opened(dsn), "select current_database()"), "dropped");
  connection_->execute("drop database dropped with (force)");
  EXPECT_THAT(errorOf([&] { (void)opened(dsn); }).description(), HasSubstr("database \"dropped\" does not exist"));
}

TEST_F(PostgreSqlDriverTest, AWrongPasswordIsRefusedAndNotShown) {
  auto dsn = PostgreSqlServer::instance().dsn();
  dsn.replace(dsn.find("se;cr"), 2, "no");
  const auto error = errorOf([&] { (void)opened(dsn); });
  EXPECT_THAT(error.description(), StartsWith("Cannot open the data source Engine=odbc;Driver=PostgreSQL Unicode;"));
  EXPECT_THAT(error.description(), HasSubstr("password authentication failed"));
  EXPECT_THAT(error.description(), ::testing::Not(HasSubstr("no;cr")));
}

TEST_F(PostgreSqlDriverTest, ACommandThatTakesTooLongIsStopped) {
  const auto command = connection_->newCommand();
  command->setCommandText("select pg_sleep(20)");
  command->setCommandTimeout(1);
  EXPECT_EQ(errorOf([&] { (void)command->execute(); }).number(), oledb::abortLimitReached);
}

TEST_F(SqliteDriverTest, AColumnOfATypeThatIsNotKnownIsNamed) {
  connection_->execute("create table v (a int, duration time)");
  const auto error = errorOf([&] { connection_->execute("select * from v"); });
  EXPECT_EQ(error.number(), oledb::cantConvertValue);
  EXPECT_THAT(error.description(), StartsWith("The column \"duration\" has the type time"));
}

TEST_F(SqliteDriverTest, TextsLongerThanTheColumnSaysAreNotCut) {
  connection_->execute("create table v (c varchar(3))");
  connection_->execute("insert into v values ('" + std::string(3000, 'x') + "')");
  EXPECT_EQ(scalar(*connection_, "select c from v"), std::string(3000, 'x'));
}

TEST_F(SqliteDriverTest, TextThatIsNotUtf8IsRefused) {
  connection_->execute("create table v (k integer primary key, c varchar(10))");
  EXPECT_THAT(errorOf([&] { connection_->execute("insert into v (c) values ('\xff')"); }).description(),
              StartsWith("The statement is not UTF-8"));
  const auto rows = connection_->newRecordset();
  rows->open("v", CursorType::keyset, LockType::optimistic);
  rows->addNew();
  EXPECT_EQ(errorOf([&] { rows->setValue("c", Value("\xff")); }).number(), errorNumber(AdoError::dataConversion));
}

TEST_F(SqliteDriverTest, DocumentsAreHandedOverInPieces) {
  connection_->execute("create table v (k integer primary key, z longvarbinary)");
  const auto rows = connection_->newRecordset();
  rows->open("v", CursorType::keyset, LockType::optimistic);
  const auto document = documentOf(3'000'000);
  rows->addNew();
  for (std::size_t at = 0; at < document.size(); at += 1'000'000)
    rows->appendChunk("z", Value(Bytes(document.owner(), document.view().subspan(at, 1'000'000))));
  rows->update();
  EXPECT_EQ(connection_->execute("select z from v")->value("z"), Value(document));
}

TEST_F(SqliteDriverTest, OneThreadHasOneConnectionToADataSource) {
  EXPECT_EQ(opened(file_.dsn() + ";UserID=7"), connection_);
  EXPECT_NE(opened(SqliteFile("b.db").dsn()), connection_);
}

TEST(OdbcEngineTest, ADriverThatIsNotThereIsNamed) {
  const auto error = errorOf([] { (void)opened("Engine=odbc;Driver=No Such Driver;Server=h"); });
  EXPECT_EQ(error.number(), oledb::unspecified);
  EXPECT_EQ(error.database().sqlState, "01000");
  EXPECT_THAT(error.description(), HasSubstr("No Such Driver"));
}

TEST(OdbcEngineTest, AFileNameWithTheTextsOwnCharactersReachesTheDriver) {
  const SqliteFile file("a (b)=c@d.db");
  const auto connection = opened("Engine=odbc;Driver=SQLite3;Database=" + file.path());
  connection->execute("create table v (a int)");
  EXPECT_TRUE(std::filesystem::exists(file.path()));
}

}  // namespace
}  // namespace tolvane::odbc
