#include <unicode/ucnv.h>
#include <unicode/ustring.h>

#include <array>

#include "platform/error.h"
#include "standalone/code_page.h"

namespace tolvane::standalone {
namespace {

struct CloseConverter {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using ConverterHandle = std::unique_ptr<UConverter, CloseConverter>;

ConverterHandle open(const std::string& name) {
  UErrorCode status = U_ZERO_ERROR;
  ConverterHandle converter(ucnv_open(name.c_str(), &status));
  return U_SUCCESS(status) ? std::move(converter) : nullptr;
}

ConverterHandle openCodePage(int number) {
  if (number == 65001) return open("UTF-8");
  for (const char* prefix : {"windows-", "cp", "ibm-"}) {
    if (auto converter = open(prefix + std::to_string(number))) return converter;
  }
  refuseCodePage(number);
}

/// Runs a conversion whose output length is not known before: `run(pointer, capacity)` answers the length it needs.
template <typename Text, typename Run>
Text grown(std::size_t guess, Run run) {
  Text result(guess, 0);
  for (;;) {
    const auto needed = static_cast<std::size_t>(run(result.data(), static_cast<std::int32_t>(result.size())));
    const bool fitted = needed <= result.size();
    result.resize(needed);
    if (fitted) return result;
  }
}

void check(UErrorCode status) {
  if (U_FAILURE(status) && status != U_BUFFER_OVERFLOW_ERROR) raise(RuntimeError::invalidArgument);
}

}  // namespace

struct CodePage::Table {
  ConverterHandle page;
};

CodePage::CodePage(int number) : table_(std::make_unique<Table>(openCodePage(number))) {
  UErrorCode status = U_ZERO_ERROR;
  ucnv_setSubstChars(table_->page.get(), "?", 1, &status);
  check(status);
}

CodePage::~CodePage() = default;

std::string CodePage::fromUtf8(const std::string& text) {
  const auto wide = grown<std::u16string>(text.size(), [&](char16_t* out, std::int32_t capacity) {
    UErrorCode status = U_ZERO_ERROR;
    std::int32_t length = 0;
    u_strFromUTF8WithSub(out, capacity, &length, text.data(), static_cast<std::int32_t>(text.size()), 0xFFFD, nullptr,
                         &status);
    check(status);
    return length;
  });
  return grown<std::string>(wide.size() * 2, [&](char* out, std::int32_t capacity) {
    UErrorCode status = U_ZERO_ERROR;
    const auto length = ucnv_fromUChars(table_->page.get(), out, capacity, wide.data(),
                                        static_cast<std::int32_t>(wide.size()), &status);
    check(status);
    return length;
  });
}

std::string CodePage::toUtf8(std::span<const std::uint8_t> bytes) {
  const auto wide = grown<std::u16string>(bytes.size(), [&](char16_t* out, std::int32_t capacity) {
    UErrorCode status = U_ZERO_ERROR;
    const auto length = ucnv_toUChars(table_->page.get(), out, capacity, reinterpret_cast<const char*>(bytes.data()),
                                      static_cast<std::int32_t>(bytes.size()), &status);
    check(status);
    return length;
  });
  return grown<std::string>(wide.size() * 3, [&](char* out, std::int32_t capacity) {
    UErrorCode status = U_ZERO_ERROR;
    std::int32_t length = 0;
    u_strToUTF8WithSub(out, capacity, &length, wide.data(), static_cast<std::int32_t>(wide.size()), 0xFFFD, nullptr,
                       &status);
    check(status);
    return length;
  });
}

}  // namespace tolvane::standalone
