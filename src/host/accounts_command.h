// tolvane accounts: the multi-account-set configurations of a user, and how far one gets with them.
#pragma once

#include <optional>
#include <string>

#include "host/environment.h"

namespace tolvane::host {

struct AccountsOptions {
  std::optional<std::string> dsn;
  bool asJson = false;
  bool showSecrets = false;
  /// accounts test: the configuration, in any letter case.
  std::string name;
};

/// Prints the configurations that the data source's user owns or is granted.
int runAccountsCommand(const Environment& environment, const AccountsOptions& options);

/// Tries to reach the account set of one of them, with each of the credentials that the user has for it until one leads
/// there, and prints how far it got. Status 0 when it was reached, 1 when not, 2 when the user has no such
/// configuration. Steps and data sources: account_reach.h.
int runAccountsTestCommand(const Environment& environment, const AccountsOptions& options);

}  // namespace tolvane::host
