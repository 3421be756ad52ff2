#include "standalone/sql_batches.h"

#include <algorithm>

namespace tolvane::standalone {
namespace {

constexpr std::string_view blanks = " \t\r\n";
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool isSeparator(std::string_view line) {
  const auto first = line.find_first_not_of(blanks);
  if (first == std::string_view::npos) return false;
  const auto word = line.substr(first, line.find_last_not_of(blanks) - first + 1);
  return word.size() == 2 && (word[0] == 'G' || word[0] == 'g') && (word[1] == 'O' || word[1] == 'o');
}

}  // namespace

std::vector<std::string> splitBatches(std::string_view script) {
  if (script.starts_with(byteOrderMark)) script.remove_prefix(byteOrderMark.size());
  std::vector<std::string> batches;
  std::string batch;
  const auto finish = [&] {
    if (batch.find_first_not_of(blanks) != std::string::npos) batches.push_back(batch);
    batch.clear();
  };
  while (!script.empty()) {
    const std::size_t length = std::min(script.find('\n'), script.size() - 1) + 1;
    const std::string_view line = script.substr(0, length);
    if (isSeparator(line)) {
      finish();
    } else {
      batch += line;
    }
    script.remove_prefix(length);
  }
  finish();
  return batches;
}

}  // namespace tolvane::standalone
