#include "tsql/system_tables.h"

#include <algorithm>
#include <array>

#include "tsql/catalogue.h"

namespace tolvane::tsql {
namespace {

const Type name = Type::text(TypeKind::NVarChar, 128);
const Type number = Type::of(TypeKind::Int);
const Type small = Type::of(TypeKind::SmallInt);
const Type tiny = Type::of(TypeKind::TinyInt);
const Type bit = Type::of(TypeKind::Bit);

// The number of a table comes from that of its row in SQLite's catalogue, out of the way of the numbers SQL Server
// keeps for itself; OBJECT_ID gives the same. Tables whose names begin with sqlite_ or __ are the engine's own.
// Constraints stand in the texts of tables, which the functions behind `constraints` read.
constexpr std::string_view sysobjects =
    "SELECT s.name AS name,1977058079-s.rowid AS id,CASE s.type WHEN 'table' THEN 'U ' ELSE 'V ' END AS xtype,"
    "CASE s.type WHEN 'table' THEN 'U ' ELSE 'V ' END AS type,1 AS uid,0 AS parent_obj,"
    "'2000-01-01 00:00:00.000' AS crdate "
    "FROM sqlite_schema s WHERE s.type IN ('table','view') AND s.name NOT LIKE 'sqlite\\_%' ESCAPE '\\' "
    "AND s.name NOT LIKE '\\_\\_%' ESCAPE '\\' UNION ALL "
    "SELECT ts_object_name(k.value),k.value,substr(ts_object_type(k.value)||' ',1,2),"
    "CASE WHEN ts_object_type(k.value) IN ('PK','UQ') THEN 'K ' ELSE ts_object_type(k.value)||' ' END,1,"
    "ts_object_parent(k.value),'2000-01-01 00:00:00.000' FROM json_each(ts_constraints()) k";

constexpr std::string_view sysObjects =
    "SELECT s.name AS name,1977058079-s.rowid AS object_id,NULL AS principal_id,1 AS schema_id,0 AS parent_object_id,"
    "CASE s.type WHEN 'table' THEN 'U ' ELSE 'V ' END AS type,"
    "CASE s.type WHEN 'table' THEN 'USER_TABLE' ELSE 'VIEW' END AS type_desc,'2000-01-01 00:00:00.000' AS create_date,"
    "'2000-01-01 00:00:00.000' AS modify_date,0 AS is_ms_shipped,0 AS is_published,0 AS is_schema_published "
    "FROM sqlite_schema s WHERE s.type IN ('table','view') AND s.name NOT LIKE 'sqlite\\_%' ESCAPE '\\' "
    "AND s.name NOT LIKE '\\_\\_%' ESCAPE '\\' UNION ALL "
    "SELECT ts_object_name(k.value),k.value,NULL,1,ts_object_parent(k.value),"
    "substr(ts_object_type(k.value)||' ',1,2),CASE ts_object_type(k.value) WHEN 'PK' THEN 'PRIMARY_KEY' "
    "WHEN 'UQ' THEN 'UNIQUE' WHEN 'F' THEN 'FOREIGN_KEY' WHEN 'C' THEN 'CHECK' ELSE 'DEFAULT' END||'_CONSTRAINT',"
    "'2000-01-01 00:00:00.000','2000-01-01 00:00:00.000',0,0,0 FROM json_each(ts_constraints()) k";

constexpr std::string_view columns =
    "SELECT c.name AS name,1977058079-s.rowid AS id,ts_declared_type(c.type,'xtype') AS xtype,"
    "ts_declared_type(c.type,'length') AS length,ts_declared_type(c.type,'xtype') AS xusertype,c.cid+1 AS colid,"
    "c.cid+1 AS colorder,CASE WHEN c.\"notnull\" OR c.pk THEN 0 ELSE 1 END AS isnullable,"
    "ts_declared_type(c.type,'xprec') AS xprec,ts_declared_type(c.type,'xscale') AS xscale,"
    "ts_declared_type(c.type,'prec') AS prec,ts_declared_type(c.type,'columnscale') AS scale "
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
    "c.cid+1 AS ORDINAL_POSITION,CASE WHEN c.dflt_value IS NOT NULL THEN ts_default_text(s.sql,c.name) END AS "
    "COLUMN_DEFAULT,"
    "CASE WHEN c.\"notnull\" OR c.pk THEN 'NO' ELSE 'YES' END AS IS_NULLABLE,ts_declared_type(c.type,'name') AS "
    "DATA_TYPE,"
    "ts_declared_type(c.type,'characters') AS CHARACTER_MAXIMUM_LENGTH,"
    "ts_declared_type(c.type,'octets') AS CHARACTER_OCTET_LENGTH,"
    "ts_declared_type(c.type,'precision') AS NUMERIC_PRECISION,ts_declared_type(c.type,'radix') AS "
    "NUMERIC_PRECISION_RADIX,ts_declared_type(c.type,'scale') AS NUMERIC_SCALE,"
    "ts_declared_type(c.type,'fraction') AS DATETIME_PRECISION,NULL AS CHARACTER_SET_CATALOG,NULL AS "
    "CHARACTER_SET_SCHEMA,ts_declared_type(c.type,'characterset') AS CHARACTER_SET_NAME,NULL AS COLLATION_CATALOG,NULL "
    "AS COLLATION_SCHEMA,ts_declared_type(c.type,'collation') AS COLLATION_NAME,NULL AS DOMAIN_CATALOG,NULL AS "
    "DOMAIN_SCHEMA,NULL AS DOMAIN_NAME "
    "FROM sqlite_schema s,pragma_table_info(s.name) c "
    "WHERE s.type IN ('table','view') AND s.name NOT LIKE 'sqlite\\_%' ESCAPE '\\' AND s.name NOT LIKE '\\_\\_%' "
    "ESCAPE '\\'";

constexpr std::string_view sysTables =
    "SELECT s.name AS name,1977058079-s.rowid AS object_id,NULL AS principal_id,1 AS schema_id,0 AS parent_object_id,"
    "'U ' AS type,'USER_TABLE' AS type_desc,'2000-01-01 00:00:00.000' AS create_date,"
    "'2000-01-01 00:00:00.000' AS modify_date,0 AS is_ms_shipped "
    "FROM sqlite_schema s WHERE s.type='table' AND s.name NOT LIKE 'sqlite\\_%' ESCAPE '\\' "
    "AND s.name NOT LIKE '\\_\\_%' ESCAPE '\\'";

constexpr std::string_view sysColumns =
    "SELECT 1977058079-s.rowid AS object_id,c.name AS name,c.cid+1 AS column_id,"
    "ts_declared_type(c.type,'xtype') AS system_type_id,ts_declared_type(c.type,'xtype') AS user_type_id,"
    "ts_declared_type(c.type,'length') AS max_length,ts_declared_type(c.type,'xprec') AS precision,"
    "ts_declared_type(c.type,'xscale') AS scale,ts_declared_type(c.type,'collation') AS collation_name,"
    "CASE WHEN c.\"notnull\" OR c.pk THEN 0 ELSE 1 END AS is_nullable,"
    "CASE WHEN c.dflt_value LIKE 'ts\\_identity(%' ESCAPE '\\' OR (c.pk=1 AND c.type='INTEGER' AND s.sql LIKE "
    "'%AUTOINCREMENT%') THEN 1 ELSE 0 END AS is_identity,0 AS is_computed "
    "FROM sqlite_schema s,pragma_table_info(s.name) c "
    "WHERE s.type IN ('table','view') AND s.name NOT LIKE 'sqlite\\_%' ESCAPE '\\' AND s.name NOT LIKE '\\_\\_%' "
    "ESCAPE '\\'";

// The numbers of the types, also of those that this engine refuses, are SQL Server's.
constexpr std::string_view sysTypes =
    "SELECT column1 AS name,column2 AS system_type_id,column3 AS user_type_id,4 AS schema_id,NULL AS principal_id,"
    "column4 AS max_length,column5 AS precision,column6 AS scale,"
    "CASE WHEN column2 IN (35,99,167,175,231,239) THEN 'Chinese_PRC_CI_AS' END AS collation_name,"
    "CASE WHEN column3 IN (189,256) THEN 0 ELSE 1 END AS is_nullable,0 AS is_user_defined,"
    "CASE column2 WHEN 240 THEN 1 ELSE 0 END AS is_assembly_type,0 AS default_object_id,0 AS rule_object_id,"
    "0 AS is_table_type FROM (VALUES "
    "('image',34,34,16,0,0),('text',35,35,16,0,0),('uniqueidentifier',36,36,16,0,0),('date',40,40,3,10,0),"
    "('time',41,41,5,16,7),('datetime2',42,42,8,27,7),('datetimeoffset',43,43,10,34,7),('tinyint',48,48,1,3,0),"
    "('smallint',52,52,2,5,0),('int',56,56,4,10,0),('smalldatetime',58,58,4,16,0),('real',59,59,4,24,0),"
    "('money',60,60,8,19,4),('datetime',61,61,8,23,3),('float',62,62,8,53,0),('sql_variant',98,98,8016,0,0),"
    "('ntext',99,99,16,0,0),('bit',104,104,1,1,0),('decimal',106,106,17,38,38),('numeric',108,108,17,38,38),"
    "('smallmoney',122,122,4,10,4),('bigint',127,127,8,19,0),('hierarchyid',240,128,892,0,0),"
    "('geometry',240,129,-1,0,0),('geography',240,130,-1,0,0),('varbinary',165,165,8000,0,0),"
    "('varchar',167,167,8000,0,0),('binary',173,173,8000,0,0),('char',175,175,8000,0,0),('timestamp',189,189,8,0,0),"
    "('nvarchar',231,231,8000,0,0),('nchar',239,239,8000,0,0),('xml',241,241,-1,0,0),('sysname',231,256,256,0,0))";

constexpr std::string_view sysSchemas =
    "SELECT column1 AS name,column2 AS schema_id,column2 AS principal_id FROM (VALUES ('dbo',1),('guest',2),"
    "('INFORMATION_SCHEMA',3),('sys',4),('db_owner',16384),('db_accessadmin',16385),('db_securityadmin',16386),"
    "('db_ddladmin',16387),('db_backupoperator',16389),('db_datareader',16390),('db_datawriter',16391),"
    "('db_denydatareader',16392),('db_denydatawriter',16393))";

const std::vector<SystemColumn> tableColumns{{"name", name.orNull(false)},
                                             {"object_id", number.orNull(false)},
                                             {"principal_id", number},
                                             {"schema_id", number.orNull(false)},
                                             {"parent_object_id", number.orNull(false)},
                                             {"type", Type::text(TypeKind::Char, 2)},
                                             {"type_desc", Type::text(TypeKind::NVarChar, 60)},
                                             {"create_date", Type::of(TypeKind::DateTime).orNull(false)},
                                             {"modify_date", Type::of(TypeKind::DateTime).orNull(false)},
                                             {"is_ms_shipped", bit}};

// What is told of tables and, behind that, what of all objects.
std::vector<SystemColumn> sysObjectColumns() {
  std::vector<SystemColumn> result = tableColumns;
  result.insert(result.end(), {{"is_published", bit}, {"is_schema_published", bit}});
  return result;
}

const std::vector<SystemColumn> sysColumnColumns{{"object_id", number.orNull(false)},
                                                 {"name", name},
                                                 {"column_id", number.orNull(false)},
                                                 {"system_type_id", tiny.orNull(false)},
                                                 {"user_type_id", number.orNull(false)},
                                                 {"max_length", small.orNull(false)},
                                                 {"precision", tiny.orNull(false)},
                                                 {"scale", tiny.orNull(false)},
                                                 {"collation_name", name},
                                                 {"is_nullable", bit},
                                                 {"is_identity", bit.orNull(false)},
                                                 {"is_computed", bit}};

// Others of SQL Server's catalogue: asking for them is no mistake, so they are refused by name.
constexpr std::array<std::string_view, 48> compatibilityTables{"sysindexes",
                                                               "sysconstraints",
                                                               "sysusers",
                                                               "sysforeignkeys",
                                                               "sysreferences",
                                                               "syscomments",
                                                               "sysdepends",
                                                               "sysfilegroups",
                                                               "sysfiles",
                                                               "sysindexkeys",
                                                               "sysmembers",
                                                               "syspermissions",
                                                               "sysprotects",
                                                               "sysfulltextcatalogs",
                                                               "sysdatabases",
                                                               "sysprocesses",
                                                               "syslogins",
                                                               "sysservers",
                                                               "sysmessages",
                                                               "sysconfigures",
                                                               "syscurconfigs",
                                                               "syslockinfo",
                                                               "sysperfinfo",
                                                               "sysaltfiles",
                                                               "syscharsets",
                                                               "syslanguages",
                                                               "sysdevices",
                                                               "sysoledbusers",
                                                               "sysopentapes",
                                                               "sysremotelogins",
                                                               "syscursors",
                                                               "syscursorcolumns",
                                                               "syscursorrefs",
                                                               "syscursortables",
                                                               "syscacheobjects",
                                                               "allocation_units",
                                                               "partitions",
                                                               "indexes",
                                                               "index_columns",
                                                               "key_constraints",
                                                               "foreign_keys",
                                                               "foreign_key_columns",
                                                               "default_constraints",
                                                               "check_constraints",
                                                               "views",
                                                               "procedures",
                                                               "databases",
                                                               "all_objects"};
constexpr std::array<std::string_view, 34> sysViews{"all_columns",
                                                    "all_views",
                                                    "all_sql_modules",
                                                    "sql_modules",
                                                    "parameters",
                                                    "triggers",
                                                    "identity_columns",
                                                    "computed_columns",
                                                    "synonyms",
                                                    "sequences",
                                                    "stats",
                                                    "stats_columns",
                                                    "extended_properties",
                                                    "database_principals",
                                                    "server_principals",
                                                    "database_files",
                                                    "master_files",
                                                    "configurations",
                                                    "messages",
                                                    "system_objects",
                                                    "system_columns",
                                                    "system_views",
                                                    "assemblies",
                                                    "data_spaces",
                                                    "filegroups",
                                                    "servers",
                                                    "sql_logins",
                                                    "syslanguages",
                                                    "time_zone_info",
                                                    "table_types",
                                                    "events",
                                                    "dm_exec_sessions",
                                                    "dm_exec_requests",
                                                    "objects"};
constexpr std::array<std::string_view, 19> informationViews{"TABLE_CONSTRAINTS",
                                                            "KEY_COLUMN_USAGE",
                                                            "CONSTRAINT_COLUMN_USAGE",
                                                            "CONSTRAINT_TABLE_USAGE",
                                                            "CHECK_CONSTRAINTS",
                                                            "REFERENTIAL_CONSTRAINTS",
                                                            "VIEWS",
                                                            "VIEW_COLUMN_USAGE",
                                                            "VIEW_TABLE_USAGE",
                                                            "ROUTINES",
                                                            "ROUTINE_COLUMNS",
                                                            "PARAMETERS",
                                                            "SCHEMATA",
                                                            "COLUMN_PRIVILEGES",
                                                            "TABLE_PRIVILEGES",
                                                            "DOMAINS",
                                                            "DOMAIN_CONSTRAINTS",
                                                            "COLUMN_DOMAIN_USAGE",
                                                            "SEQUENCES"};

const std::vector<SystemColumn> sysobjectsColumns{{"name", name.orNull(false)},
                                                  {"id", number.orNull(false)},
                                                  {"xtype", Type::text(TypeKind::Char, 2)},
                                                  {"uid", small},
                                                  {"parent_obj", number.orNull(false)},
                                                  {"crdate", Type::of(TypeKind::DateTime).orNull(false)},
                                                  {"type", Type::text(TypeKind::Char, 2)}};

const std::vector<SystemColumn> columnColumns{{"name", name},       {"id", number.orNull(false)},
                                              {"xtype", tiny},      {"length", small},
                                              {"xusertype", small}, {"colid", small},
                                              {"colorder", small},  {"isnullable", number},
                                              {"xprec", tiny},      {"xscale", tiny},
                                              {"prec", small},      {"scale", number}};

const std::vector<SystemTable> tables{
    {"", "sysobjects", sysobjects, sysobjectsColumns},
    {"sys", "objects", sysObjects, sysObjectColumns(), true},
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
      {"TABLE_TYPE", Type::text(TypeKind::VarChar, 10)}},
     true},
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
      {"CHARACTER_OCTET_LENGTH", number},
      {"NUMERIC_PRECISION", tiny},
      {"NUMERIC_PRECISION_RADIX", small},
      {"NUMERIC_SCALE", number},
      {"DATETIME_PRECISION", small},
      {"CHARACTER_SET_CATALOG", name},
      {"CHARACTER_SET_SCHEMA", name},
      {"CHARACTER_SET_NAME", name},
      {"COLLATION_CATALOG", name},
      {"COLLATION_SCHEMA", name},
      {"COLLATION_NAME", name},
      {"DOMAIN_CATALOG", name},
      {"DOMAIN_SCHEMA", name},
      {"DOMAIN_NAME", name}},
     true},
    {"sys", "tables", sysTables, tableColumns},
    {"sys", "columns", sysColumns, sysColumnColumns},
    {"sys",
     "types",
     sysTypes,
     {{"name", name.orNull(false)},
      {"system_type_id", tiny.orNull(false)},
      {"user_type_id", number.orNull(false)},
      {"schema_id", number.orNull(false)},
      {"principal_id", number},
      {"max_length", small.orNull(false)},
      {"precision", tiny.orNull(false)},
      {"scale", tiny.orNull(false)},
      {"collation_name", name},
      {"is_nullable", bit},
      {"is_user_defined", bit.orNull(false)},
      {"is_assembly_type", bit.orNull(false)},
      {"default_object_id", number.orNull(false)},
      {"rule_object_id", number.orNull(false)},
      {"is_table_type", bit.orNull(false)}},
     true},
    {"sys",
     "schemas",
     sysSchemas,
     {{"name", name.orNull(false)}, {"schema_id", number.orNull(false)}, {"principal_id", number}},
     true},
};

}  // namespace

std::span<const SystemTable> systemTables() {
  return tables;
}

bool isKnownSystemTable(std::string_view schema, std::string_view table) {
  const auto isIn = [table](const auto& names) {
    return std::ranges::any_of(names, [table](std::string_view known) { return sameName(known, table); });
  };
  if (sameName(schema, "INFORMATION_SCHEMA")) return isIn(informationViews);
  if (sameName(schema, "sys")) {
    return isIn(compatibilityTables) || isIn(sysViews) || (table.size() > 3 && sameName(table.substr(0, 3), "dm_"));
  }
  const bool compatible = table.size() > 3 && sameName(table.substr(0, 3), "sys");
  return (schema.empty() || sameName(schema, "dbo")) && compatible && isIn(compatibilityTables);
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
