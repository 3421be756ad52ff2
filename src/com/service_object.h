// One of the twelve classes as an automation object.
#pragma once

#include <memory>

#include "automation/automation_object.h"
#include "automation/variant.h"
#include "frame/method_table.h"
#include "suite/suite_platform.h"

namespace tolvane::com {

/// Members are the method table's: names are found without regard to letter case, dispatch numbers are the table's, the
/// name of a parameter stands for its number from 0. Type information comes from the library inside the DLL.
class ServiceObject : public automation::AutomationObject {
 public:
  /// Makes the service, which takes context and login from the thread's application object; raises what that raises.
  ServiceObject(const ClassDescription& description, std::shared_ptr<suite::SuitePlatform> platform);

  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override;
  STDMETHODIMP GetTypeInfo(UINT index, LCID language, ITypeInfo** info) noexcept override;
  STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID language, DISPID* ids) noexcept override;
  STDMETHODIMP Invoke(DISPID member, REFIID iid, LCID language, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* error, UINT* argument) noexcept override;

 protected:
  [[nodiscard]] bool isOwnInterface(REFIID iid) const noexcept override;

 private:
  [[nodiscard]] const MethodDescription* methodOf(DISPID member) const;
  [[nodiscard]] automation::Variant run(const MethodDescription& method, const DISPPARAMS& parameters);

  const ClassDescription& class_;
  std::shared_ptr<suite::SuitePlatform> platform_;  // outlives the service, which refers to it
  std::unique_ptr<Service> service_;
};

}  // namespace tolvane::com
