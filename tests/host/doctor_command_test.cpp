#include "host/doctor_command.h"

#include <gtest/gtest.h>

#include "host/program.h"
#include "tds_server/tds_server.h"

namespace tolvane::host::testing {
namespace {

std::string at(const Workplace& place, const std::string& name) {
  return "Database=" + place.path(name + ".db");
}

TEST(DoctorCommandTest, AHealthyAccountSetHasNothingWrong) {
  const Workplace place;
  ASSERT_EQ(place.run({"init", "--dsn", at(place, "a")}).status, 0);
  const auto examined = place.run({"doctor", "--dsn", at(place, "a")});
  EXPECT_EQ(examined.status, 0);
  EXPECT_EQ(examined.out, "ok       connection: " + at(place, "a") +
                              " answers\n"
                              "ok       tables: all 32 are there with their columns\n"
                              "ok       user: 1 is a user of the account set\n"
                              "ok       record sets: counted and moved on this side of the connection\n"
                              "note     collation: not asked, the database is no SQL Server\n");
}

TEST(DoctorCommandTest, WhatIsMissingIsNamed) {
  const Workplace place;
  ASSERT_EQ(place.run({"init", "--dsn", at(place, "a")}).status, 0);
  place.run({"sql", "--dsn", at(place, "a"), "drop table t_Rpt_Right"});
  const auto examined = place.run({"doctor", "--dsn", at(place, "a") + ";UserID=77"});
  EXPECT_EQ(examined.status, 1);
  EXPECT_NE(examined.out.find("WRONG    tables: t_Rpt_Right is missing\n"), std::string::npos);
  EXPECT_NE(examined.out.find("WRONG    user: User 77 is not a user"), std::string::npos);
}

TEST(DoctorCommandTest, OnAServerThereIsAnAdviceForWhateverIsWrong) {
  const Workplace place;
  tds::TdsServer server;
  server.state().createDatabase("books");
  const auto examined = [&](const std::string& dsn) { return place.run({"doctor", "--dsn", dsn}).out; };
  EXPECT_NE(examined(server.dsn("books")).find("the database holds no account set; \"tolvane init"), std::string::npos);
  ASSERT_EQ(place.run({"init", "--dsn", server.dsn("books"), "--sample=demo"}).status, 0);
  EXPECT_EQ(place.run({"doctor", "--dsn", server.dsn("books")}).status, 0);
  EXPECT_NE(examined(server.dsn("nowhere")).find("The database is not there, or"), std::string::npos);
  const auto dsn = server.dsn("books");
  const std::string user = tds::TdsServer::user;
  EXPECT_NE(examined(std::string(dsn).replace(dsn.find(user), user.size(), "nobody")).find("The login was refused"),
            std::string::npos);
  server.stop();
  EXPECT_NE(examined(dsn).find("The server cannot be reached"), std::string::npos);
}

TEST(DoctorCommandTest, EveryCauseHasItsAdvice) {
  struct Case {
    const char* state;
    const char* words;
    const char* advice;
  };
  const Case table[] = {
      {"01000", "Can't open lib 'x' : file not found", "The driver is missing"},
      {"IM002", "Data source name not found and no default driver specified", "The driver or DSN is unknown"},
      {"08001", "Unable to connect: Adaptive Server is unavailable or does not exist", "The server cannot be reached"},
      {"08001", "connection to server at \"h\" failed: Connection refused", "Nothing answers"},
      {"42000", "Login failed for user 'u'.", "The login was refused"},
      {"42000", "Cannot open database \"x\" requested by the login. The login failed.",
       "The database is not there, or"},
      {"08001", "database \"x\" does not exist", "The database is not there: check"},
      {"HYT00", "Login timeout expired", "The server did not answer in time"},
      {"28000", "?", "The login was refused"},
      {"08S01", "?", "The server cannot be reached"},
      {"HY000", "?", ""},
  };
  for (const auto& [state, words, advice] : table) {
    AutomationError error(oledb::unspecified, "s", words);
    error.withDatabase({"", state, 0});
    EXPECT_EQ(adviceFor(error).substr(0, std::string(advice).size()), advice) << words;
    if (*advice == 0) {
      EXPECT_EQ(adviceFor(error), "");
    }
  }
}

}  // namespace
}  // namespace tolvane::host::testing
