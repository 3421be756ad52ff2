#include "standalone/icu_code_page.h"

#include <gtest/gtest.h>

#include "platform/error.h"

namespace tolvane::standalone {
namespace {

std::vector<std::uint8_t> bytes(const std::string& text) {
  return {text.begin(), text.end()};
}

TEST(IcuCodePageTest, WritesSimplifiedChineseInTwoBytesACharacter) {
  IcuCodePage page;
  EXPECT_EQ(page.fromUtf8("A中"), "A\xD6\xD0");
  EXPECT_EQ(page.toUtf8(bytes("A\xD6\xD0")), "A中");
}

TEST(IcuCodePageTest, CharactersOutsideBecomeQuestionMarks) {
  IcuCodePage page;
  EXPECT_EQ(page.fromUtf8("a😀b"), "a?b");
  EXPECT_EQ(IcuCodePage(1252).fromUtf8("中"), "?");
}

TEST(IcuCodePageTest, HalfACharacterAtTheEndIsReadAsSomething) {
  IcuCodePage page;
  EXPECT_EQ(page.toUtf8(bytes("A\xD6")), "A\uFFFD");
}

TEST(IcuCodePageTest, KeepsZeroBytes) {
  IcuCodePage page;
  const std::string text("a\0b", 3);
  EXPECT_EQ(page.fromUtf8(text), text);
  EXPECT_EQ(page.toUtf8(bytes(text)), text);
}

TEST(IcuCodePageTest, LongTextsGoBothWays) {
  IcuCodePage page;
  std::string text;
  for (int i = 0; i < 5000; ++i) text += "报表";
  EXPECT_EQ(page.toUtf8(bytes(page.fromUtf8(text))), text);
}

TEST(IcuCodePageTest, OtherPagesAreFoundByNumber) {
  EXPECT_EQ(IcuCodePage(1252).fromUtf8("é"), "\xE9");
  EXPECT_EQ(IcuCodePage(950).fromUtf8("中"), "\xA4\xA4");
  EXPECT_EQ(IcuCodePage(65001).fromUtf8("中"), "中");
  EXPECT_THROW(IcuCodePage(4711), AutomationError);
}

}  // namespace
}  // namespace tolvane::standalone
