// Builds an account set in an empty database: schema, sample data, documents.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "platform/engine.h"

namespace tolvane::standalone {

class AccountSetBuilder {
 public:
  /// The folders "schema" and "samples" as they are shipped.
  AccountSetBuilder(std::filesystem::path schema, std::filesystem::path samples);

  /// Raises an error that says which file it is about. A sample that there is not is one; it names those there are.
  void build(Connection& connection, const std::optional<std::string>& sample) const;

  /// Adds the tables of the older layout.
  void buildOlderLayout(Connection& connection) const;

 private:
  void runScript(Connection& connection, const std::filesystem::path& path) const;
  void storeDocuments(Connection& connection) const;
  void requireSample(const std::string& sample) const;

  std::filesystem::path schema_;
  std::filesystem::path samples_;
};

}  // namespace tolvane::standalone
