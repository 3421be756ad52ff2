#include "embedded/errors.h"

#include <sqlite3.h>

#include <string>

namespace tolvane::embedded {
namespace {

std::string storageSentence(std::string_view dataSource, int resultCode, std::string_view message) {
  const std::string set = "The account set \"" + std::string(dataSource) + "\" ";
  switch (resultCode & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return set +
             "is locked by another program for too long. Wait until that program has finished, or end it, and try "
             "again.";
    case SQLITE_FULL:
      return set + "cannot grow: the disk is full. Free some space and try again; nothing of this statement was kept.";
    case SQLITE_READONLY:
    case SQLITE_PERM:
      return set + "cannot be written: the file or its folder is read-only. Allow writing to both and try again.";
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return set + "is damaged. Restore it from a backup.";
    case SQLITE_IOERR:
    case SQLITE_CANTOPEN:
      return set + "cannot be read or written. Check the disk, the folder and their permissions, and try again.";
    case SQLITE_NOMEM:
      return set + "needs more memory for this statement than there is.";
    case SQLITE_TOOBIG:
      return "The value or statement is longer than the account set \"" + std::string(dataSource) + "\" can hold.";
    default:
      return set + "could not run the statement: " + std::string(message) + ".";
  }
}

}  // namespace

AutomationError toAutomationError(const tsql::SqlError& error, std::string_view sql) {
  AutomationError result(oledbNumber(error.number()), std::string(databaseSource), error.message());
  result.withDatabase({std::string(sql), std::string(sqlState(error.number())), error.number()});
  return result;
}

AutomationError storageError(std::string_view dataSource, int resultCode, std::string_view message,
                             std::string_view sql) {
  AutomationError result(oledb::unspecified, std::string(databaseSource),
                         storageSentence(dataSource, resultCode, message));
  result.withDatabase({std::string(sql), "HY000", 0});
  return result;
}

AutomationError openError(std::string_view dataSource, std::string_view why) {
  return {oledb::unspecified, std::string(databaseSource),
          "Cannot open the account set \"" + std::string(dataSource) + "\": " + std::string(why)};
}

}  // namespace tolvane::embedded
