// The message of RAISERROR with its values filled in.
#include <array>
#include <charconv>
#include <optional>
#include <string>

#include "tsql/function_groups.h"
#include "tsql/sql_error.h"
#include "tsql/unicode.h"

namespace tolvane::tsql {
namespace {

constexpr std::size_t longestMessage = 2047;
constexpr std::size_t longestField = 4000;  // what a width or precision may ask for
constexpr std::string_view ellipsis = "...";

// One specification: % [flags] [width] [.precision] [h | l | I64] type
struct Specification {
  bool left = false;
  bool plus = false;
  bool blank = false;
  bool zero = false;
  bool alternate = false;
  std::size_t width = 0;
  std::optional<std::size_t> precision;
  bool big = false;
  char type = 0;
};

// Walks over the format; the values are taken in turn.
class Formatter {
 public:
  explicit Formatter(Call& call) : format_(call.args[0].text()), kinds_(call.args[1].text()), values_(call.args) {}

  std::string run() {
    while (at_ < format_.size()) {
      const auto percent = format_.find('%', at_);
      result_ += format_.substr(at_, percent - at_);
      if (percent == std::string_view::npos) break;
      at_ = percent + 1;
      if (peek() == '%') {
        result_ += '%';
        ++at_;
      } else {
        append(specification(percent));
      }
      if (result_.size() > longestMessage * 8) break;
    }
    if (utf16Length(result_) <= longestMessage) return std::move(result_);
    return utf16Prefix(result_, longestMessage - ellipsis.size()) + std::string(ellipsis);
  }

 private:
  char peek() const { return at_ < format_.size() ? format_[at_] : '\0'; }

  bool take(std::string_view letters) {
    if (format_.substr(at_, letters.size()) != letters) return false;
    at_ += letters.size();
    return true;
  }

  Specification specification(std::size_t begin) {
    Specification found;
    for (;; ++at_) {
      if (peek() == '-') {
        found.left = true;
      } else if (peek() == '+') {
        found.plus = true;
      } else if (peek() == ' ') {
        found.blank = true;
      } else if (peek() == '0') {
        found.zero = true;
      } else if (peek() == '#') {
        found.alternate = true;
      } else {
        break;
      }
    }
    found.width = size(found.left);
    if (take(".")) {
      bool ignored = false;
      found.precision = size(ignored);
    }
    found.big = take("I64");
    if (!found.big && !take("h")) (void)take("l");
    found.type = peek();
    if (found.type == '\0' || std::string_view("disuoxX").find(found.type) == std::string_view::npos) {
      throw SqlError(Message::MessageFormat, {format_.substr(begin)});
    }
    ++at_;
    return found;
  }

  // Digits, or * for the next value; a negative one puts the field to the left.
  std::size_t size(bool& left) {
    if (take("*")) {
      const auto index = next_++;
      if (index >= kinds_.size() || kinds_[index] == 'n') return 0;
      if (kinds_[index] != 'i') mismatch(index);
      auto width = values_[index + 2].isNull() ? 0 : values_[index + 2].integer();
      if (width < 0) {
        left = true;
        width = -width;
      }
      return std::min(static_cast<std::size_t>(width), longestField);
    }
    std::size_t digits = 0;
    while (peek() >= '0' && peek() <= '9') {
      digits = std::min(digits * 10 + static_cast<std::size_t>(peek() - '0'), longestField);
      ++at_;
    }
    return digits;
  }

  [[noreturn]] static void mismatch(std::size_t index) {
    throw SqlError(Message::MessageType, {std::to_string(index + 1)});
  }

  void append(const Specification& found) {
    const auto index = next_++;
    const bool missing = index >= kinds_.size() || kinds_[index] == 'n' || values_[index + 2].isNull();
    if (!missing || index < kinds_.size()) check(found, index);
    if (missing) return pad("(null)", found, false);
    const Datum& value = values_[index + 2];
    if (found.type != 's') return number(value.integer(), found);
    auto text = value.text();
    const std::string cut = found.precision ? utf16Prefix(text, *found.precision) : std::string();
    pad(found.precision ? cut : text, found, false);
  }

  void check(const Specification& found, std::size_t index) const {
    const char wanted = found.type == 's' ? 's' : found.big ? 'b' : 'i';
    const char given = kinds_[index];
    if (given != 'n' && given != wanted) mismatch(index);
  }

  void number(std::int64_t value, const Specification& found) {
    const bool decimal = found.type == 'd' || found.type == 'i';
    const int base = found.type == 'o' ? 8 : found.type == 'x' || found.type == 'X' ? 16 : 10;
    std::uint64_t magnitude = static_cast<std::uint64_t>(value);
    if (decimal && value < 0) magnitude = 0 - magnitude;
    if (!decimal && !found.big) magnitude = static_cast<std::uint32_t>(value);
    std::array<char, 24> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), magnitude, base).ptr;
    std::string digits(buffer.data(), end);
    if (found.type == 'X') {
      for (char& c : digits) c = c >= 'a' && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    if (found.precision && digits.size() < *found.precision) digits.insert(0, *found.precision - digits.size(), '0');
    std::string sign;
    if (decimal) sign = value < 0 ? "-" : found.plus ? "+" : found.blank ? " " : "";
    if (found.alternate && value != 0 && base == 8) sign = "0";
    if (found.alternate && value != 0 && base == 16) sign = found.type == 'X' ? "0X" : "0x";
    const bool zeros = found.zero && !found.left && !found.precision;
    const auto length = sign.size() + digits.size();
    if (zeros && length < found.width) digits.insert(0, found.width - length, '0');
    pad(sign + digits, found, true);
  }

  void pad(std::string_view text, const Specification& found, bool ascii) {
    const auto length = ascii ? text.size() : utf16Length(text);
    const std::string blanks(length < found.width ? found.width - length : 0, ' ');
    if (!found.left) result_ += blanks;
    result_ += text;
    if (found.left) result_ += blanks;
  }

  std::string_view format_;
  std::string_view kinds_;  // of the values: int, bigint, s text, n null
  std::span<const Datum> values_;
  std::size_t at_ = 0;
  std::size_t next_ = 0;
  std::string result_;
};

// format, kinds of the values, values
Result formatMessage(Call& call) {
  if (call.args[0].isNull()) return {};
  return Formatter(call).run();
}

constexpr std::array functions{
    Function{"ts_format_message", 2, 22, true, formatMessage},
};

}  // namespace

std::span<const Function> messageFunctions() {
  return functions;
}

}  // namespace tolvane::tsql
