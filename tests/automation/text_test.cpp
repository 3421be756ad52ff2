#include "automation/text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tolvane::automation {
namespace {

bool isSurrogate(unsigned unit) {
  return unit >= 0xD800 && unit <= 0xDFFF;
}

std::string systemUtf8(const std::wstring& text) {
  std::string result(16, '\0');
  result.resize(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                                             result.data(), 16, nullptr, nullptr)));
  return result;
}

TEST(Text, EveryCharacterOfSixteenBitsIsWrittenAsTheSystemWritesIt) {
  for (unsigned unit = 0; unit < 0x10000; ++unit) {
    if (isSurrogate(unit)) continue;
    const std::wstring text(1, static_cast<wchar_t>(unit));
    const std::string bytes = utf8(text);
    ASSERT_EQ(bytes, systemUtf8(text)) << std::hex << unit;
    ASSERT_EQ(wide(bytes), text) << std::hex << unit;
  }
}

TEST(Text, TextsOfManyKindsGoThereAndBack) {
  for (const std::string text : {"", "plain", "资产负债表", "a资\xC3\xA9z", "\xF0\x9F\x98\x80 emoji 资", "0\t\r\n9"}) {
    EXPECT_EQ(utf8(wide(text)), text);
    const Bstr bstr(text);
    EXPECT_EQ(bstr.toUtf8(), text);
    EXPECT_EQ(viewOf(bstr.get()), wide(text));
  }
}

TEST(Text, ZerosInsideATextStay) {
  const std::string text("a\0资", 5);
  EXPECT_EQ(Bstr(text).toUtf8(), text);
  EXPECT_EQ(wide(text).size(), 3U);
}

TEST(Text, DamagedBytesBecomeReplacementCharactersAndTheRestStays) {
  const std::vector<std::string> damages = {"\x80",         "\xC3",     "\xC0\xAF",     "\xE8\xB5", "\xE0\x80\xAF",
                                            "\xED\xA0\x80", "\xF8\x88", "\xF0\x9F\x98", "\xFF"};
  for (const std::string& damage : damages) {
    const std::wstring text = wide("a" + damage + "z");
    EXPECT_GE(text.size(), 3U);
    EXPECT_EQ(text.front(), L'a');
    EXPECT_EQ(text.back(), L'z');
    EXPECT_EQ(text.substr(1, text.size() - 2), std::wstring(text.size() - 2, L'\xFFFD'));
    EXPECT_EQ(viewOf(Bstr("a" + damage + "z").get()), text);
  }
}

TEST(Text, AHalfOfAPairBecomesAReplacementCharacter) {
  EXPECT_EQ(utf8(L"a\xD83Dz"), "a\xEF\xBF\xBDz");
  EXPECT_EQ(utf8(L"\xDE00"), "\xEF\xBF\xBD");
}

TEST(Text, NothingIsAnEmptyText) {
  EXPECT_EQ(viewOf(nullptr), L"");
  EXPECT_EQ(utf8(viewOf(nullptr)), "");
}

}  // namespace
}  // namespace tolvane::automation
