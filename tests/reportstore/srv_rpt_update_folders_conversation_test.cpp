// The exact statements, cursors and order of operations behind report folders.
#include <gmock/gmock.h>

#include "reportstore/srv_rpt_update.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::_;
using testing::ElementsAre;

struct SrvRptUpdateFolders : testing::Test {
  RecordingPlatform platform;
  SrvRptUpdate service{platform};

  void folderExists() { platform.answer("Select * From t_Rpt_Path", {{"FPathName", "FParentPath"}, {{"B", "R"}}}); }
};

TEST_F(SrvRptUpdateFolders, CreateAddsAFolderThatIsNotThere) {
  EXPECT_FALSE(service.Create("x", "A", "R"));
  EXPECT_THAT(platform.work(),
              ElementsAre("Open 1 3 Select * From t_Rpt_Path Where FPathName='A' And FParentPath='R'", "AddNew",
                          "Set FPathName='A'", "Set FParentPath='R'", "Update", "CompleteWork"));
}

TEST_F(SrvRptUpdateFolders, CreateWritesNothingWhenTheFolderIsThere) {
  folderExists();
  EXPECT_FALSE(service.Create("x", "B", "R"));
  EXPECT_THAT(platform.work(), ElementsAre(_, "CompleteWork"));
}

TEST_F(SrvRptUpdateFolders, NamesGoIntoTheStatementWithoutDoublingTheirApostrophes) {
  service.Create("x", "A'", "R'");
  service.Delete("x", "A'", "");
  service.Update("x", "", "", "N'", "P'");
  EXPECT_THAT(platform.statements(),
              ElementsAre("Open 1 3 Select * From t_Rpt_Path Where FPathName='A'' And FParentPath='R''",
                          "Execute Delete From t_Rpt_Path Where FPathName='A'' And FParentPath=''",
                          "Open 1 3 Select * From t_Rpt_Path Where FPathName='N'' And FParentPath='P''"));
}

TEST_F(SrvRptUpdateFolders, DeleteRemovesTheOneRow) {
  platform.log.clear();
  EXPECT_FALSE(service.Delete("x", "A", "R"));
  EXPECT_EQ(platform.log.front(), "BeginWork");
  EXPECT_THAT(platform.work(),
              ElementsAre("Execute Delete From t_Rpt_Path Where FPathName='A' And FParentPath='R'", "CompleteWork"));
}

TEST_F(SrvRptUpdateFolders, UpdateLooksUpTheNewPairAndWritesTheOldOne) {
  folderExists();
  EXPECT_FALSE(service.Update("x", "A", "R", "B", "S"));
  EXPECT_THAT(platform.work(), ElementsAre("Open 1 3 Select * From t_Rpt_Path Where FPathName='B' And FParentPath='S'",
                                           "Set FPathName='A'", "Set FParentPath='R'", "Update", "CompleteWork"));
}

TEST_F(SrvRptUpdateFolders, UpdateOfAFolderThatIsNotThereWritesNothing) {
  EXPECT_FALSE(service.Update("x", "A", "R", "B", "S"));
  EXPECT_THAT(platform.work(), ElementsAre(_, "CompleteWork"));
}

}  // namespace
}  // namespace tolvane::test
