#include <windows.h>

#include "embedded/account_file.h"
#include "embedded/account_set.h"

namespace tolvane::embedded {
namespace {

using ::testing::HasSubstr;

class WindowsAccountFileTest : public AccountSetTest {};

TEST_F(WindowsAccountFileTest, AFileIsTheSameUnderAnotherName) {
  const auto upper = folder_.path() / "SET.AIS";
  EXPECT_EQ(identityOf(upper), identityOf(file()));
  EXPECT_NE(identityOf(file()), FileIdentity{});
  EXPECT_EQ(identityOf(folder_.path() / "none"), FileIdentity{});
}

TEST_F(WindowsAccountFileTest, AnOpenFileIsNeitherRemovedNorRenamed) {
  ASSERT_TRUE(openFilesKeepTheirNames());
  std::error_code error;
  EXPECT_FALSE(std::filesystem::remove(file(), error));
  std::filesystem::rename(file(), folder_.path() / "other.ais", error);
  EXPECT_TRUE(error);
}

TEST_F(WindowsAccountFileTest, TwoFilesAreTwo) {
  const auto other = folder_.path() / "other.ais";
  EmbeddedEngine::createAccountSet(other);
  EXPECT_NE(identityOf(other), identityOf(file()));
}

TEST_F(WindowsAccountFileTest, AReadOnlyFileIsSaidToBeSo) {
  const auto copy = folder_.path() / "protected.ais";
  EmbeddedEngine::createAccountSet(copy);
  SetFileAttributesW(copy.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_FALSE(isWritable(copy));
  const auto error = errorOf([&] { (void)EmbeddedEngine().open(DataSourceName::parse("Database=" + copy.string())); });
  EXPECT_THAT(error.description(), HasSubstr("the file is read-only"));
  SetFileAttributesW(copy.c_str(), FILE_ATTRIBUTE_NORMAL);
  EXPECT_TRUE(isWritable(copy));
}

TEST_F(WindowsAccountFileTest, AFolderCanBeWrittenWhateverItsMark) {
  SetFileAttributesW(folder_.path().c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_TRUE(isWritable(folder_.path()));
  SetFileAttributesW(folder_.path().c_str(), FILE_ATTRIBUTE_NORMAL);
}

}  // namespace
}  // namespace tolvane::embedded
