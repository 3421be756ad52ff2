#include "embedded/batch_run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "fuzzed_batches.h"
#include "tsql/sql_error.h"

namespace tolvane::embedded {
namespace {

constexpr std::size_t mutants = 4000;

// The statements of the case files of the language.
std::vector<std::string> statements() {
  std::vector<std::string> all;
  const auto folder = std::filesystem::path(TOLVANE_SOURCE_DIR) / "tests" / "tsql" / "cases";
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().filename() == "conversions.test") continue;  // hundreds of the same form
    std::ifstream file(entry.path());
    std::string statement;
    bool answer = false;
    for (std::string line; std::getline(file, line);) {
      if (line == "====") {
        all.push_back(statement);
        statement.clear();
        answer = false;
      } else if (line == "----") {
        answer = true;
      } else if (!answer) {
        statement += line + "\n";
      }
    }
    all.push_back(statement);
  }
  std::sort(all.begin(), all.end());  // folders are read in no order
  return all;
}

TEST(BatchRun, TheCharacterZeroNeverReachesSqliteInNamesOrDefinitions) {
  using namespace std::string_literals;
  fuzz::FuzzedAccountSet set;
  for (const auto& batch :
       {"create table [a\0b] (id int)"s, "select 1 as 'a\0b' into #t"s, "select 1 as [a\0b]"s, "select 'a\0b' = 1"s,
        "select 1 as \"a\0b\""s, "create table z (a int default 'a\0b')"s,
        "create table z (a varchar(5) default 'a\0b')"s, "create table z (a varchar(5) check (a <> 'a\0b'))"s}) {
    const auto found = set.run(batch);
    EXPECT_FALSE(found) << *found;
  }
}

TEST(BatchRun, MutatedStatementsAreAnsweredOrRefusedButNeverReachSqliteWrong) {
  fuzz::FuzzedAccountSet set;
  std::minstd_rand random(20120315);
  const auto all = statements();
  for (std::size_t i = 0; i < mutants; ++i) {
    std::string batch = all[i % all.size()];
    try {
      for (int times = 0; times < 3; ++times) batch = fuzz::mutated(batch, random);
    } catch (const tsql::SqlError&) {
      continue;  // no longer made of tokens
    }
    const auto found = set.run(batch);
    EXPECT_FALSE(found) << *found << "\n" << batch;
  }
}

}  // namespace
}  // namespace tolvane::embedded
