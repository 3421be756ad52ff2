#include "standalone_com/command_objects.h"

#include <gtest/gtest.h>

#include "standalone_com/client.h"

namespace tolvane::standalone_com {
namespace {

using automation::Variant;
using testing::Client;
using testing::errorOf;
using testing::TryOut;

constexpr int input = 1;
constexpr int integer = 3;
constexpr int text = 202;

class CommandObjectsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    tryOut_.run("create table t_Try (FID int not null, FName nvarchar(10) not null)");
    tryOut_.run("insert into t_Try values (1, N'资产')");
    tryOut_.run("insert into t_Try values (2, N'b')");
    command_.putObject(L"ActiveConnection", tryOut_.connection());
    command_.put(L"CommandText", "Select FName From t_Try Where FID = ?");
  }
  [[nodiscard]] Client parameters() const { return command_.object(L"Parameters"); }
  void append(const char* name, int type, int size, const Value& value) const {
    (void)parameters().get(L"Append", command_.object(L"CreateParameter", name, type, input, size, value));
  }
  [[nodiscard]] Value answer() const { return command_.object(L"Execute").object(L"Fields", 0).get(L"Value"); }

  TryOut tryOut_;
  Client command_ = Client::create("Command");
};

TEST_F(CommandObjectsTest, RunsWithItsParametersInOrder) {
  command_.put(L"CommandText", "Select FName From t_Try Where FID = ? And FName = ?");
  append("id", integer, 4, 1);
  append("name", text, 10, "资产");
  EXPECT_EQ(answer(), Value("资产"));
}

TEST_F(CommandObjectsTest, RunsOnceMoreWithAnotherValue) {
  append("id", integer, 4, 1);
  EXPECT_EQ(answer(), Value("资产"));
  command_.put(L"Parameters", "ID", 2);
  EXPECT_EQ(answer(), Value("b"));
}

TEST_F(CommandObjectsTest, ParametersAreFoundByNameAndPosition) {
  append("id", integer, 4, 1);
  EXPECT_EQ(parameters().get(L"Count"), Value(1));
  EXPECT_EQ(parameters().object(L"Item", 0).get(L"Name"), Value("id"));
  EXPECT_EQ(command_.object(L"Parameters", "ID").get(L"Type"), Value(integer));
  EXPECT_EQ(command_.object(L"Parameters", "ID").get(L"Size"), Value(4));
  EXPECT_TRUE(errorOf([&] { (void)parameters().object(L"Item", 1); }).starts_with("800A0CC1 ADODB.Command"));
  (void)parameters().get(L"Delete", "id");
  EXPECT_EQ(parameters().get(L"Count"), Value(0));
}

TEST_F(CommandObjectsTest, AParameterTooFewIsAnError) {
  EXPECT_EQ(errorOf([&] { (void)command_.get(L"Execute"); }).substr(0, 8), "80040E10");
}

TEST_F(CommandObjectsTest, OnlyParametersThatGoInAreTaken) {
  EXPECT_EQ(
      errorOf([&] { (void)command_.object(L"CreateParameter", "out", integer, 2); }),
      "800A0E7C ADODB.Command: Parameter object is improperly defined. Inconsistent or incomplete information was "
      "provided.");
}

TEST_F(CommandObjectsTest, WhatIsNoParameterIsNotAppended) {
  EXPECT_TRUE(errorOf([&] { (void)parameters().get(L"Append", command_); }).starts_with("800A0BB9 ADODB.Command"));
  EXPECT_TRUE(errorOf([&] { (void)parameters().get(L"Append", 5); }).starts_with("800A0BB9 ADODB.Command"));
}

TEST_F(CommandObjectsTest, NeedsAConnection) {
  command_.putObject(L"ActiveConnection", Client());
  EXPECT_TRUE(errorOf([&] { (void)command_.get(L"Execute"); }).starts_with("800A0E7D ADODB.Command"));
}

TEST_F(CommandObjectsTest, TellsHowManyRowsItAffected) {
  command_.put(L"CommandText", "delete from t_Try");
  std::int32_t affected = 0;
  (void)command_.get(L"Execute", Variant::reference(affected));
  EXPECT_EQ(affected, 2);
}

TEST_F(CommandObjectsTest, KeepsItsSettings) {
  command_.put(L"CommandTimeout", 0);
  command_.put(L"CommandType", 1);
  EXPECT_EQ(command_.get(L"CommandTimeout"), Value(0));
  EXPECT_EQ(command_.get(L"CommandType"), Value(1));
  EXPECT_TRUE(errorOf([&] { command_.put(L"CommandTimeout", -1); }).starts_with("800A0BB9 ADODB.Command"));
}

}  // namespace
}  // namespace tolvane::standalone_com
