#include <algorithm>

#include "platform/conversions.h"
#include "platform/engine.h"
#include "platform/error.h"
#include "platform/names.h"

namespace tolvane {
namespace {

[[noreturn]] void refuse(const std::string& why) {
  throw AutomationError(errorNumber(RuntimeError::invalidArgument), std::string(applicationName),
                        "Not a data-source name: " + why +
                            " It is made of Key=Value pairs joined by semicolons, such as Database=demo.db;UserID=1.");
}

bool isPassword(std::string_view key) {
  return sameName(key, "PWD") || sameName(key, "Password");
}

std::string_view takeKey(std::string_view& rest) {
  const std::size_t equals = rest.find('=');
  const std::size_t end = rest.find(';');
  // A word without "=" may be a password in the wrong place, so it is not repeated here.
  if (equals == std::string_view::npos || end < equals) refuse("a part has no \"=\".");
  const std::string_view key = trim(rest.substr(0, equals));
  if (key.empty()) refuse("a part has no key before its \"=\".");
  rest.remove_prefix(equals + 1);
  return key;
}

std::string takeBraced(std::string_view key, std::string_view& rest) {
  std::string value;
  for (std::size_t i = 1; i < rest.size(); ++i) {
    if (rest[i] != '}') {
      value += rest[i];
      continue;
    }
    if (i + 1 < rest.size() && rest[i + 1] == '}') {
      value += '}';
      ++i;
      continue;
    }
    rest.remove_prefix(i + 1);
    const std::size_t end = std::min(rest.find(';'), rest.size());
    if (!trim(rest.substr(0, end)).empty()) refuse("text follows the closing brace of " + std::string(key) + ".");
    rest.remove_prefix(end);
    return value;
  }
  refuse("the brace after " + std::string(key) + "= is never closed.");
}

std::string takeValue(std::string_view key, std::string_view& rest) {
  rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
  if (rest.starts_with('{')) return takeBraced(key, rest);
  const std::size_t end = std::min(rest.find(';'), rest.size());
  std::string value(trim(rest.substr(0, end)));
  rest.remove_prefix(end);
  return value;
}

std::string written(const std::string& value) {
  const bool plain = value.find(';') == std::string::npos && !value.starts_with('{') && trim(value) == value;
  if (plain) return value;
  std::string braced = "{";
  for (const char c : value) braced += c == '}' ? std::string("}}") : std::string(1, c);
  return braced + "}";
}

}  // namespace

DataSourceName DataSourceName::parse(std::string_view text) {
  DataSourceName name;
  std::string_view rest = text;
  while (!trim(rest).empty()) {
    if (trim(rest).starts_with(';')) {
      rest.remove_prefix(rest.find(';') + 1);
      continue;
    }
    std::string key(takeKey(rest));
    if (name.has(key)) refuse("the key " + key + " is there twice.");
    std::string value = takeValue(key, rest);
    name.pairs_.emplace_back(std::move(key), std::move(value));
  }
  if (name.pairs_.empty()) refuse("it is empty.");
  return name;
}

std::string DataSourceName::get(std::string_view key, std::string_view fallback) const {
  for (const auto& [name, value] : pairs_) {
    if (sameName(name, key)) return value;
  }
  return std::string(fallback);
}

bool DataSourceName::has(std::string_view key) const {
  return std::any_of(pairs_.begin(), pairs_.end(), [&](const auto& pair) { return sameName(pair.first, key); });
}

std::string DataSourceName::publicText() const {
  std::string text;
  for (const auto& [key, value] : pairs_) {
    if (!text.empty()) text += ';';
    text += key + "=" + (isPassword(key) ? "***" : written(value));
  }
  return text;
}

}  // namespace tolvane
