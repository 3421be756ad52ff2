#include "tsql/error_reach.h"

#include <algorithm>
#include <array>

namespace tolvane::tsql {

ErrorReach reachOf(const SqlError& error) {
  // The errors after which SQL Server runs the next statement of the batch; all others end it.
  if (error.thrown()) return ErrorReach::Batch;
  static constexpr std::array statementErrors{
      220,  232,  234,  237,  242,  266,  281,  512,   515,   517,   530,   535,   536,   537,   544,   545,  547,
      628,  1505, 2601, 2627, 2705, 2714, 2732, 2742,  2754,  2786,  2787,  2812,  3623,  3701,  3726,  3902, 3903,
      4712, 6401, 8101, 8115, 8134, 8152, 9829, 16905, 16911, 16915, 16916, 16917, 16922, 16924, 18054, 50000};
  const bool goesOn = std::ranges::find(statementErrors, error.number()) != statementErrors.end();
  return goesOn ? ErrorReach::Statement : ErrorReach::Batch;
}

bool isRaisedByRunning(const SqlError& error) {
  static constexpr std::array definitions{1088, 4701, 4902};
  return std::ranges::find(definitions, error.number()) != definitions.end();
}

bool undoesTransaction(const SqlError& error) {
  static constexpr std::array conversions{235, 241, 244, 245, 248, 293, 295, 8114, 8169};
  return !error.thrown() && std::ranges::find(conversions, error.number()) != conversions.end();
}

}  // namespace tolvane::tsql
