#include "host/row_chunks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "embedded/embedded_engine.h"
#include "host/program.h"
#include "platform/conversions.h"
#include "platform/engine.h"

namespace tolvane::host {
namespace {

using ::testing::ElementsAre;

class RowChunksTest : public ::testing::Test {
 protected:
  RowChunksTest() {
    embedded::EmbeddedEngine::createAccountSet(place_.path("a.db"));
    connection_ = embedded::EmbeddedEngine().open(DataSourceName::parse(place_.dsn()));
    run("Create Table Docs (FID int not null identity(1,1) primary key, FKind int null, FText nvarchar(9), FDoc "
        "image)");
  }
  void run(const std::string& sql) { connection_->execute(sql); }
  std::vector<std::string> chunks(const std::string& identity) {
    const auto columns = connection_->execute("Select * From Docs Where 1 = 0")->fields();
    const auto rows = toInt64(connection_->execute("Select Count(*) From Docs")->value(std::size_t{0}));
    return rowChunks(*connection_, "Docs", columns, identity, rows);
  }

  testing::Workplace place_;
  std::shared_ptr<EngineConnection> connection_;
};

TEST_F(RowChunksTest, FewRowsAreOnePortion) {
  run("Insert Into Docs (FKind) Values (1)");
  EXPECT_THAT(chunks("FID"), ElementsAre(""));
}

TEST_F(RowChunksTest, DocumentsComeInSmallPortionsOfTheIdentity) {
  for (int i = 0; i < 40; ++i) run("Insert Into Docs (FKind) Values (" + std::to_string(i % 3) + ")");
  EXPECT_THAT(chunks("FID"), ElementsAre("(FID Is Null Or FID <= 16)", "FID > 16 And FID <= 32", "FID > 32"));
}

TEST_F(RowChunksTest, WithoutAnIdentityTheColumnWithTheMostValuesDividesAndItsValuesStayTogether) {
  for (int i = 0; i < 40; ++i) run("Insert Into Docs (FKind) Values (" + std::to_string(i % 2) + ")");
  run("Update Docs Set FKind = Null Where FID = 1");
  const auto byValue = chunks("");
  EXPECT_THAT(byValue, ElementsAre("(FID Is Null Or FID <= 16)", "FID > 16 And FID <= 32", "FID > 32"));
  EXPECT_THAT(chunks("FKind"), ElementsAre("(FKind Is Null Or FKind <= 0)", "FKind > 0"));
}

TEST_F(RowChunksTest, TheLastPortionIsNotAnEmptyOne) {
  for (int i = 0; i < 32; ++i) run("Insert Into Docs (FKind) Values (0)");
  EXPECT_THAT(chunks("FID"), ElementsAre("(FID Is Null Or FID <= 16)", "FID > 16"));
  EXPECT_THAT(chunks("FKind"), ElementsAre(""));
}

}  // namespace
}  // namespace tolvane::host
