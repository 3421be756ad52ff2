#include "host/progress_display.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tolvane::host {
namespace {

using namespace std::chrono_literals;

constexpr std::int64_t barWidth = 24;
constexpr auto terminalPause = 100ms;
constexpr auto plainPause = 5s;
constexpr const char* eraseLine = "\r\x1b[K";

std::string twoDigits(std::int64_t number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

std::int64_t share(std::int64_t done, std::int64_t total, std::int64_t of) {
  if (total <= 0) return of;
  return static_cast<std::int64_t>(static_cast<double>(std::min(done, total)) / static_cast<double>(total) *
                                   static_cast<double>(of));
}

}  // namespace

std::string durationText(std::chrono::seconds duration) {
  const std::int64_t seconds = duration.count();
  const std::string tail = ":" + twoDigits(seconds % 60);
  const std::int64_t minutes = seconds / 60;
  return minutes < 60 ? std::to_string(minutes) + tail
                      : std::to_string(minutes / 60) + ":" + twoDigits(minutes % 60) + tail;
}

std::string grouped(std::int64_t number) {
  std::string digits = std::to_string(number);
  const std::ptrdiff_t first = number < 0 ? 1 : 0;
  for (auto i = static_cast<std::ptrdiff_t>(digits.size()) - 3; i > first; i -= 3) {
    digits.insert(static_cast<std::size_t>(i), ",");
  }
  return digits;
}

ProgressDisplay::ProgressDisplay(std::ostream& stream, std::int64_t total, std::string unit, Options options)
    : stream_(stream),
      total_(total),
      unit_(std::move(unit)),
      options_(std::move(options)),
      start_(options_.clock()),
      next_(start_ + (options_.isTerminal ? std::chrono::milliseconds(0) : plainPause)) {}

ProgressDisplay::~ProgressDisplay() {
  clear();
}

std::string ProgressDisplay::text(std::int64_t done, const std::string& label) const {
  const std::chrono::duration<double> taken = options_.clock() - start_;
  std::string text =
      std::to_string(share(done, total_, 100)) + "%  " + grouped(done) + "/" + grouped(total_) + " " + unit_;
  // Without a moment of work behind it a rate says nothing.
  if (done > 0 && taken.count() > 0) {
    const double rate = static_cast<double>(done) / taken.count();
    const auto left =
        std::chrono::seconds(std::llround(static_cast<double>(std::max<std::int64_t>(total_ - done, 0)) / rate));
    text += "  " + grouped(std::llround(rate)) + "/s  " + durationText(left) + " left";
  }
  return text + "  " + label;
}

std::string ProgressDisplay::bar(std::int64_t done) const {
  const auto filled = static_cast<std::size_t>(share(done, total_, barWidth));
  return "[" + std::string(filled, '#') + std::string(barWidth - filled, '-') + "] ";
}

void ProgressDisplay::show(std::int64_t done, const std::string& label) {
  const auto now = options_.clock();
  if (now < next_) return;
  next_ = now + (options_.isTerminal ? std::chrono::milliseconds(terminalPause) : plainPause);
  if (options_.isTerminal) {
    stream_ << eraseLine << bar(done) << text(done, label) << std::flush;
    isShown_ = true;
  } else {
    stream_ << text(done, label) << std::endl;
  }
}

void ProgressDisplay::clear() {
  if (isShown_) stream_ << eraseLine << std::flush;
  isShown_ = false;
  if (options_.isTerminal) next_ = options_.clock();
}

}  // namespace tolvane::host
