#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tsql/functions.h"
#include "tsql/sql_error.h"
#include "tsql/type.h"
#include "tsql/unicode.h"

// What tests of run-time functions share: a small collation, a session with fixed answers, and calls by name.
namespace tolvane::tsql::testing {

// ASCII without regard to case, full-width forms as their narrow ones, accents count. The code page has two bytes for
// each character of 0x4E00 .. 0x9FFF (its UTF-16 value from 0x8100 on, high byte first) and nothing else beyond ASCII.
class PlainCollation : public Collation {
 public:
  int compare(std::string_view left, std::string_view right) const override {
    const std::string a = folded(withoutTrailingBlanks(left));
    return a.compare(folded(withoutTrailingBlanks(right)));
  }
  char32_t fold(char32_t c) const override { return lower(c >= 0xFF01 && c <= 0xFF5E ? c - 0xFEE0 : c); }
  int compareCharacters(char32_t left, char32_t right) const override {
    return static_cast<int>(fold(left)) - static_cast<int>(fold(right));
  }
  char32_t upper(char32_t c) const override {
    return (c >= U'a' && c <= U'z') || (c >= 0xE0 && c <= 0xFE) ? c - 0x20 : c;
  }
  char32_t lower(char32_t c) const override {
    return (c >= U'A' && c <= U'Z') || (c >= 0xC0 && c <= 0xDE) ? c + 0x20 : c;
  }
  std::string toCodePage(std::string_view text) const override {
    std::string bytes;
    for (const char16_t unit : toUtf16(text)) {
      if (unit >= 0x4E00 && unit <= 0x9FFF) bytes += static_cast<char>((unit + lead) >> 8);
      bytes += unit < 0x80 || (unit >= 0x4E00 && unit <= 0x9FFF) ? static_cast<char>(unit & 0xFF) : '?';
    }
    return bytes;
  }
  std::string fromCodePage(std::string_view bytes) const override {
    std::u16string units;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      const auto byte = static_cast<unsigned char>(bytes[i]);
      const bool pair = byte >= 0x80 && i + 1 < bytes.size();
      if (pair) ++i;
      const char16_t wide = static_cast<char16_t>((byte << 8) | static_cast<unsigned char>(bytes[i]));
      units += pair ? static_cast<char16_t>(wide - lead) : static_cast<char16_t>(byte < 0x80 ? byte : '?');
    }
    return fromUtf16(units);
  }

 private:
  static constexpr char16_t lead = 0x8100 - 0x4E00;

  std::string folded(std::string_view text) const {
    std::string result;
    for (std::size_t i = 0; i < text.size();) appendCharacter(result, fold(nextCharacter(text, i)));
    return result;
  }
};

class FixedSession : public Session {
 public:
  DateTime now() const override { return parseStored("2012-03-15 13:02:03.123").value(); }
  DateTime utcNow() const override { return parseStored("2012-03-15 05:02:03.123").value(); }
  const Table* tableNamed(std::string_view name) const override {
    static const Table table{"T_Rpt",
                             {{"id", Type::of(TypeKind::Int).orNull(false), true, {}},
                              {"title", Type::text(TypeKind::NVarChar, 20), false, {}}},
                             {},
                             false,
                             false,
                             {}};
    return name == table.name ? &table : nullptr;
  }
  std::int64_t rowCount() const override { return 3; }
  std::int32_t lastError() const override { return 245; }
  std::int32_t transactionCount() const override { return 1; }
  std::optional<std::int64_t> identity() const override { return 17; }
  std::optional<std::int64_t> scopeIdentity() const override { return std::nullopt; }
  std::optional<std::int64_t> lastIdentityOf(std::string_view table) override {
    return table == "old" ? std::optional<std::int64_t>(99) : std::nullopt;
  }
  void gaveIdentity(std::string_view, std::int64_t, bool) override {}
  std::string databaseName() const override { return "Accounts"; }
  std::string userName() const override { return "dbo"; }
  std::string version() const override { return "Version"; }
  std::optional<std::int64_t> objectId(std::string_view name, std::string_view type) const override {
    return name == "T_Rpt" && (type.empty() || type == "U") ? std::optional<std::int64_t>(5) : std::nullopt;
  }
  std::optional<DatabaseObject> object(std::int64_t id) const override {
    if (id == 5) return DatabaseObject{5, 0, "U", "T_Rpt"};
    return id == 4 ? std::optional(DatabaseObject{4, 5, "PK", "PK_Rpt"}) : std::nullopt;
  }
  std::vector<std::int64_t> constraints() const override { return {4, 3}; }
  const Table* tableNumbered(std::int64_t id) const override { return id == 5 ? tableNamed("T_Rpt") : nullptr; }
  RandomState& random() override { return random_; }
  std::array<std::byte, 16> uniqueBytes() override {
    std::array<std::byte, 16> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::byte>(i * 16 + i);
    return bytes;
  }

