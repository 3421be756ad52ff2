// Runs the pairs interleaved, several times over, and prints the ratio of the fastest runs. Takes Google Benchmark's
// flags.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "ratio.h"

namespace tolvane::bench {
namespace {

constexpr const char* systemSide = "/system";
constexpr const char* plainSide = "/plain";

std::vector<std::pair<std::string, double>>& aims() {
  static std::vector<std::pair<std::string, double>> all;
  return all;
}

/// Shows every run as usual and keeps the fastest of each side.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
      double& fastest =
          fastest_.try_emplace(run.run_name.function_name, std::numeric_limits<double>::max()).first->second;
      fastest = std::min(fastest, run.real_accumulated_time / static_cast<double>(run.iterations) * 1e6);
    }
  }

  void printRatios() const {
    std::printf("\n%-44s %14s %14s %8s %6s\n", "case", "system us", "plain us", "ratio", "aim");
    for (const auto& [name, aim] : aims()) {
      const auto system = fastest_.find(name + systemSide);
      const auto plain = fastest_.find(name + plainSide);
      if (system == fastest_.end() || plain == fastest_.end()) continue;
      std::printf("%-44s %14.2f %14.2f %8.2f %6.2f\n", name.c_str(), system->second, plain->second,
                  system->second / plain->second, aim);
    }
  }

 private:
  std::map<std::string, double> fastest_;
};

void add(const std::string& name, std::function<void()> work) {
  benchmark::RegisterBenchmark(name.c_str(),
                               [work = std::move(work)](benchmark::State& state) {
                                 for (auto _ : state) work();
                               })
      ->Unit(benchmark::kMicrosecond)
      ->UseRealTime();
}

}  // namespace

void compare(const std::string& name, double aim, std::function<void()> system, std::function<void()> plain) {
  aims().emplace_back(name, aim);
  add(name + systemSide, std::move(system));
  add(name + plainSide, std::move(plain));
}

}  // namespace tolvane::bench

int main(int count, char** arguments) {
  std::vector<char*> all(arguments, arguments + count);
  std::string repetitions = "--benchmark_repetitions=5";
  std::string interleaving = "--benchmark_enable_random_interleaving=true";
  std::string time = "--benchmark_min_time=0.1";
  all.insert(all.begin() + 1, {repetitions.data(), interleaving.data(), time.data()});
  auto size = static_cast<int>(all.size());
  benchmark::Initialize(&size, all.data());
  if (benchmark::ReportUnrecognizedArguments(size, all.data())) return 1;
  tolvane::bench::registerCases();
  tolvane::bench::RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.printRatios();
  return 0;
}
