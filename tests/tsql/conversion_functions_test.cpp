#include <gtest/gtest.h>

#include "tsql/runtime_support.h"

namespace tolvane::tsql::testing {

const std::vector<CallRow>& conversionRows() {
  static const Bytes zeros{std::byte{0x41}, std::byte{0}, std::byte{0}};
  static const std::vector<CallRow> rows{
      {"ts_convert", {"12", varchar(), packed(TypeKind::Int)}, "12"},
      {"ts_convert", {"2012-03-05", packed(TypeKind::Date), varchar()}, "'2012-03-05'"},
      {"ts_convert", {"2012-03-05", packed(TypeKind::Date), varchar(), -1}, "'2012-03-05'"},
      {"ts_convert", {"2012-03-05", packed(TypeKind::Date), varchar(), 0}, "'Mar  5 2012'"},
      {"ts_convert", {"2012-03-05", packed(TypeKind::Date), varchar(), Datum()}, "null"},
      {"ts_convert", {Datum(), varchar(), packed(TypeKind::Int), 0}, "null"},
      {"ts_convert", {"2012-03-05", packed(TypeKind::Date), varchar(), "103"}, "'05/03/2012'"},
      {"ts_try_convert", {"12", varchar(), packed(TypeKind::Int)}, "12"},
      {"ts_try_convert", {"x", varchar(), packed(TypeKind::Int)}, "null"},
      {"ts_try_convert",
       {"2012-03-05", packed(TypeKind::Date), varchar(), 999},
       "281 999 is not a valid style number when converting from date to a character string."},
      {"ts_greatest", {packed(TypeKind::Int), 1, Datum(), 3, 2}, "3"},
      {"ts_greatest", {packed(TypeKind::Int), Datum()}, "null"},
      {"ts_greatest", {packed(Type::decimal(3, 1)), "9.0", "10.0"}, "'10.0'"},
      {"ts_greatest",
       {packed(TypeKind::DateTime), "2012-03-05 00:00:00.000", "2012-03-04 23:59:59.997"},
       "'2012-03-05 00:00:00.000'"},
      {"ts_least", {packed(TypeKind::Float), 1.5, 0.5}, "0.5"},
      {"ts_least", {varchar(), "b", "A"}, "'A'"},
      {"ts_least", {varchar(), "a", "A"}, "'a'"},
      {"ts_bytes", {zeros}, "0x41"},
      {"ts_assign", {"abc", varchar(), varchar(3), "T.C"}, "'abc'"},
      {"ts_assign", {"abcd", varchar(), varchar(3), "T.C"}, "8152 String or binary data would be truncated."},
      {"ts_assign",
       {Datum(), varchar(), packed(Type::of(TypeKind::Int).orNull(false)), "T.C"},
       "515 Cannot insert the value NULL into column 'C', table 'T'; column does not allow nulls. INSERT fails."},
      {"ts_like", {"Abc", "a%", Datum(), 0}, "1"},
      {"ts_like", {"abc ", "abc", Datum(), 0}, "1"},
      {"ts_like", {"abc ", "abc", Datum(), 1}, "0"},
      {"ts_like", {"10%", "10!%", "!", 0}, "1"},
      {"ts_like", {"10x", "10!%", "!", 0}, "0"},
      {"ts_like", {"10x", "10", "!!", 0}, "506 The invalid escape character \"!!\" was specified in a LIKE predicate."},
      {"ts_like", {Datum(), "a", Datum(), 0}, "null"},
      {"ts_like", {"a", Datum(), Datum(), 0}, "null"},
      {"ts_declared_type", {"nvarchar(80)", "name"}, "'nvarchar'"},
      {"ts_declared_type", {"nvarchar(80)", "length"}, "160"},
      {"ts_declared_type", {"int", "xtype"}, "56"},
      {"ts_declared_type", {"decimal text(18,4)", "xprec"}, "18"},
      {"ts_declared_type", {"decimal text(18,4)", "xscale"}, "4"},
      {"ts_declared_type", {"money text", "xscale"}, "4"},
      {"ts_declared_type", {"nvarchar(80)", "characters"}, "80"},
      {"ts_declared_type", {"varchar(max)", "characters"}, "-1"},
      {"ts_declared_type", {"ntext", "characters"}, "1073741823"},
      {"ts_declared_type", {"image", "characters"}, "2147483647"},
      {"ts_declared_type", {"int", "characters"}, "null"},
      {"ts_declared_type", {"int", "precision"}, "10"},
      {"ts_declared_type", {"int", "scale"}, "0"},
      {"ts_declared_type", {"float", "precision"}, "53"},
      {"ts_declared_type", {"float", "scale"}, "null"},
      {"ts_declared_type", {"bit", "precision"}, "null"},
      {"ts_declared_type", {"datetime", "precision"}, "null"},
      {"ts_declared_type", {"datetime", "xprec"}, "23"},
      {"ts_declared_type", {"bigint", "xprec"}, "19"},
      {"ts_declared_type", {"what", "name"}, "null"},
      {"ts_declared_type", {"int", "what"}, "null"},
  };
  return rows;
}

namespace {

TEST(ConversionFunctions, AnswerAsTheirRowsSay) {
  for (const CallRow& row : conversionRows()) EXPECT_EQ(call(row.name, row.args), row.expected) << described(row);
}

}  // namespace
}  // namespace tolvane::tsql::testing
