#include "tracing/tracing_platform.h"

#include <gtest/gtest.h>

#include <regex>
#include <sstream>

#include "standalone/fake_engine.h"
#include "standalone/objects.h"
#include "standalone/share_folder.h"
#include "standalone/standalone_platform.h"

namespace tolvane::tracing {
namespace {

using testing::FakeEngine;
using testing::none;
using testing::one;

/// Keeps the lines, without times.
class LineSink : public TraceSink {
 public:
  void write(const std::string& line) override {
    lines.push_back(std::regex_replace(line, std::regex(R"(,"ms":[0-9.e-]+)"), ""));
    timed.push_back(line.find("\"ms\":") != std::string::npos);
  }
  std::vector<std::string> lines;
  std::vector<bool> timed;
};

class TracingPlatformTest : public ::testing::Test {
 protected:
  TracingPlatformTest() {
    engine_->script->answers["Select FUserID"] = one(1);
    engine_->script->answers["bad"] = testing::failing(oledb::errorsInCommand);
  }
  std::shared_ptr<Context> open() {
    auto context = platform_.application()->getContext();
    context->openDataSource("Database=demo.db;PWD=secret");
    sink_.lines.clear();
    sink_.timed.clear();
    return context;
  }

  std::shared_ptr<FakeEngine> engine_ = std::make_shared<FakeEngine>();
  standalone::StandalonePlatform inner_{{{{"sqlite", engine_}}, standalone::findResources(), 936}};
  LineSink sink_;
  TracingPlatform platform_{inner_, sink_};
};

using Lines = std::vector<std::string>;

TEST_F(TracingPlatformTest, ShowsTheFrameOfACall) {
  const auto context = platform_.application()->getContext();
  context->completeWork();
  context->beginWork();
  context->openDataSource("Database=demo.db;PWD=secret");
  (void)context->getLoginInfo();
  (void)context->getConnection();
  EXPECT_EQ(sink_.lines, (Lines{R"({"op":"GetContext"})", R"({"op":"CompleteWork"})", R"({"op":"BeginWork"})",
                                R"({"op":"OpenDataSource","dsn":"Database=demo.db;PWD=***"})",
                                R"({"op":"GetLoginInfo"})", R"({"op":"GetConnection"})"}));
}

TEST_F(TracingPlatformTest, ShowsWhatTheLoginAnswersButNotItsKey) {
  const auto login = open()->getLoginInfo();
  (void)login->languageCode();
  (void)login->currentUserID();
  (void)login->userKey();
  EXPECT_EQ(sink_.lines, (Lines{R"({"op":"GetLoginInfo"})", R"({"op":"LanguageCode","value":"chs"})",
                                R"({"op":"CurrentUserID","value":1})", R"({"op":"UserKey"})"}));
}

TEST_F(TracingPlatformTest, ShowsStatementsExactlyWithTheirTime) {
  const auto connection = open()->getConnection();
  (void)connection->execute("Select  1 ");
  connection->newRecordset()->open("Select 2", CursorType::keyset, LockType::optimistic, -1);
  EXPECT_EQ(sink_.lines[1], R"({"op":"Execute","sql":"Select  1 ","options":-1})");
  EXPECT_EQ(sink_.lines[2], R"({"op":"Open","sql":"Select 2","cursorType":1,"lockType":3,"options":-1})");
  EXPECT_EQ(sink_.timed, (std::vector<bool>{false, true, true}));
}

TEST_F(TracingPlatformTest, ShowsCommandsWithTheirParameters) {
  const auto command = open()->getConnection()->newCommand();
  command->setCommandType(CommandType::text);
  command->setCommandTimeout(0);
  command->setCommandText("Select a = ?");
  command->appendParameter({DataType::varWChar, ParameterDirection::input, 20, "1001"});
  (void)command->execute();
  EXPECT_EQ(sink_.lines[1], R"({"op":"Command","sql":"Select a = ?","commandType":1,"commandTimeout":0,)"
                            R"("params":[{"type":202,"size":20,"value":"1001"}]})");
}

TEST_F(TracingPlatformTest, ShowsWritingThroughARecordSet) {
  const auto rows = open()->getConnection()->newRecordset();
  rows->open("t", CursorType::keyset, LockType::optimistic);
  rows->addNew();
  rows->setValue("FYear", std::int32_t{2012});
  rows->setValue("FData", Bytes(std::vector<std::uint8_t>(3)));
  rows->appendChunk("FBinaryImg", Bytes(std::vector<std::uint8_t>(512)));
  rows->update();
  rows->setFilter("FName = 'x'");
  rows->detach();
  rows->close();
  sink_.lines.erase(sink_.lines.begin(), sink_.lines.begin() + 2);
  EXPECT_EQ(sink_.lines, (Lines{R"({"op":"AddNew"})", R"({"op":"Set","field":"FYear","value":2012})",
                                R"({"op":"Set","field":"FData","value":{"$bytes":3}})",
                                R"({"op":"AppendChunk","field":"FBinaryImg","bytes":512})", R"({"op":"Update"})",
                                R"({"op":"Filter","text":"FName = 'x'"})", R"({"op":"Detach"})", R"({"op":"Close"})"}));
}

TEST_F(TracingPlatformTest, NeverShowsAPassword) {
  const auto connection = open()->getConnection();
  const auto rows = connection->newRecordset();
  rows->setValue("FMPASSWORD", "secret");
  (void)connection->execute("Insert Into t(a,FMPassword)Values(1,'secret')");
  const auto command = connection->newCommand();
  command->setCommandText("Update t Set FMPassWord = ?");
  command->appendParameter({DataType::varWChar, ParameterDirection::input, 20, "secret"});
  (void)command->execute();
  for (const auto& line : sink_.lines) EXPECT_EQ(line.find("secret"), std::string::npos) << line;
  EXPECT_EQ(sink_.lines.size(), 4U);
}

TEST_F(TracingPlatformTest, ShowsPasswordsToWhoAsksForThem) {
  TracingPlatform open(inner_, sink_, true);
  open.application()->getContext()->openDataSource("Database=demo.db;PWD=secret");
  EXPECT_NE(sink_.lines.back().find("PWD=secret"), std::string::npos);
}

TEST_F(TracingPlatformTest, ShowsSecurityWithoutItsOwnStatements) {
  (void)open();
  const auto security = platform_.newSecurity();
  (void)security->getCurrentUserID("1");
  (void)security->isAdministrator("1");
  (void)security->accessCheck("1", 50, 0, 0x8000000, "Tolvane.SrvRptRetrieve");
  EXPECT_EQ(sink_.lines,
            (Lines{R"({"op":"Security.GetCurrentUserID","value":1})", R"({"op":"IsAdministrator","value":true})",
                   R"({"op":"AccessCheck","objectType":50,"objectID":0,"mask":134217728,)"
                   R"("source":"Tolvane.SrvRptRetrieve","value":true})"}));
}

TEST_F(TracingPlatformTest, ShowsTheMenuWithoutTheStatementsThatKeepIt) {
  const auto context = open();
  const auto flow = platform_.newDataFlow(context);
  const auto entry = platform_.newPropertyBag();
  entry->set("FSubFuncID", std::int32_t{701});
  const auto entries = platform_.newItemList();
  entries->add(entry);
  flow->refreshSubFunc("1", 7, entries, true, true);
  flow->refreshDetailFunc("1", 7, entries, true, true);
  EXPECT_EQ(sink_.lines, (Lines{R"({"op":"RefreshSubFunc","arg":"1","system":7,"entries":[{"FSubFuncID":701}]})",
                                R"({"op":"RefreshDetailFunc","arg":"1","system":7,"entries":[{"FSubFuncID":701}]})"}));
}

TEST_F(TracingPlatformTest, ShowsTranslations) {
  const auto loader = platform_.newResourceLoader();
  loader->setResFileBaseName("ebo");
  loader->setLanguageID("en");
  EXPECT_EQ(loader->loadString("查看"), "View");
  loader->unload();
  EXPECT_EQ(sink_.lines,
            (Lines{R"({"op":"LoadString","text":"查看","language":"en","value":"View"})", R"({"op":"Unload"})"}));
}

TEST_F(TracingPlatformTest, ShowsTheNumberOfAFailure) {
  const auto connection = open()->getConnection();
  EXPECT_THROW((void)connection->execute("bad"), AutomationError);
  EXPECT_EQ(sink_.lines.back(), R"({"op":"Execute","sql":"bad","options":-1,"error":"0x80040E14"})");
}

TEST_F(TracingPlatformTest, AStreamSinkWritesLines) {
  std::ostringstream stream;
  StreamSink sink(stream);
  sink.write("{}");
  sink.write("[]");
  EXPECT_EQ(stream.str(), "{}\n[]\n");
}

}  // namespace
}  // namespace tolvane::tracing
