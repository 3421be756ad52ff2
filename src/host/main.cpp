// The program: the command line with the engines that it was built with.
#include <exception>
#include <iostream>

#include "host/command_line.h"

int main(int count, char** arguments) {
  std::ios::sync_with_stdio(false);
  try {
    const tolvane::host::Environment environment{tolvane::host::builtInEngines(), tolvane::host::builtInMakers(),
                                                 std::cout, std::cerr};
    const int status = tolvane::host::runCommandLine(count, arguments, environment);
    std::cout.flush();
    if (status == tolvane::host::exitDone && !std::cout) {
      std::cerr << "tolvane: the output cannot be written\n";
      return tolvane::host::exitRaised;
    }
    return status;
  } catch (const std::exception& error) {
    std::cerr << "tolvane: " << error.what() << '\n';
    return tolvane::host::exitRaised;
  }
}
