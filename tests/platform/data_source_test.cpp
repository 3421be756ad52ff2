#include <gtest/gtest.h>

#include "platform/engine.h"
#include "platform/error.h"

namespace tolvane {
namespace {

TEST(DataSourceNameTest, FindsKeysInAnyLetterCase) {
  const auto name = DataSourceName::parse("Database=demo.db;USERID=7");
  EXPECT_EQ(name.get("database"), "demo.db");
  EXPECT_EQ(name.get("UserID"), "7");
  EXPECT_EQ(name.get("Language", "chs"), "chs");
  EXPECT_TRUE(name.has("userid"));
  EXPECT_FALSE(name.has("PWD"));
}

TEST(DataSourceNameTest, KeepsPairsInOrder) {
  const auto name = DataSourceName::parse("B=1;A=2;");
  ASSERT_EQ(name.pairs().size(), 2U);
  EXPECT_EQ(name.pairs()[0].first, "B");
  EXPECT_EQ(name.pairs()[1].second, "2");
}

TEST(DataSourceNameTest, TakesValuesInBraces) {
  const auto name = DataSourceName::parse("PWD={a;b}}c};Driver={ODBC Driver 17}; Server = h ");
  EXPECT_EQ(name.get("PWD"), "a;b}c");
  EXPECT_EQ(name.get("Driver"), "ODBC Driver 17");
  EXPECT_EQ(name.get("Server"), "h");
}

TEST(DataSourceNameTest, AllowsEqualsSignsAndEmptyValues) {
  const auto name = DataSourceName::parse("A=b=c;D=");
  EXPECT_EQ(name.get("A"), "b=c");
  EXPECT_TRUE(name.has("D"));
  EXPECT_EQ(name.get("D", "x"), "");
}

TEST(DataSourceNameTest, PublicTextHidesThePassword) {
  const auto name = DataSourceName::parse("Server=h;pwd=secret;Database={a;b}");
  EXPECT_EQ(name.publicText(), "Server=h;pwd=***;Database={a;b}");
}

TEST(DataSourceNameTest, RefusesOtherTexts) {
  for (const char* text : {"", "  ", ";", "demo.db", "A=1;b", "=1", "A={x", "A={x}y", "A=1;a=2"}) {
    try {
      (void)DataSourceName::parse(text);
      ADD_FAILURE() << text;
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.number(), 0x800A0005U) << text;
      EXPECT_NE(error.description().find("data-source name"), std::string::npos) << text;
    }
  }
}

TEST(DataSourceNameTest, RefusalsDoNotRepeatWhatMayBeAPassword) {
  try {
    (void)DataSourceName::parse("UID=u;secret");
    FAIL();
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.description().find("secret"), std::string::npos);
  }
}

}  // namespace
}  // namespace tolvane
