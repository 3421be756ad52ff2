// Chinese texts in the caller's language.
#pragma once

#include <string>
#include <string_view>

#include "platform/platform.h"

namespace tolvane {

/// `text` in `language` ("chs", "cht", "en"), through the suite's resource loader and its file set "ebo". Chinese
/// callers and blank texts get the text itself, and no loader is made for them. Blanks around the text stay around the
/// translation. The loader is kept with the platform and replaced when another language is asked for. Never fails: when
/// the loader does, the answer is the Chinese text.
[[nodiscard]] std::string translate(Platform& platform, std::string_view text, std::string_view language);

}  // namespace tolvane
