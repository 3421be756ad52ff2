#include "embedded/errors.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

namespace tolvane::embedded {
namespace {

TEST(ErrorsTest, NumbersOfTheServerHaveTheirOleDbNumbers) {
  const std::pair<int, std::uint32_t> table[] = {
      {102, 0x80040E14},  {156, 0x80040E14},  {207, 0x80040E14},  {512, 0x80040E14},   {8120, 0x80040E14},
      {208, 0x80040E37},  {3701, 0x80040E37}, {2627, 0x80040E2F}, {2601, 0x80040E2F},  {515, 0x80040E2F},
      {547, 0x80040E2F},  {8152, 0x80040E57}, {8115, 0x80040E57}, {220, 0x80040E57},   {245, 0x80040E07},
      {241, 0x80040E07},  {242, 0x80040E07},  {8114, 0x80040E07}, {50000, 0x80040E14}, {1205, 0x80004005},
      {3902, 0x80004005},
  };
  for (const auto& [native, number] : table) EXPECT_EQ(oledbNumber(native), number) << native;
}

TEST(ErrorsTest, ServerErrorsKeepTheirWordsAndCarryTheText) {
  const auto error = toAutomationError(tsql::SqlError(tsql::Message::InvalidObject, {"t"}), "select * from t");
  EXPECT_EQ(error.description(), "Invalid object name 't'.");
  EXPECT_EQ(error.source(), "Microsoft OLE DB Provider for SQL Server");
  EXPECT_EQ(error.database().nativeNumber, 208);
  EXPECT_EQ(error.database().sqlState, "42S02");
  EXPECT_EQ(error.database().sql, "select * from t");
}

TEST(ErrorsTest, FailuresOfTheFileSayWhatToDo) {
  const std::pair<int, const char*> table[] = {
      {SQLITE_BUSY, "locked by another program"},
      {SQLITE_BUSY_SNAPSHOT, "locked by another program"},
      {SQLITE_FULL, "the disk is full"},
      {SQLITE_READONLY, "read-only"},
      {SQLITE_CORRUPT, "damaged"},
      {SQLITE_NOTADB, "damaged"},
      {SQLITE_IOERR_READ, "Check the disk"},
      {SQLITE_NOMEM, "more memory"},
      {SQLITE_TOOBIG, "longer than"},
      {SQLITE_ERROR, "own words"},
  };
  for (const auto& [code, words] : table) {
    const auto error = storageError("/data/a.ais", code, "own words");
    EXPECT_EQ(error.number(), 0x80004005U);
    EXPECT_THAT(error.description(),
                ::testing::AllOf(::testing::HasSubstr(words), ::testing::HasSubstr("/data/a.ais")));
  }
}

}  // namespace
}  // namespace tolvane::embedded
