// The report groups of the older layout, and the way of one of them into the tables of today.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "host/call_runner.h"
#include "platform/platform.h"
#include "standalone/session.h"

namespace tolvane::host {

/// A row of t_Rpt_CsRptGroup, with the number of rows that hang on it.
struct OlderGroup {
  std::int32_t id = 0;
  std::string number;
  std::string name;
  std::int32_t cycle = 0;
  std::int32_t baseStyle = 0;
  std::int64_t statements = 0;
  std::int64_t values = 0;

  [[nodiscard]] bool isConverted() const;
  [[nodiscard]] std::int64_t rows() const { return statements + values; }
};

enum class GroupOutcome : std::uint8_t { converted, skipped, refused };
inline constexpr std::size_t groupOutcomeCount = 3;

/// "converted", "skipped", "refused".
[[nodiscard]] std::string_view outcomeName(GroupOutcome outcome);

struct GroupResult {
  GroupOutcome outcome = GroupOutcome::refused;
  /// Why a group was skipped or refused; empty for a converted one.
  std::string reason;
  /// Rows that went over; 0 unless converted.
  std::int64_t statements = 0;
  std::int64_t values = 0;
};

/// Is told how many of a group's rows are done, after each row.
using RowProgress = std::function<void(std::int64_t rowsDone)>;

/// Converts groups of one account set, through the services. Raises the errors of the platform, unless a method says
/// otherwise. `platform` works on `session`.
class OlderGroups {
 public:
  OlderGroups(Platform& platform, standalone::Session& session, std::string dsn);

  /// Whether the account set has the older tables at all.
  [[nodiscard]] bool exist();
  /// The groups that are not converted yet, by name, with their rows counted.
  [[nodiscard]] std::vector<OlderGroup> left();
  /// All groups of an identifier: one, or none.
  [[nodiscard]] std::vector<OlderGroup> find(std::int32_t id);

  /// The identifier of a currency; 0 when there is none of that number.
  [[nodiscard]] std::int32_t currencyID(const std::string& currencyNum);

  /// Creates the group's successor and converts what hangs on the group, in one transaction: after anything but
  /// `converted`, and after the death of the process, nothing of the group has changed. Skips a group that is converted
  /// already, also when somebody else has done it meanwhile. Refuses one whose number a group has already, and one that
  /// the database fails on, with the database's words; raises nothing for them.
  [[nodiscard]] GroupResult convert(const OlderGroup& group, std::int32_t currencyID, const std::string& currencyNum,
                                    const RowProgress& progress);

 private:
  GroupResult convertIn(EngineConnection& connection, const OlderGroup& group, std::int32_t currencyID,
                        const std::string& currencyNum, const RowProgress& progress);
  [[nodiscard]] CallResult ask(const std::string& method, const std::vector<std::pair<std::string, Value>>& arguments);
  void countRows(OlderGroup& group);

  Platform& platform_;
  standalone::Session& session_;
  std::string dsn_;
};

}  // namespace tolvane::host
