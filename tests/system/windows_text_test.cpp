#include "system/windows_text.h"

#include <gtest/gtest.h>

namespace tolvane::system {
namespace {

TEST(WindowsTextTest, Utf8AndUtf16AreTheSameText) {
  EXPECT_EQ(wideOf("a中\xF0\x9F\x98\x80"), L"a中\xD83D\xDE00");
  EXPECT_EQ(utf8Of(L"a中\xD83D\xDE00"), "a中\xF0\x9F\x98\x80");
  EXPECT_EQ(wideOf(""), L"");
}

TEST(WindowsTextTest, WhatTheCodePageLacksIsAQuestionMark) {
  EXPECT_EQ(toCodePage(936, L"a中", QuestionMarks::oneEachUnit), "a\xD6\xD0");
  EXPECT_EQ(toCodePage(936, L"a\xD83D\xDE00z", QuestionMarks::oneEachUnit), "a??z");
  EXPECT_EQ(toCodePage(936, L"a\xD83D\xDE00z", QuestionMarks::oneEachCharacter), "a?z");
  EXPECT_EQ(toCodePage(1252, L"中é", QuestionMarks::oneEachUnit), "?\xE9");
}

TEST(WindowsTextTest, LookingAlikeIsNotEnough) {
  EXPECT_EQ(toCodePage(936, L"\x00E3", QuestionMarks::oneEachUnit), "?");
}

TEST(WindowsTextTest, HalfACharacterIsReadAsTheReplacement) {
  EXPECT_EQ(fromCodePage(936, "a\xD6\xD0"), L"a中");
  EXPECT_EQ(fromCodePage(936, "\xD6\xD0\xD6"), L"中\xFFFD");
}

}  // namespace
}  // namespace tolvane::system
