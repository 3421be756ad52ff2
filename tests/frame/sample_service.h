// A class with methods of every form of parameter, for tests of what stands between a caller and a method.
#pragma once

#include <new>
#include <string>

#include "frame/method_table.h"
#include "platform/error.h"

namespace tolvane::test {

class SampleService : public Service {
 public:
  explicit SampleService(Platform& platform) : Service(platform) {}

  static ClassDescription description() {
    using C = SampleService;
    return describe<C>("SampleService", TransactionMode::supported, "A sample.")
        .method(2, "Join", &C::Join, "Joins.", {"sDsn", "lNumber", optional("sText", Value("dflt")), optional("vAny")})
        .method(3, "Change", &C::Change, "Changes.", {"lCount", "sText", "vAny", "aNumbers"})
        .method(4, "Nothing", &C::Nothing, "Does nothing.", {})
        .method(5, "Types", &C::Types, "Takes all types.",
                {"b", "d", "o", "bag", "list", "rows", optional("a"), optional("lNumber")})
        .method(6, "Exhaust", &C::Exhaust, "Runs out of memory.", {})
        .method(7, "Fail", &C::Fail, "Fails.", {"lCount"});
  }

  std::string Join(const std::string& sDsn, std::int32_t lNumber, const std::string& sText, const Value& vAny) {
    return sDsn + "|" + std::to_string(lNumber) + "|" + sText + "|" + (vAny.isMissing() ? "missing" : "given");
  }
  bool Change(std::int32_t& lCount, std::string& sText, Value& vAny, Int32Array& aNumbers) {
    ++lCount;
    sText += "!";
    vAny = Null{};
    aNumbers.redimension(1, 2);
    return true;
  }
  void Nothing() {}
  std::shared_ptr<PropertyBag> Types(bool, Date, const ObjectRef&, const std::shared_ptr<PropertyBag>& bag,
                                     std::shared_ptr<ItemList>& list, const std::shared_ptr<Recordset>&,
                                     const VariantArray&, std::int32_t) {
    list = nullptr;
    return bag;
  }
  void Exhaust() { throw std::bad_alloc(); }
  void Fail(std::int32_t& lCount) {
    lCount = 99;
    throw AutomationError(0x80044047, "Sample", "rule");
  }
};

}  // namespace tolvane::test
