// The program from the outside: what it prints, how it ends, what it leaves behind.
#include "host/command_line.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "catalogue/catalogue.h"
#include "host/program.h"

namespace tolvane::host {
namespace {

using Json = nlohmann::ordered_json;
using testing::Outcome;
using testing::Workplace;

class CommandLineTest : public ::testing::Test {
 protected:
  CommandLineTest() { unsetenv("TOLVANE_DSN"); }

  void initialise(const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments{"init", "--dsn", place_.dsn()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const Outcome outcome = place_.run(arguments);
    ASSERT_EQ(outcome.status, 0) << outcome.err;
  }
  Outcome call(const std::string& method, std::vector<std::string> rest = {}, const std::string& more = "") {
    rest.insert(rest.begin(), {"call", "--dsn", place_.dsn(more), method});
    return place_.run(rest);
  }
  Outcome save(const std::string& name = "\"六月\"") {
    place_.write("document.bin", std::string("\0\xFF\x01", 3));
    return call("SrvRptUpdate.SavePlxToSrv",
                {"sSysName=\"GL\"", "sRptName=" + name, "vPlx=@" + place_.path("document.bin"), "lOwner=1"});
  }
  Outcome sql(const std::string& text) { return place_.run({"sql", "--json", "--dsn", place_.dsn(), text}); }
  /// The first value of a query.
  Json value(const std::string& text) { return Json::parse(sql(text).out)["$recordset"]["rows"][0][0]; }

  static Json errorOf(const Outcome& outcome) {
    EXPECT_EQ(outcome.status, 1) << outcome.out << outcome.err;
    return Json::parse(outcome.out)["error"];
  }

  Workplace place_;
};

TEST_F(CommandLineTest, HelpAndVersionAreNoErrors) {
  EXPECT_EQ(place_.run({"--help"}).status, 0);
  EXPECT_EQ(place_.run({"call", "--help"}).status, 0);
  EXPECT_TRUE(place_.run({"--version"}).out.starts_with("tolvane "));
  EXPECT_EQ(place_.run({"version"}).out, place_.run({"--version"}).out);
}

TEST_F(CommandLineTest, WrongUsageEndsWithTwo) {
  for (const auto& arguments : std::vector<std::vector<std::string>>{{},
                                                                     {"fly"},
                                                                     {"call"},
                                                                     {"classes", "--xml"},
                                                                     {"describe", "Nobody"},
                                                                     {"call", "Nobody.GetRptPlx"},
                                                                     {"call", "SrvRptRetrieve.Nothing"},
                                                                     {"call", "SrvRptRetrieve.GetRptPlx"},
                                                                     {"sql", "select 1"},
                                                                     {"init"}}) {
    const Outcome outcome = place_.run(arguments);
    EXPECT_EQ(outcome.status, 2) << (arguments.empty() ? "" : arguments.front());
    EXPECT_NE(outcome.err, "");
    EXPECT_EQ(outcome.out, "");
  }
}

TEST_F(CommandLineTest, ListsTheClassesWithTheirTransMode) {
  const auto list = Json::parse(place_.run({"classes", "--json"}).out);
  ASSERT_EQ(list.size(), classes().size());
  EXPECT_EQ(list[0]["name"], "SrvRptRetrieve");
  EXPECT_EQ(list[0]["TransMode"], 3);
  EXPECT_NE(place_.run({"classes"}).out.find("SrvRptUpdate"), std::string::npos);
}

TEST_F(CommandLineTest, DescribesParametersDirectionsAndDefaults) {
  const auto json = Json::parse(place_.run({"describe", "--json", "srvrptretrieve.getrptviaName"}).out);
  ASSERT_EQ(json["methods"].size(), 1U);
  const auto& parameters = json["methods"][0]["parameters"];
  EXPECT_EQ(parameters[2].dump(), R"({"name":"vPlx","type":"variant","direction":"in/out","optional":false})");
  EXPECT_EQ(parameters[4].dump(), R"({"name":"lRptType","type":"int32","direction":"in","optional":true,"default":1})");
  EXPECT_EQ(json["methods"][0]["result"], "boolean");
  EXPECT_NE(place_.run({"describe", "SrvRptRetrieve"}).out.find("GetRptPlx"), std::string::npos);
}

TEST_F(CommandLineTest, ADocumentComesBackAsItWasSaved) {
  initialise();
  const Outcome saved = save();
  ASSERT_EQ(saved.status, 0) << saved.out;
  const auto id = Json::parse(saved.out)["result"].get<int>();
  const Outcome fetched = call("SrvRptRetrieve.GetRptPlx", {"lRptID=" + std::to_string(id)});
  EXPECT_EQ(fetched.status, 0);
  const auto json = Json::parse(fetched.out);
  EXPECT_EQ(json["result"], true);
  EXPECT_EQ(json["out"]["vPlx"].dump(), R"({"$bytes":"AP8B"})");
  EXPECT_TRUE(json["out"].contains("vPrinterBuf"));
  EXPECT_FALSE(json["out"].contains("sDsn"));
  EXPECT_EQ(json.begin().key(), "result");
}

TEST_F(CommandLineTest, TheEnvironmentNamesTheDataSource) {
  initialise();
  setenv("TOLVANE_DSN", place_.dsn().c_str(), 1);
  EXPECT_EQ(place_.run({"call", "SrvRptRetrieve.GetRptPlx", "lRptID=1"}).status, 0);
  unsetenv("TOLVANE_DSN");
}

TEST_F(CommandLineTest, APropertyIsReadWithoutADataSource) {
  EXPECT_EQ(place_.run({"call", "SrvRptUpdate.TransMode"}).out, "{\"result\":2,\"out\":{}}\n");
}

TEST_F(CommandLineTest, ARaisedErrorIsPrintedAsJsonAndEndsWithOne) {
  initialise();
  const auto error = errorOf(save("\"  \""));
  EXPECT_EQ(error["number"], "0x80044047");
  EXPECT_EQ(error["description"], "报表名称不得为空字符串");
  EXPECT_EQ(value("select count(*) from t_Rpt_Content"), 0);
}

TEST_F(CommandLineTest, AMissingArgumentIs449) {
  initialise();
  EXPECT_EQ(errorOf(call("SrvRptRetrieve.GetRptPlx"))["number"], "0x800A01C1");
}

TEST_F(CommandLineTest, AnArgumentOfTheWrongKindIs13AndOneTooLargeIs6) {
  initialise();
  const Outcome wrong = call("SrvRptRetrieve.GetRptPlx", {"lRptID=\"abc\""});
  EXPECT_EQ(errorOf(wrong)["number"], "0x800A000D");
  EXPECT_NE(wrong.err.find("lRptID"), std::string::npos);
  EXPECT_EQ(errorOf(call("SrvRptRetrieve.GetRptPlx", {"lRptID=1e10"}))["number"], "0x800A0006");
  EXPECT_EQ(errorOf(call("SrvRptRetrieve.GetRptPlx", {"lRptID=null"}))["number"], "0x800A000D");
}

TEST_F(CommandLineTest, UnknownParametersAndBadJsonAreUsage) {
  initialise();
  EXPECT_EQ(call("SrvRptRetrieve.GetRptPlx", {"lRptID=1", "lExtra=1"}).status, 2);
  EXPECT_EQ(call("SrvRptRetrieve.GetRptPlx", {"lRptID={"}).status, 2);
  EXPECT_EQ(call("SrvRptRetrieve.GetRptPlx", {"lRptID=1", "lRptID=1"}).status, 2);
  EXPECT_EQ(save("\"\xD6\xD0\"").status, 2);
}

TEST_F(CommandLineTest, AMissingAccountSetIsNotCreated) {
  const auto error = errorOf(call("SrvRptRetrieve.GetRptPlx", {"lRptID=1"}));
  EXPECT_NE(error["description"].get<std::string>().find("a.db"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(place_.path("a.db")));
}

TEST_F(CommandLineTest, AFileThatIsNoAccountSetIsRefusedAndLeftAlone) {
  for (const std::string& content : {std::string("not a database"), std::string()}) {
    place_.write("a.db", content);
    EXPECT_NE(errorOf(call("SrvRptRetrieve.GetRptPlx", {"lRptID=1"}))["description"], "");
    EXPECT_EQ(place_.read("a.db"), content);
  }
}

TEST_F(CommandLineTest, AUserWithoutARowIsRefusedByNumber) {
  initialise();
  const auto error = errorOf(call("SrvRptRetrieve.GetRptPlx", {"lRptID=1"}, ";UserID=99"));
  EXPECT_EQ(error["number"], "0x80040E4D");
  EXPECT_NE(error["description"].get<std::string>().find("User 99"), std::string::npos);
}

TEST_F(CommandLineTest, MalformedDataSourcesAreRefused) {
  initialise();
  for (const char* more : {";UserID=me", ";Language=fr", ";Engine=none", ";x"}) {
    EXPECT_EQ(errorOf(call("SrvRptRetrieve.GetRptPlx", {"lRptID=1"}, more))["number"], "0x800A0005") << more;
  }
}

TEST_F(CommandLineTest, ATraceShowsEveryOperationOfTheService) {
  initialise();
  const std::string trace = place_.path("trace.jsonl");
  EXPECT_EQ(call("SrvRptRetrieve.GetRptPlx", {"lRptID=1", "--trace", trace}).status, 0);
  std::vector<std::string> operations;
  std::istringstream lines(place_.read("trace.jsonl"));
  for (std::string line; std::getline(lines, line);) operations.push_back(Json::parse(line)["op"]);
  const std::vector<std::string> frame{"GetContext",     "GetLoginInfo", "CompleteWork",  "GetContext",
                                       "OpenDataSource", "GetLoginInfo", "GetConnection", "Execute"};
  ASSERT_GE(operations.size(), frame.size());
  EXPECT_EQ(std::vector<std::string>(operations.begin(), operations.begin() + 8), frame);
}

TEST_F(CommandLineTest, ATraceGoesToStandardErrorOnRequest) {
  initialise();
  const Outcome outcome = call("SrvRptRetrieve.GetRptPlx", {"lRptID=1", "--trace", "-"});
  EXPECT_TRUE(outcome.err.starts_with("{\"op\":\"GetContext\"}\n")) << outcome.err;
  EXPECT_TRUE(Json::accept(outcome.out));
}

TEST_F(CommandLineTest, TablesAreForPeople) {
  initialise();
  ASSERT_EQ(save().status, 0);
  const Outcome outcome = call("SrvRptRetrieve.GetRptPlx", {"lRptID=1", "--table"});
  EXPECT_NE(outcome.out.find("result: True\n"), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.out.find("vPlx: <3 bytes>\n"), std::string::npos) << outcome.out;
}

TEST_F(CommandLineTest, SqlPrintsRowsAsTablesAndAsRecordSets) {
  initialise();
  const Outcome table =
      place_.run({"sql", "--dsn", place_.dsn(), "select FUserID, FName from t_User where FUserID = 1"});
  EXPECT_EQ(table.out, "FUserID  FName\n-------  -------------\n      1  Administrator\n(1 row)\n");
  EXPECT_EQ(sql("select FUserID from t_User where FUserID = 1").out,
            "{\"$recordset\":{\"fields\":[{\"name\":\"FUserID\",\"type\":3}],\"rows\":[[1]]}}\n");
}

TEST_F(CommandLineTest, SqlRunsTheBatchesOfAFile) {
  initialise();
  place_.write("script.sql",
               "update t_User set FName = 'x' where FUserID = 1\nGO\nselect FName from t_User where "
               "FUserID = 1\nGO\nselect 2 as n\n");
  const Outcome outcome = place_.run({"sql", "--dsn", place_.dsn(), "--file", place_.path("script.sql")});
  EXPECT_EQ(outcome.out, "FName\n-----\nx\n(1 row)\nn\n-\n2\n(1 row)\n") << outcome.err;
}

TEST_F(CommandLineTest, SqlThatFailsEndsWithOne) {
  initialise();
  const Outcome outcome = sql("select * from t_Nothing");
  EXPECT_EQ(errorOf(outcome)["number"], "0x80040E37");
  EXPECT_NE(outcome.err.find("t_Nothing"), std::string::npos);
  EXPECT_EQ(place_.run({"sql", "--dsn", place_.dsn(), "select 1", "--file", "x"}).status, 2);
  EXPECT_EQ(place_.run({"sql", "--dsn", place_.dsn(), "--file", place_.path("none.sql")}).status, 2);
}

TEST_F(CommandLineTest, PasswordsAreShownOnRequestOnly) {
  initialise();
  sql("insert into t_Rpt_MultiAcctEntry (FUserID, FName, FMUserName, FMPassWord) values (1, 'a', 'u', 'secret')");
  EXPECT_EQ(value("select FMPassWord from t_Rpt_MultiAcctEntry"), "***");
  const Outcome open = place_.run({"sql", "--show-secrets", "--dsn", place_.dsn(),
                                   "select FMPassWord from "
                                   "t_Rpt_MultiAcctEntry"});
  EXPECT_NE(open.out.find("secret"), std::string::npos);
}

TEST_F(CommandLineTest, InitRefusesADatabaseThatIsThere) {
  initialise();
  const std::string before = place_.read("a.db");
  const Outcome again = place_.run({"init", "--dsn", place_.dsn()});
  EXPECT_EQ(again.status, 1);
  EXPECT_NE(again.err.find("a.db"), std::string::npos);
  EXPECT_EQ(place_.read("a.db"), before);
}

TEST_F(CommandLineTest, InitThatFailsLeavesNothing) {
  const Outcome outcome = place_.run({"init", "--dsn", place_.dsn(), "--sample=none"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.err.find("demo"), std::string::npos) << outcome.err;
  EXPECT_FALSE(std::filesystem::exists(place_.path("a.db")));
  EXPECT_FALSE(std::filesystem::exists(place_.path("a.db-wal")));
}

TEST_F(CommandLineTest, TheDemonstrationHasReportsWithDocuments) {
  initialise({"--sample"});
  EXPECT_GT(value("select count(*) from t_Rpt_Content"), 20);
  EXPECT_EQ(value("select count(*) from t_Rpt_Content where FRptName = N'利润月报' and FRptData is null"), 0);
}

TEST_F(CommandLineTest, TheOlderLayoutIsASampleOfItsOwn) {
  initialise({"--sample=older"});
  EXPECT_GT(value("select count(*) from t_Rpt_CsRptGroup"), 0);
}

}  // namespace
}  // namespace tolvane::host
