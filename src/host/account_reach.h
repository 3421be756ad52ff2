// How far one gets with a multi-account-set configuration: from its columns to an open account set.
#pragma once

#include <string>
#include <vector>

#include "platform/objects.h"
#include "standalone/data_sources.h"

namespace tolvane::host {

/// One thing that reaching an account set takes, in the order in which they are tried.
struct ReachStep {
  std::string name;  ///< "data source", "engine", "connection", "account set", "user"
  bool done = false;
  std::string text;  ///< what was found, or why it failed; never a password
};

/// The data source that a configuration describes, a row of MultiAccountInfo.GetListByUser.
///
/// FDriverType 0 is an embedded account set: the file FAisName in the folder FServerName. Every other type is SQL
/// Server through ODBC: the database FAisName on the server FServerName, with FMUserName and FMPassWord as the login.
/// FPropsString adds Key=Value pairs (Driver, Port, UserID, Language, ...); it cannot change what the columns say.
/// Error 5 for properties that are not of this form, 13 for a driver type that is no number.
[[nodiscard]] DataSourceName dataSourceOf(const PropertyBag& configuration);

/// Tries to reach the account set, up to the first step that fails. Changes nothing there.
[[nodiscard]] std::vector<ReachStep> reachAccountSet(const standalone::Engines& engines,
                                                     const PropertyBag& configuration);

}  // namespace tolvane::host
