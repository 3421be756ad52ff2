#include "tracing/secrets.h"

#include <gtest/gtest.h>

namespace tolvane::tracing {
namespace {

TEST(SecretsTest, KnowsThePasswordColumnInAnyLetterCase) {
  EXPECT_TRUE(isSecretName("FMPassWord"));
  EXPECT_TRUE(isSecretName("fmpassword"));
  EXPECT_FALSE(isSecretName("FMUserName"));
}

TEST(SecretsTest, HidesTheValueOfAnInsert) {
  EXPECT_EQ(maskSql("Insert Into t_Rpt_MultiAcctEntry(FUserID,FName,FMUserName,FMPassword,FPropsString)Values(1,'set',"
                    "'me','secret','a=b')"),
            "Insert Into t_Rpt_MultiAcctEntry(FUserID,FName,FMUserName,FMPassword,FPropsString)Values(1,'set',"
            "'me','***','a=b')");
}

TEST(SecretsTest, HidesEveryRowOfAnInsert) {
  EXPECT_EQ(maskSql("insert into x (FMPassWord, a) values (N'one', 1), ('two', 2)"),
            "insert into x (FMPassWord, a) values (N'***', 1), ('***', 2)");
}

TEST(SecretsTest, HidesAssignedAndComparedTexts) {
  EXPECT_EQ(maskSql("Update e Set FMPassWord='s''x', FA='y' Where e.[FMPassWord] <> N'old'"),
            "Update e Set FMPassWord='***', FA='y' Where e.[FMPassWord] <> N'***'");
}

TEST(SecretsTest, LeavesOtherStatementsAlone) {
  for (const char* sql :
       {"Select * From t_Rpt_MultiAcctEntry Where  FName='a'", "Insert Into x(a) Values('it''s')",
        "Select e.FMUserName, e.FMPassWord From t_Rpt_MultiAcctEntry e Where e.FName='x'", "Select 'unclosed"}) {
    EXPECT_EQ(maskSql(sql), sql);
  }
}

TEST(SecretsTest, CutsOffWhereAPasswordCannotBeTold) {
  const std::string start = "Insert Into t(FName,FMPassword,FP)Values(";
  for (const char* values : {"'a','se'cret','')", "'a','se','cret','')", "'a','se'')", "'a','secret) ',(1),'')"}) {
    EXPECT_EQ(maskSql(start + values), start + "***") << values;
  }
  EXPECT_EQ(maskSql("Update t Set FMPassWord='a'b'c' Where x=1"), "Update t Set FMPassWord=***");
}

TEST(SecretsTest, CutsOffInsertsThatNameNoColumns) {
  EXPECT_EQ(maskSql("Insert Into t_Rpt_MultiAcctEntry Values(1,'n','u','secret','')"),
            "Insert Into t_Rpt_MultiAcctEntry Values(1,***");
}

TEST(SecretsTest, HidesThePasswordOfADataSource) {
  EXPECT_EQ(maskDsn("Server=h; PWD=secret;Database=d"), "Server=h;PWD=***;Database=d");
  EXPECT_EQ(maskDsn("Database=demo.db ;"), "Database=demo.db ;");
  EXPECT_EQ(maskDsn("PWD={broken"), "***");
}

TEST(SecretsTest, HidesThePasswordOfAConnectionTextThatIsAValue) {
  EXPECT_EQ(maskValue(Value("Driver=FreeTDS;PWD=secret;Port=1")), Value("Driver=FreeTDS;PWD=***;Port=1"));
  EXPECT_EQ(maskValue(Value("password = {a;b}")), Value("password=***"));
  for (const char* text : {"Port=1433", "pwd", "the pwd=x of a sentence", "Oldpassword=1", ""}) {
    EXPECT_EQ(maskValue(Value(text)), Value(text));
  }
}

TEST(SecretsTest, HidesConnectionTextsWithPasswordsInStatements) {
  EXPECT_EQ(maskSql("Update t Set FPropsString='Driver=x;PWD=se''cret' Where FName='a'"),
            "Update t Set FPropsString='***' Where FName='a'");
  EXPECT_EQ(maskSql("Insert Into t(FMPassword,FPropsString) Values('one','PWD=two')"),
            "Insert Into t(FMPassword,FPropsString) Values('***','***')");
  EXPECT_EQ(maskSql("Update t Set FPropsString='PWD=se'cret' Where x=1"), "Update t Set FPropsString=***");
}

}  // namespace
}  // namespace tolvane::tracing
