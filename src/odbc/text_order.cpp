#include "odbc/text_order.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <cstdint>

namespace tolvane::odbc {
namespace {

std::u32string foldedText(std::string_view text) {
  std::u32string result;
  const auto size = static_cast<std::int32_t>(text.size());
  for (std::int32_t at = 0; at < size;) {
    UChar32 character = 0;
    U8_NEXT_OR_FFFD(reinterpret_cast<const std::uint8_t*>(text.data()), at, size, character);
    result += static_cast<char32_t>(u_foldCase(character, U_FOLD_CASE_DEFAULT));
  }
  return result;
}

class ClientTextOrder final : public rowset::TextOrder {
 public:
  [[nodiscard]] int compare(std::string_view left, std::string_view right) const override {
    return withoutBlanks(left).compare(withoutBlanks(right));
  }
  [[nodiscard]] std::u32string folded(std::string_view text) const override { return foldedText(text); }

 private:
  static std::u32string withoutBlanks(std::string_view text) {
    auto result = foldedText(text);
    while (!result.empty() && result.back() == U' ') result.pop_back();
    return result;
  }
};

}  // namespace

const rowset::TextOrder& clientTextOrder() {
  static const ClientTextOrder order;
  return order;
}

}  // namespace tolvane::odbc
