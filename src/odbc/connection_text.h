// From a data-source name to the text that a driver connects with.
#pragma once

#include <cstdint>
#include <string>

#include "platform/engine.h"

namespace tolvane::odbc {

/// What a connection is opened with. Times are in seconds.
struct ConnectionOptions {
  std::string text;
  std::int32_t loginTimeout = 15;
  /// How long the network may be silent while the server works; 0 waits for ever.
  std::int32_t networkTimeout = 600;
};

/// Every key goes to the driver as it stands, but for Engine, UserID and Language (who calls), LoginTimeout and
/// NetworkTimeout (below), and three of the drivers' own ways:
///  - a driver of FreeTDS is asked for protocol 7.4 unless TDS_Version says otherwise: below 7.2 it loses text;
///  - the vendor's driver has no key Port, so Port goes into Server as "host,port";
///  - without DSN or Driver, the driver is FreeTDS.
/// A value that holds a character of the text's own grammar stands in braces, a closing brace in it doubled; for
/// FreeTDS it is not, because that driver takes braces up to the first "};" and everything between them as it stands.
///
/// Error 5 for a time-out that is no number from 0 to 86400, for a TDS_Version below 7.2, for a value with "};" in it
/// that FreeTDS is to be given, and for a text that is not UTF-8.
[[nodiscard]] ConnectionOptions connectionOptions(const DataSourceName& name);

}  // namespace tolvane::odbc
