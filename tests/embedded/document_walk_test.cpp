// Walking through rows of documents: each is read when it is asked for, and one row's are held at a time.
#include "embedded/account_set.h"

namespace tolvane::embedded {
namespace {

struct DocumentWalk : AccountSetTest {
  static std::string hex(char digit) { return "0x" + std::string(200000, digit); }

  DocumentWalk() {
    connection_->execute("create table t (id int not null primary key, doc image null)");
    connection_->execute("insert into t values (1, " + hex('1') + ")");
    connection_->execute("insert into t values (2, " + hex('2') + ")");
  }
  std::shared_ptr<Recordset> all() {
    auto rows = connection_->newRecordset();
    rows->open("Select * From t Order By id", CursorType::keyset, LockType::optimistic);
    return rows;
  }
  static std::uint8_t firstByte(Recordset& rows) { return rows.value("doc").get<Bytes>()->view().front(); }
};

TEST_F(DocumentWalk, ADocumentOutlivesTheRowThatItWasReadFrom) {
  const auto rows = all();
  const Value first = rows->value("doc");
  rows->moveNext();
  EXPECT_EQ(firstByte(*rows), 0x22);
  EXPECT_EQ(first.get<Bytes>()->view().front(), 0x11);
  EXPECT_EQ(first.get<Bytes>()->size(), 100000U);
}

TEST_F(DocumentWalk, GoingBackReadsTheDocumentAgain) {
  const auto rows = all();
  EXPECT_EQ(firstByte(*rows), 0x11);
  rows->moveNext();
  EXPECT_EQ(firstByte(*rows), 0x22);
  rows->moveFirst();
  EXPECT_EQ(firstByte(*rows), 0x11);
}

TEST_F(DocumentWalk, TheCurrentRowsDocumentIsHeldWhileItIsCurrent) {
  const auto rows = all();
  EXPECT_EQ(rows->value("doc").get<Bytes>()->data(), rows->value("doc").get<Bytes>()->data());
}

TEST_F(DocumentWalk, ANewDocumentIsSeenWhenItsRowIsCurrentAgain) {
  const auto rows = all();
  EXPECT_EQ(firstByte(*rows), 0x11);
  rows->setValue("doc", Bytes(std::vector<std::uint8_t>(100000, 0x33)));
  rows->update();
  rows->moveNext();
  EXPECT_EQ(firstByte(*rows), 0x22);
  rows->moveFirst();
  EXPECT_EQ(firstByte(*rows), 0x33);
}

}  // namespace
}  // namespace tolvane::embedded
