#include "tsql/date_text.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "tsql/date_part.h"
#include "tsql/names.h"
#include "tsql/sql_error.h"

namespace tolvane::tsql {
namespace {

constexpr std::array styles{
    DateStyle{0, "N e Y", " H:ip", DateOrder::MonthDayYear},
    DateStyle{1, "m/d/y", "", DateOrder::MonthDayYear},
    DateStyle{2, "y.m.d", "", DateOrder::YearOnlyFirst},
    DateStyle{3, "d/m/y", "", DateOrder::DayMonthYear},
    DateStyle{4, "d.m.y", "", DateOrder::DayMonthYear},
    DateStyle{5, "d-m-y", "", DateOrder::DayMonthYear},
    DateStyle{6, "d N y", "", DateOrder::DayMonthYear},
    DateStyle{7, "N d, y", "", DateOrder::MonthDayYear},
    DateStyle{8, "", "h:i:s", DateOrder::MonthDayYear},
    DateStyle{9, "N e Y", " H:i:s:fp", DateOrder::MonthDayYear},
    DateStyle{10, "m-d-y", "", DateOrder::MonthDayYear},
    DateStyle{11, "y/m/d", "", DateOrder::YearOnlyFirst},
    DateStyle{12, "ymd", "", DateOrder::YearOnlyFirst},
    DateStyle{13, "d N Y", " h:i:s:f", DateOrder::DayMonthYear},
    DateStyle{14, "", "h:i:s:f", DateOrder::MonthDayYear},
    DateStyle{20, "Y-m-d", " h:i:s", DateOrder::YearOnlyFirst},
    DateStyle{21, "Y-m-d", " h:i:s.f", DateOrder::YearOnlyFirst},
    DateStyle{22, "m/d/y", " H:i:s p", DateOrder::MonthDayYear},
    DateStyle{23, "Y-m-d", "", DateOrder::YearOnlyFirst},
    DateStyle{24, "", "h:i:s", DateOrder::MonthDayYear},
    DateStyle{25, "Y-m-d", " h:i:s.f", DateOrder::YearOnlyFirst},
    DateStyle{100, "N e Y", " H:ip", DateOrder::MonthDayYear},
    DateStyle{101, "m/d/Y", "", DateOrder::MonthDayYear},
    DateStyle{102, "Y.m.d", "", DateOrder::YearOnlyFirst},
    DateStyle{103, "d/m/Y", "", DateOrder::DayMonthYear},
    DateStyle{104, "d.m.Y", "", DateOrder::DayMonthYear},
    DateStyle{105, "d-m-Y", "", DateOrder::DayMonthYear},
    DateStyle{106, "d N Y", "", DateOrder::DayMonthYear},
    DateStyle{107, "N d, Y", "", DateOrder::MonthDayYear},
    DateStyle{108, "", "h:i:s", DateOrder::MonthDayYear},
    DateStyle{109, "N e Y", " H:i:s:fp", DateOrder::MonthDayYear},
    DateStyle{110, "m-d-Y", "", DateOrder::MonthDayYear},
    DateStyle{111, "Y/m/d", "", DateOrder::YearOnlyFirst},
    DateStyle{112, "Ymd", "", DateOrder::YearOnlyFirst},
    DateStyle{113, "d N Y", " h:i:s:f", DateOrder::DayMonthYear},
    DateStyle{114, "", "h:i:s:f", DateOrder::MonthDayYear},
    DateStyle{120, "Y-m-d", " h:i:s", DateOrder::YearOnlyFirst},
    DateStyle{121, "Y-m-d", " h:i:s.f", DateOrder::YearOnlyFirst},
    DateStyle{126, "Y-m-d", "Th:i:sF", DateOrder::YearOnlyFirst},
    DateStyle{127, "Y-m-d", "Th:i:sF", DateOrder::YearOnlyFirst},
};

std::string padded(int value, std::size_t width, char filler) {
  std::string digits = std::to_string(value);
  if (digits.size() < width) digits.insert(0, width - digits.size(), filler);
  return digits;
}

std::string patternPiece(char letter, const CalendarDate& date, const TimeOfDay& time) {
  switch (letter) {
    case 'Y':
      return padded(date.year, 4, '0');
    case 'y':
      return padded(date.year % 100, 2, '0');
    case 'm':
      return padded(date.month, 2, '0');
    case 'N':
      return std::string(monthName(date.month).substr(0, 3));
    case 'd':
      return padded(date.day, 2, '0');
    case 'e':
      return padded(date.day, 2, ' ');
    case 'h':
      return padded(time.hour, 2, '0');
    case 'H':
      return padded((time.hour + 11) % 12 + 1, 2, ' ');
    case 'i':
      return padded(time.minute, 2, '0');
    case 's':
      return padded(time.second, 2, '0');
    case 'f':
      return padded(time.millisecond, 3, '0');
    case 'F':
      return time.millisecond == 0 ? "" : "." + padded(time.millisecond, 3, '0');
    case 'p':
      return time.hour < 12 ? "AM" : "PM";
    default:
      return std::string(1, letter);
  }
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

struct Token {
  enum class Sort { Number, Word, Mark };
  Sort sort;
  std::string_view text;    // a mark: one of / - . , : and T
  bool afterBlank = false;  // a blank stands before it
};

// Numbers, words in letters, marks; nothing when any other character occurs.
std::optional<std::vector<Token>> tokensOf(std::string_view text) {
  std::vector<Token> tokens;
  bool blank = false;
  for (std::size_t i = 0; i < text.size();) {
    if (text[i] == ' ' || text[i] == '\t' || text[i] == '\n' || text[i] == '\r') {
      blank = true;
      ++i;
      continue;
    }
    std::size_t end = i;
    Token::Sort sort = Token::Sort::Mark;
    if (isDigit(text[i])) {
      sort = Token::Sort::Number;
      while (end < text.size() && isDigit(text[end])) ++end;
    } else if (isLetter(text[i])) {
      sort = Token::Sort::Word;
      while (end < text.size() && isLetter(text[end])) ++end;
    } else if (std::string_view("/-.,:").find(text[i]) != std::string_view::npos) {
      ++end;
    } else {
      return std::nullopt;
    }
    tokens.push_back({sort, text.substr(i, end - i), blank});
    blank = false;
    i = end;
  }
  return tokens;
}

// Whether a time with its distance from UTC stands at the end, 12:35+08:00.
bool endsInOffset(std::string_view text) {
  constexpr std::string_view form = "+00:00";
  text = text.substr(0, text.find_last_not_of(' ') + 1);
  if (text.size() <= form.size() || text.find(':') >= text.size() - form.size()) return false;
  text.remove_prefix(text.size() - form.size());
  return (text[0] == '+' || text[0] == '-') && isDigit(text[1]) && isDigit(text[2]) && text[3] == ':' &&
         isDigit(text[4]) && isDigit(text[5]);
}

// The month of a full name or its first three letters; 0 for another word.
int monthOf(std::string_view word) {
  const std::string name = lowered(word);
  for (int month = 1; month <= 12; ++month) {
    const std::string full = lowered(monthName(month));
    if (name == full || name == full.substr(0, 3) || (month == 9 && name == "sept")) return month;
  }
  return 0;
}

// The reader of one text. Every member function leaves `position_` after what it has read.
class DateReader {
 public:
  DateReader(std::vector<Token> tokens, DateOrder order, const DateBounds& bounds)
      : tokens_(std::move(tokens)), order_(order), bounds_(bounds) {}

  DateText read() {
    if (tokens_.empty()) return done();
    if (!isoForm()) {
      bool date = false;
      bool time = false;
      while (!failed_ && position_ < tokens_.size()) {
        if (isMark(0, ',') && date) {
          ++position_;
        } else if (!time && timeStartsHere()) {
          readTime();
          time = true;
        } else if (!date) {
          readDate();
          date = true;
        } else {
          failed_ = true;
        }
      }
    }
    return failed_ ? DateText{} : done();
  }

 private:
  struct Number {
    int value;
    std::size_t digits;
  };

  const Token* at(std::size_t ahead) const {
    return position_ + ahead < tokens_.size() ? &tokens_[position_ + ahead] : nullptr;
  }
  bool isMark(std::size_t ahead, char mark) const {
    const Token* token = at(ahead);
    return token != nullptr && token->sort == Token::Sort::Mark && token->text[0] == mark;
  }
  bool isNumber(std::size_t ahead) const { return at(ahead) != nullptr && at(ahead)->sort == Token::Sort::Number; }
  bool isWord(std::size_t ahead, std::string_view word) const {
    return at(ahead) != nullptr && at(ahead)->sort == Token::Sort::Word && lowered(at(ahead)->text) == word;
  }
  bool isHalfOfDay(std::size_t ahead) const { return isWord(ahead, "am") || isWord(ahead, "pm"); }

  // A number of at most nine digits; marks failure where there is none.
  Number takeNumber() {
    if (!isNumber(0) || at(0)->text.size() > 9) {
      failed_ = true;
      return {0, 0};
    }
    const std::string_view text = tokens_[position_++].text;
    int value = 0;
    for (const char c : text) value = value * 10 + (c - '0');
    return {value, text.size()};
  }

  // yyyy-mm-ddThh:mm:ss[.mmm][Z], without blanks; a `date` may leave the seconds out.
  bool isoForm() {
    if (tokens_.size() < 9 || !isWord(5, "t") || !isMark(1, '-') || !isMark(3, '-') || tokens_[0].text.size() != 4) {
      return false;
    }
    const bool blanks = std::any_of(tokens_.begin() + 1, tokens_.end(), [](const Token& t) { return t.afterBlank; });
    if (blanks || tokens_[2].text.size() != 2 || tokens_[4].text.size() != 2) failed_ = true;
    const Number year = takeNumber();
    ++position_;
    const Number month = takeNumber();
    ++position_;
    setDate(year, month, takeNumber());
    ++position_;
    const std::size_t time = position_;
    if (!failed_) readTime();
    const bool zone = isWord(0, "z");
    if (zone) ++position_;
    const std::size_t marks = position_ - time - (zone ? 1 : 0);
    if (position_ != tokens_.size() || (marks < 5 && bounds_.first >= dateTimeBounds.first)) failed_ = true;
    return true;
  }

  bool timeStartsHere() const { return isNumber(0) && (isMark(1, ':') || isHalfOfDay(1)); }

  void readTime() {
    time_.hour = takeNumber().value;
    if (isMark(0, ':')) {
      ++position_;
      time_.minute = takeNumber().value;
      if (isMark(0, ':')) {
        ++position_;
        time_.second = takeNumber().value;
        readFraction();
      }
    }
    if (isHalfOfDay(0)) {
      const bool afternoon = isWord(0, "pm");
      ++position_;
      if (!afternoon && time_.hour > 12) outOfRange_ = true;
      if (!afternoon && time_.hour == 12) time_.hour = 0;
      if (afternoon && time_.hour < 12) time_.hour += 12;
    }
    if (time_.hour > 23 || time_.minute > 59 || time_.second > 59) outOfRange_ = true;
  }

  // After a point the digits are a fraction of a second, after a colon a count of milliseconds.
  void readFraction() {
    const bool point = isMark(0, '.');
    if (!point && !isMark(0, ':')) return;
    ++position_;
    Number number = takeNumber();
    const std::size_t most = bounds_.first < dateTimeBounds.first ? 7 : 3;
    if (number.digits > (point ? most : 3)) failed_ = true;
    fraction_ = number.value;
    for (std::size_t i = point ? number.digits : 3; i < 7; ++i) fraction_ *= 10;
    if (point) {
      for (std::size_t i = number.digits; i < 3; ++i) number.value *= 10;
      for (std::size_t i = 3; i < number.digits; ++i) number.value /= 10;
    }
    time_.millisecond = number.value;
  }

  void readDate() {
    const bool wordFirst = at(0)->sort == Token::Sort::Word;
    if (wordFirst || namedMonthFollows()) {
      readNamedMonth();
    } else if (isNumber(0) && !(isMark(1, '/') || isMark(1, '-') || isMark(1, '.'))) {
      readUnseparated();
    } else {
      readSeparated();
    }
  }

  bool isMonth(std::size_t ahead) const {
    return at(ahead) != nullptr && at(ahead)->sort == Token::Sort::Word && monthOf(at(ahead)->text) > 0;
  }
  bool namedMonthFollows() const {
    if (!isNumber(0)) return false;
    const std::size_t next = isMark(1, '-') || isMark(1, '/') || isMark(1, '.') || isMark(1, ',') ? 2 : 1;
    if (isMonth(next)) return true;
    return isNumber(next) && isMonth(next + 1);
  }

  // The month by name and one or two numbers around it, in any order.
  void readNamedMonth() {
    int month = 0;
    std::vector<Number> numbers;
    while (position_ < tokens_.size() && !failed_) {
      if (isMark(0, '-') || isMark(0, '/') || isMark(0, ',') || isMark(0, '.')) {
        ++position_;
      } else if (isNumber(0) && numbers.size() < 2 && !timeStartsHere()) {
        numbers.push_back(takeNumber());
      } else if (at(0)->sort == Token::Sort::Word && month == 0) {
        month = monthOf(tokens_[position_++].text);
        if (month == 0) failed_ = true;
      } else {
        break;
      }
    }
    if (month == 0 || numbers.empty()) {
      failed_ = true;
    } else if (numbers.size() == 1) {
      if (numbers[0].digits != 4) failed_ = true;
      setDate(numbers[0], {month, 2}, {1, 1});
    } else if (numbers[0].digits == 4) {
      setDate(numbers[0], {month, 2}, numbers[1]);
    } else {
      setDate(numbers[1], {month, 2}, numbers[0]);
    }
  }

  void readUnseparated() {
    const Number number = takeNumber();
    if (number.digits == 8) {
      setDate({number.value / 10000, 4}, {number.value / 100 % 100, 2}, {number.value % 100, 2});
    } else if (number.digits == 6) {
      setDate({number.value / 10000, 2}, {number.value / 100 % 100, 2}, {number.value % 100, 2});
    } else if (number.digits == 4) {
      setDate(number, {1, 1}, {1, 1});
    } else {
      failed_ = true;
    }
  }

  void readSeparated() {
    const Number first = takeNumber();
    const bool separated = isMark(0, '/') || isMark(0, '-') || isMark(0, '.');
    if (!separated) failed_ = true;
    if (failed_) return;
    const char mark = tokens_[position_++].text[0];
    const Number second = takeNumber();
    if (!isMark(0, mark)) failed_ = true;
    if (failed_) return;
    ++position_;
    const Number third = takeNumber();
    if (failed_) return;
    order(first, second, third);
  }

  void order(Number first, Number second, Number third) {
    const bool dayFirst = order_ == DateOrder::DayMonthYear;
    if (order_ == DateOrder::YearOnlyFirst) {
      if (second.digits > 2 || third.digits > 2) failed_ = true;
      setDate(first, second, third);
    } else if (first.digits == 4) {
      dayFirst ? setDate(first, third, second) : setDate(first, second, third);
    } else if (second.digits == 4) {
      dayFirst ? setDate(second, third, first) : setDate(second, first, third);
    } else {
      dayFirst ? setDate(third, second, first) : setDate(third, first, second);
    }
  }

  void setDate(Number year, Number month, Number day) {
    constexpr int lastYearOfThisCentury = 49;
    if ((year.digits != 4 && year.digits > 2) || month.digits > 2 || day.digits > 2) failed_ = true;
    if (year.digits <= 2) year.value += year.value <= lastYearOfThisCentury ? 2000 : 1900;
    date_ = {year.value, month.value, day.value};
    if (date_.year < 1 || date_.month < 1 || date_.month > 12 || date_.day < 1 ||
        date_.day > daysInMonth(date_.year, date_.month)) {
      outOfRange_ = true;
    }
  }

  static DateText outside() {
    DateText text;
    text.outcome = DateTextOutcome::Range;
    return text;
  }

  DateText done() const {
    if (outOfRange_) return outside();
    const auto value = carried(daysOf(date_), ticksOf(time_));
    if (!value || !bounds_.hold(value->days)) return outside();
    TimeOfDay second = time_;
    second.millisecond = 0;
    return {DateTextOutcome::Read, *value, {daysOf(date_), ticksOf(second)}, fraction_};
  }

  std::vector<Token> tokens_;
  DateOrder order_;
  DateBounds bounds_;
  std::size_t position_ = 0;
  bool failed_ = false;
  bool outOfRange_ = false;
  CalendarDate date_;
  TimeOfDay time_;
  std::int32_t fraction_ = 0;
};

}  // namespace

std::span<const DateStyle> dateStyles() {
  return styles;
}

const DateStyle* findDateStyle(int style) {
  if (style == 130 || style == 131) {
    throw SqlError(notSupportedNumber, 16,
                   "'" + std::to_string(style) + "': a style of the Hijri calendar is not supported.");
  }
  const auto* const found =
      std::find_if(styles.begin(), styles.end(), [style](const DateStyle& row) { return row.style == style; });
  return found == styles.end() ? nullptr : found;
}

std::string formatted(DateTime value, const DateStyle& style, bool dateAlone) {
  const CalendarDate date = calendarDate(value.days);
  const TimeOfDay time = timeOfDay(value.ticks);
  std::string text;
  for (const char letter : style.date) text += patternPiece(letter, date, time);
  if (!dateAlone) {
    for (const char letter : style.time) text += patternPiece(letter, date, time);
  }
  return text;
}

DateText parseDateText(std::string_view text, DateOrder order, const DateBounds& bounds) {
  // A datetime has none, so there it is a mistake.
  if (bounds.first < dateTimeBounds.first && endsInOffset(text)) {
    throw SqlError(notSupportedNumber, 16, "A time zone in the text of a date is not supported.");
  }
  auto tokens = tokensOf(text);
  if (!tokens) return {};
  return DateReader(std::move(*tokens), order, bounds).read();
}

}  // namespace tolvane::tsql
