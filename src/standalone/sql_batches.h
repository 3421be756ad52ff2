// Scripts of T-SQL batches.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tolvane::standalone {

/// The batches of a script: a line that holds nothing but GO, in any letter case, ends one. Batches of blanks are left
/// out, and so is a byte-order mark at the start.
[[nodiscard]] std::vector<std::string> splitBatches(std::string_view script);

}  // namespace tolvane::standalone
