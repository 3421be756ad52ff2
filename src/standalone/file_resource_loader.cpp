#include "standalone/file_resource_loader.h"

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>

#include "platform/error.h"
#include "platform/names.h"
#include "system/path_text.h"

namespace tolvane::standalone {
namespace {

[[noreturn]] void refuse(const std::string& description) {
  throw AutomationError(errorNumber(RuntimeError::fileNotFound), std::string(applicationName), description);
}

}  // namespace

void FileResourceLoader::setResFileBaseName(const std::string& name) {
  baseName_ = name;
  texts_.reset();
}

void FileResourceLoader::setLanguageID(const std::string& language) {
  language_ = lowered(language);
  texts_.reset();
}

std::string FileResourceLoader::loadString(const std::string& text) {
  if (!texts_) texts_ = readFile();
  const auto found = texts_->find(text);
  return found == texts_->end() ? text : found->second;
}

void FileResourceLoader::unload() {
  texts_.reset();
}

FileResourceLoader::Texts FileResourceLoader::readFile() const {
  const std::filesystem::path path = folder_ / system::pathOf(baseName_ + "." + language_ + ".json");
  std::ifstream file(path, std::ios::binary);
  if (!file) refuse("The language file " + path.string() + " cannot be read.");
  const auto document = nlohmann::json::parse(file, nullptr, false);
  if (!document.is_object()) refuse("The language file " + path.string() + " is not a JSON object.");
  Texts texts;
  for (const auto& [text, translation] : document.items()) {
    if (!translation.is_string()) refuse("The language file " + path.string() + " holds no text for " + text + ".");
    texts.emplace(text, translation.get<std::string>());
  }
  return texts;
}

}  // namespace tolvane::standalone
