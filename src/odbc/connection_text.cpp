#include "odbc/connection_text.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/conversions.h"
#include "platform/error.h"
#include "platform/names.h"
#include "rowset/utf8.h"

namespace tolvane::odbc {
namespace {

constexpr std::string_view defaultDriver = "FreeTDS";
constexpr std::string_view protocolVersion = "7.4";
constexpr double lowestProtocol = 7.2;
constexpr std::int32_t longestTimeout = 86400;

constexpr std::array<std::string_view, 5> ownKeys{"Engine", "UserID", "Language", "LoginTimeout", "NetworkTimeout"};

[[noreturn]] void refuse(const std::string& why) {
  throw AutomationError(errorNumber(RuntimeError::invalidArgument), std::string(applicationName), why);
}

bool contains(std::string_view text, std::string_view part) {
  return std::search(text.begin(), text.end(), part.begin(), part.end(), [](char a, char b) {
           return sameName({&a, 1}, {&b, 1});
         }) != text.end();
}

// How a driver reads a closing brace inside braces.
enum class InnerBrace { doubled, asItIs };

std::string written(std::string_view key, std::string_view value, InnerBrace innerBrace) {
  // Not every driver takes braces, so they stand only where the text would mean something else without them.
  const bool plain = value.find(';') == std::string_view::npos && !value.starts_with('{') && !value.starts_with(' ') &&
                     !value.ends_with(' ');
  if (plain) return std::string(value);
  if (innerBrace == InnerBrace::asItIs && value.find("};") != std::string_view::npos) {
    refuse("The data source's " + std::string(key) + " holds \"};\", which the driver FreeTDS cannot be given.");
  }
  std::string braced = "{";
  for (const char c : value) {
    braced += c;
    if (c == '}' && innerBrace == InnerBrace::doubled) braced += c;
  }
  return braced + "}";
}

std::int32_t timeoutIn(const DataSourceName& name, std::string_view key, std::int32_t otherwise) {
  if (!name.has(key)) return otherwise;
  const auto number = parseNumber(name.get(key));
  if (!number || *number < 0 || *number > longestTimeout || *number != static_cast<std::int32_t>(*number)) {
    refuse("The data source's " + std::string(key) + " is not a number of seconds from 0 to 86400.");
  }
  return static_cast<std::int32_t>(*number);
}

void requireProtocol(const DataSourceName& name) {
  const auto version = name.get("TDS_Version");
  const auto number = parseNumber(version);
  if (version.empty() || sameName(version, "auto")) return;
  if (!number || *number < lowestProtocol) {
    refuse("The data source's TDS_Version " + version + " loses text. Leave it out or write 7.2 or above.");
  }
}

}  // namespace

ConnectionOptions connectionOptions(const DataSourceName& name) {
  ConnectionOptions options;
  options.loginTimeout = timeoutIn(name, "LoginTimeout", options.loginTimeout);
  options.networkTimeout = timeoutIn(name, "NetworkTimeout", options.networkTimeout);
  const bool named = name.has("Driver") || name.has("DSN") || name.has("FileDSN");
  const std::string driver = named ? name.get("Driver") : std::string(defaultDriver);
  const bool isFreeTds = contains(driver, "FreeTDS") || contains(driver, "tdsodbc");
  const bool portInServer = !isFreeTds && contains(driver, "SQL Server");
  const auto innerBrace = isFreeTds ? InnerBrace::asItIs : InnerBrace::doubled;
  const auto port = name.get("Port");
  const auto add = [&](std::string_view key, std::string_view value) {
    if (!options.text.empty()) options.text += ';';
    options.text += std::string(key) + "=" + written(key, value, innerBrace);
  };
  if (!named) add("Driver", driver);
  for (const auto& [key, value] : name.pairs()) {
    const bool isOwn =
        std::any_of(ownKeys.begin(), ownKeys.end(), [&k = key](std::string_view own) { return sameName(k, own); });
    if (isOwn || (portInServer && sameName(key, "Port"))) continue;
    if (portInServer && !port.empty() && sameName(key, "Server")) {
      options.text += (options.text.empty() ? "" : ";") + key + "=" + value + "," + port;
    } else {
      add(key, value);
    }
  }
  if (isFreeTds) {
    requireProtocol(name);
    if (!name.has("TDS_Version")) add("TDS_Version", protocolVersion);
  }
  if (rowset::invalidUtf8(options.text) != std::string::npos) refuse("The data-source name is not UTF-8.");
  return options;
}

}  // namespace tolvane::odbc
