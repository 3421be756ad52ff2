#include "odbc/postgresql_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <pwd.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace tolvane::odbc {
namespace {

namespace fs = std::filesystem;

int freePort() {
  const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  ::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address);
  ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size);
  ::close(socket);
  return ntohs(address.sin_port);
}

std::string programFolder() {
  std::error_code ignored;
  for (const auto& version : fs::directory_iterator("/usr/lib/postgresql", ignored)) {
    if (fs::exists(version.path() / "bin" / "pg_ctl")) return (version.path() / "bin").string();
  }
  return {};
}

}  // namespace

PostgreSqlServer& PostgreSqlServer::instance() {
  static PostgreSqlServer server;
  return server;
}

bool PostgreSqlServer::isInstalled() {
  return !programFolder().empty();
}

PostgreSqlServer::PostgreSqlServer() : programs_(programFolder()) {
  if (programs_.empty()) {
    why_ = "no PostgreSQL server is installed (package postgresql)";
    return;
  }
  start();
}

PostgreSqlServer::~PostgreSqlServer() {
  if (running_) run("'" + programs_ + "/pg_ctl' -D data -m immediate -w stop >/dev/null 2>&1");
  std::error_code ignored;
  if (!folder_.empty()) fs::remove_all(folder_, ignored);
}

// The server refuses to be root's; then it is the user's that its package made.
int PostgreSqlServer::run(const std::string& command) const {
  const auto child = ::fork();
  if (child == 0) {
    if (::getuid() == 0) {
      const auto* user = ::getpwnam("postgres");
      if (!user || ::setgid(user->pw_gid) != 0 || ::setuid(user->pw_uid) != 0) ::_exit(126);
    }
    if (::chdir(folder_.c_str()) != 0) ::_exit(125);
    ::execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
    ::_exit(127);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void PostgreSqlServer::start() {
  std::string pattern = "/tmp/tolvane-pg-XXXXXX";
  if (!::mkdtemp(pattern.data())) {
    why_ = "no folder for the PostgreSQL server can be made";
    return;
  }
  folder_ = pattern;
  std::ofstream(folder_ + "/password") << password << '\n';
  if (::getuid() == 0) {
    const auto* user = ::getpwnam("postgres");
    if (!user || ::chown(folder_.c_str(), user->pw_uid, user->pw_gid) != 0) {
      why_ = "there is no user postgres to run the server as";
      return;
    }
  }
  port_ = freePort();
  const auto init = "'" + programs_ +
                    "/initdb' -D data -U postgres -E UTF8 --locale=C.UTF-8 --auth=scram-sha-256 --pwfile=password -N "
                    ">log 2>&1";
  const auto begin = "'" + programs_ + "/pg_ctl' -D data -w -t 60 -l log -o '-F -k . -h 127.0.0.1 -p " +
                     std::to_string(port_) + "' start >/dev/null 2>&1";
  if (run(init) != 0 || run(begin) != 0) {
    why_ = "the PostgreSQL server does not start";
    return;
  }
  running_ = true;
}

std::string PostgreSqlServer::dsn(const std::string& name, const std::string& more) const {
  std::string braced = "{";
  for (const char c : std::string(password)) braced += c == '}' ? std::string("}}") : std::string(1, c);
  return "Engine=odbc;Driver=PostgreSQL Unicode;Server=127.0.0.1;Port=" + std::to_string(port_) + ";Database=" + name +
         ";UID=postgres;PWD=" + braced +
         "};BoolsAsChar=0;ByteaAsLongVarBinary=1;TextAsLongVarchar=1;UseDeclareFetch=0" +
         (more.empty() ? "" : ";" + more);
}

}  // namespace tolvane::odbc
