#include "standalone_com/application_object.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "standalone_com/client.h"

namespace tolvane::standalone_com {
namespace {

using automation::Variant;
using testing::Client;
using testing::errorOf;
using testing::TryOut;

std::string pathIn(const std::string& dsn) {
  return dsn.substr(std::string("Database=").size());
}

TEST(ApplicationObjectTest, MakesAnAccountSetWithASamplesData) {
  const Client application = Client::create("Application");
  const std::string dsn = "Database=" + ::testing::TempDir() + "application_object_demo.db";
  std::filesystem::remove(pathIn(dsn));
  (void)application.get(L"CreateAccountSet", dsn, "demo");
  const Client context = application.object(L"GetContext");
  (void)context.get(L"OpenDataSource", dsn);
  const Client rows = context.object(L"GetConnection").object(L"Execute", "Select FRptName From t_Rpt_Content");
  EXPECT_EQ(rows.get(L"EOF"), Value(false));
}

TEST(ApplicationObjectTest, RefusesAnAccountSetThatIsThere) {
  const TryOut tryOut;
  EXPECT_EQ(errorOf([&] { (void)tryOut.application().get(L"CreateAccountSet", tryOut.dsn()); }),
            "800A0005 Tolvane: There is " + pathIn(tryOut.dsn()) +
                " already. An account set is made in a new file only; nothing was changed.");
}

TEST(ApplicationObjectTest, AFileThatCouldNotBeFilledIsRemoved) {
  const std::string dsn = "Database=" + ::testing::TempDir() + "application_object_fails.db";
  EXPECT_EQ(errorOf([&] { (void)Client::create("Application").get(L"CreateAccountSet", dsn, "nosuch"); }),
            "800A0005 Tolvane: There is no sample nosuch; there is demo, older.");
  EXPECT_FALSE(std::filesystem::exists(pathIn(dsn)));
}

TEST(ApplicationObjectTest, TellsTheVersion) {
  EXPECT_EQ(Client::create("Application").get(L"Version"), Value(TOLVANE_VERSION));
}

TEST(ApplicationObjectTest, AContextHasNoConnectionBeforeADataSourceIsOpen) {
  const Client context = Client::create("Application").object(L"GetContext");
  EXPECT_EQ(errorOf([&] { (void)context.object(L"GetConnection"); }),
            "800A005B Tolvane: Object variable or With block variable not set");
  EXPECT_EQ(context.object(L"GetLoginInfo").get(L"CurrentUserID"), Value(0));
}

TEST(ApplicationObjectTest, TheLoginIsTheOneOfTheDataSourceName) {
  const TryOut tryOut;
  tryOut.run("insert into t_User (FUserID) values (5)");
  const Client context = tryOut.application().object(L"GetContext");
  (void)context.get(L"OpenDataSource", tryOut.dsn() + ";UserID=5;Language=cht");
  const Client login = context.object(L"GetLoginInfo");
  EXPECT_EQ(login.get(L"CurrentUserID"), Value(5));
  EXPECT_EQ(login.get(L"UserKey"), Value("5"));
  EXPECT_EQ(login.get(L"LanguageCode"), Value("cht"));
  EXPECT_EQ(context.get(L"CallText"), Value("5"));
}

TEST(ApplicationObjectTest, TheOutArgumentOfOpenDataSourceStaysAsItIs) {
  const TryOut tryOut;
  std::int32_t untouched = 17;
  (void)tryOut.application().object(L"GetContext").get(L"OpenDataSource", tryOut.dsn(), Variant::reference(untouched));
  EXPECT_EQ(untouched, 17);
}

TEST(ApplicationObjectTest, ArgumentsThatAreNoneOfItsKindAreErrors) {
  const Client application = Client::create("Application");
  EXPECT_EQ(errorOf([&] { (void)application.get(L"CreateAccountSet"); }), "800A01C1 Tolvane: Argument not optional");
  EXPECT_EQ(errorOf([&] { (void)application.get(L"CreateAccountSet", application); }),
            "800A000D Tolvane: Type mismatch");
  EXPECT_EQ(errorOf([&] { (void)application.get(L"BeginCall", "two"); }), "800A000D Tolvane: Type mismatch");
  EXPECT_EQ(errorOf([&] { (void)application.get(L"BeginCall", 1); }),
            "800A0005 Tolvane: The mode of a call is 2 (a transaction) or 3 (none of its own).");
  EXPECT_EQ(errorOf([&] { (void)application.get(L"NoSuchMember"); }),
            "800A01B6 Tolvane: Object doesn't support this property or method");
}

}  // namespace
}  // namespace tolvane::standalone_com
