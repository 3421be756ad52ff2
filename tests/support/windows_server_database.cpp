#include "platform/error.h"
#include "support/server_database.h"

namespace tolvane::test {

// The way to a server is not built for Windows, so no test has a database there.
bool ServerDatabase::isNamed() {
  return false;
}

ServerDatabase::ServerDatabase() {
  raise(RuntimeError::cannotCreateObject);
}

ServerDatabase::~ServerDatabase() = default;

}  // namespace tolvane::test
