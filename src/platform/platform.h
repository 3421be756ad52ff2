// Everything a service asks for, in one place. A service is given a Platform when it is made and uses nothing else.
//
// A Platform belongs to one thread, as the services made with it do; a host with several threads gives each its own.
#pragma once

#include <memory>
#include <string>

#include "platform/files.h"
#include "platform/objects.h"
#include "platform/suite.h"

namespace tolvane {

/// The resource loader that the translation keeps between calls, and the language it was set up for.
struct LoaderCache {
  std::shared_ptr<ResourceLoader> loader;
  std::string language;
};

class Platform {
 public:
  virtual ~Platform() = default;

  /// The thread's application object, made on first use.
  [[nodiscard]] virtual std::shared_ptr<GlobalApplication> application() = 0;
  /// A new security component; 429 when it cannot be created.
  [[nodiscard]] virtual std::shared_ptr<Security> newSecurity() = 0;
  [[nodiscard]] virtual std::shared_ptr<ResourceLoader> newResourceLoader() = 0;
  /// A new data-flow component that works in the caller's transaction, on the caller's connection.
  [[nodiscard]] virtual std::shared_ptr<DataFlow> newDataFlow(const std::shared_ptr<Context>& context) = 0;

  [[nodiscard]] virtual std::shared_ptr<PropertyBag> newPropertyBag() = 0;
  [[nodiscard]] virtual std::shared_ptr<ItemList> newItemList() = 0;

  [[nodiscard]] virtual Files& files() = 0;
  [[nodiscard]] virtual AnsiCodePage& ansi() = 0;
  /// A number in [0, 1).
  [[nodiscard]] virtual double random() = 0;
  /// Today's date, without a time.
  [[nodiscard]] virtual Date today() = 0;

  /// Kept for the thread and shared by all classes.
  [[nodiscard]] LoaderCache& loaderCache() { return loaderCache_; }

 private:
  LoaderCache loaderCache_;
};

}  // namespace tolvane
