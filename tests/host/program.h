// Runs the built program, as a person or a script would.
#pragma once

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace tolvane::host::testing {

struct Outcome {
  int status = -1;
  std::string out;
  std::string err;
};

/// A folder of its own, gone with the object, in which the program runs.
class Workplace {
 public:
  Workplace() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tolvane_host_XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
  }
  ~Workplace() {
    std::error_code ignored;
    std::filesystem::permissions(folder_, std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(folder_, ignored);
  }
  Workplace(const Workplace&) = delete;
  Workplace& operator=(const Workplace&) = delete;

  [[nodiscard]] std::string path(const std::string& name) const { return folder_ / name; }
  [[nodiscard]] std::string dsn(const std::string& more = "") const { return "Database=" + path("a.db") + more; }

  void write(const std::string& name, const std::string& content) const {
    std::ofstream(path(name), std::ios::binary) << content;
  }
  [[nodiscard]] std::string read(const std::string& name) const {
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

  Outcome run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), TOLVANE_PROGRAM);
    std::vector<char*> pointers;
    for (auto& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    const std::string out = path("stdout.txt");
    const std::string err = path("stderr.txt");
    posix_spawn_file_actions_addopen(&actions, 1, out.c_str(), O_CREAT | O_TRUNC | O_WRONLY, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, err.c_str(), O_CREAT | O_TRUNC | O_WRONLY, 0600);
    pid_t child = 0;
    Outcome outcome;
    if (posix_spawn(&child, TOLVANE_PROGRAM, &actions, nullptr, pointers.data(), environ) == 0) {
      int status = 0;
      waitpid(child, &status, 0);
      outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    posix_spawn_file_actions_destroy(&actions);
    outcome.out = read("stdout.txt");
    outcome.err = read("stderr.txt");
    return outcome;
  }

 private:
  std::filesystem::path folder_;
};

}  // namespace tolvane::host::testing
