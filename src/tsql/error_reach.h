#pragma once

#include "tsql/sql_error.h"

namespace tolvane::tsql {

// How far an error reaches, as SQL Server decides it by number.
enum class ErrorReach {
  Statement,  // the statement is undone, the next one of the batch runs
  Batch,      // the statement is undone and the rest of the batch does not run
};

ErrorReach reachOf(const SqlError& error);

// Whether a handler around the statement sees the error, which came up when the waiting statement was compiled at last:
// definitions look for their tables when they run, everything else is as if it had been compiled with the handler.
bool isRaisedByRunning(const SqlError& error);

// Whether the error, which ends the batch, also undoes the transaction that is open: a value that cannot be converted
// does.
bool undoesTransaction(const SqlError& error);

}  // namespace tolvane::tsql
