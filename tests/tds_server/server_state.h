// What all connections of one server share: its databases, how it deviates, what it is to do wrong, what it was asked.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tolvane::tds {

/// In what servers that speak TDS differ from SQL Server itself.
struct Imitation {
  /// Errors come under a number of the server's own, so that drivers report them as 42000.
  bool ownErrorNumbers = false;
  /// Any error undoes the transaction.
  bool errorsUndoTransactions = false;
  /// Names in results and in the catalogue come in small letters.
  bool smallLetters = false;
  /// What an expression without a name is called.
  std::string nameOfExpressions = {};
  bool hidesNotNull = false;
  /// A result does not say which column is the identity; the catalogue does.
  bool hidesIdentity = false;
  /// Long values are cut behind so many bytes unless the client sets another size.
  std::uint32_t textSize = 0x7FFFFFFF;
};

/// Ends the connection when a text with this in it arrives.
struct Fault {
  enum class When { beforeRunning, afterRunning, afterRows };
  std::string onText;
  When when = When::beforeRunning;
  std::uint64_t rows = 0;  ///< of afterRows
};

class ServerState {
 public:
  explicit ServerState(std::filesystem::path folder) : folder_(std::move(folder)) {}

  // Databases, by name in any letter case.
  [[nodiscard]] bool hasDatabase(std::string_view name) const;
  [[nodiscard]] std::filesystem::path fileOf(std::string_view name) const;
  void createDatabase(std::string_view name);
  /// Ends the connections to it and waits until they are gone.
  void dropDatabase(std::string_view name);

  // Connections. `end` is called to end one.
  [[nodiscard]] std::uint64_t enter(std::string_view database, std::function<void()> end);
  void leave(std::uint64_t connection);
  /// Ends them all, from the server's side.
  void endConnections();
  [[nodiscard]] std::size_t connections() const;

  void imitate(const Imitation& imitation);
  [[nodiscard]] Imitation imitation() const;
  void plan(const Fault& fault);
  /// The planned fault if it is for this text; it happens once.
  [[nodiscard]] std::optional<Fault> takeFault(std::string_view text);

  void record(std::string_view text);
  /// The texts that came since this was asked last.
  [[nodiscard]] std::vector<std::string> takeTexts();

 private:
  struct Entry {
    std::string database;
    std::function<void()> end;
  };

  std::filesystem::path folder_;
  mutable std::mutex mutex_;
  std::condition_variable left_;
  std::map<std::uint64_t, Entry> entries_;
  std::uint64_t lastEntry_ = 0;
  Imitation imitation_;
  std::optional<Fault> fault_;
  std::vector<std::string> texts_;
};

}  // namespace tolvane::tds
