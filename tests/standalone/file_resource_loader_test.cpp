#include "standalone/file_resource_loader.h"

#include <gtest/gtest.h>

#include <fstream>

#include "platform/error.h"

namespace tolvane::standalone {
namespace {

class FileResourceLoaderTest : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_ = std::filesystem::path(::testing::TempDir()) / "tolvane_resource_loader";
    std::filesystem::create_directories(folder_);
    std::ofstream(folder_ / "ebo.en.json") << R"({"查看": "View"})";
    std::ofstream(folder_ / "broken.en.json") << "[1";
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  FileResourceLoader loader(const std::string& base, const std::string& language) {
    FileResourceLoader result(folder_);
    result.setResFileBaseName(base);
    result.setLanguageID(language);
    return result;
  }

  std::filesystem::path folder_;
};

TEST_F(FileResourceLoaderTest, TranslatesWhatTheFileHolds) {
  EXPECT_EQ(loader("ebo", "en").loadString("查看"), "View");
}

TEST_F(FileResourceLoaderTest, ATextWithoutTranslationComesBackUnchanged) {
  EXPECT_EQ(loader("ebo", "EN").loadString("没有"), "没有");
}

TEST_F(FileResourceLoaderTest, AMissingFileIsAnErrorThatNamesIt) {
  auto cht = loader("ebo", "cht");
  try {
    (void)cht.loadString("查看");
    FAIL();
  } catch (const AutomationError& error) {
    EXPECT_NE(error.description().find("ebo.cht.json"), std::string::npos);
  }
}

TEST_F(FileResourceLoaderTest, ABrokenFileIsAnError) {
  EXPECT_THROW((void)loader("broken", "en").loadString("x"), AutomationError);
}

TEST_F(FileResourceLoaderTest, UnloadingReadsTheFileAnew) {
  auto english = loader("ebo", "en");
  (void)english.loadString("查看");
  std::ofstream(folder_ / "ebo.en.json") << R"({"查看": "Look"})";
  EXPECT_EQ(english.loadString("查看"), "View");
  english.unload();
  EXPECT_EQ(english.loadString("查看"), "Look");
}

}  // namespace
}  // namespace tolvane::standalone
