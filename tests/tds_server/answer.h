// The answer to one request: results, errors, and the tokens that end each of them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "embedded/row_set.h"
#include "platform/error.h"
#include "tds_server/server_state.h"
#include "tds_server/token_writer.h"
#include "tds_server/wire_values.h"

namespace tolvane::tds {

class Answer {
 public:
  enum class Of { batch, procedure };

  Answer(TokenWriter& tokens, const Imitation& imitation, Of of) : tokens_(tokens), imitation_(imitation), of_(of) {}

  /// All rows of a query. Raises what reading them raises, behind the rows that were sent. False when the fault's rows
  /// have been sent and the connection is to end.
  [[nodiscard]] bool rows(embedded::RowSet& set, const std::optional<Fault>& fault);
  /// Rows that the server makes up itself.
  void rows(const std::vector<WireColumn>& columns, const std::vector<std::vector<embedded::Cell>>& lines);
  void counted(std::uint64_t count) { end(doneCount, count); }
  /// The end of a statement that counts nothing.
  void ended() { end(0, 0); }
  void failed(const AutomationError& error);
  void failed(const Notice& notice);
  void note(const Notice& notice) { tokens_.info(notice); }
  void returned(std::string_view name, std::int32_t value) { outputs_.emplace_back(name, value); }

  /// Long values are cut behind so many bytes.
  void limitLong(std::uint32_t bytes) { textSize_ = bytes; }

  [[nodiscard]] TokenWriter& tokens() { return tokens_; }
  /// The last tokens.
  void finish();

 private:
  void columns(const std::vector<WireColumn>& columns);
  void row(const std::vector<WireColumn>& columns, const std::vector<embedded::Cell>& cells);
  void end(std::uint16_t status, std::uint64_t count);
  void flushEnd(std::uint16_t more);

  struct End {
    std::uint16_t status = 0;
    std::uint64_t count = 0;
  };

  TokenWriter& tokens_;
  const Imitation& imitation_;
  Of of_;
  std::uint32_t textSize_ = 0x7FFFFFFF;
  std::optional<End> held_;  // the end of the last result, until it is known whether another one follows
  std::vector<std::pair<std::string, std::int32_t>> outputs_;
};

}  // namespace tolvane::tds