 private:
  RandomState random_;
};

// A result as a test writes it: null, 42, 1.5, 'text', 0x00FF.
inline std::string shown(const Result& result) {
  switch (result.kind()) {
    case Kind::Null:
      return "null";
    case Kind::Integer:
      return std::to_string(result.integer());
    case Kind::Real: {
      std::array<char, 40> text{};
      std::snprintf(text.data(), text.size(), "%.15g", result.real());
      std::string number(text.data());
      return number.find_first_of(".e") == std::string::npos ? number + ".0" : number;
    }
    case Kind::Text:
      return "'" + result.text() + "'";
    case Kind::Blob: {
      std::string text = "0x";
      for (const std::byte b : result.blob()) {
        std::array<char, 3> digits{};
        std::snprintf(digits.data(), digits.size(), "%02X", std::to_integer<unsigned>(b));
        text += digits.data();
      }
      return text;
    }
  }
  return "";
}

// The error that the work raises: "245 its text"; otherwise what the work gives.
template <typename Work>
std::string shownOrError(Work work) {
  try {
    return work();
  } catch (const SqlError& error) {
    return std::to_string(error.number()) + " " + error.what();
  }
}

inline std::string call(std::string_view name, const std::vector<Datum>& args) {
  const Function* function = findFunction(name);
  if (function == nullptr) return "no function " + std::string(name);
  const auto count = static_cast<int>(args.size());
  if (count < function->minArgs || (function->maxArgs >= 0 && count > function->maxArgs)) return "wrong arity";
  const PlainCollation collation;
  FixedSession session;
  Call call{args, collation, session};
  return shownOrError([&] { return shown(function->run(call)); });
}

// A packed type, as the compiler hands it to run-time functions.
inline Datum packed(const Type& type) {
  return Datum(type.pack());
}
inline Datum packed(TypeKind kind) {
  return packed(Type::of(kind));
}
inline Datum varchar(int length = 50) {
  return packed(Type::text(TypeKind::VarChar, length));
}
inline Datum nvarchar(int length = 50) {
  return packed(Type::text(TypeKind::NVarChar, length));
}
inline Datum decimal(int precision, int scale) {
  return packed(Type::decimal(precision, scale));
}

// One call and what it answers.
struct CallRow {
  std::string_view name;
  std::vector<Datum> args;
  std::string_view expected;
};

// The rows of each file of functions; the test of the registry looks every function up in them.
const std::vector<CallRow>& conversionRows();
const std::vector<CallRow>& operatorRows();
const std::vector<CallRow>& textRows();
const std::vector<CallRow>& dateRows();
const std::vector<CallRow>& numberRows();
const std::vector<CallRow>& systemRows();
const std::vector<CallRow>& messageRows();
const std::vector<CallRow>& identityRows();
struct AggregateCase {
  std::string_view name;
  std::vector<std::vector<Datum>> rows;
  std::string_view expected;
};
const std::vector<AggregateCase>& aggregateCases();

inline std::string described(const CallRow& row) {
  std::string text(row.name);
  for (const Datum& argument : row.args) text += " " + shown(Result(argument));
  return text;
}

}  // namespace tolvane::tsql::testing
