#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tolvane::tsql::testing {

// The compiled language on a database in memory: enough of an interpreter to see what statements answer.
class EngineHarness {
 public:
  EngineHarness();
  ~EngineHarness();
  EngineHarness(const EngineHarness&) = delete;
  EngineHarness& operator=(const EngineHarness&) = delete;

  // Runs a batch. The result is what the caller would see, line by line: for each query its rows ("1 | text | NULL"),
  // for PRINT the message, for an error "error 245: words" (keys and constraints, whose words the data layer makes: the
  // number alone); errors that end only their statement do not stop the batch.
  std::string run(std::string_view batch);
  // "Name type" of each column of the batch's first query, or the error.
  std::string columns(std::string_view batch);
  // The SQLite text of the batch's statements, for tests of what is written.
  std::string texts(std::string_view batch);
  // Runs plain SQLite text and gives its rows.
  std::string sqlite(const std::string& text);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace tolvane::tsql::testing
