// Report folders, on a real account set.
#include "reportstore/report_store.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;

struct SrvRptUpdateFoldersOnAccountSet : ReportStore {
  Value create(const std::string& name, const std::string& parent) {
    return set.result("SrvRptUpdate.Create", {{"sPathName", name}, {"sParentPath", parent}});
  }
  Value remove(const std::string& name, const std::string& parent) {
    return set.result("SrvRptUpdate.Delete", {{"sPathName", name}, {"sParentPath", parent}});
  }
  Value update(const std::string& name, const std::string& parent, const std::string& newName,
               const std::string& newParent) {
    return set.result("SrvRptUpdate.Update",
                      {{"sPathName", name}, {"sParentPath", parent}, {"sNewName", newName}, {"sNewParent", newParent}});
  }
  std::vector<std::string> folders() {
    return set.rows("Select FPathName,FParentPath From t_Rpt_Path Order By FPathName,FParentPath");
  }
};

TEST_F(SrvRptUpdateFoldersOnAccountSet, CreatingAFolderTwiceLeavesOneRowAndAnswersFalseBothTimes) {
  EXPECT_EQ(create("A", "R"), Value(false));
  EXPECT_EQ(create("A", "R"), Value(false));
  EXPECT_THAT(folders(), ElementsAre("A|R"));
}

TEST_F(SrvRptUpdateFoldersOnAccountSet, TheSameNameUnderAnotherParentIsAnotherFolder) {
  create("A", "R");
  create("A", "");
  EXPECT_THAT(folders(), ElementsAre("A|", "A|R"));
}

TEST_F(SrvRptUpdateFoldersOnAccountSet, DeletingAFolderThatDoesNotExistSucceedsAndAnswersFalse) {
  EXPECT_EQ(remove("A", "R"), Value(false));
}

TEST_F(SrvRptUpdateFoldersOnAccountSet, DeletingAFolderLeavesItsChildren) {
  create("A", "R");
  create("child", "A");
  EXPECT_EQ(remove("A", "R"), Value(false));
  EXPECT_THAT(folders(), ElementsAre("child|A"));
}

TEST_F(SrvRptUpdateFoldersOnAccountSet, UpdatingChangesTheFolderOfTheNewPairIntoTheOldPair) {
  create("B", "R");
  create("child", "B");
  EXPECT_EQ(update("A", "R", "B", "R"), Value(false));
  EXPECT_THAT(folders(), ElementsAre("A|R", "child|B"));
}

TEST_F(SrvRptUpdateFoldersOnAccountSet, UpdatingLeavesTheFolderOfTheOldPairAlone) {
  create("A", "R");
  EXPECT_EQ(update("A", "R", "B", "R"), Value(false));
  EXPECT_THAT(folders(), ElementsAre("A|R"));
}

TEST_F(SrvRptUpdateFoldersOnAccountSet, ANameWithAnApostropheFailsWithTheDatabasesError) {
  const Named folder{{"sPathName", "O'Brien"}, {"sParentPath", "R"}};
  EXPECT_EQ(set.error("SrvRptUpdate.Create", folder).number(), 0x80040E14);
  EXPECT_EQ(set.error("SrvRptUpdate.Delete", folder).number(), 0x80040E14);
  EXPECT_EQ(set.error("SrvRptUpdate.Update",
                      {{"sPathName", "a"}, {"sParentPath", "b"}, {"sNewName", "O'Brien"}, {"sNewParent", "R"}})
                .number(),
            0x80040E14);
}

}  // namespace
}  // namespace tolvane::test
