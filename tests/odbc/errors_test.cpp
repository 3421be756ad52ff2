#include "odbc/errors.h"

#include <gtest/gtest.h>

namespace tolvane::odbc {
namespace {

struct Case {
  Diagnostic diagnostic;
  std::uint32_t number;
};

TEST(ErrorsTest, TheServersNumberDecidesBeforeTheStateAndTheStateBeforeTheWords) {
  const Case table[] = {
      {{"42000", 208, "Invalid object name 't'."}, 0x80040E37},
      {{"42000", 2627, "Violation of PRIMARY KEY constraint"}, 0x80040E2F},
      {{"42000", 8152, "String or binary data would be truncated."}, 0x80040E57},
      {{"42000", 245, "Conversion failed"}, 0x80040E07},
      {{"42000", 1205, "deadlock victim"}, 0x80004005},
      {{"28000", 18456, "Login failed for user 'u'."}, 0x80040E4D},
      {{"42000", 102, "Incorrect syntax near 'x'."}, 0x80040E14},
      {{"42S02", 33557097, "relation not found"}, 0x80040E37},
      {{"23000", 33557097, "duplicate"}, 0x80040E2F},
      {{"42000", 33557097, "Invalid object name 't'."}, 0x80040E37},
      {{"42000", 33557097, "something near x"}, 0x80040E14},
      {{"42000", 33557097, "relation \"nowhere\" does not exist"}, 0x80040E37},
      {{"42000", 33557097, "table \"nowhere\" does not exist"}, 0x80040E37},
      {{"42000", 33557097, "column \"nme\" of relation \"t\" does not exist"}, 0x80040E14},
      {{"42000", 33557097, "duplicate key value violates unique constraint \"ux\""}, 0x80040E2F},
      {{"42000", 33557097, "value too long for type character varying(20)"}, 0x80040E57},
      {{"42000", 33557097, "invalid input syntax for type integer: \"x\""}, 0x80040E07},
      {{"HYT00", 0, "Timeout expired"}, 0x80040E31},
      {{"08S01", 20004, "Read from the server failed"}, 0x80004005},
      {{"IM002", 0, "Data source name not found"}, 0x80004005},
      {{"HY000", 0, "what"}, 0x80004005},
  };
  for (const auto& [diagnostic, number] : table)
    EXPECT_EQ(oledbNumber(diagnostic, NativeNumbers::sqlServer), number) << diagnostic.message;
}

TEST(ErrorsTest, NumbersOfOtherServersAreNotTakenForSqlServers) {
  EXPECT_EQ(oledbNumber({"42P01", 1, "relation does not exist"}, NativeNumbers::other), 0x80040E37U);
  EXPECT_EQ(oledbNumber({"HY000", 19, "UNIQUE constraint failed: t.a (19)"}, NativeNumbers::other), 0x80040E2FU);
  EXPECT_EQ(oledbNumber({"HY000", 208, "odd"}, NativeNumbers::other), 0x80040E14U);
}

TEST(ErrorsTest, TheDescriptionIsTheServersWordsWithoutTheDriversPrefixes) {
  EXPECT_EQ(serverWords("[FreeTDS][SQL Server]Invalid object name 'x'."), "Invalid object name 'x'.");
  EXPECT_EQ(serverWords("[Microsoft][ODBC Driver 18 for SQL Server][SQL Server]No."), "No.");
  EXPECT_EQ(serverWords("No [brackets] in front"), "No [brackets] in front");
  EXPECT_EQ(serverWords("[all]"), "[all]");
}

TEST(ErrorsTest, NotesBehindAnErrorAreNotTheError) {
  const auto error = toAutomationError({{"01000", 3621, "The statement has been terminated."},
                                        {"23000", 2627, "[FreeTDS][SQL Server]Violation of PRIMARY KEY constraint."}},
                                       NativeNumbers::sqlServer, "insert");
  EXPECT_EQ(error.description(), "Violation of PRIMARY KEY constraint.");
  EXPECT_EQ(error.source(), "Microsoft OLE DB Provider for SQL Server");
  EXPECT_EQ(error.database().nativeNumber, 2627);
  EXPECT_EQ(error.database().sqlState, "23000");
  EXPECT_EQ(error.database().sql, "insert");
}

TEST(ErrorsTest, WhyALogInFailedIsTheErrorAndNotThatItDid) {
  const auto error = toAutomationError({{"42000", 18456, "Login failed for user 'u'."},
                                        {"42000", 4060, "Cannot open database \"d\" requested by the login."},
                                        {"08001", 0, "Unable to connect to data source"}},
                                       NativeNumbers::sqlServer, "");
  EXPECT_EQ(error.database().nativeNumber, 4060);
}

TEST(ErrorsTest, AnErrorAmongTheReportsOfASuccessIsFound) {
  EXPECT_FALSE(hidesFailure({}));
  EXPECT_FALSE(hidesFailure({{"01004", 0, "String data, right truncated"}, {"01000", 5701, "Changed database"}}));
  EXPECT_TRUE(hidesFailure({{"01000", 0, "a note"}, {"22012", 8134, "Divide by zero error encountered."}}));
  EXPECT_TRUE(hidesFailure({{"01000", 20017, "Unexpected EOF from the server"}}));
}

TEST(ErrorsTest, ALostConnectionIsToldFromOtherErrors) {
  EXPECT_TRUE(saysConnectionLost({{"08S01", 20006, "Write to the server failed"}}));
  EXPECT_TRUE(saysConnectionLost({{"01000", 20017, "[FreeTDS][SQL Server]Unexpected EOF from the server"}}));
  EXPECT_TRUE(saysConnectionLost({{"57P01", 0, "terminating connection"}}));
  EXPECT_FALSE(saysConnectionLost({{"42000", 102, "Incorrect syntax"}}));
  EXPECT_FALSE(saysConnectionLost({{"HYT00", 0, "Timeout expired"}}));
}

}  // namespace
}  // namespace tolvane::odbc
