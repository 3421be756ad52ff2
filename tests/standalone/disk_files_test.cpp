#include "standalone/disk_files.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>

#include "platform/error.h"
#include "system/path_text.h"

namespace tolvane::standalone {
namespace {

std::uint32_t numberOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const AutomationError& error) {
    return error.number() - 0x800A0000U;
  }
  return 0;
}

class DiskFilesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    name_ = ::testing::TempDir() + "tolvane_disk_files_" +
            ::testing::UnitTest::GetInstance()->current_test_info()->name() + "_文件.tmp";
    std::filesystem::remove(system::pathOf(name_));
  }
  void TearDown() override { std::filesystem::remove(system::pathOf(name_)); }

  DiskFiles files_;
  std::string name_;
};

TEST_F(DiskFilesTest, OpeningCreatesTheFile) {
  EXPECT_FALSE(files_.exists(name_));
  const auto file = files_.openBinary(name_);
  EXPECT_TRUE(files_.exists(name_));
  EXPECT_EQ(file->length(), 0U);
}

TEST_F(DiskFilesTest, PositionsCountFromOne) {
  const auto file = files_.openBinary(name_);
  file->put(1, std::array<std::uint8_t, 3>{1, 2, 3});
  file->put(2, std::array<std::uint8_t, 1>{9});
  std::array<std::uint8_t, 3> back{};
  EXPECT_EQ(file->get(1, back), 3U);
  EXPECT_EQ(back, (std::array<std::uint8_t, 3>{1, 9, 3}));
  EXPECT_EQ(numberOf([&] { (void)file->get(0, back); }), 5U);
}

TEST_F(DiskFilesTest, ReadingPastTheEndAnswersWhatThereWas) {
  const auto file = files_.openBinary(name_);
  file->put(1, std::array<std::uint8_t, 2>{1, 2});
  std::array<std::uint8_t, 4> back{};
  EXPECT_EQ(file->get(2, back), 1U);
  EXPECT_EQ(back[0], 2);
  EXPECT_EQ(file->get(3, back), 0U);
}

TEST_F(DiskFilesTest, OpeningKeepsWhatIsThere) {
  files_.openBinary(name_)->put(1, std::array<std::uint8_t, 2>{1, 2});
  EXPECT_EQ(files_.openBinary(name_)->length(), 2U);
}

TEST_F(DiskFilesTest, RemovingTwiceIsFileNotFound) {
  files_.openBinary(name_)->close();
  files_.remove(name_);
  EXPECT_FALSE(files_.exists(name_));
  EXPECT_EQ(numberOf([&] { files_.remove(name_); }), 53U);
}

TEST_F(DiskFilesTest, AFolderThatIsNotThereIsPathNotFound) {
  EXPECT_EQ(numberOf([&] { (void)files_.openBinary(name_ + "/inner/file"); }), 76U);
}

TEST_F(DiskFilesTest, AFolderIsNoFile) {
  EXPECT_EQ(numberOf([&] { (void)files_.openBinary(::testing::TempDir()); }), 75U);
}

TEST_F(DiskFilesTest, AClosedFileCannotBeUsed) {
  const auto file = files_.openBinary(name_);
  file->close();
  file->close();
  EXPECT_EQ(numberOf([&] { (void)file->length(); }), 75U);
}

}  // namespace
}  // namespace tolvane::standalone
