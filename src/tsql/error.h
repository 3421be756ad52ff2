#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace tolvane::tsql {

// How far an error reaches, as SQL Server's severity and number decide it.
enum class ErrorReach {
  Statement,  // the statement is undone, the next one of the batch runs
  Batch,      // the statement is undone and the rest of the batch does not run
};

// An error with SQL Server's own number and words. Thrown by the compiler and by the run-time functions; the embedded
// layer turns it into ADO's numbers. `what()` is the message as SQL Server writes it, without "Msg n, Level n".
class SqlError : public std::runtime_error {
 public:
  SqlError(int number, std::string message, int line = 0, std::string word = {})
      : std::runtime_error(std::move(message)), number_(number), line_(line), word_(std::move(word)) {}

  int number() const { return number_; }             // SQL Server's message number: 102, 207, 245, ...
  int line() const { return line_; }                 // 1-based line in the batch; 0 where it is not known
  const std::string& word() const { return word_; }  // the word of the text that the error is about, or empty
  // Whether the batch goes on after this error (512, 515, 2627, 547, 8134 ...) or ends (245, 208, 8114 ...).
  ErrorReach reach() const;

 private:
  int number_;
  int line_;
  std::string word_;
};

}  // namespace tolvane::tsql
