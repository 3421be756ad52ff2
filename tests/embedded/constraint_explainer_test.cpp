#include "embedded/constraint_explainer.h"

#include "account_set.h"

namespace tolvane::embedded {
namespace {

class ConstraintExplainerTest : public AccountSetTest {
 protected:
  ConstraintExplainerTest() {
    run("create table Parent (ID int not null constraint PK_Parent primary key, Size int constraint CK_Size check "
        "(Size > 0), "
        "check (ID > 0 or Size > 0))");
    run("create table Other (ID int not null primary key)");
    run("create table Child (ParentID int constraint FK_Child references Parent(ID), OtherID int constraint FK_Other "
        "references Other(ID))");
    run("insert Parent values (1, 1) insert Other values (2) insert Child values (1, 2)");
  }
  std::string failureOf(const std::string& sql) {
    return errorOf([&] { run(sql); }).description();
  }
};

TEST_F(ConstraintExplainerTest, ACheckOfOneColumnNamesIt) {
  EXPECT_EQ(failureOf("insert Parent values (3, 0)"),
            "The INSERT statement conflicted with the CHECK constraint \"CK_Size\". The conflict occurred in database "
            "\"set\", table \"dbo.Parent\", column 'Size'.");
}

TEST_F(ConstraintExplainerTest, ACheckWithoutANameGetsOne) {
  EXPECT_THAT(failureOf("insert Parent values (0, null) insert Parent values (-1, -1)"),
              ::testing::MatchesRegex("The INSERT statement conflicted with the CHECK constraint .CK_.*"));
}

TEST_F(ConstraintExplainerTest, AMissingParentNamesItsTableAndColumn) {
  EXPECT_EQ(failureOf("insert Child values (77, 2)"),
            "The INSERT statement conflicted with the FOREIGN KEY constraint \"FK_Child\". The conflict occurred in "
            "database \"set\", table \"dbo.Parent\", column 'ID'.");
}

TEST_F(ConstraintExplainerTest, OfSeveralKeysTheBrokenOneIsNamed) {
  EXPECT_EQ(failureOf("insert Child values (1, 99)"),
            "The INSERT statement conflicted with the FOREIGN KEY constraint \"FK_Other\". The conflict occurred in "
            "database \"set\", table \"dbo.Other\", column 'ID'.");
  EXPECT_EQ(scalar("select count(*) from Child"), "1");
}

TEST_F(ConstraintExplainerTest, ARowThatIsReferredToNamesTheTableThatDoesIt) {
  EXPECT_EQ(failureOf("delete Other"),
            "The DELETE statement conflicted with the REFERENCE constraint \"FK_Other\". The conflict occurred in "
            "database \"set\", table \"dbo.Child\", column 'OtherID'.");
  EXPECT_EQ(failureOf("update Parent set ID = 5"),
            "The UPDATE statement conflicted with the REFERENCE constraint \"FK_Child\". The conflict occurred in "
            "database \"set\", table \"dbo.Child\", column 'ParentID'.");
}

TEST_F(ConstraintExplainerTest, ATableThatIsReferredToIsNeitherDroppedNorTruncated) {
  EXPECT_EQ(failureOf("drop table Parent"),
            "Could not drop object 'Parent' because it is referenced by a FOREIGN KEY constraint.");
  EXPECT_EQ(failureOf("truncate table Parent"),
            "Cannot truncate table 'Parent' because it is being referenced by a FOREIGN KEY constraint.");
  run("drop table Child drop table Parent");
}

TEST_F(ConstraintExplainerTest, ANullNamesTheDatabase) {
  EXPECT_EQ(failureOf("insert Other values (null)"),
            "Cannot insert the value NULL into column 'ID', table 'set.dbo.Other'; column does not allow nulls. INSERT "
            "fails.");
}

}  // namespace
}  // namespace tolvane::embedded
