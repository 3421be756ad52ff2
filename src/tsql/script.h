#pragma once

#include <string_view>
#include <vector>

namespace tolvane::tsql {

// The batches of a script: what stands between lines that hold the word GO alone (any letter case, blanks around it). A
// GO inside a text, a quoted name or a comment separates nothing. Batches of blanks and comments only are left out.
// Views point into the script.
std::vector<std::string_view> splitScript(std::string_view script);

}  // namespace tolvane::tsql
