// Automation's arguments of one call, and the method's parameters.
#pragma once

#include <cstddef>
#include <vector>

#include "automation/variant.h"
#include "frame/method_table.h"

namespace tolvane::com {

/// Lives as long as the call: arguments are read before the method runs, and in/out ones are written back afterwards.
///
/// Arguments come by position or by name, a parameter's name standing for its number from 0. What the caller is to
/// blame for is an ArgumentFault with the argument's place: too many, one given twice, one missing that is not
/// optional, one that does not convert, a null reference.
class ArgumentBinder {
 public:
  ArgumentBinder(const MethodDescription& method, const DISPPARAMS& given);

  /// One value for each parameter, of its type.
  [[nodiscard]] std::vector<Value>& bound() { return bound_; }

  /// Makes the in/out values ready for the caller; a value that the caller's variable cannot take is an ArgumentFault,
  /// and nothing has been written then. The values are gone afterwards.
  void prepareResults();
  /// Writes what prepareResults() made ready.
  void writeResults() noexcept;

 private:
  static constexpr std::size_t notGiven = static_cast<std::size_t>(-1);

  void assignPlaces();
  void take(std::size_t parameter, std::size_t place);
  [[nodiscard]] Value read(std::size_t parameter) const;
  void bind();
  [[nodiscard]] const VARIANT& argument(std::size_t place) const { return given_.rgvarg[place]; }
  [[nodiscard]] bool isGiven(std::size_t place) const;

  const MethodDescription& method_;
  const DISPPARAMS& given_;
  std::vector<std::size_t> places_;  ///< of each parameter among the arguments, which automation counts from the last
  std::vector<Value> bound_;
  std::vector<automation::WriteBack> results_;
};

}  // namespace tolvane::com
