#include "tsql/language_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "tsql/date_part.h"
#include "tsql/date_text.h"
#include "tsql/engine_harness.h"
#include "tsql/function_table.h"
#include "tsql/functions.h"
#include "tsql/type.h"

// Walks the tables of the engine: a row that nothing tries is a failure here.
namespace tolvane::tsql::testing {
namespace {

std::string allCases() {
  std::string text;
  for (const auto& entry :
       std::filesystem::directory_iterator(std::filesystem::path(TOLVANE_SOURCE_DIR) / "tests/tsql/cases")) {
    std::ifstream file(entry.path());
    std::stringstream content;
    content << file.rdbuf();
    text += content.str();
  }
  std::ranges::transform(text, text.begin(),
                         [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  return text;
}

std::string lowered(std::string_view name) {
  std::string text(name);
  std::ranges::transform(text, text.begin(),
                         [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  return text;
}

class Tables : public ::testing::Test {
 protected:
  Tables() { engine_.run("create table t (a int not null primary key, b nvarchar(20), d datetime, m money)"); }
  EngineHarness engine_;
};

TEST_F(Tables, ExamplesOfWhatIsTakenCompile) {
  for (const LanguageRow& row : supportedConstructs()) {
    const std::string answer = engine_.columns(row.example);
    EXPECT_FALSE(answer.starts_with("error")) << row.example << "\n" << answer;
  }
}

TEST_F(Tables, ExamplesOfWhatIsRefusedNameTheWord) {
  for (const LanguageRow& row : refusedConstructs()) {
    const std::string answer = engine_.columns(row.example);
    EXPECT_TRUE(answer.starts_with("error 40517: '")) << row.example << "\n" << answer;
  }
}

TEST_F(Tables, FunctionsThatAreRefusedAreNamed) {
  for (const std::string_view name : refusedFunctions()) {
    if (findFunctionRow(name) != nullptr) continue;
    const std::string answer = engine_.columns("select " + std::string(name) + "(a) from t");
    EXPECT_TRUE(answer.starts_with("error 40517: '" + std::string(name) + "' in line 1")) << answer;
  }
}

TEST(TablesOfCases, TryEveryFunction) {
  const std::string cases = allCases();
  for (const FunctionRow& row : functionRows()) {
    const bool called = cases.find(lowered(row.name) + "(") != std::string::npos;
    EXPECT_TRUE(called || (row.name == "GETDATE" && cases.find("current_timestamp") != std::string::npos)) << row.name;
  }
  for (const AggregateRow& row : aggregateRows()) {
    EXPECT_NE(cases.find(lowered(row.name) + "("), std::string::npos) << row.name;
  }
}

TEST(TablesOfCases, TryEveryDatePart) {
  const std::string cases = allCases();
  for (const DatePartName& row : datePartNames()) {
    EXPECT_NE(cases.find("(" + lowered(row.name) + ","), std::string::npos) << row.name;
  }
}

TEST(TablesOfCases, TryEveryType) {
  const std::string cases = allCases();
  for (int kind = 1; kind < kindCount; ++kind) {
    const auto& row = typeRow(static_cast<TypeKind>(kind));
    if (row.kind == TypeKind::Timestamp) continue;  // refused
    EXPECT_NE(cases.find(" " + std::string(row.name)), std::string::npos) << row.name;
  }
}

TEST(TablesOfCases, TryEveryOperator) {
  const std::string cases = allCases();
  for (const OperatorRow& row : operatorRows()) {
    const std::string symbol(row.symbol);
    const std::string use = symbol == "~" ? "~ 2" : "7 " + symbol + " 2";
    EXPECT_NE(cases.find(use), std::string::npos) << symbol;
  }
}

TEST(TablesOfCases, TryEveryPairOfTypes) {
  const std::string cases = allCases();
  const auto written = [](const TypeRow& row) {
    if (row.kind == TypeKind::Decimal) return std::string("decimal(10,2)");
    if (row.kind == TypeKind::Binary) return std::string("binary(16)");
    return std::string(row.name) + (row.takesLength ? "(40)" : "");
  };
  for (int from = 1; from < kindCount; ++from) {
    for (int to = 1; to < kindCount; ++to) {
      const TypeRow& source = typeRow(static_cast<TypeKind>(from));
      const TypeRow& target = typeRow(static_cast<TypeKind>(to));
      if (source.kind == TypeKind::Timestamp || target.kind == TypeKind::Timestamp) continue;  // refused
      const std::string use = " as " + written(source) + ") as " + written(target) + ")";
      EXPECT_NE(cases.find(use), std::string::npos) << use;
    }
  }
}

TEST(TablesOfCases, TryEveryStyleOfDates) {
  const std::string cases = allCases();
  for (const DateStyle& style : dateStyles()) {
    const std::string use = "as datetime), " + std::to_string(style.style) + ")";
    EXPECT_NE(cases.find(use), std::string::npos) << use;
  }
}

TEST(TablesOfFunctions, NameRunTimeFunctionsThatExist) {
  const auto known = [](std::string_view name) {
    return !name.starts_with("ts_") || findFunction(name) != nullptr || findAggregate(name) != nullptr;
  };
  for (const FunctionRow& row : functionRows()) EXPECT_TRUE(known(row.runtime)) << row.runtime;
  for (const AggregateRow& row : aggregateRows()) {
    EXPECT_TRUE(known(row.runtime)) << row.runtime;
    EXPECT_TRUE(known(row.distinct)) << row.distinct;
  }
  for (const OperatorRow& row : operatorRows()) EXPECT_TRUE(known(row.runtime)) << row.runtime;
  for (const std::string_view name : emittedFunctions()) EXPECT_TRUE(known(name)) << name;
}

}  // namespace
}  // namespace tolvane::tsql::testing
