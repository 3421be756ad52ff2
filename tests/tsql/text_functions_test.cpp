#include <gtest/gtest.h>

#include <string>

#include "tsql/runtime_support.h"

namespace tolvane::tsql::testing {

const std::vector<CallRow>& textRows() {
  static const Bytes bytes{std::byte{1}, std::byte{2}, std::byte{3}};
  static const std::string longName(129, 'a');
  static const std::vector<CallRow> rows{
      {"ts_len", {"abc  "}, "3"},
      {"ts_len", {"  "}, "0"},
      {"ts_len", {"报表😀"}, "4"},
      {"ts_len", {Datum()}, "null"},
      {"ts_datalength", {"abc  ", varchar()}, "5"},
      {"ts_datalength", {"报表", varchar()}, "4"},
      {"ts_datalength", {"a报", nvarchar()}, "4"},
      {"ts_datalength", {7, packed(TypeKind::Int)}, "4"},
      {"ts_datalength", {1.5, packed(TypeKind::Float)}, "8"},
      {"ts_datalength", {"12.3400", packed(TypeKind::Money)}, "8"},
      {"ts_datalength", {"123456789.1", decimal(18, 1)}, "5"},
      {"ts_datalength", {"1.5", decimal(18, 1)}, "5"},
      {"ts_datalength", {"2012-03-15 00:00:00.000", packed(TypeKind::DateTime)}, "8"},
      {"ts_datalength", {bytes, packed(Type::text(TypeKind::VarBinary, 10))}, "3"},
      {"ts_datalength", {Datum(), varchar()}, "null"},
      {"ts_left", {"abc", 2}, "'ab'"},
      {"ts_left", {"abc", 9}, "'abc'"},
      {"ts_left", {"abc", 1.9}, "'a'"},
      {"ts_left", {"abc", "2"}, "'ab'"},
      {"ts_left", {"报表", 1}, "'报'"},
      {"ts_left", {"abc", -1}, "537 Invalid length parameter passed to the LEFT or SUBSTRING function."},
      {"ts_right", {"abc", 2}, "'bc'"},
      {"ts_right", {"abc", 0}, "''"},
      {"ts_right", {"报表", 1}, "'表'"},
      {"ts_right", {"abc", -1}, "536 Invalid length parameter passed to the RIGHT function."},
      {"ts_substring", {"abcdef", 2, 3}, "'bcd'"},
      {"ts_substring", {"abcdef", -1, 3}, "'a'"},
      {"ts_substring", {"abcdef", 0, 1}, "''"},
      {"ts_substring", {"abcdef", 9, 3}, "''"},
      {"ts_substring", {"a报表b", 2, 2}, "'报表'"},
      {"ts_substring", {bytes, 2, 9}, "0x0203"},
      {"ts_substring", {"abc", 1, 2147483647}, "'abc'"},
      {"ts_substring", {"abc", 1, -1}, "537 Invalid length parameter passed to the LEFT or SUBSTRING function."},
      {"ts_charindex", {"B", "abcb"}, "2"},
      {"ts_charindex", {"b", "abcb", 3}, "4"},
      {"ts_charindex", {"b", "abcb", -5}, "2"},
      {"ts_charindex", {"b", "abcb", 9}, "0"},
      {"ts_charindex", {"表", "报表"}, "2"},
      {"ts_charindex", {"Ａ", "xa"}, "2"},
      {"ts_charindex", {"", "abc"}, "0"},
      {"ts_charindex", {Datum(), "abc"}, "null"},
      {"ts_patindex", {"%[0-9]%", "ab3d"}, "3"},
      {"ts_patindex", {"b%", "ab"}, "0"},
      {"ts_patindex", {"a_", "ab"}, "1"},
      {"ts_patindex", {"%b", "ab"}, "2"},
      {"ts_patindex", {"%", ""}, "1"},
      {"ts_patindex", {"%%", "abc"}, "1"},
      {"ts_patindex", {"1001.%", "1001.01"}, "1"},
      {"ts_patindex", {"1001.%", "10011"}, "0"},
      {"ts_patindex", {"ab%", "ABC"}, "1"},
      {"ts_patindex", {"ab%", "a"}, "0"},
      {"ts_patindex", {"1%", "１2"}, "1"},
      {"ts_replace", {"aBcb", "b", "--", varchar()}, "'a--c--'"},
      {"ts_replace", {"abc", "", "x", varchar()}, "'abc'"},
      {"ts_replace", {"aaa", "aa", "b", varchar()}, "'ba'"},
      {"ts_replace", {"abc", "b", Datum(), varchar()}, "null"},
      {"ts_replicate", {"ab", 3, varchar()}, "'ababab'"},
      {"ts_replicate", {"ab", 0, varchar()}, "''"},
      {"ts_replicate", {"ab", -1, varchar()}, "null"},
      {"ts_reverse", {"abc"}, "'cba'"},
      {"ts_reverse", {"报表"}, "'表报'"},
      {"ts_stuff", {"abcdef", 2, 3, "xyz1", varchar()}, "'axyz1ef'"},
      {"ts_stuff", {"abc", 1, 0, "x", varchar()}, "'xabc'"},
      {"ts_stuff", {"abc", 2, 99, "x", varchar()}, "'ax'"},
      {"ts_stuff", {"abc", 0, 1, "x", varchar()}, "null"},
      {"ts_stuff", {"abc", 4, 1, "x", varchar()}, "null"},
      {"ts_stuff", {"abc", 1, -1, "x", varchar()}, "null"},
      {"ts_stuff", {"abc", 2, 1, Datum(), varchar()}, "'ac'"},
      {"ts_space", {3}, "'   '"},
      {"ts_space", {-1}, "null"},
      {"ts_upper", {"abcé报"}, "'ABCÉ报'"},
      {"ts_lower", {"ABCÉ报"}, "'abcé报'"},
      {"ts_trim", {"  a b "}, "'a b'"},
      {"ts_trim", {"   "}, "''"},
      {"ts_trim", {"xyaXb", "YX"}, "'aXb'"},
      {"ts_trim", {"xx", "x"}, "''"},
      {"ts_trim", {"a", ""}, "'a'"},
      {"ts_trim", {"a", Datum()}, "null"},
      {"ts_ltrim", {"xxax", "x"}, "'ax'"},
      {"ts_rtrim", {"xaxx", "x"}, "'xa'"},
      {"ts_translate", {"2*[3+4]", "[]", "()"}, "'2*(3+4)'"},
      {"ts_translate", {"aAb", "a", "x"}, "'xxb'"},
      {"ts_translate",
       {"a", "ab", "x"},
       "9828 The second and third arguments of the TRANSLATE built-in function must contain an equal number of "
       "characters."},
      {"ts_soundex", {"Smythe"}, "'S530'"},
      {"ts_soundex", {"Ashcraft"}, "'A261'"},
      {"ts_soundex", {"Tymczak"}, "'T522'"},
      {"ts_soundex", {"Pfister"}, "'P236'"},
      {"ts_soundex", {Datum()}, "null"},
      {"ts_difference", {"Smithers", "Smythers"}, "4"},
      {"ts_difference", {"Blotchet-Halls", "Greene"}, "0"},
      {"ts_parsename", {"a.b.c", 1}, "'c'"},
      {"ts_parsename", {"a.b.c", 3}, "'a'"},
      {"ts_parsename", {"a.b.c", 4}, "null"},
      {"ts_parsename", {"a.b.c", 0}, "null"},
      {"ts_parsename", {"[a.b].[c]]d]", 1}, "'c]d'"},
      {"ts_parsename", {"[a.b].[c]]d]", 2}, "'a.b'"},
      {"ts_parsename", {"[a", 1}, "null"},
      {"ts_parsename", {"[a]b", 1}, "null"},
      {"ts_parsename", {"a..c", 2}, "null"},
      {"ts_parsename", {"a.b.c.d.e", 1}, "null"},
      {"ts_concat_ws", {",", "a", Datum(), "b"}, "'a,b'"},
      {"ts_concat_ws", {Datum(), "a", "b"}, "'ab'"},
      {"ts_concat_ws", {",", Datum(), Datum()}, "''"},
      {"ts_ltrim", {"  a "}, "'a '"},
      {"ts_ltrim", {"   "}, "''"},
      {"ts_rtrim", {" a  "}, "' a'"},
      {"ts_ascii", {"Abc"}, "65"},
      {"ts_ascii", {"报"}, "149"},
      {"ts_ascii", {""}, "null"},
      {"ts_char", {65}, "'A'"},
      {"ts_char", {200}, "40517 CHAR of a byte that is half a character is not supported."},
      {"ts_char", {256}, "null"},
      {"ts_char", {-1}, "null"},
      {"ts_unicode", {"报a"}, "25253"},
      {"ts_unicode", {"😀"}, "55357"},
      {"ts_unicode", {""}, "null"},
      {"ts_nchar", {25253}, "'报'"},
      {"ts_nchar", {65536}, "null"},
      {"ts_quotename", {"a]b"}, "'[a]]b]'"},
      {"ts_quotename", {"a'b", "'"}, "''a''b''"},
      {"ts_quotename", {"a)b(", ")"}, "'(a))b()'"},
      {"ts_quotename", {"abc", "x"}, "null"},
      {"ts_quotename", {"abc", ""}, "null"},
      {"ts_quotename", {longName}, "null"},
  };
  return rows;
}

namespace {

TEST(TextFunctions, AnswerAsTheirRowsSay) {
  for (const CallRow& row : textRows()) EXPECT_EQ(call(row.name, row.args), row.expected) << described(row);
}

TEST(TextFunctions, ReplicateAndSpaceStopAtEightThousandBytes) {
  EXPECT_EQ(call("ts_replicate", {"abc", 9000, varchar()}).size(), 8000U + 2);
  EXPECT_EQ(call("ts_replicate", {"abc", 9000, nvarchar()}).size(), 4000U + 2);
  EXPECT_EQ(call("ts_replicate", {"abc", 9000, varchar(maxLength)}).size(), 27000U + 2);
  EXPECT_EQ(call("ts_space", {9000}).size(), 8000U + 2);
}

}  // namespace
}  // namespace tolvane::tsql::testing
