// Where the files that belong to the program lie: resources, schema, samples.
#pragma once

#include <filesystem>
#include <string_view>

namespace tolvane::standalone {

/// The folder `name` ("resources", "schema", "samples"). Looked for, in this order: in the folder that the environment
/// variable TOLVANE_SHARE names; in ../share/tolvane of the program's own folder, where installing puts it; in the
/// folders above the program, where it lies when the program was built in the source tree. Empty when there is none.
[[nodiscard]] std::filesystem::path findShared(std::string_view name);

/// As findShared("resources"), but TOLVANE_RESOURCES names the folder itself.
[[nodiscard]] std::filesystem::path findResources();

}  // namespace tolvane::standalone
