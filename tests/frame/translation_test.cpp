#include "frame/translation.h"

#include <gmock/gmock.h>

#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Translation : testing::Test {
  RecordingPlatform platform;
  Translation() { platform.translations["查看"] = "View"; }
};

TEST_F(Translation, ChineseInAnyLetterCaseIsTheTextItselfWithoutALoader) {
  for (const char* language : {"chs", "CHS", "Chs", "cHs"})
    EXPECT_EQ(translate(platform, " 查看 ", language), " 查看 ");
  EXPECT_THAT(platform.log, IsEmpty());
}

TEST_F(Translation, LanguagesThatOnlyBeginOrEndAsChineseAreOthers) {
  EXPECT_EQ(translate(platform, "月", "chs2"), "chs2:月");
  EXPECT_EQ(translate(platform, "月", "ch"), "ch:月");
}

TEST_F(Translation, BlankTextsAreThemselvesWithoutALoader) {
  EXPECT_EQ(translate(platform, "", "en"), "");
  EXPECT_EQ(translate(platform, "   ", "en"), "   ");
  EXPECT_THAT(platform.log, IsEmpty());
}

TEST_F(Translation, TheBlanksAroundATextStayAroundItsTranslation) {
  EXPECT_EQ(translate(platform, "  查看 ", "en"), "  View ");
  EXPECT_THAT(platform.log, testing::Contains("LoadString 查看"));
}

TEST_F(Translation, ApostrophesReachTheLoaderAsTheyAre) {
  EXPECT_EQ(translate(platform, "a'b", "en"), "en:a'b");
}

TEST_F(Translation, TheLoaderIsSetUpForTheFilesAndTheLanguage) {
  (void)translate(platform, "查看", "en");
  EXPECT_THAT(platform.log, ElementsAre("CreateLoader", "ResFileBaseName ebo", "LanguageID en", "LoadString 查看"));
}

TEST_F(Translation, OneLoaderServesALanguageUntilAnotherIsAskedFor) {
  (void)translate(platform, "查看", "en");
  (void)translate(platform, "查看", "en");
  (void)translate(platform, "查看", "cht");
  EXPECT_THAT(platform.log,
              ElementsAre("CreateLoader", "ResFileBaseName ebo", "LanguageID en", "LoadString 查看", "LoadString 查看",
                          "Unload", "CreateLoader", "ResFileBaseName ebo", "LanguageID cht", "LoadString 查看"));
}

TEST_F(Translation, AFailingLoaderLeavesTheChineseTextWithItsBlanks) {
  for (const char* operation : {"CreateLoader", "ResFileBaseName", "LanguageID", "LoadString"}) {
    RecordingPlatform fresh;
    fresh.fail(operation, AutomationError(RuntimeError::cannotCreateObject, "loader"));
    EXPECT_EQ(translate(fresh, " 查看  ", "en"), " 查看  ") << operation;
  }
}

TEST_F(Translation, AFailureIsForgottenAtTheNextText) {
  platform.fail("LoadString", AutomationError(RuntimeError::cannotCreateObject, "loader"));
  EXPECT_EQ(translate(platform, "查看", "en"), "查看");
  EXPECT_EQ(translate(platform, "查看", "en"), "View");
}

TEST_F(Translation, ALoaderThatFailsToUnloadIsDroppedAllTheSame) {
  (void)translate(platform, "查看", "en");
  platform.fail("Unload", AutomationError(RuntimeError::cannotCreateObject, "loader"));
  (void)translate(platform, "月", "cht");
  EXPECT_EQ(translate(platform, "月", "cht"), "cht:月");
}

}  // namespace
}  // namespace tolvane::test
