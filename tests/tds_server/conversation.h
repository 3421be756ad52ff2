// One connection of a client, from the first packet to the last.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "tds_server/batch_runner.h"
#include "tds_server/packet_stream.h"
#include "tds_server/remote_call.h"
#include "tds_server/server_state.h"

namespace tolvane::tds {

/// Who may log in.
struct Login {
  std::string user;
  std::string password;
};

class Conversation {
 public:
  Conversation(ServerState& state, Login login, int socket)
      : state_(state), login_(std::move(login)), stream_(socket), tokens_(stream_) {}

  /// Until the client or the server ends it.
  void run();
  void end() noexcept { stream_.drop(); }

 private:
  [[nodiscard]] bool logIn();
  void refuse(const Notice& notice);
  void leave();
  [[nodiscard]] bool serve(const Message& message);
  [[nodiscard]] bool serveBatch(WireReader& reader);
  [[nodiscard]] bool serveCall(WireReader& reader);
  [[nodiscard]] bool serveTransaction(WireReader& reader);
  [[nodiscard]] Outcome runCall(const RemoteCall& call, Answer& answer);
  [[nodiscard]] Outcome runText(const std::string& text, const RemoteCall& call, std::size_t firstValue,
                                Answer& answer);
  [[nodiscard]] bool conclude(Outcome outcome, Answer& answer);

  ServerState& state_;
  Login login_;
  PacketStream stream_;
  TokenWriter tokens_;
  std::string database_;
  std::optional<std::uint64_t> entry_;
  std::optional<BatchRunner> runner_;
  std::map<std::int64_t, std::string> prepared_;
  std::int64_t lastPrepared_ = 0;
};

}  // namespace tolvane::tds
