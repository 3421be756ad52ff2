// The platform without the suite: everything a service asks for, on any engine.
#pragma once

#include <filesystem>
#include <memory>
#include <random>

#include "platform/platform.h"
#include "standalone/code_page.h"
#include "standalone/disk_files.h"
#include "standalone/session.h"

namespace tolvane::standalone {

struct PlatformOptions {
  Engines engines;
  /// The folder of the language files.
  std::filesystem::path resources;
  /// The platform's ANSI code page.
  int codePage = 936;
};

/// Belongs to the thread that made it.
class StandalonePlatform : public Platform {
 public:
  explicit StandalonePlatform(PlatformOptions options);

  [[nodiscard]] std::shared_ptr<GlobalApplication> application() override;
  [[nodiscard]] std::shared_ptr<Security> newSecurity() override;
  [[nodiscard]] std::shared_ptr<ResourceLoader> newResourceLoader() override;
  [[nodiscard]] std::shared_ptr<DataFlow> newDataFlow(const std::shared_ptr<Context>& context) override;
  [[nodiscard]] std::shared_ptr<PropertyBag> newPropertyBag() override;
  [[nodiscard]] std::shared_ptr<ItemList> newItemList() override;
  [[nodiscard]] Files& files() override { return files_; }
  [[nodiscard]] AnsiCodePage& ansi() override { return ansi_; }
  [[nodiscard]] double random() override;
  [[nodiscard]] Date today() override;

  /// What host calls are made on.
  [[nodiscard]] Session& session() { return *session_; }

 private:
  std::filesystem::path resources_;
  std::shared_ptr<Session> session_;
  std::shared_ptr<GlobalApplication> application_;
  DiskFiles files_;
  CodePage ansi_;
  std::mt19937_64 generator_;
};

}  // namespace tolvane::standalone
