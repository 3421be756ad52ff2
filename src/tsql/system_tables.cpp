#include "tsql/system_tables.h"

#include "tsql/catalogue.h"

namespace tolvane::tsql {
namespace {

const Type name = Type::text(TypeKind::NVarChar, 128);
const Type number = Type::of(TypeKind::Int);
const Type small = Type::of(TypeKind::SmallInt);
const Type tiny = Type::of(TypeKind::TinyInt);

// The number of an object comes from that of its row in SQLite's catalogue, out of the way of the numbers SQL Server
// keeps for itself; OBJECT_ID gives the same. Tables whose names begin with sqlite_ or __ are the engine's own.
constexpr std::string_view objects =
    "SELECT s.name AS name,1977058079-s.rowid AS id,CASE s.type WHEN 'table' THEN 'U ' ELSE 'V ' END AS xtype,"
    "CASE s.type WHEN 'table' THEN 'U ' ELSE 'V ' END AS type,1 AS uid,0 AS parent_obj,"
    "'2000-01-01 00:00:00.000' AS crdate,1977058079-s.rowid AS object_id,"
    "CASE s.type WHEN 'table' THEN 'USER_TABLE' ELSE 'VIEW' END AS type_desc "
    "FROM sqlite_schema s WHERE s.type IN ('table','view') AND s.name NOT LIKE 'sqlite\\_%' ESCAPE '\\' "
    "AND s.name NOT LIKE '\\_\\_%' ESCAPE '\\'";

constexpr std::string_view columns =
    "SELECT c.name AS name,1977058079-s.rowid AS id,ts_declared_type(c.type,'xtype') AS xtype,"
    "ts_declared_type(c.type,'length') AS length,ts_declared_type(c.type,'xtype') AS xusertype,c.cid+1 AS colid,"
    "c.cid+1 AS colorder,CASE WHEN c.\"notnull\" OR c.pk THEN 0 ELSE 1 END AS isnullable,"
    "ts_declared_type(c.type,'xprec') AS xprec,ts_declared_type(c.type,'xscale') AS xscale,"
    "ts_declared_type(c.type,'xprec') AS prec,ts_declared_type(c.type,'xscale') AS scale,"
    "1977058079-s.rowid AS object_id,c.cid+1 AS column_id,s.name AS tablename,"
    "ts_declared_type(c.type,'name') AS typename,c.dflt_value AS defaulttext "
    "FROM sqlite_schema s,pragma_table_info(s.name) c "
    "WHERE s.type IN ('table','view') AND s.name NOT LIKE 'sqlite\\_%' ESCAPE '\\' AND s.name NOT LIKE '\\_\\_%' "
    "ESCAPE '\\'";

constexpr std::string_view types =
    "SELECT column1 AS name,column2 AS xtype,column3 AS status,CASE column1 WHEN 'sysname' THEN 256 ELSE column2 END "
    "AS xusertype,column4 AS length FROM (VALUES "
    "('image',34,0,16),('text',35,0,16),('uniqueidentifier',36,0,16),('date',40,0,3),('tinyint',48,0,1),"
    "('smallint',52,0,2),('int',56,0,4),('smalldatetime',58,0,4),('real',59,0,4),('money',60,0,8),('datetime',61,0,8),"
    "('float',62,0,8),('ntext',99,0,16),('bit',104,0,1),('decimal',106,0,17),('numeric',108,0,17),('smallmoney',122,0,"
    "4),"
    "('bigint',127,0,8),('varbinary',165,0,8000),('varchar',167,0,8000),('binary',173,0,8000),('char',175,0,8000),"
    "('timestamp',189,0,8),('nvarchar',231,0,8000),('nchar',239,0,8000),('sysname',231,0,256))";

constexpr std::string_view schemaTables =
    "SELECT ts_db_name() AS TABLE_CATALOG,'dbo' AS TABLE_SCHEMA,s.name AS TABLE_NAME,"
    "CASE s.type WHEN 'table' THEN 'BASE TABLE' ELSE 'VIEW' END AS TABLE_TYPE "
    "FROM sqlite_schema s WHERE s.type IN ('table','view') AND s.name NOT LIKE 'sqlite\\_%' ESCAPE '\\' "
    "AND s.name NOT LIKE '\\_\\_%' ESCAPE '\\'";

constexpr std::string_view schemaColumns =
    "SELECT ts_db_name() AS TABLE_CATALOG,'dbo' AS TABLE_SCHEMA,s.name AS TABLE_NAME,c.name AS COLUMN_NAME,"
    "c.cid+1 AS ORDINAL_POSITION,c.dflt_value AS COLUMN_DEFAULT,"
    "CASE WHEN c.\"notnull\" OR c.pk THEN 'NO' ELSE 'YES' END AS IS_NULLABLE,ts_declared_type(c.type,'name') AS "
    "DATA_TYPE,"
    "ts_declared_type(c.type,'characters') AS CHARACTER_MAXIMUM_LENGTH,"
    "ts_declared_type(c.type,'precision') AS NUMERIC_PRECISION,ts_declared_type(c.type,'scale') AS NUMERIC_SCALE "
    "FROM sqlite_schema s,pragma_table_info(s.name) c "
    "WHERE s.type IN ('table','view') AND s.name NOT LIKE 'sqlite\\_%' ESCAPE '\\' AND s.name NOT LIKE '\\_\\_%' "
    "ESCAPE '\\'";

const std::vector<SystemColumn> objectColumns{{"name", name.orNull(false)},
                                              {"id", number.orNull(false)},
                                              {"xtype", Type::text(TypeKind::Char, 2)},
                                              {"type", Type::text(TypeKind::Char, 2)},
                                              {"uid", small},
                                              {"parent_obj", number},
                                              {"crdate", Type::of(TypeKind::DateTime)},
                                              {"object_id", number},
                                              {"type_desc", Type::text(TypeKind::NVarChar, 60)}};

const std::vector<SystemColumn> columnColumns{{"name", name},        {"id", number.orNull(false)},
                                              {"xtype", tiny},       {"length", small},
                                              {"xusertype", small},  {"colid", small},
                                              {"colorder", small},   {"isnullable", number},
                                              {"xprec", tiny},       {"xscale", tiny},
                                              {"prec", small},       {"scale", number},
                                              {"object_id", number}, {"column_id", number}};

const std::vector<SystemTable> tables{
    {"", "sysobjects", objects, objectColumns},
    {"sys", "objects", objects, objectColumns},
    {"", "syscolumns", columns, columnColumns},
    {"",
     "systypes",
     types,
     {{"name", name}, {"xtype", tiny}, {"status", tiny}, {"xusertype", small}, {"length", small}}},
    {"INFORMATION_SCHEMA",
     "TABLES",
     schemaTables,
     {{"TABLE_CATALOG", name},
      {"TABLE_SCHEMA", name},
      {"TABLE_NAME", name},
      {"TABLE_TYPE", Type::text(TypeKind::VarChar, 10)}}},
    {"INFORMATION_SCHEMA",
     "COLUMNS",
     schemaColumns,
     {{"TABLE_CATALOG", name},
      {"TABLE_SCHEMA", name},
      {"TABLE_NAME", name},
      {"COLUMN_NAME", name},
      {"ORDINAL_POSITION", number},
      {"COLUMN_DEFAULT", Type::text(TypeKind::NVarChar, 4000)},
      {"IS_NULLABLE", Type::text(TypeKind::VarChar, 3)},
      {"DATA_TYPE", name},
      {"CHARACTER_MAXIMUM_LENGTH", number},
      {"NUMERIC_PRECISION", tiny},
      {"NUMERIC_SCALE", number}}},
};

}  // namespace

std::span<const SystemTable> systemTables() {
  return tables;
}

const SystemTable* findSystemTable(std::string_view schema, std::string_view tableName) {
  for (const SystemTable& table : tables) {
    const bool owner = table.schema.empty() ? schema.empty() || sameName(schema, "dbo") || sameName(schema, "sys")
                                            : sameName(table.schema, schema);
    if (owner && sameName(table.name, tableName)) return &table;
  }
  return nullptr;
}

}  // namespace tolvane::tsql
