#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <string_view>

#include "odbc/odbc_engine.h"
#include "platform/engine.h"
#include "platform/error.h"
#include "support/server_database.h"

namespace tolvane::test {
namespace {

const char* namedServer() {
  return std::getenv("TOLVANE_TEST_DSN");
}

bool sameKey(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
}

// The server's data source, leading to another database.
std::string withDatabase(const DataSourceName& server, const std::string& database) {
  constexpr std::array<std::string_view, 3> ofTheCall{"Database", "UserID", "Language"};
  std::string text = "Database=" + database;
  for (const auto& [key, value] : server.pairs()) {
    if (std::any_of(ofTheCall.begin(), ofTheCall.end(), [&k = key](auto other) { return sameKey(k, other); })) continue;
    text += ";" + key + "={";
    for (const char c : value) text += c == '}' ? std::string("}}") : std::string(1, c);
    text += "}";
  }
  return text;
}

void onServer(const std::string& sql) {
  odbc::OdbcEngine().open(DataSourceName::parse(namedServer()))->execute(sql);
}

// Some servers have one collation for all their databases and refuse the word.
void makeDatabase(const std::string& name) {
  const std::string create = "Create Database [" + name + "]";
  try {
    onServer(create + " Collate Chinese_PRC_CI_AS");
  } catch (const AutomationError&) {
    onServer(create);
  }
}

}  // namespace

bool ServerDatabase::isNamed() {
  return namedServer() != nullptr;
}

ServerDatabase::ServerDatabase() {
  static int count = 0;
  name_ = "tolvane-" + std::to_string(::getpid()) + "-" + std::to_string(++count);
  dsn_ = withDatabase(DataSourceName::parse(namedServer()), name_);
  makeDatabase(name_);
}

ServerDatabase::~ServerDatabase() {
  try {
    // A connection that is kept for the database would keep it from being dropped.
    odbc::OdbcEngine::closeIdle();
    onServer("Drop Database [" + name_ + "]");
  } catch (const AutomationError& error) {
    ADD_FAILURE() << "the test's database is left behind: " << error.description();
  }
}

}  // namespace tolvane::test
