// How much memory a document takes on its way to a server and back. The server runs in another process, as
// TOLVANE_TEST_DSN names it, so that what this one takes can be told.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>

#include "odbc/odbc_engine.h"
#include "support/server_database.h"

namespace tolvane::odbc {
namespace {

constexpr std::size_t documentSize = std::size_t{64} << 20;
// The driver's copy and this side's, and half of one for everything else.
constexpr std::size_t mostMemory = documentSize * 5 / 2;

// The process's memory now ("VmRSS:") or at its highest ("VmHWM:"), in bytes.
std::size_t memory(const std::string& which) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(which)) return std::strtoull(line.c_str() + which.size(), nullptr, 10) * 1024;
  }
  return 0;
}

// What `work` needed at its highest beyond what there was before.
template <typename Work>
std::size_t memoryFor(Work&& work) {
  std::ofstream("/proc/self/clear_refs") << "5";
  const auto before = memory("VmRSS:");
  work();
  return memory("VmHWM:") - before;
}

class DocumentMemory : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!test::ServerDatabase::isNamed()) GTEST_SKIP() << "TOLVANE_TEST_DSN names no server in a process of its own";
    database_ = std::make_unique<test::ServerDatabase>();
    connection_ = OdbcEngine().open(DataSourceName::parse(database_->dsn()));
    connection_->execute("create table Documents (Id int identity(1,1) not null primary key, Content image null)");
  }
  void write() {
    const auto rows = connection_->newRecordset();
    rows->open("Documents", CursorType::keyset, LockType::optimistic);
    rows->addNew();
    for (std::size_t piece = 0; piece < 8; ++piece) {
      rows->appendChunk("Content", Value(Bytes::filled(documentSize / 8, [&](std::span<std::uint8_t> to) {
                          std::memset(to.data(), static_cast<int>(piece), to.size());
                        })));
    }
    rows->update();
  }
  std::unique_ptr<test::ServerDatabase> database_;
  std::shared_ptr<EngineConnection> connection_;
};

TEST_F(DocumentMemory, ADocumentIsWrittenWithoutAThirdCopy) {
  EXPECT_LT(memoryFor([&] { write(); }), mostMemory);
}

TEST_F(DocumentMemory, ADocumentIsReadWithoutAThirdCopy) {
  write();
  const auto taken = memoryFor([&] {
    const auto rows = connection_->execute("select Content from Documents");
    EXPECT_EQ(rows->value("Content").get<Bytes>()->size(), documentSize);
  });
  EXPECT_LT(taken, mostMemory);
}

}  // namespace
}  // namespace tolvane::odbc
