// What reading costs: rows and documents are read when they are asked for, and statements are compiled once.
#include <sqlite3.h>

#include <thread>

#include "embedded/account_set.h"

namespace tolvane::embedded {
namespace {

class LazinessTest : public AccountSetTest {
 protected:
  LazinessTest() {
    run("create table t (Id int identity(1,1) not null, Name nvarchar(20) null, Doc image null, constraint PK_t "
        "primary key (Id))");
    for (int i = 0; i < 5; ++i) run("insert into t (Name, Doc) values (N'n" + std::to_string(i) + "', 0x010203)");
    sqlite3_trace_v2(
        session().database().get(), SQLITE_TRACE_ROW,
        [](unsigned, void* counter, void*, void*) {
          ++*static_cast<int*>(counter);
          return 0;
        },
        &rowsRead_);
  }

  std::shared_ptr<Recordset> opened(const std::string& source) {
    auto rows = connection_->newRecordset();
    rows->open(source, CursorType::keyset, LockType::optimistic);
    return rows;
  }

  int rowsRead_ = 0;
};

TEST_F(LazinessTest, OpeningReadsNoRow) {
  const auto rows = opened("t");
  EXPECT_EQ(rows->fields().size(), 3U);
  EXPECT_EQ(rowsRead_, 0);
}

TEST_F(LazinessTest, ASetOpenedToAddRowsReadsTheNewRowOnly) {
  const auto rows = opened("t");
  rows->addNew();
  rows->setValue("Name", Value("new"));
  rows->update();
  EXPECT_EQ(rows->value("Id"), Value(std::int32_t{6}));
  EXPECT_EQ(rowsRead_, 1);
}

TEST_F(LazinessTest, RowsAreReadOneByOne) {
  const auto rows = opened("select Id from t order by Id");
  EXPECT_FALSE(rows->eof());
  EXPECT_EQ(rowsRead_, 1);
  rows->moveNext();
  EXPECT_FALSE(rows->eof());
  EXPECT_EQ(rowsRead_, 2);
}

TEST_F(LazinessTest, ADocumentIsReadWhenItIsAskedForAndOnce) {
  const auto rows = opened("select Id, Doc from t order by Id");
  EXPECT_EQ(rows->recordCount(), 5);
  EXPECT_EQ(rowsRead_, 5);
  EXPECT_EQ(rows->value("Doc"), Value(Bytes({1, 2, 3})));
  EXPECT_EQ(rowsRead_, 6);
  EXPECT_EQ(rows->value("Doc"), Value(Bytes({1, 2, 3})));
  EXPECT_EQ(rowsRead_, 6);
}

TEST_F(LazinessTest, TheCurrentRowsDocumentSurvivesTheRowsDeletion) {
  const auto rows = opened("select Id, Doc from t order by Id");
  EXPECT_EQ(rows->value("Id"), Value(std::int32_t{1}));
  run("delete from t");
  EXPECT_EQ(rows->value("Doc"), Value(Bytes({1, 2, 3})));
  EXPECT_EQ(rows->recordCount(), 5);
}

TEST_F(LazinessTest, AStatementWithOtherLiteralsIsNotCompiledAgain) {
  (void)scalar("select Name from t where Id = 1");
  const auto misses = session().programs().misses();
  EXPECT_EQ(scalar("select Name from t where Id = 2"), "n1");
  EXPECT_EQ(scalar("select Name from t where Id = 3"), "n2");
  EXPECT_EQ(session().programs().misses(), misses);
}

TEST_F(LazinessTest, AChangeOfTheTablesIsCompiledAnew) {
  (void)scalar("select * from t where Id = 1");
  run("alter table t add Extra int null");
  EXPECT_EQ(run("select * from t where Id = 1")->fields().size(), 4U);
}

TEST_F(LazinessTest, TheCacheOfProgramsIsBounded) {
  for (int i = 0; i < 600; ++i) (void)run("select Id as c" + std::to_string(i) + " from t where 1 = 0");
  EXPECT_EQ(session().programs().size(), 512U);
}

TEST_F(LazinessTest, ALazySetWhoseTableChangedIsCompiledAnewWhenItIsRead) {
  const auto rows = opened("select Name from t order by Id");
  std::thread([&] { open()->execute("create index IX_t on t (Name)"); }).join();
  EXPECT_EQ(rows->value("Name"), Value("n0"));
}

}  // namespace
}  // namespace tolvane::embedded
