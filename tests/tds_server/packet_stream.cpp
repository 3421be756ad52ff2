#include "tds_server/packet_stream.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>

namespace tolvane::tds {

PacketStream::~PacketStream() {
  ::close(socket_);
}

bool PacketStream::readExactly(std::span<std::uint8_t> to) const {
  while (!to.empty()) {
    const auto got = ::recv(socket_, to.data(), to.size(), 0);
    if (got <= 0) return false;
    to = to.subspan(static_cast<std::size_t>(got));
  }
  return true;
}

std::optional<Message> PacketStream::read() {
  Message message;
  for (;;) {
    std::uint8_t header[packetHeaderSize];
    if (!readExactly(header)) return std::nullopt;
    const std::size_t size = static_cast<std::size_t>(header[2]) << 8U | header[3];
    if (size < packetHeaderSize) return std::nullopt;
    message.kind = static_cast<PacketKind>(header[0]);
    const auto start = message.content.size();
    message.content.resize(start + size - packetHeaderSize);
    if (!readExactly(std::span(message.content).subspan(start))) return std::nullopt;
    if ((header[1] & lastPacket) != 0) return message;
  }
}

bool PacketStream::waits(int milliseconds) const {
  pollfd watched{socket_, POLLIN, 0};
  return ::poll(&watched, 1, milliseconds) > 0;
}

bool PacketStream::write(std::span<const std::uint8_t> bytes) {
  constexpr std::size_t room = packetSize - packetHeaderSize;
  while (!bytes.empty() && !broken_) {
    // A full packet is held until more follows: the last one must say that it is.
    if (pending_.size() == room && !send(room, false)) break;
    const auto part = std::min(room - pending_.size(), bytes.size());
    pending_.insert(pending_.end(), bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(part));
    bytes = bytes.subspan(part);
  }
  return !broken_;
}

bool PacketStream::finish() {
  return !broken_ && send(pending_.size(), true);
}

bool PacketStream::send(std::size_t count, bool last) {
  const auto size = count + packetHeaderSize;
  Buffer packet{static_cast<std::uint8_t>(PacketKind::answer),
                last ? lastPacket : std::uint8_t{0},
                static_cast<std::uint8_t>(size >> 8U),
                static_cast<std::uint8_t>(size),
                0,
                52,
                ++number_,
                0};
  packet.insert(packet.end(), pending_.begin(), pending_.begin() + static_cast<std::ptrdiff_t>(count));
  pending_.clear();
  std::span<const std::uint8_t> rest(packet);
  while (!rest.empty()) {
    const auto sent = ::send(socket_, rest.data(), rest.size(), MSG_NOSIGNAL);
    if (sent <= 0) {
      broken_ = true;
      return false;
    }
    rest = rest.subspan(static_cast<std::size_t>(sent));
  }
  return true;
}

void PacketStream::drop() noexcept {
  broken_ = true;
  ::shutdown(socket_, SHUT_RDWR);
}

}  // namespace tolvane::tds
