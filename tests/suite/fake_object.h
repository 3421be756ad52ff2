// Automation objects of a test: they write down what they are asked, and answer what the test says.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "automation/dispatch_object.h"
#include "automation/late_bound.h"
#include "platform/error.h"
#include "suite/member_table.h"

namespace tolvane::suite {

/// Lines like `call rows.Open("People", connection, I4 1, I4 3, I4 -1)`. `ask` is a read of what may be a property or a
/// method, `let` sets a value, `set` an object; `ref` stands before what goes by reference.
using Conversation = std::vector<std::string>;

using Answer = std::function<automation::Variant(DISPPARAMS&)>;

/// Has the members of a table, and takes them only in the ways and with the arguments that the table tells.
class FakeObject : public automation::DispatchObject {
 public:
  FakeObject(std::string name, const MemberTable& table, std::shared_ptr<Conversation> conversation)
      : name_(std::move(name)), table_(table), conversation_(std::move(conversation)) {}

  [[nodiscard]] const std::string& name() const { return name_; }
  /// How often a member's identifier was asked for.
  [[nodiscard]] int lookUps(const std::wstring& member) const;

  void answer(const std::wstring& member, Answer answer) { answers_[member] = std::move(answer); }
  void gives(const std::wstring& member, Value value);
  void gives(const std::wstring& member, const automation::ComPtr<FakeObject>& object);
  void fails(const std::wstring& member, const AutomationError& error);
  /// The member knows no `set`.
  void refusesSet(const std::wstring& member) { refusesSet_ = member; }

  STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID language, DISPID* ids) noexcept override;
  STDMETHODIMP Invoke(DISPID member, REFIID iid, LCID language, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* error, UINT* argument) noexcept override;

 protected:
  [[nodiscard]] automation::Members members() const override { return {}; }
  [[nodiscard]] automation::Variant call(DISPID, const automation::MemberCall&) override { return {}; }

 private:
  void checkUse(const MemberTable::TableMember& member, WORD flags, UINT arguments) const;

  std::string name_;
  const MemberTable& table_;
  std::shared_ptr<Conversation> conversation_;
  std::map<std::wstring, Answer> answers_;
  std::map<std::wstring, int> lookUps_;
  std::wstring refusesSet_;
};

/// A class that exists while the object lives, in this apartment only.
class FakeClass {
 public:
  explicit FakeClass(std::function<automation::ComPtr<IDispatch>()> make);
  FakeClass(const FakeClass&) = delete;
  FakeClass& operator=(const FakeClass&) = delete;
  ~FakeClass();
  /// By which it is created.
  [[nodiscard]] const std::wstring& name() const { return name_; }

 private:
  std::wstring name_;
  DWORD registration_ = 0;
};

/// What an argument is, as conversations show it.
[[nodiscard]] std::string describe(const VARIANT& content);

/// Tests whose thread has entered an apartment; their objects write into one conversation.
class SuiteTest : public ::testing::Test {
 protected:
  SuiteTest();
  ~SuiteTest() override;

  [[nodiscard]] automation::ComPtr<FakeObject> fake(std::string name, const MemberTable& table) const {
    return automation::makeObject<FakeObject>(std::move(name), table, said_);
  }
  [[nodiscard]] static automation::LateBound bound(const automation::ComPtr<FakeObject>& object) {
    return automation::LateBound(automation::ComPtr<IDispatch>(object.get()));
  }
  /// What was said since the last time.
  [[nodiscard]] Conversation said() const { return std::exchange(*said_, {}); }

 private:
  std::shared_ptr<Conversation> said_ = std::make_shared<Conversation>();
};

/// The error that `work` must end with.
template <typename Work>
AutomationError errorOf(Work&& work) {
  try {
    work();
  } catch (const AutomationError& error) {
    return error;
  }
  ADD_FAILURE() << "no error was raised";
  return {0, "", ""};
}

}  // namespace tolvane::suite
