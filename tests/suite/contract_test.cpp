// The shared data-access tests through automation: the adapter on the objects of NorvStandalone.dll.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "automation/error_translation.h"
#include "automation/registry.h"
#include "contract/connection_contract.h"
#include "contract/recordset_contract.h"
#include "standalone_com/class_table.h"
#include "suite/remote_connection.h"
#include "suite/suite_platform.h"

namespace tolvane::contract {
namespace {

using automation::ComPtr;
using automation::LateBound;
using automation::RemoteMember;

/// The thread's apartment, in which the DLL's classes can be created though they are not registered.
class Apartment {
 public:
  Apartment() {
    automation::check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    // The DLL lies beside the test and stays loaded.
    static const HMODULE module = LoadLibraryW(L"NorvStandalone.dll");
    const auto entry =
        reinterpret_cast<GetClassObject>(reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
    for (const auto& each : standalone_com::classTable()) {
      ComPtr<IUnknown> factory;
      automation::check(entry(each.identifier, IID_IUnknown, factory.receiveAny()));
      automation::check(CoRegisterClassObject(each.identifier, factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                              &registrations_.emplace_back()));
    }
  }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
  ~Apartment() {
    for (const DWORD registration : registrations_) CoRevokeClassObject(registration);
    CoUninitialize();
  }

 private:
  std::vector<DWORD> registrations_;
};

/// By which a class is created without the registry.
std::wstring identifierOf(const std::wstring& name) {
  for (const auto& each : standalone_com::classTable()) {
    if (each.name == name) return automation::textOf(each.identifier);
  }
  raise(RuntimeError::cannotCreateObject);
}

suite::Binding unregistered() {
  suite::Binding binding = suite::standaloneBinding();
  for (std::wstring* name : {&binding.application, &binding.security, &binding.loader, &binding.dataFlow,
                             &binding.recordset, &binding.command}) {
    *name = identifierOf(*name);
  }
  return binding;
}

/// The adapter's connection, and beside it what only tests ask of one.
class AutomationConnection final : public EngineConnection {
 public:
  explicit AutomationConnection(std::shared_ptr<Connection> inner)
      : inner_(std::move(inner)),
        object_(ComPtr<IDispatch>(dynamic_cast<suite::RemoteConnection&>(*inner_).dispatch())) {}

  std::shared_ptr<Recordset> execute(const std::string& sql, std::int32_t options) override {
    return inner_->execute(sql, options);
  }
  std::shared_ptr<Recordset> newRecordset() override { return inner_->newRecordset(); }
  std::shared_ptr<Command> newCommand() override { return inner_->newCommand(); }

  void begin() override { run(L"BeginTrans"); }
  void commit() override { run(L"CommitTrans"); }
  void rollback() override { run(L"RollbackTrans"); }
  [[nodiscard]] bool inTransaction() const override {
    return toInt32(inner_->execute("select @@trancount", unspecifiedOptions)->value(std::size_t{0})) > 0;
  }
  [[nodiscard]] std::uint64_t failureCount() const override { return 0; }

 private:
  void run(const wchar_t* name) const {
    RemoteMember member(name);
    object_.call(member);
  }

  std::shared_ptr<Connection> inner_;
  LateBound object_;
};

std::filesystem::path newFile() {
  static int number = 0;
  const std::string name = "suite_" + std::to_string(GetCurrentProcessId()) + "_" + std::to_string(++number) + ".ais";
  return std::filesystem::path(::testing::TempDir()) / name;
}

class AutomationContractEngine final : public ContractEngine {
 public:
  AutomationContractEngine() {
    const LateBound application = automation::RemoteClass(binding_.application).create();
    RemoteMember create(L"CreateAccountSet");
    application.call(create, dsn());
  }
  ~AutomationContractEngine() override {
    platform_.reset();  // which closes the file
    std::error_code ignored;
    std::filesystem::remove(file_, ignored);
  }

  std::shared_ptr<EngineConnection> connect() override {
    const auto context = platform_->application()->getContext();
    context->openDataSource(dsn());
    return std::make_shared<AutomationConnection>(context->getConnection());
  }
  [[nodiscard]] Deviations deviations() const override {
    return {.laterRowsFailLate = true, .defaultsReadableAfterPosting = true, .tellsDatabaseDetail = false};
  }

 private:
  [[nodiscard]] std::string dsn() const { return "Database=" + file_.string(); }

  Apartment apartment_;
  std::filesystem::path file_ = newFile();
  suite::Binding binding_ = unregistered();
  std::unique_ptr<suite::SuitePlatform> platform_ = std::make_unique<suite::SuitePlatform>(binding_);
};

INSTANTIATE_TEST_SUITE_P(Automation, DataAccessContract,
                         ::testing::Values(ContractParameter{
                             "Automation", [] { return std::make_unique<AutomationContractEngine>(); }}),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace tolvane::contract
