// A client's remote call: which procedure, and the values of its parameters.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "embedded/batch_run.h"
#include "tds_server/protocol.h"
#include "tds_server/wire_bytes.h"

namespace tolvane::tds {

struct CallParameter {
  std::string name;  ///< with its "@"; empty when it is known by its place
  bool isOutput = false;
  embedded::PlaceholderValue value;

  /// The value as text; empty for null.
  [[nodiscard]] std::string text() const;
  [[nodiscard]] std::int64_t integer() const;
  /// A time before 1753, which a datetime cannot be.
  [[nodiscard]] bool isBeforeDateTime() const;
};

struct RemoteCall {
  std::string procedure;  ///< sp_executesql and its like by name, whether the client gave name or number
  std::vector<CallParameter> parameters;
};

/// Reads the call behind the message's headers. Raises ProtocolError for a type that it does not know.
[[nodiscard]] RemoteCall readCall(WireReader& reader);

/// Skips the headers that stand before batches, calls and transaction requests.
void skipHeaders(WireReader& reader);

}  // namespace tolvane::tds
