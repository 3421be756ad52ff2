// Functions on text. Positions and lengths are UTF-16 units, positions from 1.
#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tsql/convert.h"
#include "tsql/convert_text.h"
#include "tsql/function_groups.h"
#include "tsql/like.h"
#include "tsql/name_parts.h"
#include "tsql/sql_error.h"
#include "tsql/unicode.h"

namespace tolvane::tsql {
namespace {

constexpr std::int64_t mostBytes = 8000;  // of a text that is not `max`

std::int64_t unitsOf(std::string_view text) {
  return static_cast<std::int64_t>(isAscii(text) ? text.size() : utf16Length(text));
}

// The units from `start` (0-based, within the text) on, `count` at most.
std::string part(std::string_view text, std::int64_t start, std::int64_t count) {
  const auto first = static_cast<std::size_t>(start);
  const auto length = static_cast<std::size_t>(count);
  if (isAscii(text)) return std::string(text.substr(first, length));
  return fromUtf16(std::u16string_view(toUtf16(text)).substr(first, length));
}

Result len(Call& call) {
  if (anyNull(call)) return {};
  return unitsOf(withoutTrailingBlanks(call.args[0].text()));
}

// value, packed type.
Result dataLengthCall(Call& call) {
  if (anyNull(call)) return {};
  return dataLength(call.args[0], Type::unpack(call.args[1].integer()), call.collation);
}

Result left(Call& call) {
  if (anyNull(call)) return {};
  const std::int64_t count = wholeNumber(call.args[1]);
  if (count < 0) throw SqlError(Message::InvalidLength, {"LEFT or SUBSTRING"});
  return part(call.args[0].text(), 0, count);
}

Result right(Call& call) {
  if (anyNull(call)) return {};
  const std::int64_t count = wholeNumber(call.args[1]);
  if (count < 0) throw SqlError(Message::InvalidRightLength, {"RIGHT"});
  const std::int64_t length = unitsOf(call.args[0].text());
  return part(call.args[0].text(), std::max<std::int64_t>(length - count, 0), count);
}

// text or bytes, start, length: what lies before position 1 counts in the length.
Result substring(Call& call) {
  if (anyNull(call)) return {};
  const std::int64_t start = wholeNumber(call.args[1]);
  const std::int64_t count = wholeNumber(call.args[2]);
  if (count < 0) throw SqlError(Message::InvalidLength, {"LEFT or SUBSTRING"});
  const bool bytes = call.args[0].kind() == Kind::Blob;
  const auto length = bytes ? static_cast<std::int64_t>(call.args[0].blob().size()) : unitsOf(call.args[0].text());
  const std::int64_t first = std::clamp<std::int64_t>(start - 1, 0, length);
  const std::int64_t end = std::clamp<std::int64_t>(start - 1 + count, first, length);
  if (!bytes) return part(call.args[0].text(), first, end - first);
  const BytesView slice =
      call.args[0].blob().subspan(static_cast<std::size_t>(first), static_cast<std::size_t>(end - first));
  return Bytes(slice.begin(), slice.end());
}

// searched text, text to search in[, start].
Result charindex(Call& call) {
  if (anyNull(call)) return {};
  const std::u16string searched = foldedUnits(call.args[0].text(), call.collation);
  const std::u16string text = foldedUnits(call.args[1].text(), call.collation);
  const std::int64_t start = call.args.size() > 2 ? std::max<std::int64_t>(wholeNumber(call.args[2]), 1) : 1;
  if (searched.empty() || std::cmp_greater(start, text.size())) return 0;
  const auto found = text.find(searched, static_cast<std::size_t>(start - 1));
  return found == std::u16string::npos ? 0 : static_cast<std::int64_t>(found) + 1;
}

// Whether the text begins with the pattern's own text, for a pattern "text%" where all that has to be looked at is
// ASCII: there folding is lower case and a unit a byte. Nothing when it takes more to tell. Account numbers are
// compared so, every one with every other.
std::optional<bool> beginsAsAscii(std::string_view pattern, std::string_view text) {
  if (pattern.size() < 2 || pattern.back() != '%') return std::nullopt;
  pattern.remove_suffix(1);
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c; };
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const char wanted = pattern[i];
    if (wanted == '%' || wanted == '_' || wanted == '[' || static_cast<unsigned char>(wanted) >= 0x80)
      return std::nullopt;
  }
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (i == text.size()) return false;
    if (static_cast<unsigned char>(text[i]) >= 0x80) return std::nullopt;
    if (lower(text[i]) != lower(pattern[i])) return false;
  }
  return true;
}

