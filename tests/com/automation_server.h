// The two DLLs as a client meets them: registered, and asked through COM.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "automation/com_ptr.h"
#include "automation/late_bound.h"
#include "automation/text.h"
#include "automation/variant.h"

namespace tolvane::com {

/// What a call through IDispatch gives back besides its result.
struct Answer {
  HRESULT code = S_OK;
  automation::Variant result;
  EXCEPINFO error{};
  UINT argument = 0;

  Answer() = default;
  Answer(Answer&&) = default;
  ~Answer() {
    SysFreeString(error.bstrSource);
    SysFreeString(error.bstrDescription);
    SysFreeString(error.bstrHelpFile);
  }
  [[nodiscard]] std::string source() const { return automation::utf8(automation::viewOf(error.bstrSource)); }
  [[nodiscard]] std::string description() const { return automation::utf8(automation::viewOf(error.bstrDescription)); }
};

/// A client in a single-threaded apartment of its own, with both DLLs registered for the machine (the server on the
/// standalone components) and a new account set with the demonstration's data.
class AutomationServer : public ::testing::Test {
 protected:
  static void SetUpTestSuite();
  void SetUp() override;
  void TearDown() override;

  /// The data-source name of this test's account set.
  [[nodiscard]] const std::string& dsn();
  [[nodiscard]] static automation::ComPtr<IDispatch> create(const std::wstring& programmaticIdentifier);
  /// A service of the server.
  [[nodiscard]] static automation::ComPtr<IDispatch> service(const std::wstring& className) {
    return create(L"NorvTolvane." + className);
  }
  [[nodiscard]] static DISPID idOf(IDispatch& object, const wchar_t* name);

  /// Calls a member with arguments as they are written, references included.
  [[nodiscard]] static Answer call(IDispatch& object, const wchar_t* member, std::vector<VARIANT> arguments,
                                   WORD flags = DISPATCH_METHOD | DISPATCH_PROPERTYGET);
  /// Reads one number from the account set.
  [[nodiscard]] std::int32_t selected(const std::string& query);

  /// The file of a DLL beside the test program.
  [[nodiscard]] static std::filesystem::path library(const wchar_t* name);
  /// Calls one of the DLL's entry points without arguments.
  [[nodiscard]] static HRESULT callEntry(const wchar_t* dll, const char* entry);
  [[nodiscard]] static HRESULT install(const wchar_t* dll, bool installs, const wchar_t* words);

 private:
  std::filesystem::path folder_;
  std::string dsn_;
};

/// Arguments that are not owned by what they stand in.
[[nodiscard]] VARIANT number(LONG value);
[[nodiscard]] VARIANT missing();
[[nodiscard]] VARIANT byReference(VARIANT& target);
/// A typed reference: VT_BYREF and the type of what `target` points to.
[[nodiscard]] VARIANT byReference(VARTYPE type, void* target);

}  // namespace tolvane::com
