// A connection's messages: cut into packets on the way out, put together on the way in.
#pragma once

#include <optional>
#include <span>

#include "tds_server/protocol.h"
#include "tds_server/wire_bytes.h"

namespace tolvane::tds {

struct Message {
  PacketKind kind = PacketKind::batch;
  Buffer content;
};

/// Owns the socket.
class PacketStream {
 public:
  explicit PacketStream(int socket) : socket_(socket) {}
  PacketStream(const PacketStream&) = delete;
  PacketStream& operator=(const PacketStream&) = delete;
  ~PacketStream();

  [[nodiscard]] int socket() const { return socket_; }

  /// The client's next message; nothing when it has gone.
  [[nodiscard]] std::optional<Message> read();
  /// Whether the client says something within that time.
  [[nodiscard]] bool waits(int milliseconds) const;

  /// Adds to the answer; full packets are sent on the way. False when the client has gone.
  bool write(std::span<const std::uint8_t> bytes);
  /// Sends the rest of the answer as its last packet.
  bool finish();
  /// Ends the connection at once, in the middle of whatever it is.
  void drop() noexcept;

 private:
  bool readExactly(std::span<std::uint8_t> to) const;
  bool send(std::size_t count, bool last);

  int socket_;
  Buffer pending_;
  std::uint8_t number_ = 0;
  bool broken_ = false;
};

}  // namespace tolvane::tds
