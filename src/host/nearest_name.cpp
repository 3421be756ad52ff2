#include "host/nearest_name.h"

#include <algorithm>
#include <numeric>

#include "platform/names.h"

namespace tolvane::host {
namespace {

/// Characters to add, drop or replace.
std::size_t distance(const std::string& a, const std::string& b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({row[j] + 1, row[j + 1] + 1, replaced});
    }
  }
  return row.back();
}

}  // namespace

std::string nearestName(std::string_view name, const std::vector<std::string>& candidates) {
  const std::string wanted = lowered(name);
  std::string best;
  // More than a third of the name misspelled is another name.
  std::size_t bound = std::max<std::size_t>(2, wanted.size() / 3) + 1;
  for (const auto& candidate : candidates) {
    const std::size_t changes = distance(wanted, lowered(candidate));
    if (changes < bound) {
      bound = changes;
      best = candidate;
    }
  }
  return best;
}

std::string suggestion(std::string_view name, const std::vector<std::string>& candidates) {
  const std::string nearest = nearestName(name, candidates);
  return nearest.empty() ? "" : " Did you mean " + nearest + "?";
}

}  // namespace tolvane::host
