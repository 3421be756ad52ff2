// Runs a test program with TOLVANE_TEST_DSN leading to a server of its own: with_tds_server PROGRAM [ARGUMENT...]
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "tds_server/tds_server.h"

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: with_tds_server PROGRAM [ARGUMENT...]\n");
    return 2;
  }
  tolvane::tds::TdsServer server;
  ::setenv("TOLVANE_TEST_DSN", server.dsn().c_str(), 1);
  const auto child = ::fork();
  if (child == 0) {
    ::execvp(argv[1], argv + 1);
    std::perror(argv[1]);
    ::_exit(127);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}
