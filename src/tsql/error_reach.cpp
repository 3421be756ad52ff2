#include "tsql/error_reach.h"

#include <algorithm>
#include <array>

namespace tolvane::tsql {

ErrorReach reachOf(const SqlError& error) {
  // The errors after which SQL Server runs the next statement of the batch; all others end it.
  static constexpr std::array statementErrors{220,  232,  512,  515,  544,  547,  1505, 2601, 2627, 2705,
                                              2714, 3701, 3902, 3903, 8101, 8115, 8134, 8152, 50000};
  const bool goesOn = std::ranges::find(statementErrors, error.number()) != statementErrors.end();
  return goesOn ? ErrorReach::Statement : ErrorReach::Batch;
}

}  // namespace tolvane::tsql
