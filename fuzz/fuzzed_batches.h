// Batches for the fuzzer and for the short test beside it: an account set to run them on, what counts as found, and how
// one batch becomes another.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <random>
#include <string>

#include "embedded/embedded_connection.h"

namespace tolvane::fuzz {

/// An account set in a folder of its own, with the tables that the cases use.
class FuzzedAccountSet {
 public:
  FuzzedAccountSet();
  FuzzedAccountSet(const FuzzedAccountSet&) = delete;
  FuzzedAccountSet& operator=(const FuzzedAccountSet&) = delete;
  ~FuzzedAccountSet();

  /// Runs a batch and leaves the tables as they were. Gives what must not be: a text that SQLite itself refuses (the
  /// engine should have), or an exception that is no AutomationError. Nothing runs longer than two seconds.
  [[nodiscard]] std::optional<std::string> run(const std::string& batch);

 private:
  void open();
  void close();

  std::filesystem::path folder_;
  std::unique_ptr<embedded::EmbeddedConnection> connection_;
};

/// The batch with one token taken away, doubled, or another word in or beside its place. Raises tsql::SqlError for a
/// text that is not made of tokens.
[[nodiscard]] std::string mutated(const std::string& batch, std::minstd_rand& random);

}  // namespace tolvane::fuzz
