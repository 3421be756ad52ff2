#include <unicode/coll.h>
#include <unicode/uchar.h>
#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <stdexcept>
#include <vector>

#include "embedded/text_rules.h"
#include "tsql/unicode.h"

namespace tolvane::embedded {
namespace {

std::unique_ptr<icu::Collator> makeCollator() {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(icu::Locale("zh@collation=pinyin"), status));
  if (U_FAILURE(status)) throw std::runtime_error(std::string("ICU has no Chinese collation: ") + u_errorName(status));
  // ICU puts Chinese before all other letters in this locale; SQL Server puts it behind them.
  const std::int32_t asInUnicode = UCOL_REORDER_CODE_NONE;
  collator->setReorderCodes(&asInUnicode, 1, status);
  if (U_FAILURE(status)) throw std::runtime_error(std::string("ICU cannot order scripts: ") + u_errorName(status));
  // The second level holds accents; letter case and width are of the third and do not count.
  collator->setStrength(icu::Collator::SECONDARY);
  return collator;
}

// Signs in ICU's order and in that of Windows, which SQL Server has. ICU cannot be told other orders without compiling
// all of Chinese anew, so that it is given, for each sign, the one that stands in its place.
constexpr std::string_view signsOfIcu = "_,;:!?.\"()[]{}@*/\\&#%`^+<=>|~$";
constexpr std::string_view signsOfWindows = "!\"#$%&()*,./:;?@[\\]^_`{|}~+<=>";
static_assert(signsOfIcu.size() == signsOfWindows.size());

char32_t inIcusPlace(char32_t character) {
  constexpr char32_t toWide = U'\uFF01' - U'!';
  const char32_t wide = character >= U'\uFF01' && character <= U'\uFF5E' ? toWide : 0;
  const char32_t narrow = character - wide;
  const auto place = narrow < 0x80 ? signsOfWindows.find(static_cast<char>(narrow)) : std::string_view::npos;
  return place == std::string_view::npos ? character : static_cast<char32_t>(signsOfIcu[place]) + wide;
}

icu::UnicodeString inIcusPlaces(std::string_view text) {
  icu::UnicodeString result;
  for (std::size_t i = 0; i < text.size();)
    result.append(static_cast<UChar32>(inIcusPlace(tsql::nextCharacter(text, i))));
  return result;
}

// Writes one '?' for every UTF-16 unit that the code page does not have, as SQL Server does.
void writeQuestionMarks(const void* /*context*/, UConverterFromUnicodeArgs* args, const UChar* /*units*/,
                        std::int32_t length, UChar32 /*character*/, UConverterCallbackReason reason,
                        UErrorCode* status) {
  if (reason > UCNV_IRREGULAR) return;
  *status = U_ZERO_ERROR;
  for (std::int32_t i = 0; i < length; ++i) ucnv_cbFromUWriteBytes(args, "?", 1, 0, status);
}

struct ConverterRelease {
  void operator()(UConverter* converter) const noexcept { ucnv_close(converter); }
};
using ConverterHandle = std::unique_ptr<UConverter, ConverterRelease>;

// Converters keep a state, so each thread has its own.
UConverter* codePageConverter() {
  thread_local const ConverterHandle converter = [] {
    UErrorCode status = U_ZERO_ERROR;
    ConverterHandle opened(ucnv_open("windows-936-2000", &status));
    ucnv_setFromUCallBack(opened.get(), writeQuestionMarks, nullptr, nullptr, nullptr, &status);
    if (U_FAILURE(status)) throw std::runtime_error(std::string("ICU has no code page 936: ") + u_errorName(status));
    return opened;
  }();
  return converter.get();
}

icu::StringPiece pieceOf(std::string_view text) {
  return {text.data(), static_cast<std::int32_t>(text.size())};
}

class IcuTextRules final : public TextRules {
 public:
  IcuTextRules() : collator_(makeCollator()) {}

  int compare(std::string_view left, std::string_view right) const override {
    UErrorCode status = U_ZERO_ERROR;
    return collator_->compare(inIcusPlaces(left), inIcusPlaces(right), status);
  }

  std::string sortKey(char32_t character) const override {
    const icu::UnicodeString text(static_cast<UChar32>(inIcusPlace(character)));
    std::array<std::uint8_t, 64> buffer{};
    const auto size = collator_->getSortKey(text, buffer.data(), static_cast<std::int32_t>(buffer.size()));
    // The key of a single character is short; its last byte is a zero.
    return {reinterpret_cast<const char*>(buffer.data()), static_cast<std::size_t>(std::max(0, size - 1))};
  }

  char32_t upper(char32_t character) const override {
    return static_cast<char32_t>(u_toupper(static_cast<UChar32>(character)));
  }
  char32_t lower(char32_t character) const override {
    return static_cast<char32_t>(u_tolower(static_cast<UChar32>(character)));
  }
  char32_t foldCase(char32_t character) const override {
    return static_cast<char32_t>(u_foldCase(static_cast<UChar32>(character), U_FOLD_CASE_DEFAULT));
  }

  std::string toCodePage(std::string_view text) const override {
    const auto units = icu::UnicodeString::fromUTF8(pieceOf(text));
    std::string bytes(static_cast<std::size_t>(units.length()) * 2 + 16, '\0');
    UErrorCode status = U_ZERO_ERROR;
    const auto size = ucnv_fromUChars(codePageConverter(), bytes.data(), static_cast<std::int32_t>(bytes.size()),
                                      units.getBuffer(), units.length(), &status);
    bytes.resize(U_FAILURE(status) ? 0 : static_cast<std::size_t>(size));
    return bytes;
  }

  std::string fromCodePage(std::string_view bytes) const override {
    std::vector<UChar> units(bytes.size() * 2 + 16);
    UErrorCode status = U_ZERO_ERROR;
    const auto size = ucnv_toUChars(codePageConverter(), units.data(), static_cast<std::int32_t>(units.size()),
                                    bytes.data(), static_cast<std::int32_t>(bytes.size()), &status);
    std::string text;
    if (U_SUCCESS(status)) icu::UnicodeString(false, units.data(), size).toUTF8String(text);
    return text;
  }

 private:
  std::unique_ptr<icu::Collator> collator_;
};

}  // namespace

std::unique_ptr<TextRules> systemTextRules() {
  return std::make_unique<IcuTextRules>();
}

}  // namespace tolvane::embedded
