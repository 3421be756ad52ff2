#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "embedded/account_file.h"
#include "embedded/account_set.h"

namespace tolvane::embedded {
namespace {

using ::testing::HasSubstr;
using namespace std::chrono_literals;

class PosixAccountFileTest : public AccountSetTest {
 protected:
  static std::string openingError(const std::filesystem::path& path) {
    return errorOf([&] { (void)EmbeddedEngine().open(DataSourceName::parse("Database=" + path.string())); })
        .description();
  }
};

TEST_F(PosixAccountFileTest, AFileIsTheSameUnderAnotherName) {
  const auto other = folder_.path() / "other";
  std::filesystem::create_hard_link(file(), other);
  EXPECT_EQ(identityOf(other), identityOf(file()));
  EXPECT_EQ(identityOf(folder_.path() / "none"), FileIdentity{});
}

TEST_F(PosixAccountFileTest, AReadOnlyFileOrFolderIsSaidToBeSo) {
  connection_.reset();
  const auto copy = folder_.path() / "protected.ais";
  EmbeddedEngine::createAccountSet(copy);
  ::chmod(copy.c_str(), 0444);
  EXPECT_THAT(openingError(copy), HasSubstr("the file is read-only"));
  ::chmod(copy.c_str(), 0644);
  ::chmod(folder_.path().c_str(), 0555);
  EXPECT_THAT(openingError(copy), HasSubstr("its folder is read-only"));
  ::chmod(folder_.path().c_str(), 0755);
}

TEST_F(PosixAccountFileTest, AFileMadeAnewUnderTheSameNameIsAnotherAccountSet) {
  run("create table t (a int)");
  connection_.reset();
  for (const char* end : {"", "-wal", "-shm"}) std::filesystem::remove(file().string() + end);
  EmbeddedEngine::createAccountSet(file());
  connection_ = open();
  EXPECT_EQ(scalar("select count(*) from sysobjects where xtype = 'U'"), "0");
}

TEST_F(PosixAccountFileTest, AProcessKilledInTheMiddleLeavesNothingHalfDone) {
  run("create table t (a int, b image null)");
  connection_.reset();
  int ready[2];
  ASSERT_EQ(::pipe(ready), 0);
  const auto child = ::fork();
  if (child == 0) {
    const auto mine = EmbeddedEngine().open(DataSourceName::parse("Database=" + file().string() + ";"));
    mine->begin();
    mine->execute("insert into t (a) values (1)");
    (void)!::write(ready[1], "x", 1);
    for (;;) ::pause();
  }
  char byte = 0;
  ASSERT_EQ(::read(ready[0], &byte, 1), 1);
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  connection_ = open(2s);
  EXPECT_EQ(scalar("select count(*) from t"), "0");
  run("insert into t (a) values (2)");
}

}  // namespace
}  // namespace tolvane::embedded
