#include "tsql/language_table.h"

#include <array>

namespace tolvane::tsql {
namespace {

// clang-format off
constexpr std::array supported{
    LanguageRow{"`SELECT` with `DISTINCT`, `TOP n`, `TOP (n)`, `TOP @n`, `TOP n PERCENT`, `TOP n WITH TIES`", "select distinct top (2) a from t order by a select top 50 percent with ties a from t order by a"},
    LanguageRow{"column aliases of all three forms", "select a as x, y = b, d z from t"},
    LanguageRow{"inner, left, right, full and cross joins, nested joins, the comma", "select 1 from t x left join t y on x.a = y.a full join t z on z.a = x.a cross join t w"},
    LanguageRow{"derived tables, with column names after the alias, `VALUES` lists in them", "select x.n from (select a from t) x(n), (values (1), (2)) y(m)"},
    LanguageRow{"common table expressions before SELECT, INSERT, UPDATE, DELETE", "with c as (select a from t) select * from c;with c as (select 1 n) delete t where a in (select n from c)"},
    LanguageRow{"common table expressions that refer to themselves, `OPTION (MAXRECURSION n)`", "with c as (select 1 n union all select n + 1 from c where n < 9) select n from c option (maxrecursion 20)"},
    LanguageRow{"`OFFSET n ROWS`, `FETCH NEXT n ROWS ONLY`", "select a from t order by a offset 1 rows fetch next 2 rows only"},
    LanguageRow{"correlated sub-queries, `EXISTS`, `IN`, `ANY`, `SOME`, `ALL`", "select a from t x where a > all (select y.a from t y where y.b = x.b)"},
    LanguageRow{"`UNION`, `UNION ALL`, `EXCEPT`, `INTERSECT`", "select a from t union all select 1 except select 2 intersect select 3"},
    LanguageRow{"`GROUP BY`, `HAVING`", "select b, count(*) from t group by b having count(*) > 1"},
    LanguageRow{"`ORDER BY` a name, an alias, a position, an expression", "select a, b as n from t order by n, 1, a + 1 desc"},
    LanguageRow{"`CASE` of both forms", "select case a when 1 then 'x' else 'y' end, case when a > 1 then 1 end from t"},
    LanguageRow{"`BETWEEN`, `IS NULL`, `LIKE` with `%`, `_`, `[a-z]`, `[^a]`, `ESCAPE`", "select a from t where b like '[a-c]!_%' escape '!' and a between 1 and 2 and d is not null"},
    LanguageRow{"`ROW_NUMBER`, `RANK`, `DENSE_RANK` and the aggregates with `OVER`", "select row_number() over (partition by b order by a), sum(a) over (partition by b) from t"},
    LanguageRow{"`SELECT ... INTO`", "select a into u from t"},
    LanguageRow{"table hints, read and ignored", "select a from t with (nolock)"},
    LanguageRow{"`INSERT` by position, by name, of several rows, of a query, `DEFAULT`, `DEFAULT VALUES`", "insert into t (a, b) values (1, default), (2, 'x') insert t (a) select a from t"},
    LanguageRow{"`UPDATE`, with `FROM`, joins, `TOP`, `+=` and the like", "update x set x.a = y.a from t x join t y on x.b = y.b"},
    LanguageRow{"`DELETE` with and without `FROM`, with a second `FROM`, `TOP`", "delete from t from t inner join (select 1 n) s on s.n = t.a delete t where a = 1"},
    LanguageRow{"`TRUNCATE TABLE`", "truncate table t"},
    LanguageRow{"`CREATE TABLE` with identity, null, default, check, primary, unique and foreign keys", "create table u (i int identity primary key, n int not null default 0 check (n >= 0), p int references u(i), unique (n))"},
    LanguageRow{"`CREATE [UNIQUE] INDEX`, `DROP INDEX`", "create unique index ix on t (a, b desc)"},
    LanguageRow{"`IDENTITY` with any seed and step, on all integer types and decimals without a scale", "create table u (a decimal(10,0) identity(100,-5))"},
    LanguageRow{"foreign keys over columns of any type, `ON DELETE` and `ON UPDATE` with `CASCADE`, `SET NULL`, `SET DEFAULT`, `NO ACTION`", "create table w (k nvarchar(20) primary key) create table u (b nvarchar(20) references w(k) on delete cascade)"},
    LanguageRow{"`INCLUDE` and `WITH` of an index, which change no answer", "create index ix on t (a) include (b) with (fillfactor = 80, online = off)"},
    LanguageRow{"`ALTER TABLE ADD` columns and constraints of every kind, `WITH NOCHECK`", "alter table t add e smallint not null default (0), f datetime default getdate() with values, constraint ck check (e >= 0), constraint uq unique (b), constraint df default 5 for m"},
    LanguageRow{"`ALTER TABLE DROP` columns and constraints", "alter table t add constraint ck2 check (a > 0) alter table t drop constraint ck2, column d"},
    LanguageRow{"`ALTER TABLE ALTER COLUMN`", "alter table t alter column m decimal(10,2) not null"},
    LanguageRow{"`DROP TABLE [IF EXISTS]`", "drop table if exists t, u"},
    LanguageRow{"temporary tables of the connection", "create table #x (a int) insert #x values (1) select a from #x"},
    LanguageRow{"`IF ... ELSE`, `BEGIN ... END`, `WHILE`, `BREAK`, `CONTINUE`, `RETURN`", "while 1 = 0 begin if 1 = 1 break else continue end return"},
    LanguageRow{"`DECLARE`, `SET @x`, `SELECT @x =`, also from row to row", "declare @x int = 1, @y varchar(5) set @x += 1 select @y = b from t select @x = @x + a from t order by a"},
    LanguageRow{"`COLLATE Chinese_PRC_CI_AS` and `database_default`, which is the collation of all texts", "select a from t order by b collate Chinese_PRC_CI_AS"},
    LanguageRow{"`PRINT`, `RAISERROR` of a text", "print 'x' raiserror('words', 16, 1)"},
    LanguageRow{"`BEGIN TRAN`, `COMMIT`, `ROLLBACK` in their nesting", "begin tran commit begin transaction rollback"},
    LanguageRow{"`SET NOCOUNT`, `ANSI_*`, `QUOTED_IDENTIFIER`, `XACT_ABORT`, `TRANSACTION ISOLATION LEVEL`", "set nocount on set ansi_nulls on set transaction isolation level read committed"},
    LanguageRow{"`SET IDENTITY_INSERT`, for one table of the connection", "create table u (a int identity) set identity_insert u on"},
    LanguageRow{"names in brackets and double quotes, with `dbo.` before them", "select [a], \"b\" from dbo.[t]"},
    LanguageRow{"`sys.tables`, `sys.columns`, `sys.types`, `sys.schemas`", "select c.name, y.name from sys.columns c join sys.types y on y.user_type_id = c.user_type_id join sys.tables t on t.object_id = c.object_id join sys.schemas s on s.schema_id = t.schema_id"},
    LanguageRow{"`sysobjects`, `syscolumns`, `systypes`, `sys.objects`, `INFORMATION_SCHEMA.TABLES`, `.COLUMNS`", "select c.name from syscolumns c, sysobjects o where c.id = o.id"},
    LanguageRow{"parameters `?`", "select a from t where b = ?"},
    LanguageRow{"comments of both forms, nested", "select 1 /* a /* b */ c */ -- d"},
};

constexpr std::array refused{
    LanguageRow{"`TOP ... WITH TIES`, `TOP ... PERCENT` in one of several joined queries", "select top 50 percent a from t union select 1"},
    LanguageRow{"`COLLATE` with another collation", "select b collate Latin1_General_BIN from t"},
    LanguageRow{"frames of windows, `ROWS` and `RANGE`", "select sum(a) over (order by a rows unbounded preceding) from t"},
    LanguageRow{"`GROUP BY ... WITH`", "select a from t group by a with rollup"},
    LanguageRow{"`CROSS APPLY`, `OUTER APPLY`", "select 1 from t cross apply t"},
    LanguageRow{"`FOR XML` and other `FOR`", "select a from t for xml auto"},
    LanguageRow{"`OPTION (...)` but for `MAXRECURSION`", "select a from t option (recompile)"},
    LanguageRow{"functions as tables", "select 1 from f(1)"},
    LanguageRow{"table variables", "declare @x table (a int)"},
    LanguageRow{"recursion through a derived table, or from several members", "with c as (select 1 a union all select x.a + 1 from (select a from c) x) select a from c"},
    LanguageRow{"changing a common table expression", "with c as (select a from t) delete c"},
    LanguageRow{"a variable that grows over the rows of a query with `DISTINCT`, `GROUP BY`, `WITH`", "declare @s varchar(9) select distinct @s = @s + b from t"},
    LanguageRow{"`INSERT ... EXEC`", "insert t exec p"},
    LanguageRow{"`OUTPUT`", "delete t output deleted.a where a = 1"},
    LanguageRow{"`WHERE CURRENT OF`", "delete t where current of c"},
    LanguageRow{"changing a derived table", "update x set a = 1 from (select a from t) x"},
    LanguageRow{"`CREATE VIEW`, `PROCEDURE`, `FUNCTION`, `TRIGGER`", "create view v as select 1 a"},
    LanguageRow{"`EXEC` of texts and of the procedures that SQL Server brings along", "exec sp_help"},
    LanguageRow{"`MERGE`, `GRANT`, `REVOKE`, `DENY`, `USE`, `GOTO`, `WAITFOR`, `BACKUP`, `DBCC`", "merge t using u on 1 = 1"},
    LanguageRow{"cursors", "declare c cursor for select 1"},
    LanguageRow{"savepoints", "save tran s"},
    LanguageRow{"`BEGIN TRY`", "begin try select 1 end try"},
    LanguageRow{"`SET ROWCOUNT`, `DATEFORMAT`, `DATEFIRST`, `LANGUAGE`", "set rowcount 5"},
    LanguageRow{"computed columns", "create table u (a int, b as a + 1)"},
    LanguageRow{"`timestamp` columns", "create table u (a timestamp)"},
    LanguageRow{"the types `time`, `datetime2`, `datetimeoffset`, `xml`, `sql_variant`", "declare @x xml"},
    LanguageRow{"indexes with `WHERE`, `IGNORE_DUP_KEY`, `DROP_EXISTING`", "create unique index ix on t (a) with (ignore_dup_key = on)"},
    LanguageRow{"indexes in `CREATE TABLE`", "create table u (a int, index ix (a))"},
    LanguageRow{"`ALTER TABLE` with `CHECK CONSTRAINT`, `NOCHECK CONSTRAINT`, `ENABLE`, `SWITCH` and others", "alter table t nocheck constraint all"},
    LanguageRow{"other tables of the catalogue", "select name from sys.foreign_keys"},
    LanguageRow{"`RAISERROR` with values or `WITH`", "raiserror('%d', 16, 1, 5)"},
    LanguageRow{"global temporary tables", "create table ##u (a int)"},
};
// clang-format on

}  // namespace

std::span<const LanguageRow> supportedConstructs() {
  return supported;
}
std::span<const LanguageRow> refusedConstructs() {
  return refused;
}

}  // namespace tolvane::tsql
