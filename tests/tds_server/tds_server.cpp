#include "tds_server/tds_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>
#include <system_error>

namespace tolvane::tds {
namespace {

std::filesystem::path newFolder() {
  auto pattern = (std::filesystem::temp_directory_path() / "tolvane-tds-XXXXXX").string();
  if (!::mkdtemp(pattern.data())) throw std::system_error(errno, std::generic_category(), pattern);
  return pattern;
}

std::string braced(std::string_view value) {
  std::string text = "{";
  for (const char c : value) text += c == '}' ? std::string("}}") : std::string(1, c);
  return text + "}";
}

}  // namespace

TdsServer::TdsServer() : folder_(newFolder()), state_(folder_) {
  state_.createDatabase("master");
  listen();
  acceptor_ = std::thread([this] { accept(); });
}

TdsServer::~TdsServer() {
  stop();
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

void TdsServer::listen() {
  socket_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* where = reinterpret_cast<sockaddr*>(&address);
  const bool listens = ::bind(socket_, where, size) == 0 && ::listen(socket_, SOMAXCONN) == 0 &&
                       ::getsockname(socket_, where, &size) == 0;
  if (!listens) throw std::system_error(errno, std::generic_category(), "the server of the tests");
  port_ = ntohs(address.sin_port);
}

void TdsServer::accept() {
  for (;;) {
    const int client = ::accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC);
    if (client < 0) return;
    const int on = 1;
    ::setsockopt(client, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    conversations_.emplace_back([this, client] { Conversation(state_, {user, password}, client).run(); });
  }
}

void TdsServer::stop() {
  if (socket_ < 0) return;
  ::shutdown(socket_, SHUT_RDWR);
  acceptor_.join();
  ::close(socket_);
  socket_ = -1;
  state_.endConnections();
  for (auto& conversation : conversations_) conversation.join();
  conversations_.clear();
}

std::string TdsServer::dsn(const std::string& database, const std::string& more) const {
  return "Engine=odbc;Driver=FreeTDS;Server=127.0.0.1;Port=" + std::to_string(port_) + ";Database=" + database +
         ";UID=" + user + ";PWD=" + braced(password) + (more.empty() ? "" : ";" + more);
}

}  // namespace tolvane::tds
