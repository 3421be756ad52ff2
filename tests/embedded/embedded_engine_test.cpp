#include "embedded/embedded_engine.h"

#include <sqlite3.h>

#include <fstream>
#include <future>
#include <thread>

#include "embedded/account_set.h"
#include "embedded/sqlite_handles.h"

namespace tolvane::embedded {
namespace {

using ::testing::HasSubstr;
using namespace std::chrono_literals;

class EmbeddedEngineTest : public AccountSetTest {
 protected:
  std::string openingError(const std::filesystem::path& path, std::chrono::milliseconds timeout = 50ms) {
    const auto error =
        errorOf([&] { (void)EmbeddedEngine({timeout}).open(DataSourceName::parse("Database=" + path.string())); });
    EXPECT_EQ(error.number(), oledb::unspecified);
    EXPECT_THAT(error.description(), HasSubstr(path.string()));
    return error.description();
  }

  /// The file by SQLite alone, without the engine.
  static DatabaseHandle plain(const std::filesystem::path& path) {
    sqlite3* opened = nullptr;
    sqlite3_open(path.string().c_str(), &opened);
    return DatabaseHandle(opened);
  }

  /// A connection on another thread, for as long as `work` runs there.
  template <typename Work>
  void onAnotherThread(Work work) {
    std::thread([&] { work(*open(2s)); }).join();
  }
};

TEST_F(EmbeddedEngineTest, AMissingFileIsNamedAndNotMade) {
  const auto missing = folder_.path() / "none.ais";
  EXPECT_THAT(openingError(missing), HasSubstr("there is no such file"));
  EXPECT_FALSE(std::filesystem::exists(missing));
}

TEST_F(EmbeddedEngineTest, AFileThatIsNoAccountSetIsRefusedAndLeftAlone) {
  const auto text = folder_.path() / "letter.txt";
  std::ofstream(text) << "Dear Sir or Madam, this is a letter and no account set.";
  EXPECT_THAT(openingError(text), HasSubstr("not an account set"));
  const auto empty = folder_.path() / "empty";
  std::ofstream(empty).flush();
  EXPECT_THAT(openingError(empty), HasSubstr("not an account set"));
  EXPECT_EQ(std::filesystem::file_size(empty), 0U);
}

TEST_F(EmbeddedEngineTest, AnotherProgramsSqliteFileIsNoAccountSet) {
  const auto other = folder_.path() / "other.db";
  sqlite3* opened = nullptr;
  sqlite3_open(other.string().c_str(), &opened);
  sqlite3_exec(opened, "create table t (a)", nullptr, nullptr, nullptr);
  DatabaseHandle(opened).reset();
  EXPECT_THAT(openingError(other), HasSubstr("not an account set"));
}

TEST_F(EmbeddedEngineTest, AFolderIsNoAccountSet) {
  EXPECT_THAT(openingError(folder_.path()), HasSubstr("not a file"));
}

TEST_F(EmbeddedEngineTest, IndexesOfAnEarlierOrderOfTextsAreMadeAnew) {
  run("create table t (a nvarchar(9) primary key) insert t values ('a-c'), ('ab'), ('b')");
  connection_.reset();
  EmbeddedEngine::closeUnused();
  {
    const auto file = plain(this->file());
    const auto backwards = [](void*, int leftSize, const void* left, int rightSize, const void* right) {
      const std::string_view a(static_cast<const char*>(left), static_cast<std::size_t>(leftSize));
      return std::string_view(static_cast<const char*>(right), static_cast<std::size_t>(rightSize)).compare(a);
    };
    sqlite3_create_collation(file.get(), "TSQL", SQLITE_UTF8, nullptr, backwards);
    EXPECT_EQ(sqlite3_exec(file.get(), "REINDEX TSQL; PRAGMA user_version = 0", nullptr, nullptr, nullptr), SQLITE_OK);
  }
  connection_ = open();
  EXPECT_EQ(scalar("select count(*) from t where a = 'ab'"), "1");
  EXPECT_EQ(scalar("select top 1 a from t where a > 'ab'"), "a-c");
  sqlite3_stmt* version = nullptr;
  const auto file = plain(this->file());
  sqlite3_prepare_v2(file.get(), "PRAGMA user_version", -1, &version, nullptr);
  EXPECT_EQ(sqlite3_step(version), SQLITE_ROW);
  EXPECT_EQ(sqlite3_column_int(version, 0), textOrder);
  sqlite3_finalize(version);
}

TEST_F(EmbeddedEngineTest, ADataSourceWithoutAFileIsRefused) {
  const auto error = errorOf([] { (void)EmbeddedEngine().open(DataSourceName::parse("Server=x")); });
  EXPECT_THAT(error.description(), HasSubstr("Database="));
}

TEST_F(EmbeddedEngineTest, AnAccountSetIsNotMadeOverAFile) {
  const auto error = errorOf([&] { EmbeddedEngine::createAccountSet(file()); });
  EXPECT_THAT(error.description(), HasSubstr("already"));
}

TEST_F(EmbeddedEngineTest, AThreadHasOneConnectionToAnAccountSet) {
  EXPECT_EQ(open(), connection_);
  std::shared_ptr<EngineConnection> other;
  std::thread([&] { other = open(); }).join();
  EXPECT_NE(other, connection_);
}

TEST_F(EmbeddedEngineTest, FilesThatNobodyUsesCanBeClosed) {
  run("create table t (a int)");
  EmbeddedEngine::closeUnused();
  EXPECT_EQ(scalar("select count(*) from t"), "0");
  connection_.reset();
  EmbeddedEngine::closeUnused();
  // SQLite takes the log away when the last connection goes.
  EXPECT_FALSE(std::filesystem::exists(file().string() + "-wal"));
  EXPECT_TRUE(std::filesystem::remove(file()));
}

TEST_F(EmbeddedEngineTest, AnAccountSetMayLieUnderAChineseName) {
  const auto chinese = folder_.path() / std::filesystem::path(u8"账套 一.ais");
  EmbeddedEngine::createAccountSet(chinese);
  EXPECT_TRUE(std::filesystem::exists(chinese));
  connection_ = EmbeddedEngine().open(DataSourceName::parse("Database=" + chinese.string()));
  EXPECT_EQ(scalar("select db_name()"), "账套 一");
}

TEST_F(EmbeddedEngineTest, WhatIsNotCommittedWhenAConnectionGoesIsUndone) {
  run("create table t (a int)");
  connection_->begin();
  run("insert into t values (1)");
  connection_.reset();
  connection_ = open();
  EXPECT_EQ(scalar("select count(*) from t"), "0");
}

TEST_F(EmbeddedEngineTest, WritersWaitForTheLockOfAnother) {
  run("create table t (a int)");
  connection_->begin();
  run("insert into t values (1)");
  std::promise<void> began;
  std::thread other([&] {
    const auto second = open();
    began.set_value();
    second->execute("insert into t values (2)");
  });
  began.get_future().wait();
  run("insert into t values (3)");
  connection_->commit();
  other.join();
  EXPECT_EQ(scalar("select count(*) from t"), "3");
}

TEST_F(EmbeddedEngineTest, ALockThatStaysIsAnErrorThatSaysSo) {
  run("create table t (a int)");
  connection_->begin();
  std::thread([&] {
    const auto error = errorOf([&] { open(50ms)->execute("insert into t values (2)"); });
    EXPECT_EQ(error.number(), oledb::unspecified);
    EXPECT_THAT(error.description(), HasSubstr("locked by another program"));
    EXPECT_THAT(errorOf([&] { open(50ms)->begin(); }).description(), HasSubstr("locked by another program"));
  }).join();
  connection_->rollback();
}

TEST_F(EmbeddedEngineTest, AFileThatIsLockedForGoodIsNotOpened) {
  const auto locked = folder_.path() / "locked.ais";
  EmbeddedEngine::createAccountSet(locked);
  const auto locker = plain(locked);
  const auto* text = "PRAGMA locking_mode=EXCLUSIVE; BEGIN EXCLUSIVE; CREATE TABLE x(a)";
  ASSERT_EQ(sqlite3_exec(locker.get(), text, nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_THAT(openingError(locked), HasSubstr("keeps it locked"));
}

TEST_F(EmbeddedEngineTest, ReadersGoOnWhileAnotherWrites) {
  run("create table t (a int) insert into t values (1)");
  connection_->begin();
  run("insert into t values (2)");
  onAnotherThread([](EngineConnection& other) {
    EXPECT_EQ(other.execute("select count(*) from t")->value(std::size_t{0}), Value(std::int32_t{1}));
  });
  connection_->commit();
}

TEST_F(EmbeddedEngineTest, TablesThatAnotherConnectionMakesOrChangesAreSeen) {
  run("create table t (a int)");
  EXPECT_EQ(scalar("select count(*) from t"), "0");
  onAnotherThread([](EngineConnection& other) {
    other.execute("create table u (a int)");
    other.execute("drop table t");
    other.execute("create table t (a nvarchar(10))");
  });
  EXPECT_EQ(scalar("select count(*) from u"), "0");
  run("insert into t values ('x')");
  EXPECT_EQ(scalar("select a from t"), "x");
}

TEST_F(EmbeddedEngineTest, AFullDiskIsSaidToBeSoAndNothingIsHalfDone) {
  run("create table t (a int, b image null)");
  run("insert into t (a) values (1)");
  sqlite3_exec(session().database().get(), "PRAGMA max_page_count=20", nullptr, nullptr, nullptr);
  const auto rows = connection_->newRecordset();
  rows->open("t", CursorType::keyset, LockType::optimistic);
  rows->addNew();
  rows->setValue("a", Value(std::int32_t{2}));
  rows->setValue("b", Value(Bytes(std::vector<std::uint8_t>(1'000'000))));
  EXPECT_THAT(errorOf([&] { rows->update(); }).description(), HasSubstr("the disk is full"));
  EXPECT_EQ(scalar("select count(*) from t"), "1");
  EXPECT_FALSE(connection_->inTransaction());
}

TEST_F(EmbeddedEngineTest, AFullDiskInATransactionEndsItAndRollbackIsNoError) {
  run("create table t (a int, b nvarchar(max) null)");
  connection_->begin();
  run("insert into t (a) values (1)");
  sqlite3_exec(session().database().get(), "PRAGMA max_page_count=20", nullptr, nullptr, nullptr);
  EXPECT_THAT(
      errorOf([&] { run("insert into t values (2, replicate(cast('x' as nvarchar(max)), 1000000))"); }).description(),
      HasSubstr("the disk is full"));
  connection_->rollback();
  EXPECT_EQ(scalar("select count(*) from t"), "0");
}

TEST_F(EmbeddedEngineTest, ADocumentOfTwoHundredMebibytesIsStoredAndRead) {
  constexpr std::size_t size = 200U << 20;
  run("create table t (a int, b image null)");
  const auto rows = connection_->newRecordset();
  rows->open("t", CursorType::keyset, LockType::optimistic);
  rows->addNew();
  rows->setValue("a", Value(std::int32_t{1}));
  rows->appendChunk("b", Value(Bytes(std::vector<std::uint8_t>(size, 7))));
  rows->update();
  const auto read = run("select b from t")->value("b");
  ASSERT_NE(read.get<Bytes>(), nullptr);
  EXPECT_EQ(read.get<Bytes>()->size(), size);
  EXPECT_EQ(read.get<Bytes>()->view().back(), 7);
}

TEST_F(EmbeddedEngineTest, AnEmptyTextIsADocumentWithoutBytesAndAnyOtherTextIsNone) {
  run("create table t (a int, b image null)");
  const auto rows = connection_->newRecordset();
  rows->open("t", CursorType::keyset, LockType::optimistic);
  rows->addNew();
  EXPECT_EQ(errorOf([&] { rows->setValue("b", "text"); }).number(), errorNumber(AdoError::dataConversion));
  rows->setValue("b", "");
  rows->update();
  EXPECT_EQ(run("select b from t")->value("b"), Value(Bytes()));
}

TEST_F(EmbeddedEngineTest, TheColumnsOfATableAreReadBeforeAndAfterItGainsOne) {
  run("create table t (a int)");
  const auto columns = [&] {
    return scalar("select count(*) from syscolumns c, sysobjects o where c.id=o.id and o.name='t'");
  };
  EXPECT_EQ(columns(), "1");
  run("if not exists(select c.name from syscolumns c where c.name='b') begin alter table t add b int null end");
  EXPECT_EQ(columns(), "2");
}

TEST_F(EmbeddedEngineTest, TheFileIsOrdinaryToThePlainSqliteShell) {
  run("create table t_Rpt_Right (FRptID int not null, FName nvarchar(20) null)");
  run("insert into t_Rpt_Right values (7, N'资产')");
  const auto database = plain(file());
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(database.get(), "SELECT FName FROM t_Rpt_Right WHERE FName='资产' ORDER BY FName", -1, &statement,
                     nullptr);
  const StatementHandle handle(statement);
  ASSERT_EQ(sqlite3_step(statement), SQLITE_ROW);
  EXPECT_STREQ(reinterpret_cast<const char*>(sqlite3_column_text(statement, 0)), "资产");
}

TEST_F(EmbeddedEngineTest, TextThatIsNotUtf8IsRefused) {
  const auto error = errorOf([&] { run("select '\xC3\x28'"); });
  EXPECT_EQ(error.number(), oledb::errorsInCommand);
  EXPECT_THAT(error.description(), HasSubstr("not UTF-8 at byte 9"));
}

TEST_F(EmbeddedEngineTest, AStatementBeyondTheLimitsOfSqliteIsRefusedAsOneThatIsNotSupported) {
  std::string columns = "select 1";
  for (int i = 0; i < 2000; ++i) columns += ",1";
  const auto error = errorOf([&] { run(columns); });
  EXPECT_EQ(error.database().nativeNumber, 40517);
  EXPECT_THAT(error.description(), HasSubstr("too many columns in result set"));
}

TEST_F(EmbeddedEngineTest, LongSumsAndConcatenationsAreNotTooDeepForSqlite) {
  std::string sum = "select 1";
  std::string text = "select len('a'";
  std::string mixed = "select 1";
  for (int i = 0; i < 300; ++i) {
    sum += "+1";
    text += "+'a'";
    mixed += i % 100 < 90 ? "+1.5" : "-0.5";
  }
  EXPECT_EQ(scalar(sum), "301");
  EXPECT_EQ(scalar(text + ")"), "301");
  EXPECT_EQ(scalar(mixed), "391");
}

TEST_F(EmbeddedEngineTest, ACommandThatTakesTooLongIsStopped) {
  const auto command = connection_->newCommand();
  command->setCommandText("declare @n int set @n = 0 while @n < 2000000000 set @n = @n + 1");
  command->setCommandTimeout(1);
  EXPECT_EQ(errorOf([&] { (void)command->execute(); }).number(), oledb::abortLimitReached);
  EXPECT_EQ(scalar("select 1"), "1");
}

}  // namespace
}  // namespace tolvane::embedded
