// The tokens of an answer.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "tds_server/packet_stream.h"
#include "tds_server/protocol.h"
#include "tds_server/wire_bytes.h"

namespace tolvane::tds {

/// An error or a note of the server.
struct Notice {
  std::int32_t number = 0;
  std::uint8_t severity = 16;
  std::string words;
};

class TokenWriter {
 public:
  explicit TokenWriter(PacketStream& stream) : stream_(stream) {}

  void loginAcknowledged();
  void environment(Environment kind, std::string_view now, std::string_view before);
  void collation();
  /// Begins or ends a transaction of this number, as far as the client is concerned.
  void transaction(Environment kind, std::uint64_t number);
  void error(const Notice& notice) { notice_(Token::error, notice); }
  void info(const Notice& notice) { notice_(Token::info, notice); }
  void returnStatus(std::int32_t status);
  /// An output parameter that is an int.
  void returnValue(std::string_view name, std::int32_t value);
  void done(Token kind, std::uint16_t status, std::uint64_t rows = 0);
  /// A token that somebody else has put together.
  bool raw(std::span<const std::uint8_t> bytes) { return stream_.write(bytes); }

 private:
  void notice_(Token token, const Notice& notice);
  void withLength(Token token, const Buffer& content);

  PacketStream& stream_;
};

/// The collation that text columns name: Chinese_PRC_CI_AS, whose narrow texts are in code page 936.
inline constexpr std::uint8_t collationBytes[5] = {0x04, 0x08, 0xD0, 0x00, 0x00};

}  // namespace tolvane::tds
