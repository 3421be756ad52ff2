#include "frame/translation.h"

#include <algorithm>
#include <utility>

#include "platform/conversions.h"
#include "platform/error.h"

namespace tolvane {
namespace {

constexpr std::string_view resourceFiles = "ebo";

bool isChinese(std::string_view language) {
  constexpr std::string_view code = "chs";
  return std::equal(language.begin(), language.end(), code.begin(), code.end(),
                    [](char a, char b) { return (a | 0x20) == b; });
}

ResourceLoader& loaderFor(Platform& platform, std::string_view language) {
  LoaderCache& cache = platform.loaderCache();
  if (cache.loader && cache.language != language) {
    const auto previous = std::exchange(cache.loader, nullptr);
    previous->unload();
  }
  if (!cache.loader) {
    auto loader = platform.newResourceLoader();
    loader->setResFileBaseName(std::string(resourceFiles));
    loader->setLanguageID(std::string(language));
    cache = {std::move(loader), std::string(language)};
  }
  return *cache.loader;
}

}  // namespace

std::string translate(Platform& platform, std::string_view text, std::string_view language) {
  const std::string_view key = trim(text);
  if (key.empty() || isChinese(language)) return std::string(text);
  const auto start = static_cast<std::size_t>(key.data() - text.data());
  try {
    std::string translated(text.substr(0, start));
    translated += loaderFor(platform, language).loadString(std::string(key));
    translated += text.substr(start + key.size());
    return translated;
  } catch (const AutomationError&) {
    // A caller who is about to be told of an error must hear of that error, not of a missing resource file.
    return std::string(text);
  }
}

}  // namespace tolvane
