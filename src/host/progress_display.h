// Shows how far a long piece of work has come.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>

namespace tolvane::host {

/// "0:07", "12:34", "1:02:03"; fractions of a second are dropped.
[[nodiscard]] std::string durationText(std::chrono::seconds duration);
/// "1,234,567".
[[nodiscard]] std::string grouped(std::int64_t number);

/// Counts, rate and time left: on a terminal as one line with a bar that is written over, elsewhere as plain lines.
class ProgressDisplay {
 public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;

  struct Options {
    bool isTerminal = false;
    Clock clock = [] { return std::chrono::steady_clock::now(); };
  };

  /// `total` counts `unit`s ("rows"). 0 is allowed.
  ProgressDisplay(std::ostream& stream, std::int64_t total, std::string unit, Options options);
  /// Takes the bar away.
  ~ProgressDisplay();
  ProgressDisplay(const ProgressDisplay&) = delete;
  ProgressDisplay& operator=(const ProgressDisplay&) = delete;

  /// So many are done. Written at most ten times a second on a terminal, every five seconds elsewhere.
  void show(std::int64_t done, const std::string& label);
  /// Takes the bar away, so that a line can be written in its place; the next show() brings it back.
  void clear();

  /// The text that show() writes, without the bar.
  [[nodiscard]] std::string text(std::int64_t done, const std::string& label) const;

 private:
  [[nodiscard]] std::string bar(std::int64_t done) const;

  std::ostream& stream_;
  std::int64_t total_;
  std::string unit_;
  Options options_;
  std::chrono::steady_clock::time_point start_;
  std::chrono::steady_clock::time_point next_;
  bool isShown_ = false;
};

}  // namespace tolvane::host
