#include "tsql/language_table.h"

#include <array>

namespace tolvane::tsql {
namespace {

// clang-format off
constexpr std::array supported{
    LanguageRow{"`SELECT` with `DISTINCT`, `TOP n`, `TOP (n)`, `TOP (@n)`, `TOP n PERCENT`, `TOP n WITH TIES`", "select distinct top (2) a from t order by a select top 50 percent with ties a from t order by a"},
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
    LanguageRow{"`GROUP BY ... WITH ROLLUP`, `WITH CUBE`, `ROLLUP (...)`, `CUBE (...)`, `GROUPING SETS (...)`, `GROUPING`, `GROUPING_ID`", "select b, d, sum(a), grouping(b) from t group by b, d with rollup select b, sum(a) from t group by grouping sets ((b), ())"},
    LanguageRow{"`STRING_AGG`, with `WITHIN GROUP`", "select string_agg(b, ',') within group (order by a desc) from t"},
    LanguageRow{"`CROSS APPLY`, `OUTER APPLY` of values, of `VALUES` lists, of aggregates, of the rows that a condition or `TOP` chooses", "select t.a, y.n, z.m from t cross apply (values (t.a), (t.a + 1)) y(n) outer apply (select top 1 x.m from t x where x.a < t.a order by x.a desc) z"},
    LanguageRow{"windows with `ROWS` and `RANGE`", "select sum(a) over (order by a rows between 1 preceding and current row), max(b) over (order by a range unbounded preceding) from t"},
    LanguageRow{"`NTILE`, `PERCENT_RANK`, `CUME_DIST`, `LAG`, `LEAD`, `FIRST_VALUE`, `LAST_VALUE`", "select ntile(2) over (order by a), lag(b, 1, N'-') over (order by a), last_value(b) over (order by a) from t"},
    LanguageRow{"`ROW_NUMBER`, `RANK`, `DENSE_RANK` and the aggregates with `OVER`", "select row_number() over (partition by b order by a), sum(a) over (partition by b) from t"},
    LanguageRow{"`SELECT ... INTO`", "select a into u from t"},
    LanguageRow{"hints of tables and joins, read and ignored", "select x.a from t x with (nolock) inner hash join t y on x.a = y.a"},
    LanguageRow{"`OPTION (...)` with hints that choose among plans, read and ignored", "select a from t option (recompile, maxdop 1, optimize for unknown)"},
    LanguageRow{"changing a common table expression or derived table whose rows are rows of one table", "with c as (select row_number() over (partition by b order by a) n from t) delete c where n > 1;update x set m = 0 from (select top 1 m from t order by a) x"},
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
    LanguageRow{"`PRINT`, `RAISERROR` with values to fill in, `WITH NOWAIT`, `SETERROR`, `LOG`", "print 'x' raiserror('words %5d %s', 16, 1, 7, 'x') with nowait"},
    LanguageRow{"`BEGIN TRY`, `BEGIN CATCH`, `THROW`, the functions `ERROR_...` and `XACT_STATE`", "begin try throw 50001, 'x', 1 end try begin catch select error_number(), xact_state(); throw end catch"},
    LanguageRow{"table variables", "declare @x table (a int identity primary key, b varchar(9) default 'x') insert @x default values select y.a from @x y"},
    LanguageRow{"`EXEC` of a text, `sp_executesql` with parameters", "declare @s nvarchar(99) = N'select @a', @o int exec ('select ' + '1') exec sp_executesql @s, N'@a int, @b int output', 1, @b = @o output"},
    LanguageRow{"cursors: `DECLARE`, `OPEN`, `FETCH ... INTO`, `CLOSE`, `DEALLOCATE`; of the connection or `LOCAL`, `STATIC` or while their tables are not changed", "declare @a int declare c cursor local fast_forward for select a from t open c fetch next from c into @a close c deallocate c"},
    LanguageRow{"labels and `GOTO`", "goto done print 'x' done: print 'y'"},
    LanguageRow{"`BEGIN TRAN`, `COMMIT`, `ROLLBACK` in their nesting, savepoints", "begin tran outermost save tran s rollback tran s commit begin transaction rollback"},
    LanguageRow{"`SET NOCOUNT`, `ANSI_*`, `QUOTED_IDENTIFIER`, `XACT_ABORT`, `DATEFIRST`, `LOCK_TIMEOUT`, `TRANSACTION ISOLATION LEVEL` and others", "set nocount, ansi_nulls on set datefirst 1 set lock_timeout 100 set transaction isolation level read committed"},
    LanguageRow{"`SET IDENTITY_INSERT`, for one table of the connection", "create table u (a int identity) set identity_insert u on"},
    LanguageRow{"names in brackets and double quotes, with `dbo.` before them", "select [a], \"b\" from dbo.[t]"},
    LanguageRow{"`sys.tables`, `sys.columns`, `sys.types`, `sys.schemas`", "select c.name, y.name from sys.columns c join sys.types y on y.user_type_id = c.user_type_id join sys.tables t on t.object_id = c.object_id join sys.schemas s on s.schema_id = t.schema_id"},
    LanguageRow{"`sysobjects`, `syscolumns`, `systypes`, `sys.objects`, `INFORMATION_SCHEMA.TABLES`, `.COLUMNS`", "select c.name from syscolumns c, sysobjects o where c.id = o.id"},
    LanguageRow{"`IS DISTINCT FROM`, `IS NOT DISTINCT FROM`", "select a from t where b is not distinct from null or a is distinct from 1"},
    LanguageRow{"`TRY_CAST`, `TRY_CONVERT`, `IIF`, `TRIM(LEADING ... FROM ...)`", "select try_cast(b as int), try_convert(datetime, b, 120), iif(a > 1, b, null), trim(leading 'x' from b) from t"},
    LanguageRow{"`{d ...}`, `{ts ...}`, `{guid ...}`", "select a from t where d between {d '2020-01-01'} and {ts '2020-12-31 23:59:59'}"},
    LanguageRow{"parameters `?`", "select a from t where b = ?"},
    LanguageRow{"comments of both forms, nested", "select 1 /* a /* b */ c */ -- d"},
};

constexpr std::array refused{
    LanguageRow{"`COLLATE` with another collation", "select b collate Latin1_General_BIN from t"},
    LanguageRow{"`GROUP BY ALL`", "select b from t group by all b"},
    LanguageRow{"windowed functions over several groupings", "select sum(count(*)) over () from t group by rollup(b)"},
    LanguageRow{"`APPLY` of queries with `DISTINCT`, `GROUP BY`, `UNION`, windows, and outer joins of it", "select 1 from t cross apply (select distinct x.b from t x where x.a = t.a) y"},
    LanguageRow{"an aggregate of a column of the query around it, but for a sub-query without `FROM`", "select (select max(t.a) from t x) from t"},
    LanguageRow{"`PIVOT`, `UNPIVOT`, `TABLESAMPLE`, `OPENXML`, `OPENQUERY`, `OPENROWSET`", "select 1 from t pivot (max(a) for b in ([x])) p"},
    LanguageRow{"`FOR XML` and other `FOR`", "select a from t for xml auto"},
    LanguageRow{"`OPTION (...)` with other hints", "select a from t option (table hint (t, nolock))"},
    LanguageRow{"functions as tables", "select 1 from f(1)"},
    LanguageRow{"recursion through a derived table, or from several members", "with c as (select 1 a union all select x.a + 1 from (select a from c) x) select a from c"},
    LanguageRow{"changing a common table expression or derived table of several tables, groups or `DISTINCT`", "with c as (select distinct a from t) delete c"},
    LanguageRow{"a variable that grows over the rows of a query with `DISTINCT`, `GROUP BY`, `WITH`", "declare @s varchar(9) select distinct @s = @s + b from t"},
    LanguageRow{"`INSERT ... EXEC`", "insert t exec p"},
    LanguageRow{"`OUTPUT`", "delete t output deleted.a where a = 1"},
    LanguageRow{"`WHERE CURRENT OF`", "delete t where current of c"},
    LanguageRow{"`CREATE VIEW`, `PROCEDURE`, `FUNCTION`, `TRIGGER`", "create view v as select 1 a"},
    LanguageRow{"`EXEC` of the procedures that SQL Server brings along, but for `sp_executesql`", "exec sp_help"},
    LanguageRow{"`MERGE`, `GRANT`, `REVOKE`, `DENY`, `USE`, `WAITFOR`, `BACKUP`, `DBCC`", "merge t using u on 1 = 1"},
    LanguageRow{"cursors that are variables, `KEYSET` or `DYNAMIC`, `FETCH` without `INTO`", "declare c cursor keyset for select 1"},
    LanguageRow{"`SET ROWCOUNT` other than 0, `DATEFORMAT` other than `mdy`, `LANGUAGE` other than `us_english`, `CONTEXT_INFO`", "set rowcount 5"},
    LanguageRow{"options with another meaning than that of new connections: `ANSI_NULLS OFF`, `ANSI_WARNINGS OFF`, `IMPLICIT_TRANSACTIONS ON`, `NOEXEC ON` and the like", "set ansi_warnings off"},
    LanguageRow{"computed columns", "create table u (a int, b as a + 1)"},
    LanguageRow{"`timestamp` columns", "create table u (a timestamp)"},
    LanguageRow{"the types `time`, `datetime2`, `datetimeoffset`, `xml`, `sql_variant`", "declare @x xml"},
    LanguageRow{"`{fn ...}`, `{t ...}`, `{oj ...}`, `{call ...}`", "select {fn now()}"},
    LanguageRow{"functions of SQL Server that are not in the list below", "select format(a, 'N') from t"},
    LanguageRow{"`AT TIME ZONE`", "select d at time zone 'UTC' from t"},
    LanguageRow{"`CONTAINS`, `FREETEXT`", "select a from t where contains(b, 'x')"},
    LanguageRow{"`<<`, `>>`", "select 1 where 1 << 2 = 4"},
    LanguageRow{"`$IDENTITY`, `$ROWGUID`", "select $identity from t"},
    LanguageRow{"functions of the schema `sys`", "select sys.fn_varbintohexstr(0x01)"},
    LanguageRow{"the globals of SQL Server but for those that are answered", "select @@spid"},
    LanguageRow{"the part `tzoffset` of dates", "select datepart(tz, d) from t"},
    LanguageRow{"`RAISERROR` of numbers of messages and of binary values", "raiserror('%x', 16, 1, 0x05)"},
    LanguageRow{"indexes with `WHERE`, `IGNORE_DUP_KEY`, `DROP_EXISTING`", "create unique index ix on t (a) with (ignore_dup_key = on)"},
    LanguageRow{"indexes in `CREATE TABLE`", "create table u (a int, index ix (a))"},
    LanguageRow{"`ALTER TABLE` with `CHECK CONSTRAINT`, `NOCHECK CONSTRAINT`, `ENABLE`, `SWITCH` and others", "alter table t nocheck constraint all"},
    LanguageRow{"other tables of the catalogue", "select name from sys.foreign_keys"},
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
