// A new account set for a test, in a folder of its own.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "embedded/embedded_connection.h"
#include "embedded/embedded_engine.h"
#include "platform/conversions.h"
#include "platform/error.h"

namespace tolvane::embedded {

/// Runs `work` and gives the automation error that it must end with.
template <typename Work>
AutomationError errorOf(Work&& work) {
  try {
    work();
  } catch (const AutomationError& error) {
    return error;
  }
  ADD_FAILURE() << "no error was raised";
  return {0, "", ""};
}

class TestFolder {
 public:
  TestFolder() {
    std::random_device random;
    do {
      path_ = std::filesystem::path(::testing::TempDir()) / ("account_set_" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
  }
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;
  ~TestFolder() {
    // Windows removes no file that is open.
    EmbeddedEngine::closeUnused();
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

class AccountSetTest : public ::testing::Test {
 protected:
  AccountSetTest() {
    EmbeddedEngine::createAccountSet(file());
    connection_ = open();
  }

  [[nodiscard]] std::filesystem::path file() const { return folder_.path() / "set.ais"; }

  [[nodiscard]] std::shared_ptr<EngineConnection> open(
      std::chrono::milliseconds timeout = std::chrono::seconds(10)) const {
    return EmbeddedEngine({timeout}).open(DataSourceName::parse("Database=" + file().string()));
  }

  std::shared_ptr<Recordset> run(const std::string& sql) { return connection_->execute(sql); }

  /// The first value of the first row, as text; "NULL" for Null.
  std::string scalar(const std::string& sql) {
    const auto rows = run(sql);
    if (rows->eof()) return "no row";
    const auto value = rows->value(std::size_t{0});
    return value.isNull() ? "NULL" : toText(value);
  }

  [[nodiscard]] Session& session() { return dynamic_cast<EmbeddedConnection&>(*connection_).session(); }

  TestFolder folder_;
  std::shared_ptr<EngineConnection> connection_;
};

}  // namespace tolvane::embedded
