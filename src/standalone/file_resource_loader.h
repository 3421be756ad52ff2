// Translations from the language files that are shipped with the program.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <unordered_map>

#include "platform/suite.h"

namespace tolvane::standalone {

/// Reads `<base name>.<language>.json` of a folder: one JSON object, Chinese text to translation. The file is read when
/// the first text is asked for. A text that is not in it comes back unchanged; a file that is missing or is no such
/// object is an error that names it.
class FileResourceLoader : public ResourceLoader {
 public:
  explicit FileResourceLoader(std::filesystem::path folder) : folder_(std::move(folder)) {}
  void setResFileBaseName(const std::string& name) override;
  void setLanguageID(const std::string& language) override;
  [[nodiscard]] std::string loadString(const std::string& text) override;
  void unload() override;

 private:
  using Texts = std::unordered_map<std::string, std::string>;
  [[nodiscard]] Texts readFile() const;

  std::filesystem::path folder_;
  std::string baseName_;
  std::string language_;
  std::optional<Texts> texts_;
};

}  // namespace tolvane::standalone
