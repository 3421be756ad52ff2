#include "suite/suite_platform.h"

#include <cstdint>

#include "platform/calendar.h"
#include "standalone/code_page.h"
#include "standalone/disk_files.h"
#include "standalone/objects.h"
#include "suite/remote_application.h"
#include "suite/remote_components.h"

namespace tolvane::suite {

class SuitePlatform::Parts {
 public:
  explicit Parts(const Binding& binding)
      : libraries_{std::make_shared<SuiteLibrary>(binding),
                   std::make_shared<AdoLibrary>(binding.recordset, binding.command)} {}

  [[nodiscard]] const std::shared_ptr<SuiteLibrary>& suite() const { return libraries_.suite; }
  [[nodiscard]] const std::shared_ptr<RemoteApplication>& application() {
    if (!application_) {
      application_ = std::make_shared<RemoteApplication>(libraries_, libraries_.suite->newApplication.create());
    }
    return application_;
  }

 private:
  Libraries libraries_;
  std::shared_ptr<RemoteApplication> application_;
};

SuitePlatform::SuitePlatform(const Binding& binding)
    : files_(std::make_unique<standalone::DiskFiles>()),
      ansi_(std::make_unique<standalone::CodePage>(static_cast<int>(GetACP()))),
      generator_(std::random_device{}()),
      parts_(std::make_unique<Parts>(binding)) {}

SuitePlatform::~SuitePlatform() = default;

std::shared_ptr<GlobalApplication> SuitePlatform::application() {
  return parts_->application();
}

std::shared_ptr<Security> SuitePlatform::newSecurity() {
  return std::make_shared<RemoteSecurity>(parts_->suite(), parts_->suite()->newSecurity.create());
}

std::shared_ptr<ResourceLoader> SuitePlatform::newResourceLoader() {
  return std::make_shared<RemoteResourceLoader>(parts_->suite(), parts_->suite()->newLoader.create());
}

std::shared_ptr<DataFlow> SuitePlatform::newDataFlow(const std::shared_ptr<Context>& /*context*/) {
  return std::make_shared<RemoteDataFlow>(parts_->suite(), parts_->suite()->newDataFlow.create());
}

std::shared_ptr<PropertyBag> SuitePlatform::newPropertyBag() {
  return std::make_shared<standalone::Dictionary>();
}

std::shared_ptr<ItemList> SuitePlatform::newItemList() {
  return std::make_shared<standalone::List>();
}

double SuitePlatform::random() {
  return std::generate_canonical<double, 53>(generator_);
}

Date SuitePlatform::today() {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  return dateOf(now.wYear, now.wMonth, now.wDay);
}

void SuitePlatform::hostBegin(TransactionMode mode) {
  if (parts_->suite()->hostCalls) parts_->application()->beginCall(mode);
}

bool SuitePlatform::hostEnd() {
  return !parts_->suite()->hostCalls || parts_->application()->endCall();
}

void SuitePlatform::hostAbort() noexcept {
  if (!parts_->suite()->hostCalls) return;
  try {
    parts_->application()->abortCall();
  } catch (...) {
    // The caller is told of the error that ended the call, which matters more than this one.
  }
}

}  // namespace tolvane::suite
