// Runs what a client sends on the embedded engine, and the few statements that are about databases and time itself.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/batch_run.h"
#include "embedded/session.h"
#include "tds_server/answer.h"
#include "tds_server/packet_stream.h"
#include "tds_server/server_state.h"

namespace tolvane::tds {

enum class Outcome {
  answered,
  attention,  ///< the client has called the statement off
  dropped,    ///< the connection is to end without an answer
};

class BatchRunner {
 public:
  BatchRunner(ServerState& state, PacketStream& stream, std::shared_ptr<embedded::Session> session)
      : state_(state), stream_(stream), session_(std::move(session)), textSize_(state.imitation().textSize) {}

  /// Runs the statements of a text one after the other and answers each.
  [[nodiscard]] Outcome run(std::string_view text, std::vector<embedded::PlaceholderValue> values, Answer& answer);

  /// What the client is told about the transaction, where that has changed.
  void announceTransaction(TokenWriter& tokens);
  /// Undoes the transaction, as some servers do after any error.
  void undoAfterError(Answer& answer);

  [[nodiscard]] embedded::Session& session() { return *session_; }

 private:
  enum class Step { next, stop };

  Step runOne(const std::string& text, const std::vector<embedded::PlaceholderValue>& values, Answer& answer,
              const std::optional<Fault>& fault);
  bool runOwn(const std::string& text, Answer& answer);
  bool waitFor(const std::string& text);

  ServerState& state_;
  PacketStream& stream_;
  std::shared_ptr<embedded::Session> session_;
  std::uint64_t transaction_ = 0;
  bool announced_ = false;
  std::uint32_t textSize_;
  Outcome outcome_ = Outcome::answered;
};

}  // namespace tolvane::tds
