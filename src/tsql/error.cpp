#include "tsql/error.h"

#include <algorithm>
#include <array>

namespace tolvane::tsql {

ErrorReach SqlError::reach() const {
  // The errors after which SQL Server runs the next statement of the batch.
  static constexpr std::array<int, 24> statementErrors{{220,  232,  512,  515,  544,  547,  1505, 2601,
                                                        2627, 2705, 2714, 3701, 3902, 3903, 8101, 8115,
                                                        8134, 8152, 8623, 1750, 1767, 1770, 1769, 3621}};
  return std::find(statementErrors.begin(), statementErrors.end(), number_) != statementErrors.end()
             ? ErrorReach::Statement
             : ErrorReach::Batch;
}

}  // namespace tolvane::tsql
