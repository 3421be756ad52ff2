// Values for people: lists and record sets as tables, documents by their size.
#pragma once

#include <ostream>
#include <string>

#include "platform/data_access.h"
#include "platform/value.h"

namespace tolvane::host {

/// One value on one line.
[[nodiscard]] std::string shortText(const Value& value);

/// Prints a named value: "name: text", or the name and a table below it.
void printValue(std::ostream& out, const std::string& name, const Value& value, bool showSecrets);

/// Prints an open record set from its first row on.
void printRecordset(std::ostream& out, Recordset& rows, bool showSecrets);

}  // namespace tolvane::host
