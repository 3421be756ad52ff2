// The values of a remote call's parameters, from the form in which the protocol carries them.
#pragma once

#include "embedded/batch_run.h"
#include "tds_server/wire_bytes.h"

namespace tolvane::tds {

/// Reads a type and a value of it. Raises ProtocolError for a type that it does not know.
[[nodiscard]] embedded::PlaceholderValue readParameter(WireReader& reader);

}  // namespace tolvane::tds
