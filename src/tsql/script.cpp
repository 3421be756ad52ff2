#include "tsql/script.h"

#include <algorithm>

namespace tolvane::tsql {
namespace {

bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r';
}

bool isGo(std::string_view line) {
  while (!line.empty() && isBlank(line.front())) line.remove_prefix(1);
  while (!line.empty() && (isBlank(line.back()) || line.back() == ';')) line.remove_suffix(1);
  return line.size() == 2 && (line[0] == 'G' || line[0] == 'g') && (line[1] == 'O' || line[1] == 'o');
}

// Walks a script once; knows at every line's beginning whether it lies inside something that may span lines.
class Walker {
 public:
  explicit Walker(std::string_view script) : script_(script) {}

  std::vector<std::string_view> batches() {
    std::vector<std::string_view> result;
    std::size_t begin = 0;
    std::size_t at = 0;
    const auto finish = [&](std::size_t end) {
      if (holdsText_) result.push_back(script_.substr(begin, end - begin));
      holdsText_ = false;
    };
    while (at < script_.size()) {
      const std::size_t lineEnd = std::min(script_.find('\n', at), script_.size());
      const std::size_t next = std::min(lineEnd + 1, script_.size());
      if (quote_ == '\0' && comment_ == 0 && isGo(script_.substr(at, lineEnd - at))) {
        finish(at);
        begin = next;
      } else {
        walk(at, lineEnd);
      }
      at = next;
    }
    finish(script_.size());
    return result;
  }

 private:
  void walk(std::size_t at, std::size_t end) {
    for (; at < end; ++at) {
      const char c = script_[at];
      const char ahead = at + 1 < end ? script_[at + 1] : '\0';
      if (comment_ > 0) {
        if (c == '*' && ahead == '/') {
          --comment_;
          ++at;
        } else if (c == '/' && ahead == '*') {
          ++comment_;
          ++at;
        }
      } else if (quote_ != '\0') {
        if (c == quote_) quote_ = '\0';  // a doubled quote opens the text again at once
      } else if (c == '-' && ahead == '-') {
        return;
      } else if (c == '/' && ahead == '*') {
        ++comment_;
        ++at;
      } else {
        if (c == '\'' || c == '"') quote_ = c;
        if (c == '[') quote_ = ']';
        if (!isBlank(c)) holdsText_ = true;
      }
    }
  }

  std::string_view script_;
  char quote_ = '\0';
  int comment_ = 0;
  bool holdsText_ = false;
};

}  // namespace

std::vector<std::string_view> splitScript(std::string_view script) {
  return Walker(script).batches();
}

}  // namespace tolvane::tsql
