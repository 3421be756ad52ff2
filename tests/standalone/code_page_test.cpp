#include "standalone/code_page.h"

#include <gtest/gtest.h>

#include "platform/error.h"

namespace tolvane::standalone {
namespace {

std::vector<std::uint8_t> bytes(const std::string& text) {
  return {text.begin(), text.end()};
}

TEST(CodePageTest, WritesSimplifiedChineseInTwoBytesACharacter) {
  CodePage page;
  EXPECT_EQ(page.fromUtf8("A中"), "A\xD6\xD0");
  EXPECT_EQ(page.toUtf8(bytes("A\xD6\xD0")), "A中");
}

TEST(CodePageTest, CharactersOutsideBecomeQuestionMarks) {
  CodePage page;
  EXPECT_EQ(page.fromUtf8("a😀b"), "a?b");
  EXPECT_EQ(CodePage(1252).fromUtf8("中"), "?");
}

TEST(CodePageTest, HalfACharacterAtTheEndIsReadAsSomething) {
  CodePage page;
  EXPECT_EQ(page.toUtf8(bytes("A\xD6")), "A\uFFFD");
}

TEST(CodePageTest, KeepsZeroBytes) {
  CodePage page;
  const std::string text("a\0b", 3);
  EXPECT_EQ(page.fromUtf8(text), text);
  EXPECT_EQ(page.toUtf8(bytes(text)), text);
}

TEST(CodePageTest, LongTextsGoBothWays) {
  CodePage page;
  std::string text;
  for (int i = 0; i < 5000; ++i) text += "报表";
  EXPECT_EQ(page.toUtf8(bytes(page.fromUtf8(text))), text);
}

TEST(CodePageTest, OtherPagesAreFoundByNumber) {
  EXPECT_EQ(CodePage(1252).fromUtf8("é"), "\xE9");
  EXPECT_EQ(CodePage(950).fromUtf8("中"), "\xA4\xA4");
  EXPECT_EQ(CodePage(65001).fromUtf8("中"), "中");
  EXPECT_THROW(CodePage(4711), AutomationError);
}

}  // namespace
}  // namespace tolvane::standalone
