// Configurations of other account sets on the command line, and the passwords that it never shows.
#include "host/accounts_command.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "host/program.h"

namespace tolvane::host {
namespace {

using Json = nlohmann::ordered_json;
using testing::Outcome;
using testing::Workplace;

constexpr const char* password = "Geheim42";

class AccountsCommandTest : public ::testing::Test {
 protected:
  AccountsCommandTest() {
    unsetenv("TOLVANE_DSN");
    EXPECT_EQ(place_.run({"init", "--dsn", place_.dsn()}).status, 0);
  }
  Outcome create(const std::string& name, const std::string& driverType, const std::string& file,
                 std::vector<std::string> more = {}) {
    const std::string properties = R"({"FDriverType":)" + driverType + R"(,"FServerName":")" + place_.path("") +
                                   R"(","FAisName":")" + file + R"(","FMUserName":"sa","FMPassword":")" + password +
                                   R"(","FPropsString":"UserID=1"})";
    std::vector<std::string> arguments{"call",
                                       "--dsn",
                                       place_.dsn(),
                                       "MultiAccountUpdate.CreateAcct",
                                       "sAcctName=\"" + name + "\"",
                                       "Properties=" + properties};
    arguments.insert(arguments.begin() + 1, more.begin(), more.end());
    return place_.run(arguments);
  }
  Outcome accounts(std::vector<std::string> more = {}) {
    more.insert(more.begin(), {"accounts", "--dsn", place_.dsn()});
    return place_.run(more);
  }
  static bool shows(const Outcome& outcome) {
    return outcome.out.find(password) != std::string::npos || outcome.err.find(password) != std::string::npos;
  }

  Workplace place_;
};

TEST_F(AccountsCommandTest, ListsTheUsersConfigurationsAsATable) {
  create("North", "0", "a.db");
  const Outcome outcome = accounts();
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_NE(outcome.out.find("North"), std::string::npos);
  EXPECT_NE(outcome.out.find("***"), std::string::npos);
  EXPECT_FALSE(shows(outcome));
}

TEST_F(AccountsCommandTest, ListsAsJson) {
  create("North", "0", "a.db");
  const Outcome outcome = accounts({"--json"});
  const Json rows = Json::parse(outcome.out)["$list"];
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0]["FName"], "North");
  EXPECT_EQ(rows[0]["FMPassWord"], "***");
  EXPECT_EQ(rows[0]["FIsMyUserName"], 1);
  EXPECT_FALSE(shows(outcome));
}

TEST_F(AccountsCommandTest, ShowsPasswordsOnRequestAlone) {
  create("North", "0", "a.db");
  EXPECT_EQ(Json::parse(accounts({"--json", "--show-secrets"}).out)["$list"][0]["FMPassWord"], password);
  EXPECT_TRUE(shows(accounts({"--show-secrets"})));
}

TEST_F(AccountsCommandTest, HidesAPasswordInTheProperties) {
  create("North", "0", "a.db");
  place_.run({"sql", "--dsn", place_.dsn(),
              "Update t_Rpt_MultiAcctEntry Set FPropsString='PWD=" + std::string(password) + ";Port=1433'"});
  const Outcome outcome = accounts({"--json"});
  EXPECT_EQ(Json::parse(outcome.out)["$list"][0]["FPropsString"], "PWD=***;Port=1433");
  EXPECT_FALSE(shows(outcome));
  EXPECT_FALSE(shows(accounts({"test", "North"})));
}

TEST_F(AccountsCommandTest, ReachesAnEmbeddedAccountSet) {
  create("North", "0", "a.db");
  const Outcome outcome = accounts({"test", "north"});
  EXPECT_EQ(outcome.status, 0) << outcome.out << outcome.err;
  EXPECT_NE(outcome.out.find("yes  user: user 1 is known"), std::string::npos) << outcome.out;
  EXPECT_FALSE(shows(outcome));
}

