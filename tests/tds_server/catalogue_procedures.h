// The system procedures by which drivers ask about tables.
#pragma once

#include "embedded/session.h"
#include "tds_server/answer.h"
#include "tds_server/remote_call.h"

namespace tolvane::tds {

/// Answers sp_tables, sp_columns, sp_pkeys and sp_statistics; false for any other procedure.
[[nodiscard]] bool answerCatalogue(const RemoteCall& call, embedded::Session& session, const Imitation& imitation,
                                   Answer& answer);

}  // namespace tolvane::tds