// pattern, text.
Result patindex(Call& call) {
  if (anyNull(call)) return {};
  if (const auto begins = beginsAsAscii(call.args[0].text(), call.args[1].text())) return *begins ? 1 : 0;
  return LikePattern(call.args[0].text(), std::nullopt, call.collation).find(call.args[1].text());
}

// Whether a text that a function has made is longer than its type, the packed last argument, may be.
bool isTooLong(const std::string& text, const Call& call) {
  if (text.size() <= static_cast<std::size_t>(mostBytes / 2)) return false;
  const Type type = Type::unpack(call.args.back().integer());
  return type.length != maxLength && lengthIn(type, text, call.collation) > type.length;
}

// text, searched, replacement, packed type of the result: what goes beyond it is cut off.
Result replace(Call& call) {
  if (anyNull(call)) return {};
  const std::u16string text = toUtf16(call.args[0].text());
  const std::u16string folded = foldedUnits(call.args[0].text(), call.collation);
  const std::u16string searched = foldedUnits(call.args[1].text(), call.collation);
  const std::u16string replacement = toUtf16(call.args[2].text());
  if (searched.empty()) return Result(call.args[0]);
  std::u16string replaced;
  std::size_t position = 0;
  for (auto found = folded.find(searched); found != folded.npos; found = folded.find(searched, position)) {
    replaced.append(text, position, found - position).append(replacement);
    position = found + searched.size();
  }
  std::string result = fromUtf16(replaced.append(text, position));
  if (!isTooLong(result, call)) return result;
  const Type type = Type::unpack(call.args.back().integer());
  return convert(result, Type::text(type.kind, maxLength), type, std::nullopt, call.collation);
}

// text, count, packed type of the text: 8000 bytes are the most, but for `max`.
Result replicate(Call& call) {
  if (anyNull(call) || wholeNumber(call.args[1]) < 0) return {};
  const std::string_view text = call.args[0].text();
  const Type type = Type::unpack(call.args[2].integer());
  const bool unbounded = type.length == maxLength || type.isLongText();
  const std::int64_t most = type.isUnicode() ? mostBytes / 2 : mostBytes;
  constexpr std::int64_t mostOfMax = 64 * 1024 * 1024;  // bytes; no text of an account set is near it
  const std::int64_t length = std::max<std::int64_t>(lengthIn(type, text, call.collation), 1);
  const std::int64_t count = std::min(wholeNumber(call.args[1]), (unbounded ? mostOfMax : most) / length + 1);
  if (unbounded && count * static_cast<std::int64_t>(text.size()) > mostOfMax) throw SqlError(Message::Truncated);
  std::string repeated;
  repeated.reserve(static_cast<std::size_t>(count) * text.size());
  for (std::int64_t i = 0; i < count; ++i) repeated += text;
  if (unbounded) return repeated;
  return convert(repeated, Type::text(type.isUnicode() ? TypeKind::NVarChar : TypeKind::VarChar, maxLength),
                 Type::text(type.isUnicode() ? TypeKind::NVarChar : TypeKind::VarChar, static_cast<std::int32_t>(most)),
                 std::nullopt, call.collation);
}

Result reverse(Call& call) {
  if (anyNull(call)) return {};
  std::u16string units = toUtf16(call.args[0].text());
  std::reverse(units.begin(), units.end());
  return fromUtf16(units);
}

// text, start, length, replacement, packed type of the result: null is put in as nothing.
Result stuff(Call& call) {
  if (call.args[0].isNull() || call.args[1].isNull() || call.args[2].isNull()) return {};
  const std::u16string text = toUtf16(call.args[0].text());
  const std::int64_t start = wholeNumber(call.args[1]);
  const std::int64_t count = wholeNumber(call.args[2]);
  if (start < 1 || count < 0 || std::cmp_greater(start, text.size())) return {};
  const auto first = static_cast<std::size_t>(start - 1);
  const auto removed = static_cast<std::size_t>(std::min<std::int64_t>(count, static_cast<std::int64_t>(text.size())));
  std::u16string result = text.substr(0, first);
  if (!call.args[3].isNull()) result += toUtf16(call.args[3].text());
  if (first + removed < text.size()) result += text.substr(first + removed);
  std::string stuffed = fromUtf16(result);
  if (!isTooLong(stuffed, call)) return stuffed;
  throw SqlError(notSupportedNumber, 16, "A text of STUFF that is longer than its type is not supported.");
}

Result space(Call& call) {
  if (anyNull(call) || wholeNumber(call.args[0]) < 0) return {};
  return std::string(static_cast<std::size_t>(std::min(wholeNumber(call.args[0]), mostBytes)), ' ');
}

