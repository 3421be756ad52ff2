// Any platform, with somebody told what services do with its connections.
#pragma once

#include <memory>
#include <string>

#include "platform/error.h"
#include "platform/platform.h"

namespace tolvane::host {

/// Is told after each operation, on the thread that made it.
class DatabaseWatcher {
 public:
  virtual ~DatabaseWatcher() = default;
  /// A new or changed row was posted through a record set.
  virtual void rowPosted() = 0;
  /// A statement was executed on the connection.
  virtual void executed(const std::string& sql) = 0;
  /// An operation failed. The service may hide the failure from its caller.
  virtual void failed(const AutomationError& error) = 0;
};

/// Wraps the connections of `inner` and the record sets that they make; everything else is `inner`'s own. `inner` and
/// `watcher` must outlive this object and all that it hands out.
class WatchedPlatform : public Platform {
 public:
  WatchedPlatform(Platform& inner, DatabaseWatcher& watcher) : inner_(inner), watcher_(watcher) {}

  [[nodiscard]] std::shared_ptr<GlobalApplication> application() override;
  [[nodiscard]] std::shared_ptr<Security> newSecurity() override { return inner_.newSecurity(); }
  [[nodiscard]] std::shared_ptr<ResourceLoader> newResourceLoader() override { return inner_.newResourceLoader(); }
  [[nodiscard]] std::shared_ptr<DataFlow> newDataFlow(const std::shared_ptr<Context>& context) override {
    return inner_.newDataFlow(context);
  }
  [[nodiscard]] std::shared_ptr<PropertyBag> newPropertyBag() override { return inner_.newPropertyBag(); }
  [[nodiscard]] std::shared_ptr<ItemList> newItemList() override { return inner_.newItemList(); }
  [[nodiscard]] Files& files() override { return inner_.files(); }
  [[nodiscard]] AnsiCodePage& ansi() override { return inner_.ansi(); }
  [[nodiscard]] double random() override { return inner_.random(); }
  [[nodiscard]] Date today() override { return inner_.today(); }

 private:
  Platform& inner_;
  DatabaseWatcher& watcher_;
};

}  // namespace tolvane::host
