// A call as a caller wrote it: "CLASS.METHOD" and "parameter=JSON" texts.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "frame/dispatcher.h"
#include "frame/method_table.h"

namespace tolvane::host {

struct CallRequest {
  const ClassDescription* serviceClass = nullptr;
  const MethodDescription* method = nullptr;
  CallArguments arguments;
};

/// Reads a call. In/out parameters that are not given start as their type's empty value; the first parameter, the
/// data-source name, is filled with `dsn` when it is not given. A UsageError says what is wrong: an unknown class,
/// method or parameter (with the nearest name that there is), one given twice, a text that is not JSON, a file that
/// cannot be read, no data source.
[[nodiscard]] CallRequest readCall(const std::string& classAndMethod, const std::vector<std::string>& assignments,
                                   const std::optional<std::string>& dsn);

/// The class, and the method if the text names one.
[[nodiscard]] CallRequest readMember(const std::string& classOrMethod);

}  // namespace tolvane::host
