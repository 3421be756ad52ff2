#include <gtest/gtest.h>

#include "tsql/runtime_support.h"

namespace tolvane::tsql::testing {

const std::vector<CallRow>& systemRows() {
  static const std::vector<CallRow> rows{
      {"ts_newid", {}, "'33221100-5544-4766-8899-AABBCCDDEEFF'"},
      {"ts_object_id", {"T_Rpt"}, "5"},
      {"ts_object_id", {"T_Rpt", "U"}, "5"},
      {"ts_object_id", {"T_Rpt", "P"}, "null"},
      {"ts_object_id", {Datum()}, "null"},
      {"ts_object_name", {5}, "'T_Rpt'"},
      {"ts_object_name", {6}, "null"},
      {"ts_db_name", {}, "'Accounts'"},
      {"ts_user_name", {}, "'dbo'"},
      {"ts_user_name", {1}, "'dbo'"},
      {"ts_user_name", {99}, "null"},
      {"ts_user_id", {}, "1"},
      {"ts_user_id", {"guest"}, "2"},
      {"ts_db_name", {1}, "'master'"},
      {"ts_db_name", {5}, "'Accounts'"},
      {"ts_db_name", {99}, "null"},
      {"ts_db_id", {}, "5"},
      {"ts_db_id", {"TempDB"}, "2"},
      {"ts_db_id", {"accounts"}, "5"},
      {"ts_db_id", {"nothing"}, "null"},
      {"ts_schema_name", {}, "'dbo'"},
      {"ts_schema_name", {4}, "'sys'"},
      {"ts_schema_id", {}, "1"},
      {"ts_schema_id", {"x"}, "null"},
      {"ts_type_name", {56}, "'int'"},
      {"ts_type_name", {108}, "'numeric'"},
      {"ts_type_name", {1}, "null"},
      {"ts_type_id", {"[NVarChar]"}, "231"},
      {"ts_type_id", {"sysname"}, "256"},
      {"ts_type_id", {"x"}, "null"},
      {"ts_col_length", {"T_Rpt", "title"}, "40"},
      {"ts_col_length", {"T_Rpt", "x"}, "null"},
      {"ts_col_length", {"x", "title"}, "null"},
      {"ts_col_name", {5, 2}, "'title'"},
      {"ts_col_name", {5, 3}, "null"},
      {"ts_col_name", {6, 1}, "null"},
      {"ts_columnproperty", {5, "id", "isidentity"}, "1"},
      {"ts_columnproperty", {5, "id", "AllowsNull"}, "0"},
      {"ts_columnproperty", {5, "title", "ColumnId"}, "2"},
      {"ts_columnproperty", {5, "title", "IsComputed"}, "0"},
      {"ts_columnproperty", {5, "x", "AllowsNull"}, "null"},
      {"ts_columnproperty", {5, "title", "Scale"}, "40517 'Scale': this property of COLUMNPROPERTY is not supported."},
      {"ts_objectproperty", {5, "IsUserTable"}, "1"},
      {"ts_objectproperty", {5, "IsView"}, "0"},
      {"ts_objectproperty", {5, "IsProcedure"}, "0"},
      {"ts_objectproperty", {5, "TableHasIdentity"}, "1"},
      {"ts_objectproperty", {6, "IsUserTable"}, "null"},
      {"ts_objectproperty",
       {5, "TableHasIndex"},
       "40517 'TableHasIndex': this property of OBJECTPROPERTY is not supported."},
      {"ts_objectproperty", {5, "IsConstraint"}, "0"},
      {"ts_objectproperty", {4, "IsConstraint"}, "1"},
      {"ts_objectproperty", {4, "IsPrimaryKey"}, "1"},
      {"ts_objectproperty", {4, "IsForeignKey"}, "0"},
      {"ts_objectproperty", {4, "TableHasPrimaryKey"}, "null"},
      {"ts_objectproperty", {5, "TableHasPrimaryKey"}, "0"},
      {"ts_object_type", {4}, "'PK'"},
      {"ts_object_parent", {4}, "5"},
      {"ts_object_parent", {3}, "null"},
      {"ts_constraints", {}, "'[4,3]'"},
      {"ts_ident_seed", {"T_Rpt"}, "'1'"},
      {"ts_ident_incr", {"T_Rpt"}, "'1'"},
      {"ts_ident_incr", {"x"}, "null"},
      {"ts_version", {}, "'Version'"},
      {"ts_depth", {100, 100}, "100"},
      {"ts_depth", {101, 0}, "101"},
      {"ts_depth",
       {101, 100},
       "530 The statement terminated. The maximum recursion 100 has been exhausted before statement completion."},
      {"ts_top", {3, -1}, "3"},
      {"ts_top", {-1, -1}, "127 A TOP N or FETCH rowcount value may not be negative."},
      {"ts_top", {Datum(), -1}, "1014 A TOP or FETCH clause contains an invalid value."},
      {"ts_top", {0, -2}, "0"},
      {"ts_top", {-1, -2}, "10742 The offset specified in a OFFSET clause may not be negative."},
      {"ts_top", {1, -3}, "1"},
      {"ts_top", {0, -3}, "10744 The number of rows provided for a FETCH clause must be greater then zero."},
      {"ts_top", {12.5, 100}, "12.5"},
      {"ts_top", {100.5, 100}, "1031 Percent values must be between 0 and 100."},
  };
  return rows;
}

namespace {

TEST(SystemFunctions, AnswerAsTheirRowsSay) {
  for (const CallRow& row : systemRows()) EXPECT_EQ(call(row.name, row.args), row.expected) << described(row);
}

}  // namespace
}  // namespace tolvane::tsql::testing
