#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/case_file.h"
#include "tsql/engine_harness.h"
#include "tsql/script.h"

// The files of tests/tsql/cases. All blocks of a file run on one database.
namespace tolvane::tsql::testing {
namespace {

std::string answerTo(EngineHarness& engine, const std::string& statement) {
  if (!statement.starts_with("run ")) return engine.run(statement);
  std::ifstream input(std::filesystem::path(TOLVANE_SOURCE_DIR) / statement.substr(4, statement.find('\n') - 4));
  std::stringstream script;
  script << input.rdbuf();
  const std::string text = script.str();
  std::string answer = text.empty() ? "no such script\n" : "";
  for (const auto batch : splitScript(text)) answer += engine.run(batch);
  return answer;
}

class Cases : public ::testing::TestWithParam<std::string> {};

TEST_P(Cases, AnswerAsWritten) {
  EngineHarness engine;
  const auto blocks = test::casesOf(std::filesystem::path(TOLVANE_SOURCE_DIR) / "tests/tsql/cases" / GetParam());
  ASSERT_FALSE(blocks.empty());
  for (const test::Case& block : blocks) {
    EXPECT_EQ(answerTo(engine, block.statement), block.expected) << GetParam() << ":" << block.line << "\n"
                                                                 << block.statement;
  }
}

std::vector<std::string> files() {
  std::vector<std::string> names;
  for (const auto& entry :
       std::filesystem::directory_iterator(std::filesystem::path(TOLVANE_SOURCE_DIR) / "tests/tsql/cases")) {
    if (entry.path().extension() == ".test") names.push_back(entry.path().filename().string());
  }
  std::ranges::sort(names);
  return names;
}

INSTANTIATE_TEST_SUITE_P(Files, Cases, ::testing::ValuesIn(files()),
                         [](const auto& file) { return file.param.substr(0, file.param.size() - 5); });

}  // namespace
}  // namespace tolvane::tsql::testing
