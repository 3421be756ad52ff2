// Any platform, with a trace of what services ask of it.
#pragma once

#include <memory>

#include "platform/platform.h"
#include "tracing/tracer.h"

namespace tolvane::tracing {

/// Wraps what `inner` hands out. What the suite's components do among themselves is not seen, only what is asked of
/// them. `inner` and `sink` must outlive this object and all that it hands out.
class TracingPlatform : public Platform {
 public:
  TracingPlatform(Platform& inner, TraceSink& sink, bool showSecrets = false)
      : inner_(inner), tracer_(sink, showSecrets) {}

  [[nodiscard]] std::shared_ptr<GlobalApplication> application() override;
  [[nodiscard]] std::shared_ptr<Security> newSecurity() override;
  [[nodiscard]] std::shared_ptr<ResourceLoader> newResourceLoader() override;
  [[nodiscard]] std::shared_ptr<DataFlow> newDataFlow(const std::shared_ptr<Context>& context) override;
  [[nodiscard]] std::shared_ptr<PropertyBag> newPropertyBag() override { return inner_.newPropertyBag(); }
  [[nodiscard]] std::shared_ptr<ItemList> newItemList() override { return inner_.newItemList(); }
  [[nodiscard]] Files& files() override { return inner_.files(); }
  [[nodiscard]] AnsiCodePage& ansi() override { return inner_.ansi(); }
  [[nodiscard]] double random() override { return inner_.random(); }
  [[nodiscard]] Date today() override { return inner_.today(); }

 private:
  Platform& inner_;
  Tracer tracer_;
  std::shared_ptr<GlobalApplication> application_;
};

}  // namespace tolvane::tracing
