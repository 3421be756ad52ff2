#include "embedded/icu_collation.h"

#include <unicode/coll.h>
#include <unicode/uchar.h>
#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

#include "tsql/unicode.h"

namespace tolvane::embedded {
namespace {

constexpr char32_t planeSize = 0x10000;
// Characters up to the last of the common Chinese ones get a rank; what lies above is rare in texts.
constexpr char32_t rankedEnd = 0xA000;
// ICU answers this many comparisons before the ranks of all characters are worked out: a program that compares a few
// texts only should not wait for the table.
constexpr std::uint32_t comparisonsBeforeRanks = 500;

std::string_view withoutTrailingBlanks(std::string_view text) {
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

bool isPrintableAscii(unsigned char c) {
  return c >= 0x20 && c < 0x7F;
}

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

std::atomic<std::uint64_t> keysMade{0};

std::string sortKey(const icu::Collator& collator, char32_t character) {
  keysMade.fetch_add(1, std::memory_order_relaxed);
  const icu::UnicodeString text(static_cast<UChar32>(character));
  std::array<std::uint8_t, 64> buffer{};
  const auto size = collator.getSortKey(text, buffer.data(), static_cast<std::int32_t>(buffer.size()));
  // The key of a single character is short; its last byte is a zero.
  return {reinterpret_cast<const char*>(buffer.data()), static_cast<std::size_t>(std::max(0, size - 1))};
}

struct Keyed {
  std::string key;
  char32_t character;
};

std::vector<Keyed> sortedKeys(const icu::Collator& collator, char32_t end) {
  std::vector<Keyed> keys;
  keys.reserve(end);
  for (char32_t c = 1; c < end; ++c) {
    if (U_IS_SURROGATE(c)) continue;
    if (auto key = sortKey(collator, c); !key.empty()) keys.push_back({std::move(key), c});
  }
  std::sort(keys.begin(), keys.end(),
            [](const Keyed& a, const Keyed& b) { return a.key != b.key ? a.key < b.key : a.character < b.character; });
  return keys;
}

// Whether the character is one that compares on its own, by the first level alone, whatever stands around it.
bool isPlain(char32_t c) {
  return (c < 0x80 && isPrintableAscii(static_cast<unsigned char>(c))) || (c >= 0x4E00 && c < rankedEnd);
}

// Ranks of the plain characters, 0 for all others. Two plain texts compare as their ranks do.
std::vector<std::uint16_t> makeRanks(const icu::Collator& collator, char32_t end) {
  std::vector<std::uint16_t> ranks(end, 0);
  std::uint16_t rank = 0;
  std::string_view last;
  const auto keys = sortedKeys(collator, end);
  for (const auto& [key, character] : keys) {
    if (!isPlain(character)) continue;
    if (key != last) ++rank;
    last = key;
    ranks[character] = rank;
  }
  return ranks;
}

// An ASCII letter in lower case stands for all that are equal to it, or a common Chinese character, or the first of
// them.
char32_t representativeOf(const std::vector<Keyed>& keys, std::size_t first, std::size_t end) {
  for (auto i = first; i < end; ++i) {
    const auto c = keys[i].character;
    if (isPlain(c)) return c < 0x80 ? static_cast<char32_t>(u_tolower(static_cast<UChar32>(c))) : c;
  }
  return keys[first].character;
}

std::vector<char16_t> makeFolds(const icu::Collator& collator) {
  std::vector<char16_t> folds(planeSize);
  for (char32_t c = 0; c < planeSize; ++c) folds[c] = static_cast<char16_t>(c);
  const auto keys = sortedKeys(collator, planeSize);
  for (std::size_t first = 0; first < keys.size();) {
    std::size_t end = first;
    while (end < keys.size() && keys[end].key == keys[first].key) ++end;
    const auto representative = representativeOf(keys, first, end);
    for (; first < end; ++first) folds[keys[first].character] = static_cast<char16_t>(representative);
  }
  return folds;
}

std::string toUtf8(char32_t character) {
  std::string text;
  icu::UnicodeString(static_cast<UChar32>(character)).toUTF8String(text);
  return text;
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

class IcuCollation final : public tsql::Collation {
 public:
  IcuCollation() : collator_(makeCollator()), asciiRanks_(makeRanks(*collator_, 0x80)) {}

  int compare(std::string_view left, std::string_view right) const override {
    left = withoutTrailingBlanks(left);
    right = withoutTrailingBlanks(right);
    const auto* ranks = ready_.load(std::memory_order_acquire) ? &ranks_ : nullptr;
    std::size_t i = 0;
    for (const auto common = std::min(left.size(), right.size()); i < common; ++i) {
      const auto a = static_cast<unsigned char>(left[i]);
      const auto b = static_cast<unsigned char>(right[i]);
      if (!isPrintableAscii(a) || !isPrintableAscii(b)) {
        return ranks ? compareRanked(left, right, i, *ranks) : compareByIcu(left, right, i);
      }
      // A difference of the first level decides, whatever follows.
      if (a != b && asciiRanks_[a] != asciiRanks_[b]) return asciiRanks_[a] < asciiRanks_[b] ? -1 : 1;
    }
    if (left.size() == right.size()) return 0;
    const auto next = static_cast<unsigned char>(left.size() > i ? left[i] : right[i]);
    // A longer text is greater, unless what follows are marks that belong to the letter before or count for nothing.
    if (!isPrintableAscii(next)) return ranks ? compareRanked(left, right, i, *ranks) : compareByIcu(left, right, i);
    return left.size() > i ? 1 : -1;
  }

  char32_t fold(char32_t character) const override {
    if (character < 0x80) return static_cast<char32_t>(u_tolower(static_cast<UChar32>(character)));
    if (character >= planeSize)
      return static_cast<char32_t>(u_foldCase(static_cast<UChar32>(character), U_FOLD_CASE_DEFAULT));
    std::call_once(foldsOnce_, [this] { folds_ = makeFolds(*collator_); });
    return folds_[character];
  }

  int compareCharacters(char32_t left, char32_t right) const override {
    if (fold(left) == fold(right)) return 0;
    const int order = compareWhole(toUtf8(left), toUtf8(right));
    if (order != 0) return order;
    return left < right ? -1 : 1;
  }

  char32_t upper(char32_t character) const override {
    return static_cast<char32_t>(u_toupper(static_cast<UChar32>(character)));
  }
  char32_t lower(char32_t character) const override {
    return static_cast<char32_t>(u_tolower(static_cast<UChar32>(character)));
  }

  std::string toCodePage(std::string_view text) const override {
    const auto units =
        icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
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
  int compareWhole(std::string_view left, std::string_view right) const {
    UErrorCode status = U_ZERO_ERROR;
    return collator_->compareUTF8(icu::StringPiece(left.data(), static_cast<std::int32_t>(left.size())),
                                  icu::StringPiece(right.data(), static_cast<std::int32_t>(right.size())), status);
  }

  // Compares texts that are equal, plain ASCII before byte `from`. The character before goes with the rest, since marks
  // that follow belong to it.
  int compareByIcu(std::string_view left, std::string_view right, std::size_t from) const {
    if (slowComparisons_.fetch_add(1, std::memory_order_relaxed) == comparisonsBeforeRanks) {
      std::call_once(ranksOnce_, [this] {
        ranks_ = makeRanks(*collator_, rankedEnd);
        ready_.store(true, std::memory_order_release);
      });
    }
    const auto start = from == 0 ? 0 : from - 1;
    return compareWhole(left.substr(start), right.substr(start));
  }

  // The same by ranks, as long as both texts hold plain characters only; else ICU decides on the whole.
  int compareRanked(std::string_view left, std::string_view right, std::size_t from,
                    const std::vector<std::uint16_t>& ranks) const {
    auto i = static_cast<std::int32_t>(from);
    auto j = i;
    const auto leftSize = static_cast<std::int32_t>(left.size());
    const auto rightSize = static_cast<std::int32_t>(right.size());
    int difference = 0;
    while (i < leftSize && j < rightSize) {
      UChar32 a = 0;
      UChar32 b = 0;
      U8_NEXT(left.data(), i, leftSize, a);
      U8_NEXT(right.data(), j, rightSize, b);
      const auto rankA = a >= 0 && a < static_cast<UChar32>(rankedEnd) ? ranks[static_cast<std::size_t>(a)] : 0;
      const auto rankB = b >= 0 && b < static_cast<UChar32>(rankedEnd) ? ranks[static_cast<std::size_t>(b)] : 0;
      if (rankA == 0 || rankB == 0) return compareWhole(left, right);
      difference = rankA - rankB;
      if (difference != 0) return difference < 0 ? -1 : 1;
    }
    if (i == leftSize && j == rightSize) return 0;
    const auto& longer = i < leftSize ? left : right;
    auto at = i < leftSize ? i : j;
    UChar32 next = 0;
    U8_NEXT(longer.data(), at, static_cast<std::int32_t>(longer.size()), next);
    if (next < 0 || next >= static_cast<UChar32>(rankedEnd) || ranks[static_cast<std::size_t>(next)] == 0) {
      return compareWhole(left, right);
    }
    return i < leftSize ? 1 : -1;
  }

  std::unique_ptr<icu::Collator> collator_;
  std::vector<std::uint16_t> asciiRanks_;
  mutable std::atomic<std::uint32_t> slowComparisons_{0};
  mutable std::once_flag ranksOnce_;
  mutable std::atomic<bool> ready_{false};
  mutable std::vector<std::uint16_t> ranks_;
  mutable std::once_flag foldsOnce_;
  mutable std::vector<char16_t> folds_;
};

}  // namespace

std::uint64_t sortKeysMade() {
  return keysMade.load();
}

const tsql::Collation& accountSetCollation() {
  static const IcuCollation collation;
  return collation;
}

namespace {

class AccountSetTextOrder final : public rowset::TextOrder {
 public:
  [[nodiscard]] int compare(std::string_view left, std::string_view right) const override {
    return accountSetCollation().compare(left, right);
  }
  [[nodiscard]] std::u32string folded(std::string_view text) const override {
    std::u32string result;
    for (std::size_t i = 0; i < text.size();) result += accountSetCollation().fold(tsql::nextCharacter(text, i));
    return result;
  }
};

}  // namespace

const rowset::TextOrder& accountSetTextOrder() {
  static const AccountSetTextOrder order;
  return order;
}

}  // namespace tolvane::embedded