template <char32_t (Collation::*mapping)(char32_t) const>
Result mapped(Call& call) {
  if (anyNull(call)) return {};
  const std::string_view text = call.args[0].text();
  std::string result;
  result.reserve(text.size());
  for (std::size_t position = 0; position < text.size();) {
    appendCharacter(result, (call.collation.*mapping)(nextCharacter(text, position)));
  }
  return result;
}

enum class Side { Left, Right, Both };

// What is left of a text without the units at its ends that are among others, as the collation sees them.
std::string withoutEnds(const Datum& value, const Datum& taken, Side side, const Collation& collation) {
  const std::u16string text = toUtf16(value.text());
  const std::u16string folded = foldedUnits(value.text(), collation);
  const std::u16string units = foldedUnits(taken.text(), collation);
  std::size_t first = 0;
  std::size_t end = text.size();
  const auto goes = [&](std::size_t at) { return units.find(folded[at]) != units.npos; };
  while (side != Side::Right && first < end && goes(first)) ++first;
  while (side != Side::Left && end > first && goes(end - 1)) --end;
  return fromUtf16(std::u16string_view(text).substr(first, end - first));
}

// text[, the characters that go, the blank without them].
template <Side side>
Result trim(Call& call) {
  if (anyNull(call)) return {};
  if (call.args.size() > 1) return withoutEnds(call.args[0], call.args[1], side, call.collation);
  std::string_view text = call.args[0].text();
  if (side != Side::Right) text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  return std::string(side == Side::Left ? text : withoutTrailingBlanks(text));
}

// text, characters, as many others in their places.
Result translate(Call& call) {
  if (anyNull(call)) return {};
  std::u16string text = toUtf16(call.args[0].text());
  const std::u16string folded = foldedUnits(call.args[0].text(), call.collation);
  const std::u16string from = foldedUnits(call.args[1].text(), call.collation);
  const std::u16string to = toUtf16(call.args[2].text());
  if (from.size() != to.size()) {
    throw SqlError(9828, 16,
                   "The second and third arguments of the TRANSLATE built-in function must contain an equal number of "
                   "characters.");
  }
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto place = from.find(folded[i]);
    if (place != from.npos) text[i] = to[place];
  }
  return fromUtf16(text);
}

constexpr std::size_t soundexLength = 4;

// The first letter and the sounds of the next consonants. Equal sounds count once unless a vowel stands between them;
// what is no letter ends the word.
std::string soundexOf(std::string_view text) {
  static constexpr std::string_view sounds = "01230120022455012623010202";  // of A to Z
  const auto capital = [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; };
  const auto isLetter = [](char c) { return c >= 'A' && c <= 'Z'; };
  std::string code;
  char last = '0';
  for (const char each : text) {
    const char letter = capital(each);
    if (!isLetter(letter) || code.size() == soundexLength) break;
    const char sound = sounds[static_cast<std::size_t>(letter - 'A')];
    if (code.empty()) {
      code += letter;
    } else if (sound != '0' && sound != last) {
      code += sound;
    }
    if (letter != 'H' && letter != 'W') last = sound;
  }
  return code + std::string(soundexLength - code.size(), '0');
}

Result soundex(Call& call) {
  if (anyNull(call)) return {};
  return soundexOf(call.args[0].text());
}

// How many places of the two codes are alike.
Result difference(Call& call) {
  if (anyNull(call)) return {};
  const std::string left = soundexOf(call.args[0].text());
  const std::string right = soundexOf(call.args[1].text());
  int alike = 0;
  for (std::size_t i = 0; i < soundexLength; ++i) alike += left[i] == right[i] ? 1 : 0;
  return alike;
}

// name, which of its parts, from the right.
Result parsename(Call& call) {
  constexpr std::size_t mostParts = 4;
  constexpr std::int64_t longestName = 128;
  if (anyNull(call)) return {};
  const auto parts = nameParts(call.args[0].text());
  const std::int64_t wanted = wholeNumber(call.args[1]);
  if (!parts || parts->size() > mostParts || wanted < 1 || std::cmp_greater(wanted, parts->size())) return {};
  const bool tooLong = std::ranges::any_of(*parts, [](const auto& part) { return unitsOf(part) > longestName; });
  const std::string& part = (*parts)[parts->size() - static_cast<std::size_t>(wanted)];
  return tooLong || part.empty() ? Result() : Result(part);
}

// separator, texts: those that are null are left out.
Result concatWithSeparator(Call& call) {
  std::string joined;
  bool first = true;
  for (const Datum& text : call.args.subspan(1)) {
    if (text.isNull()) continue;
    if (!first && !call.args[0].isNull()) joined += call.args[0].text();
    joined += text.text();
    first = false;
  }
  return joined;
}

