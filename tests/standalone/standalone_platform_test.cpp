#include "standalone/standalone_platform.h"

#include <gtest/gtest.h>

#include "standalone/share_folder.h"
#include "support/environment.h"

namespace tolvane::standalone {
namespace {

TEST(StandalonePlatformTest, ThereIsOneApplicationObject) {
  StandalonePlatform platform({});
  EXPECT_EQ(platform.application(), platform.application());
  EXPECT_NE(platform.application()->getContext(), platform.application()->getContext());
}

TEST(StandalonePlatformTest, RandomNumbersLieBelowOne) {
  StandalonePlatform platform({});
  const double first = platform.random();
  bool differs = false;
  for (int i = 0; i < 100; ++i) {
    const double number = platform.random();
    EXPECT_GE(number, 0.0);
    EXPECT_LT(number, 1.0);
    differs = differs || number != first;
  }
  EXPECT_TRUE(differs);
}

TEST(StandalonePlatformTest, TodayHasNoTime) {
  StandalonePlatform platform({});
  EXPECT_EQ(platform.today().days, static_cast<double>(static_cast<std::int64_t>(platform.today().days)));
  EXPECT_GT(platform.today().days, 45000.0);
}

TEST(ShareFolderTest, FindsTheFilesOfTheSourceTree) {
  EXPECT_TRUE(std::filesystem::exists(findResources() / "ebo.en.json"));
  EXPECT_TRUE(std::filesystem::exists(findShared("schema") / "accountset.sql"));
}

TEST(ShareFolderTest, TheEnvironmentNamesTheFolderFirst) {
  const test::EnvironmentVariable share("TOLVANE_SHARE", "elsewhere");
  EXPECT_EQ(findShared("schema"), std::filesystem::path("elsewhere") / "schema");
}

}  // namespace
}  // namespace tolvane::standalone
