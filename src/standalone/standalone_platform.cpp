#include "standalone/standalone_platform.h"

#include "platform/calendar.h"
#include "platform/error.h"
#include "standalone/application.h"
#include "standalone/file_resource_loader.h"
#include "standalone/objects.h"
#include "standalone/table_data_flow.h"
#include "standalone/table_security.h"
#include "system/local_time.h"

namespace tolvane::standalone {

StandalonePlatform::StandalonePlatform(PlatformOptions options)
    : resources_(std::move(options.resources)),
      session_(std::make_shared<Session>(std::move(options.engines))),
      ansi_(options.codePage),
      generator_(std::random_device{}()) {}

std::shared_ptr<GlobalApplication> StandalonePlatform::application() {
  if (!application_) application_ = std::make_shared<StandaloneApplication>(session_);
  return application_;
}

std::shared_ptr<Security> StandalonePlatform::newSecurity() {
  return std::make_shared<TableSecurity>(session_);
}

std::shared_ptr<ResourceLoader> StandalonePlatform::newResourceLoader() {
  return std::make_shared<FileResourceLoader>(resources_);
}

std::shared_ptr<DataFlow> StandalonePlatform::newDataFlow(const std::shared_ptr<Context>& context) {
  if (!context) raise(RuntimeError::objectNotSet);
  return std::make_shared<TableDataFlow>(context->getConnection());
}

std::shared_ptr<PropertyBag> StandalonePlatform::newPropertyBag() {
  return std::make_shared<Dictionary>();
}

std::shared_ptr<ItemList> StandalonePlatform::newItemList() {
  return std::make_shared<List>();
}

double StandalonePlatform::random() {
  return std::generate_canonical<double, 53>(generator_);
}

Date StandalonePlatform::today() {
  const auto now = system::localTime();
  return dateOf(now.year, now.month, now.day);
}

}  // namespace tolvane::standalone