// The first byte in the code page.
Result ascii(Call& call) {
  if (anyNull(call) || call.args[0].text().empty()) return {};
  const std::string_view text = call.args[0].text();
  if (isAscii(text.substr(0, 1))) return static_cast<unsigned char>(text[0]);
  std::size_t end = 0;
  (void)nextCharacter(text, end);
  return static_cast<unsigned char>(call.collation.toCodePage(text.substr(0, end)).at(0));
}

Result character(Call& call) {
  if (anyNull(call) || wholeNumber(call.args[0]) < 0 || wholeNumber(call.args[0]) > 255) return {};
  const std::string byte(1, static_cast<char>(wholeNumber(call.args[0])));
  if (isAscii(byte)) return byte;
  const std::string single = call.collation.fromCodePage(byte);
  if (single == "\uFFFD" || single == "?") {
    throw SqlError(notSupportedNumber, 16, "CHAR of a byte that is half a character is not supported.");
  }
  return single;
}

Result unicode(Call& call) {
  if (anyNull(call) || call.args[0].text().empty()) return {};
  const std::u16string units = toUtf16(utf16Prefix(call.args[0].text(), 1));
  return static_cast<std::int64_t>(units[0]);
}

Result nationalCharacter(Call& call) {
  if (anyNull(call) || wholeNumber(call.args[0]) < 0 || wholeNumber(call.args[0]) > 0xFFFF) return {};
  return fromUtf16(std::u16string(1, static_cast<char16_t>(wholeNumber(call.args[0]))));
}

// text[, quote]: a text of more than 128 units, or a quote that is none, gives null.
Result quotename(Call& call) {
  constexpr std::int64_t longestName = 128;
  struct Quotes {
    char given;
    char first;
    char last;
  };
  static constexpr std::array<Quotes, 11> quotes{{{'[', '[', ']'},
                                                  {']', '[', ']'},
                                                  {'(', '(', ')'},
                                                  {')', '(', ')'},
                                                  {'<', '<', '>'},
                                                  {'>', '<', '>'},
                                                  {'{', '{', '}'},
                                                  {'}', '{', '}'},
                                                  {'\'', '\'', '\''},
                                                  {'"', '"', '"'},
                                                  {'`', '`', '`'}}};
  if (anyNull(call)) return {};
  const std::string_view text = call.args[0].text();
  const std::string_view given = call.args.size() > 1 ? call.args[1].text() : "[";
  const auto row = std::find_if(quotes.begin(), quotes.end(),
                                [given](const Quotes& each) { return !given.empty() && each.given == given[0]; });
  if (row == quotes.end() || unitsOf(text) > longestName) return {};
  std::string quoted(1, row->first);
  for (const char c : text) {
    quoted += c;
    if (c == row->last) quoted += c;
  }
  return quoted + row->last;
}

constexpr std::array functions{
    Function{"ts_len", 1, 1, true, len},
    Function{"ts_datalength", 2, 2, true, dataLengthCall},
    Function{"ts_left", 2, 2, true, left},
    Function{"ts_right", 2, 2, true, right},
    Function{"ts_substring", 3, 3, true, substring},
    Function{"ts_charindex", 2, 3, true, charindex},
    Function{"ts_patindex", 2, 2, true, patindex},
    Function{"ts_replace", 4, 4, true, replace},
    Function{"ts_replicate", 3, 3, true, replicate},
    Function{"ts_reverse", 1, 1, true, reverse},
    Function{"ts_stuff", 5, 5, true, stuff},
    Function{"ts_space", 1, 1, true, space},
    Function{"ts_upper", 1, 1, true, mapped<&Collation::upper>},
    Function{"ts_lower", 1, 1, true, mapped<&Collation::lower>},
    Function{"ts_ltrim", 1, 2, true, trim<Side::Left>},
    Function{"ts_rtrim", 1, 2, true, trim<Side::Right>},
    Function{"ts_trim", 1, 2, true, trim<Side::Both>},
    Function{"ts_translate", 3, 3, true, translate},
    Function{"ts_soundex", 1, 1, true, soundex},
    Function{"ts_difference", 2, 2, true, difference},
    Function{"ts_parsename", 2, 2, true, parsename},
    Function{"ts_concat_ws", 2, -1, true, concatWithSeparator},
    Function{"ts_ascii", 1, 1, true, ascii},
    Function{"ts_char", 1, 1, true, character},
    Function{"ts_unicode", 1, 1, true, unicode},
    Function{"ts_nchar", 1, 1, true, nationalCharacter},
    Function{"ts_quotename", 1, 2, true, quotename},
};

}  // namespace

std::span<const Function> textFunctions() {
  return functions;
}

}  // namespace tolvane::tsql
