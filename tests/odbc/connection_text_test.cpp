#include "odbc/connection_text.h"

#include <gtest/gtest.h>

#include "platform/error.h"

namespace tolvane::odbc {
namespace {

std::string textOf(const std::string& name) {
  return connectionOptions(DataSourceName::parse(name)).text;
}

std::string refusalOf(const std::string& name) {
  try {
    return textOf(name);
  } catch (const AutomationError& error) {
    return error.description();
  }
}

TEST(ConnectionTextTest, KeysGoToTheDriverAsTheyStandButThoseOfTheCaller) {
  const std::pair<const char*, const char*> table[] = {
      {"Engine=odbc;Driver=SQLite3;Database=a.db;UserID=1;Language=chs", "Driver=SQLite3;Database=a.db"},
      {"Engine=odbc;DSN=books;UID=sa;LoginTimeout=3;NetworkTimeout=9", "DSN=books;UID=sa"},
      {"Engine=odbc;Driver=PostgreSQL Unicode;Server=h;Port=5432", "Driver=PostgreSQL Unicode;Server=h;Port=5432"},
      {"Engine=odbc;Driver=FreeTDS;Server=h;Port=1433;Database=d;UID=u;PWD=p",
       "Driver=FreeTDS;Server=h;Port=1433;Database=d;UID=u;PWD=p;TDS_Version=7.4"},
      {"Engine=odbc;Driver=FreeTDS;Server=h;TDS_Version=7.2", "Driver=FreeTDS;Server=h;TDS_Version=7.2"},
      {"Engine=odbc;Server=h", "Driver=FreeTDS;Server=h;TDS_Version=7.4"},
      {"Engine=odbc;Driver=ODBC Driver 18 for SQL Server;Server=h;Port=1433;Encrypt=yes",
       "Driver=ODBC Driver 18 for SQL Server;Server=h,1433;Encrypt=yes"},
  };
  for (const auto& [name, text] : table) EXPECT_EQ(textOf(name), text);
}

TEST(ConnectionTextTest, ValuesWithTheTextsOwnCharactersStandInBraces) {
  const std::pair<const char*, const char*> table[] = {
      {"Engine=odbc;Driver=SQLite3;PWD={a;b}", "Driver=SQLite3;PWD={a;b}"},
      {"Engine=odbc;Driver=SQLite3;PWD={a}};b}", "Driver=SQLite3;PWD={a}};b}"},
      {"Engine=odbc;Driver=SQLite3;PWD={a}}b}", "Driver=SQLite3;PWD=a}b"},
      {"Engine=odbc;Driver=SQLite3;PWD=a=b", "Driver=SQLite3;PWD=a=b"},
      {"Engine=odbc;Driver=SQLite3;PWD={ a}", "Driver=SQLite3;PWD={ a}"},
  };
  for (const auto& [name, text] : table) EXPECT_EQ(textOf(name), text);
}

TEST(ConnectionTextTest, FreeTdsTakesABraceInsideBracesAsItStands) {
  EXPECT_EQ(textOf("Driver=FreeTDS;PWD={a}}b;c};TDS_Version=7.4"), "Driver=FreeTDS;PWD={a}b;c};TDS_Version=7.4");
  EXPECT_EQ(textOf("Driver=FreeTDS;PWD={a;b}}};TDS_Version=7.4"), "Driver=FreeTDS;PWD={a;b}};TDS_Version=7.4");
  EXPECT_EQ(refusalOf("Driver=FreeTDS;PWD={a}};b}"),
            "The data source's PWD holds \"};\", which the driver FreeTDS cannot be given.");
}

TEST(ConnectionTextTest, TimeOutsHaveValuesAndCanBeSet) {
  const auto usual = connectionOptions(DataSourceName::parse("Driver=x"));
  EXPECT_EQ(usual.loginTimeout, 15);
  EXPECT_EQ(usual.networkTimeout, 600);
  const auto set = connectionOptions(DataSourceName::parse("Driver=x;LoginTimeout=3;NetworkTimeout=0"));
  EXPECT_EQ(set.loginTimeout, 3);
  EXPECT_EQ(set.networkTimeout, 0);
}

TEST(ConnectionTextTest, WhatWouldLoseTextOrMeansNothingIsRefused) {
  EXPECT_EQ(refusalOf("Driver=FreeTDS;TDS_Version=7.0"),
            "The data source's TDS_Version 7.0 loses text. Leave it out or write 7.2 or above.");
  EXPECT_EQ(refusalOf("Driver=x;LoginTimeout=soon"),
            "The data source's LoginTimeout is not a number of seconds from 0 to 86400.");
  EXPECT_EQ(refusalOf("Driver=x;NetworkTimeout=-1"),
            "The data source's NetworkTimeout is not a number of seconds from 0 to 86400.");
  EXPECT_EQ(refusalOf("Driver=x;Database=\xff"), "The data-source name is not UTF-8.");
}

}  // namespace
}  // namespace tolvane::odbc