TEST_F(AccountsCommandTest, SaysHowFarItGot) {
  create("Gone", "0", "nothing.db");
  const Outcome outcome = accounts({"test", "Gone", "--json"});
  EXPECT_EQ(outcome.status, 1);
  const Json answer = Json::parse(outcome.out);
  EXPECT_EQ(answer["reached"], false);
  const Json steps = answer["attempts"][0]["steps"];
  ASSERT_EQ(steps.size(), 3U);
  EXPECT_EQ(steps[2]["step"], "connection");
  EXPECT_EQ(steps[2]["done"], false);
  EXPECT_NE(steps[2]["text"].get<std::string>().find("nothing.db"), std::string::npos);
}

TEST_F(AccountsCommandTest, AServerThatIsNotThereIsNotReached) {
  create("Far", "2", "AIS");
  const Outcome outcome = accounts({"test", "Far"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.out.find("no   "), std::string::npos) << outcome.out;
  EXPECT_FALSE(shows(outcome));
}

TEST_F(AccountsCommandTest, AConfigurationThatTheUserDoesNotHaveIsWrongUsage) {
  const Outcome outcome = accounts({"test", "nowhere"});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_NE(outcome.err.find("nowhere"), std::string::npos);
}

TEST_F(AccountsCommandTest, WithoutADataSourceItIsWrongUsage) {
  EXPECT_EQ(place_.run({"accounts"}).status, 2);
}

TEST_F(AccountsCommandTest, ADataSourceThatDoesNotOpenIsAnError) {
  EXPECT_EQ(place_.run({"accounts", "--dsn", "Database=" + place_.path("none.db")}).status, 1);
}

TEST_F(AccountsCommandTest, NoTraceHoldsThePassword) {
  const std::string trace = place_.path("trace.jsonl");
  EXPECT_FALSE(shows(create("North", "0", "a.db", {"--trace", trace})));
  EXPECT_NE(place_.read("trace.jsonl").find("Insert Into t_Rpt_MultiAcctEntry"), std::string::npos);
  EXPECT_EQ(place_.read("trace.jsonl").find(password), std::string::npos);
}

TEST_F(AccountsCommandTest, NeitherTraceNorAnswerOfAReadHoldsThePassword) {
  create("North", "0", "a.db");
  for (const char* method : {"MultiAccountInfo.GetList", "MultiAccountInfo.GetListByUser"}) {
    const Outcome outcome = place_.run({"call", "--dsn", place_.dsn(), "--trace", place_.path("trace.jsonl"), method});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(Json::parse(outcome.out)["result"]["$list"][0]["FMPassWord"], "***");
    EXPECT_EQ(place_.read("trace.jsonl").find(password), std::string::npos);
  }
}

TEST_F(AccountsCommandTest, StoringCredentialsThroughARowLeavesNoPasswordInTheTrace) {
  create("North", "0", "a.db");
  const std::string entry = R"({"FName":"North","FUserID":1,"FMUserName":"x","FMPassWord":")" + std::string(password) +
                            R"(","FPropsString":""})";
  const Outcome outcome = place_.run({"call", "--dsn", place_.dsn(), "--trace", place_.path("trace.jsonl"),
                                      "MultiAccountUpdate.UpdateUserInfo", "Properties=" + entry});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_FALSE(shows(outcome));
  EXPECT_EQ(place_.read("trace.jsonl").find(password), std::string::npos);
}

TEST_F(AccountsCommandTest, NoErrorHoldsThePassword) {
  const std::string properties =
      R"({"FDriverType":"odbc","FServerName":"it's","FMPassword":")" + std::string(password) + R"("})";
  const Outcome outcome =
      place_.run({"call", "--dsn", place_.dsn(), "--trace", place_.path("trace.jsonl"), "MultiAccountUpdate.CreateAcct",
                  "sAcctName=\"x'y\"", "Properties=" + properties});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_FALSE(shows(outcome));
  EXPECT_EQ(place_.read("trace.jsonl").find(password), std::string::npos);
}

TEST_F(AccountsCommandTest, QueriesHideThePasswordColumn) {
  create("North", "0", "a.db");
  for (const char* form : {"--json", "--dsn"}) {
    std::vector<std::string> arguments{"sql", "--dsn", place_.dsn(), "Select FMPassWord From t_Rpt_MultiAcctEntry"};
    if (form == std::string("--json")) arguments.insert(arguments.begin() + 1, form);
    EXPECT_FALSE(shows(place_.run(arguments))) << form;
  }
}

}  // namespace
}  // namespace tolvane::host
