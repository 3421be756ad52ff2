// Writes traces: one JSON object a line.
#pragma once

#include <chrono>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>

#include "platform/error.h"
#include "tracing/json_values.h"
#include "tracing/secrets.h"

namespace tolvane::tracing {

/// Takes the lines of a trace, in order. The lines come without their end.
class TraceSink {
 public:
  virtual ~TraceSink() = default;
  virtual void write(const std::string& line) = 0;
};

/// Writes to a stream, each line at once, so that a trace is whole up to the moment a process dies.
class StreamSink : public TraceSink {
 public:
  explicit StreamSink(std::ostream& stream) : stream_(stream) {}
  void write(const std::string& line) override { stream_ << line << '\n' << std::flush; }

 private:
  std::ostream& stream_;
};

class Tracer {
 public:
  /// Passwords are hidden unless `showSecrets`.
  explicit Tracer(TraceSink& sink, bool showSecrets = false) : sink_(sink), showSecrets_(showSecrets) {}

  [[nodiscard]] static Json line(const char* operation) {
    Json result = Json::object();
    result["op"] = operation;
    return result;
  }

  [[nodiscard]] std::string sql(const std::string& text) const { return showSecrets_ ? text : maskSql(text); }
  [[nodiscard]] std::string dsn(const std::string& text) const { return showSecrets_ ? text : maskDsn(text); }
  [[nodiscard]] Json field(std::string_view name, const Value& value) const {
    return !showSecrets_ && isSecretName(name) ? Json(hidden) : shown(value);
  }
  [[nodiscard]] Json parameter(const std::string& statement, const Value& value) const {
    return !showSecrets_ && hasSecretParameters(statement) ? Json(hidden) : shown(value);
  }

  [[nodiscard]] Json shown(const Value& value) const { return traceToJson(showSecrets_ ? value : maskValue(value)); }

  void write(const Json& line) { sink_.write(line.dump(-1, ' ', false, Json::error_handler_t::replace)); }

  /// Does `work` and writes the line; "value" is what it answers when `showValue`. A failure is written with its number
  /// and passes on.
  template <typename Work>
  auto record(Json line, Work&& work, bool showValue = false) {
    using Result = std::invoke_result_t<Work>;
    try {
      if constexpr (std::is_void_v<Result>) {
        work();
        write(line);
      } else {
        Result result = work();
        if constexpr (std::is_constructible_v<Json, Result>) {
          if (showValue) line["value"] = result;
        }
        write(line);
        return result;
      }
    } catch (const AutomationError& error) {
      line["error"] = hexNumber(error.number());
      write(line);
      throw;
    }
  }

  /// As record(), with the milliseconds that the work took.
  template <typename Work>
  auto recordTimed(Json line, Work&& work) {
    const auto start = std::chrono::steady_clock::now();
    const auto stamp = [&] {
      const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
      line["ms"] = static_cast<double>(static_cast<std::int64_t>(taken.count() * 1000)) / 1000;
    };
    try {
      if constexpr (std::is_void_v<std::invoke_result_t<Work>>) {
        work();
        stamp();
        write(line);
      } else {
        auto result = work();
        stamp();
        write(line);
        return result;
      }
    } catch (const AutomationError& error) {
      line["error"] = hexNumber(error.number());
      stamp();
      write(line);
      throw;
    }
  }

 private:
  TraceSink& sink_;
  bool showSecrets_;
};

}  // namespace tolvane::tracing
