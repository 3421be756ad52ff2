#include "host/base64.h"

#include <gtest/gtest.h>

#include <sstream>

namespace tolvane::host {
namespace {

std::string encoded(const std::string& text) {
  std::ostringstream out;
  writeBase64(out, std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
  return out.str();
}

std::optional<std::string> decoded(std::string_view text) {
  const auto bytes = readBase64(text);
  return bytes ? std::optional(std::string(bytes->begin(), bytes->end())) : std::nullopt;
}

TEST(Base64Test, EncodesAndDecodesEveryLength) {
  const std::pair<const char*, const char*> cases[] = {{"", ""},
                                                       {"f", "Zg=="},
                                                       {"fo", "Zm8="},
                                                       {"foo", "Zm9v"},
                                                       {"foob", "Zm9vYg=="},
                                                       {"fooba", "Zm9vYmE="},
                                                       {"foobar", "Zm9vYmFy"},
                                                       {"\xFB\xFF\xFE", "+//+"}};
  for (const auto& [plain, text] : cases) {
    EXPECT_EQ(encoded(plain), text);
    EXPECT_EQ(decoded(text), plain);
  }
}

TEST(Base64Test, KeepsLargeDocuments) {
  std::string document(100001, '\0');
  for (std::size_t i = 0; i < document.size(); ++i) document[i] = static_cast<char>(i * 7);
  EXPECT_EQ(decoded(encoded(document)), document);
}

TEST(Base64Test, RefusesWhatIsNoBase64) {
  for (const char* text : {"Zg", "Zg=", "Zh==", "Z===", "====", "Zm9=", "Zm9v Zm9v", "Zg==Zg==", "Zm-_", "Zm\n="}) {
    EXPECT_FALSE(decoded(text)) << text;
  }
}

}  // namespace
}  // namespace tolvane::host
