#include "tds_server/code_page.h"

#include <iconv.h>

#include "tsql/unicode.h"

namespace tolvane::tds {
namespace {

std::string recoded(const char* to, const char* from, std::string_view text) {
  std::string result(text.size() * 4, '\0');
  const auto converter = ::iconv_open(to, from);
  auto* in = const_cast<char*>(text.data());
  auto inLeft = text.size();
  auto* out = result.data();
  auto outLeft = result.size();
  while (inLeft > 0 && ::iconv(converter, &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1)) {
    do {
      ++in;
      --inLeft;
    } while (inLeft > 0 && (static_cast<unsigned char>(*in) & 0xC0U) == 0x80U);
    *out++ = '?';
    --outLeft;
  }
  ::iconv_close(converter);
  result.resize(result.size() - outLeft);
  return result;
}

}  // namespace

std::string toCodePage(std::string_view text) {
  return tsql::isAscii(text) ? std::string(text) : recoded("CP936", "UTF-8", text);
}

std::string fromCodePage(std::string_view text) {
  return tsql::isAscii(text) ? std::string(text) : recoded("UTF-8", "CP936", text);
}

}  // namespace tolvane::tds
