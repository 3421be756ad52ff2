#include <gtest/gtest.h>

#include "tsql/runtime_support.h"

namespace tolvane::tsql::testing {

const std::vector<CallRow>& messageRows() {
  static const std::vector<CallRow> rows{
      {"ts_format_message", {"plain", ""}, "'plain'"},
      {"ts_format_message", {Datum(), ""}, "null"},
      {"ts_format_message", {"100%%", ""}, "'100%'"},
      {"ts_format_message", {"%d of %s", "is", 3, "x"}, "'3 of x'"},
      {"ts_format_message", {"%d %s", ""}, "'(null) (null)'"},
      {"ts_format_message", {"%d|%s", "nn", Datum(), Datum()}, "'(null)|(null)'"},
      {"ts_format_message", {"%5d|%-5d|%05d|%.3d", "iiii", 42, 42, 42, 7}, "'   42|42   |00042|007'"},
      {"ts_format_message", {"%x|%X|%o|%#x|%#o", "iiiii", 255, 255, 8, 255, 8}, "'ff|FF|10|0xff|010'"},
      {"ts_format_message", {"%u|%i|%+d|% d", "iiii", -1, -5, 6, 7}, "'4294967295|-5|+6| 7'"},
      {"ts_format_message", {"%5s|%-5s|%.2s", "sss", "abc", "abc", "abc"}, "'  abc|abc  |ab'"},
      {"ts_format_message", {"%*d|%-*d|", "iiii", 4, 1, 4, 2}, "'   1|2   |'"},
      {"ts_format_message", {"%*d|", "ii", -4, 1}, "'1   |'"},
      {"ts_format_message", {"%hd %ld", "ii", 1, 2}, "'1 2'"},
      {"ts_format_message", {"%I64d", "b", std::int64_t{12345678901}}, "'12345678901'"},
      {"ts_format_message",
       {"%d", "b", 1},
       "2786 The data type of substitution parameter 1 does not match the expected type of the format specification."},
      {"ts_format_message",
       {"%d%s", "ii", 1, 2},
       "2786 The data type of substitution parameter 2 does not match the expected type of the format specification."},
      {"ts_format_message", {"50%", ""}, "2787 Invalid format specification: '%'."},
      {"ts_format_message", {"a %q b", ""}, "2787 Invalid format specification: '%q b'."},
  };
  return rows;
}

namespace {

TEST(MessageFunctions, AnswerAsTheirRowsSay) {
  for (const CallRow& row : messageRows()) EXPECT_EQ(call(row.name, row.args), row.expected) << described(row);
}

TEST(MessageFunctions, CutALongMessageAndSaySo) {
  const std::string text(2048, 'x');
  EXPECT_EQ(call("ts_format_message", {text, ""}), "'" + std::string(2044, 'x') + "...'");
  EXPECT_EQ(call("ts_format_message", {text.substr(1), ""}), "'" + text.substr(1) + "'");
}

TEST(MessageFunctions, BoundTheWidthOfAField) {
  EXPECT_EQ(call("ts_format_message", {"%99999999999999999999d", "i", 1}), "'" + std::string(2044, ' ') + "...'");
}

}  // namespace
}  // namespace tolvane::tsql::testing
