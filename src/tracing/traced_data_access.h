// Connections, record sets and commands that write what is asked of them.
#pragma once

#include <memory>

#include "platform/data_access.h"
#include "tracing/tracer.h"

namespace tolvane::tracing {

/// Null stays null. The tracer must outlive what is made here.
[[nodiscard]] std::shared_ptr<Connection> traced(Tracer& tracer, std::shared_ptr<Connection> connection);
[[nodiscard]] std::shared_ptr<Recordset> traced(Tracer& tracer, std::shared_ptr<Recordset> rows);

}  // namespace tolvane::tracing
