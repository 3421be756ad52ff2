// A variable of the environment for as long as a test needs it.
#pragma once

#include <cstdlib>
#include <string>
#include <utility>

namespace tolvane::test {

class EnvironmentVariable {
 public:
  EnvironmentVariable(std::string name, const std::string& value) : name_(std::move(name)) { set(value); }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
  ~EnvironmentVariable() { set({}); }

 private:
#ifdef _WIN32
  void set(const std::string& value) {
    _putenv_s(name_.c_str(), value.c_str());
  }
#else
  void set(const std::string& value) {
    value.empty() ? unsetenv(name_.c_str()) : setenv(name_.c_str(), value.c_str(), 1);
  }
#endif

  std::string name_;
};

}  // namespace tolvane::test
