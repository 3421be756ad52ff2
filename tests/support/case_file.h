// Files of statements and their answers: blocks of a statement, a line of four hyphens and what it answers, separated
// by lines of four equals signs. Lines that begin with '#' before a statement are comment.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace tolvane::test {

struct Case {
  int line = 0;
  std::string statement;
  std::string expected;
};

[[nodiscard]] inline std::vector<Case> casesOf(const std::filesystem::path& file) {
  std::ifstream input(file);
  std::vector<Case> cases;
  Case block;
  bool answer = false;
  std::string text;
  const auto finish = [&] {
    if (!block.statement.empty()) cases.push_back(std::exchange(block, Case()));
    block = Case();
    answer = false;
  };
  for (int number = 1; std::getline(input, text); ++number) {
    if (text == "====") {
      finish();
    } else if (text == "----") {
      answer = true;
    } else if (answer) {
      block.expected += text + "\n";
    } else if (!text.starts_with("#") || !block.statement.empty()) {
      if (block.statement.empty()) block.line = number;
      block.statement += text + "\n";
    }
  }
  finish();
  return cases;
}

}  // namespace tolvane::test
