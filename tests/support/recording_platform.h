// A platform that writes down what is asked of it and answers what the test has laid out: for tests of the exact order,
// words and cursors of a method.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/error.h"
#include "platform/platform.h"

namespace tolvane::test {

/// The answer to a statement.
struct Rows {
  std::vector<std::string> columns;
  std::vector<std::vector<Value>> rows;
};

/// Every operation is one line of `log`: its name, a blank, its arguments. Statements stand as they were sent:
///
///     CompleteWork | BeginWork | GetContext | OpenDataSource x | GetLoginInfo | GetConnection
///     Execute Select ... | Open 1 3 Select ... (cursor, lock) | Command 1 0 Select ... [202 20 '1001'] (type,
///     time-out, parameters) AddNew | Set FYear=2012 | AppendChunk FBinaryImg 512 | Update | Filter FName = 'x' | Close
///     | Detach | CursorLocation 3 LanguageCode | CurrentUserID | UserKey | Security.GetCurrentUserID | IsAdministrator
///     | AccessCheck 50 0 134217728 source LoadString 查看 | Unload | RefreshSubFunc text 7 [701 新建报表...; 702 ...]
///     | RefreshDetailFunc text 7 [...]
class RecordingPlatform : public Platform {
 public:
  RecordingPlatform();
  ~RecordingPlatform() override;

  // What the test lays out.
  std::string language = "chs";
  std::int32_t userID = 1;
  bool administrator = true;
  bool access = true;
  /// Translations by Chinese text; a text without one comes back with the language in front ("en:查看").
  std::map<std::string, std::string> translations;
  /// The next statement that begins with `start` is answered with `rows`; several answers to one start are given in
  /// turn. Statements without an answer give a set without rows.
  void answer(const std::string& start, Rows rows);
  /// The next operation whose line begins with `start` fails with `error`.
  void fail(const std::string& start, const AutomationError& error);

  // What the test reads.
  std::vector<std::string> log;
  /// The lines from the last GetConnection on: the method's own work without the frame around it.
  [[nodiscard]] std::vector<std::string> work() const;
  /// The statements alone, in order.
  [[nodiscard]] std::vector<std::string> statements() const;

  // Platform
  [[nodiscard]] std::shared_ptr<GlobalApplication> application() override;
  [[nodiscard]] std::shared_ptr<Security> newSecurity() override;
  [[nodiscard]] std::shared_ptr<ResourceLoader> newResourceLoader() override;
  [[nodiscard]] std::shared_ptr<DataFlow> newDataFlow(const std::shared_ptr<Context>& context) override;
  [[nodiscard]] std::shared_ptr<PropertyBag> newPropertyBag() override;
  [[nodiscard]] std::shared_ptr<ItemList> newItemList() override;
  [[nodiscard]] Files& files() override;
  [[nodiscard]] AnsiCodePage& ansi() override;
  [[nodiscard]] double random() override { return 0.5; }
  [[nodiscard]] Date today() override;

  // For the recording objects.
  void record(std::string line);
  [[nodiscard]] Rows answerTo(const std::string& statement);

 private:
  struct Failure {
    std::string start;
    AutomationError error;
  };
  std::deque<std::pair<std::string, Rows>> answers_;
  std::deque<Failure> failures_;
  std::unique_ptr<Files> files_;
  std::unique_ptr<AnsiCodePage> ansi_;
};

}  // namespace tolvane::test
