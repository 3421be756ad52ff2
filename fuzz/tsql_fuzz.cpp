// The whole path of a batch: text, tokens, tree, SQLite's text, rows. An input is a batch; what counts as found,
// besides what the sanitizers find, is with FuzzedAccountSet::run.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>

#include "fuzzed_batches.h"
#include "tsql/sql_error.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned int seed) {
  std::minstd_rand random(seed);
  if (random() % 4 == 0) return LLVMFuzzerMutate(data, size, maxSize);
  std::string batch(reinterpret_cast<const char*>(data), size);
  try {
    for (auto times = random() % 3 + 1; times > 0; --times) batch = tolvane::fuzz::mutated(batch, random);
  } catch (const tolvane::tsql::SqlError&) {
    return LLVMFuzzerMutate(data, size, maxSize);  // not made of tokens
  }
  if (batch.size() > maxSize) batch.resize(maxSize);
  std::copy(batch.begin(), batch.end(), data);
  return batch.size();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static tolvane::fuzz::FuzzedAccountSet set;
  const std::string batch(reinterpret_cast<const char*>(data), size);
  const auto found = set.run(batch);
  if (!found) return 0;
  std::fprintf(stderr, "== found: %s\n%s\n", found->c_str(), batch.c_str());
  std::abort();
}
