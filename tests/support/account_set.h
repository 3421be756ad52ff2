// A fresh embedded account set, and calls on it exactly as a host makes them: for tests of what a method does.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "frame/method_table.h"
#include "platform/data_access.h"
#include "platform/error.h"
#include "platform/platform.h"
#include "standalone/data_sources.h"
#include "support/server_database.h"

namespace tolvane::test {

/// The engines that an account set of the tests may be on.
[[nodiscard]] standalone::Engines engines();

/// Arguments by name; the data-source name is filled in.
using Named = std::vector<std::pair<std::string, Value>>;

/// What a call left behind.
struct Outcome {
  Value result;
  std::map<std::string, Value> out;  ///< the in/out parameters by name, the data-source name left out
};

/// A temporary account set with the shipped schema and nothing else, gone with the object: a file, or a database of its
/// own on the server that TOLVANE_TEST_DSN names.
class AccountSet {
 public:
  AccountSet();
  ~AccountSet();
  AccountSet(const AccountSet&) = delete;
  AccountSet& operator=(const AccountSet&) = delete;

  // Who calls: the administrator, in Chinese, unless the test says otherwise.
  AccountSet& as(std::int32_t userID);
  AccountSet& in(std::string_view language);
  /// Adds a user who is no administrator and is the caller from here on.
  AccountSet& asNewUser(std::int32_t userID);
  [[nodiscard]] std::string dsn() const;
  [[nodiscard]] const std::string& path() const { return path_; }

  /// Calls "Class.Method" in a transaction of its own, as the class asks for. In/out parameters that are not named
  /// start empty. Raises what the call raises.
  Outcome call(std::string_view method, Named arguments = {});
  /// The result alone.
  Value result(std::string_view method, Named arguments = {}) { return call(method, std::move(arguments)).result; }
  /// The error that the call must raise; a test failure when it returns.
  AutomationError error(std::string_view method, Named arguments = {});

  /// Runs SQL beside the services.
  void sql(const std::string& text);
  /// The first column of the first row; Empty without rows.
  Value value(const std::string& text);
  /// All rows as text: columns joined by "|", nulls as "NULL", documents as "<n bytes>".
  std::vector<std::string> rows(const std::string& text);

 private:
  struct Parts;
  [[nodiscard]] std::shared_ptr<Connection> connection() const;

  std::string path_;
  std::string base_;  // the data source without the caller
  std::int32_t userID_ = 1;
  std::string language_ = "chs";
  std::unique_ptr<ServerDatabase> server_;  // where one is named; let go of after the connections to it
  std::unique_ptr<Parts> parts_;
};

/// A bag as callers pass it.
[[nodiscard]] Value bag(const Named& entries);
/// A list of bags.
[[nodiscard]] Value list(const std::vector<Value>& items);
[[nodiscard]] Value bytes(std::string_view content);
[[nodiscard]] Value int32Array(std::vector<std::int32_t> elements, std::int32_t lower = 1);

/// A row list or record set as rows of text, in the form of AccountSet::rows().
[[nodiscard]] std::vector<std::string> rowsOf(const Value& rowListOrRecordset);
/// One column of a row list or record set, as text.
[[nodiscard]] std::vector<std::string> column(const Value& rowListOrRecordset, const std::string& name);

/// "0x80044047 Source: Description", the form in which tests expect errors.
[[nodiscard]] std::string shown(const AutomationError& error);

}  // namespace tolvane::test
