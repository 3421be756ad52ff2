// The shared data-access tests on account sets in files.
#include "contract/connection_contract.h"
#include "contract/recordset_contract.h"
#include "embedded/account_set.h"

namespace tolvane::contract {
namespace {

class EmbeddedContractEngine final : public ContractEngine {
 public:
  EmbeddedContractEngine() { embedded::EmbeddedEngine::createAccountSet(file()); }
  std::shared_ptr<EngineConnection> connect() override {
    return embedded::EmbeddedEngine().open(DataSourceName::parse("Database=" + file().string()));
  }
  [[nodiscard]] Deviations deviations() const override {
    return {.laterRowsFailLate = true, .defaultsReadableAfterPosting = true};
  }

 private:
  [[nodiscard]] std::filesystem::path file() const { return folder_.path() / "set.ais"; }
  embedded::TestFolder folder_;
};

INSTANTIATE_TEST_SUITE_P(Embedded, DataAccessContract,
                         ::testing::Values(ContractParameter{
                             "Embedded", [] { return std::make_unique<EmbeddedContractEngine>(); }}),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace tolvane::contract
