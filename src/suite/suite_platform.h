// The platform on automation objects: the suite's components and ADO, or their stand-ins.
#pragma once

#include <memory>
#include <random>

#include "platform/platform.h"
#include "suite/binding.h"

namespace tolvane::suite {

/// Belongs to the thread that made it, which has entered an apartment. Nothing is created before it is asked for.
/// Errors of the components pass through with their number, Source and Description; a component that is not registered
/// is error 429 with its programmatic identifier.
class SuitePlatform : public Platform {
 public:
  explicit SuitePlatform(const Binding& binding);
  ~SuitePlatform() override;

  [[nodiscard]] std::shared_ptr<GlobalApplication> application() override;
  [[nodiscard]] std::shared_ptr<Security> newSecurity() override;
  [[nodiscard]] std::shared_ptr<ResourceLoader> newResourceLoader() override;
  /// The component is created where the caller runs: a component host gives it the caller's transaction by itself, the
  /// standalone one works on the thread's connection. `context` is not asked for anything.
  [[nodiscard]] std::shared_ptr<DataFlow> newDataFlow(const std::shared_ptr<Context>& context) override;
  [[nodiscard]] std::shared_ptr<PropertyBag> newPropertyBag() override;
  [[nodiscard]] std::shared_ptr<ItemList> newItemList() override;
  [[nodiscard]] Files& files() override { return *files_; }
  /// The code page that Windows is set to.
  [[nodiscard]] AnsiCodePage& ansi() override { return *ansi_; }
  [[nodiscard]] double random() override;
  [[nodiscard]] Date today() override;

  /// A host's call begins. Where the binding asks for host calls the application object opens it in that mode; a call
  /// within a call joins the outer one. Elsewhere these three do nothing.
  void hostBegin(TransactionMode mode);
  /// The call has come to its end; whether its work was kept.
  bool hostEnd();
  /// The call ended with an error: its work is taken back. A failure to do so is not reported.
  void hostAbort() noexcept;

 private:
  class Parts;
  std::unique_ptr<Files> files_;
  std::unique_ptr<AnsiCodePage> ansi_;
  std::mt19937_64 generator_;
  std::unique_ptr<Parts> parts_;
};

}  // namespace tolvane::suite
