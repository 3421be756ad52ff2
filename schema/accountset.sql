-- The tables of an account set, as far as the reporting module reads and writes them.
--
-- Plain T-SQL: SQL Server takes the script as it stands, and so does the embedded engine. A line GO ends a batch.
-- docs/accountset.md tells what the tables are for; here stands only what the definitions themselves do not say.
--
-- Where rows may repeat (rights, grants, audit marks, scheme names, ...) there is no unique key on purpose: the services
-- write what they are given, and what counts as "the" row is the services' rule, not the table's.

-- Report store ------------------------------------------------------------------------------------------------------

create table t_Rpt_Content (
  FRptID        int not null identity(1,1),
  FRptName      nvarchar(255) not null,
  FRptName_Cht  nvarchar(255) not null default (N''),
  FRptName_En   nvarchar(255) not null default (N''),
  FSysName      nvarchar(255) null,
  FYear         int not null default (0),
  FPeriod       int not null default (0),
  FOwner        int not null default (0),
  FRptType      int not null default (1),
  FLastOperator smallint null,
  FLastDate     datetime null,
  FRptData      image null,
  FPrinterBuf   image null,
  -- Text, '1' is visible. A new report stays off the web list until somebody shows it there.
  FVisibleInList nvarchar(10) null default (N'0'),
  -- One such column for every classification standard: the report's item in it. F1 (nature) stays 0, since the nature of
  -- a report is its type; F1001 is the accounting regime.
  F1            smallint not null default (0),
  F1001         smallint not null default (0),
  constraint PK_t_Rpt_Content primary key (FRptID)
)
GO
create index IX_t_Rpt_Content_Name on t_Rpt_Content (FRptName, FRptType)
create index IX_t_Rpt_Content_Name_Cht on t_Rpt_Content (FRptName_Cht, FRptType)
create index IX_t_Rpt_Content_Name_En on t_Rpt_Content (FRptName_En, FRptType)
create index IX_t_Rpt_Content_Type on t_Rpt_Content (FRptType)
create index IX_t_Rpt_Content_Owner on t_Rpt_Content (FOwner)
create index IX_t_Rpt_Content_F1001 on t_Rpt_Content (F1001)
GO

create table t_Rpt_Right (
  FRptID     int not null,
  FUserID    int not null,
  FRightCode int not null default (0)
)
GO
create index IX_t_Rpt_Right_Report on t_Rpt_Right (FRptID, FUserID, FRightCode)
create index IX_t_Rpt_Right_User on t_Rpt_Right (FUserID, FRptID, FRightCode)
GO

create table t_Rpt_View (
  FUserID   int not null,
  FViewCode nvarchar(2000) null,
  constraint PK_t_Rpt_View primary key (FUserID)
)
GO

create table t_Rpt_Path (
  FPathName   nvarchar(200) not null,
  FParentPath nvarchar(200) not null default (N'')
)
GO
create index IX_t_Rpt_Path on t_Rpt_Path (FPathName, FParentPath)
GO

-- Classification ----------------------------------------------------------------------------------------------------
-- The columns of these two tables stand in the order in which rows are inserted, since the inserts name no columns.

create table t_Rpt_PropClass (
  FPropClsID int not null,
  FNumber    nvarchar(20) not null,
  FName      nvarchar(255) not null,
  FName_Cht  nvarchar(255) not null,
  FName_En   nvarchar(255) not null,
  constraint PK_t_Rpt_PropClass primary key (FPropClsID)
)
GO
create index IX_t_Rpt_PropClass_Number on t_Rpt_PropClass (FNumber)
GO

create table t_Rpt_PropItem (
  FPropClsID  int not null,
  FPropItemID int not null,
  FNumber     nvarchar(80) not null,
  FName       nvarchar(255) not null,
  FName_Cht   nvarchar(255) not null,
  FName_En    nvarchar(255) not null,
  constraint PK_t_Rpt_PropItem primary key (FPropItemID)
)
GO
create index IX_t_Rpt_PropItem_Number on t_Rpt_PropItem (FPropClsID, FNumber)
create index IX_t_Rpt_PropItem_NumberAlone on t_Rpt_PropItem (FNumber)
GO

create table t_Rpt_LeaderAudit (
  FRptID    int not null,
  FUserID   int not null,
  FUserName nvarchar(255) null
)
GO
create index IX_t_Rpt_LeaderAudit on t_Rpt_LeaderAudit (FRptID)
GO

create table t_Rpt_EISDOC (
  FID        int not null identity(1,1),
  FName      nvarchar(255) not null,
  FLastDate  datetime null,
  FChecked   smallint not null default (0),
  FType      nvarchar(50) null,
  FBinaryImg image null,
  constraint PK_t_Rpt_EISDOC primary key (FID)
)
GO
create index IX_t_Rpt_EISDOC_Name on t_Rpt_EISDOC (FName)
GO

-- Cs reports --------------------------------------------------------------------------------------------------------

create table t_CsRptGroup (
  FRptGroupID   int not null,
  FRptGroupNum  nvarchar(80) not null,
  FRptGroupName nvarchar(255) not null,
  FCycleID      int not null default (1),
  FBaseRptStyle int not null default (0),
  constraint PK_t_CsRptGroup primary key (FRptGroupID)
)
GO
create index IX_t_CsRptGroup_Num on t_CsRptGroup (FRptGroupNum)
GO

create table t_CsRptContent (
  FRptID      int not null identity(1,1),
  FRptGroupID int not null,
  FRptType    smallint not null default (1),
  FCurrencyID int not null,
  FCompanyNum nvarchar(80) not null default (N''),
  FYear       int not null,
  FPeriod     int not null,
  FDay        datetime null,
  FRptContent image null,
  FIsChecked  bit null,
  FIsAccepted bit null,
  constraint PK_t_CsRptContent primary key (FRptID)
)
GO
create index IX_t_CsRptContent_Period on t_CsRptContent (FRptGroupID, FCompanyNum, FCurrencyID, FRptType, FYear, FPeriod)
create index IX_t_CsRptContent_Day on t_CsRptContent (FRptGroupID, FCompanyNum, FCurrencyID, FRptType, FDay)
create index IX_t_CsRptContent_Currency on t_CsRptContent (FCurrencyID, FYear)
GO

create table t_CsRptContentDel (
  FRptID        int not null,
  FRptGroupNum  nvarchar(80) not null,
  FRptGroupName nvarchar(255) not null,
  FCycleID      int not null default (1),
  FBaseRptStyle int not null default (0),
  FCurrencyNum  nvarchar(40) not null,
  FCompanyNum   nvarchar(80) not null default (N''),
  FRptType      smallint not null default (1),
  FYear         int not null,
  FPeriod       int not null,
  FDay          datetime null,
  FRptContent   image null,
  constraint PK_t_CsRptContentDel primary key (FRptID)
)
GO
create index IX_t_CsRptContentDel on t_CsRptContentDel (FRptGroupNum, FCompanyNum, FCurrencyNum, FRptType, FYear, FPeriod)
GO

create table t_CsRptSample (
  FRptGroupID int not null,
  FRptType    smallint not null default (1),
  FRptContent image null,
  constraint PK_t_CsRptSample primary key (FRptGroupID, FRptType)
)
GO

-- Inserted into without column names: the order of the columns counts.
create table t_CsRptItemData (
  FCompanyNum  nvarchar(80) not null,
  FItemNum     nvarchar(80) not null,
  FCurrencyNum nvarchar(40) not null,
  FDataClass   int not null default (0),
  FYear        int not null,
  FPeriod      int not null,
  FDay         datetime not null,
  FAmount      decimal(20,4) not null default (0),
  FAccuAmount  decimal(20,4) not null default (0),
  FIsNew       bit not null default (0),
  constraint PK_t_CsRptItemData
    primary key (FCompanyNum, FItemNum, FCurrencyNum, FDataClass, FYear, FPeriod, FDay)
)
GO

create table t_CsCurrency (
  FCurrencyID int not null,
  FNumber     nvarchar(40) not null,
  constraint PK_t_CsCurrency primary key (FCurrencyID)
)
GO
create index IX_t_CsCurrency_Number on t_CsCurrency (FNumber)
GO

create table t_CsSysParam (
  FKey   nvarchar(80) not null,
  FValue nvarchar(255) null,
  constraint PK_t_CsSysParam primary key (FKey)
)
GO

-- Multi-account-set configurations, linked by name alone --------------------------------------------------------------

create table t_Rpt_MultiAcct (
  FName       nvarchar(255) not null,
  FCreatorID  int not null,
  FDriverType int not null default (0),
  FAisName    nvarchar(255) null,
  FSystemDB   nvarchar(255) null,
  FServerName nvarchar(255) null,
  FCompanyID  int not null default (0)
)
GO
create index IX_t_Rpt_MultiAcct on t_Rpt_MultiAcct (FName, FCreatorID)
GO

create table t_Rpt_MultiAcctEntry (
  FUserID      int not null,
  FName        nvarchar(255) not null,
  FMUserName   nvarchar(255) null,
  FMPassWord   nvarchar(255) null,
  FPropsString nvarchar(2000) null
)
GO
-- Not unique: renaming a configuration leaves its entries behind, and the old name may be taken again.
create index IX_t_Rpt_MultiAcctEntry_Name on t_Rpt_MultiAcctEntry (FName, FUserID)
create index IX_t_Rpt_MultiAcctEntry_User on t_Rpt_MultiAcctEntry (FUserID, FName)
GO

create table t_Rpt_MultiAcctRight (
  FName      nvarchar(255) not null,
  FUserID    int not null,
  FCreatorID int not null
)
GO
create index IX_t_Rpt_MultiAcctRight_Name on t_Rpt_MultiAcctRight (FName, FUserID)
create index IX_t_Rpt_MultiAcctRight_User on t_Rpt_MultiAcctRight (FUserID, FName)
GO

-- Batch print schemes -----------------------------------------------------------------------------------------------

create table t_Rpt_PrintScheme (
  FSchemeID   int not null identity(1,1),
  FSchemeName nvarchar(255) not null,
  FAuthor     nvarchar(255) null,
  constraint PK_t_Rpt_PrintScheme primary key (FSchemeID)
)
GO
create index IX_t_Rpt_PrintScheme_Name on t_Rpt_PrintScheme (FSchemeName)
GO

create table t_Rpt_PrintSchemeDetail (
  FSchemeID int not null,
  FRptID    int not null,
  FRptName  nvarchar(255) null
)
GO
create index IX_t_Rpt_PrintSchemeDetail on t_Rpt_PrintSchemeDetail (FSchemeID)
GO

-- The suite's users, groups and rights ------------------------------------------------------------------------------

-- Users and groups share one range of identifiers and one table.
create table t_User (
  FUserID       int not null,
  FName         nvarchar(255) not null default (N''),
  FDescription  nvarchar(255) null,
  FPrimaryGroup int not null default (2),
  -- Bit 0: the data that the user may see is restricted to what rights say.
  FDataVokeType smallint not null default (0),
  FIsGroup      bit not null default (0),
  constraint PK_t_User primary key (FUserID)
)
GO

create table t_Group (
  FGroupID int not null,
  FUserID  int not null,
  constraint PK_t_Group primary key (FGroupID, FUserID)
)
GO
create index IX_t_Group_User on t_Group (FUserID, FGroupID)
GO

create table t_ObjectType (
  FObjectType      int not null,
  FObjectID        int not null,
  FName            nvarchar(255) not null,
  FDescription     nvarchar(255) null,
  FName_Cht        nvarchar(255) null,
  FName_En         nvarchar(255) null,
  FDescription_Cht nvarchar(255) null,
  FDescription_En  nvarchar(255) null,
  constraint PK_t_ObjectType primary key (FObjectType, FObjectID)
)
GO

create table t_ObjectAccessType (
  FObjectType      int not null,
  FObjectID        int not null,
  FIndex           int not null,
  FAccessMask      int not null,
  FAccessUse       int not null default (0),
  FName            nvarchar(255) not null,
  FDescription     nvarchar(255) null,
  FName_Cht        nvarchar(255) null,
  FName_En         nvarchar(255) null,
  FDescription_Cht nvarchar(255) null,
  FDescription_En  nvarchar(255) null,
  constraint PK_t_ObjectAccessType primary key (FObjectType, FObjectID, FIndex)
)
GO

-- Inserted into without column names: the order of the columns counts. FGroupID is a group or a user.
create table t_ObjectAccess (
  FGroupID    int not null,
  FObjectType int not null,
  FObjectID   int not null,
  FAccessMask int not null default (0),
  constraint PK_t_ObjectAccess primary key (FGroupID, FObjectType, FObjectID)
)
GO
create index IX_t_ObjectAccess_Object on t_ObjectAccess (FObjectType, FObjectID, FGroupID)
GO

create table t_UserItemClassRight (
  FUserID             int not null,
  FItemClassID        int not null,
  FUserItemClassRight int not null default (0),
  constraint PK_t_UserItemClassRight primary key (FUserID, FItemClassID)
)
GO

create table t_ItemRight (
  FTypeID   int not null,
  FItemID   int not null,
  FUserID   int not null,
  FAuthType int not null default (0),
  constraint PK_t_ItemRight primary key (FTypeID, FItemID, FUserID)
)
GO
create index IX_t_ItemRight_User on t_ItemRight (FUserID, FTypeID, FItemID)
GO

-- The suite's accounts, items and settings --------------------------------------------------------------------------

create table t_Account (
  FAccountID int not null,
  FNumber    nvarchar(80) not null,
  FName      nvarchar(255) not null default (N''),
  FName_Cht  nvarchar(255) null,
  FName_En   nvarchar(255) null,
  FLevel     smallint not null default (1),
  FDetail    bit not null default (1),
  FParentID  int not null default (0),
  -- 1 debit, -1 credit
  FDC        smallint not null default (1),
  constraint PK_t_Account primary key (FAccountID),
  constraint UQ_t_Account_Number unique (FNumber)
)
GO
create index IX_t_Account_Parent on t_Account (FParentID)
GO

create table t_Item (
  FItemID      int not null,
  FItemClassID int not null,
  FParentID    int not null default (0),
  FNumber      nvarchar(80) not null,
  FName        nvarchar(255) not null default (N''),
  FLevel       smallint not null default (1),
  FDetail      bit not null default (1),
  constraint PK_t_Item primary key (FItemID)
)
GO
create index IX_t_Item_Class on t_Item (FItemClassID, FNumber)
create index IX_t_Item_Parent on t_Item (FParentID, FNumber)
create index IX_t_Item_Number on t_Item (FNumber, FName)
GO

create table t_SystemProfile (
  FCategory nvarchar(80) not null,
  FKey      nvarchar(80) not null,
  FValue    nvarchar(255) null,
  constraint PK_t_SystemProfile primary key (FCategory, FKey)
)
GO

-- The function menu, as the data-flow component keeps it --------------------------------------------------------------
-- A caption may hold a standard's and an item's name together, which is why it is wider than either.

create table t_LocalSubFunc (
  FArg          nvarchar(255) not null default (N''),
  FSystem       smallint not null,
  FIndex        int not null,
  FSubFuncID    int not null,
  FFuncName     nvarchar(1100) null,
  FFuncName_Cht nvarchar(1100) null,
  FFuncName_En  nvarchar(1100) null,
  FClassName    nvarchar(255) null,
  FClassParam   nvarchar(255) null,
  FRefresh      bit not null default (0),
  constraint PK_t_LocalSubFunc primary key (FSystem, FArg, FIndex)
)
GO
create index IX_t_LocalSubFunc_ID on t_LocalSubFunc (FSubFuncID)
GO

create table t_LocalDetailFunc (
  FArg          nvarchar(255) not null default (N''),
  FSystem       smallint not null,
  FSubFuncID    int not null,
  FIndex        int not null,
  FDetailFuncID int not null,
  FFuncName     nvarchar(1100) null,
  FFuncName_Cht nvarchar(1100) null,
  FFuncName_En  nvarchar(1100) null,
  FClassName    nvarchar(255) null,
  FClassParam   nvarchar(255) null,
  FRefresh      bit not null default (0),
  constraint PK_t_LocalDetailFunc primary key (FSystem, FArg, FSubFuncID, FIndex)
)
GO

-- What every account set begins with --------------------------------------------------------------------------------

insert into t_SystemProfile (FCategory, FKey, FValue) values (N'Tolvane', N'SchemaVersion', N'1')
insert into t_SystemProfile (FCategory, FKey, FValue) values (N'GL', N'CheckAcctTable', N'0')
GO

insert into t_User (FUserID, FName, FDescription, FPrimaryGroup, FDataVokeType, FIsGroup)
  values (1, N'Administrator', N'系统管理员', 1, 0, 0)
insert into t_User (FUserID, FName, FDescription, FPrimaryGroup, FDataVokeType, FIsGroup)
  values (2, N'Users', N'一般用户组', 2, 0, 1)
insert into t_User (FUserID, FName, FDescription, FPrimaryGroup, FDataVokeType, FIsGroup)
  values (251, N'Report Users', N'报表用户组', 251, 0, 1)
insert into t_Group (FGroupID, FUserID) values (1, 1)
GO

-- The reporting module itself as a securable object, with the two rights that the report lists ask for.
insert into t_ObjectType (FObjectType, FObjectID, FName, FDescription, FName_Cht, FName_En, FDescription_Cht,
    FDescription_En)
  values (50, 0, N'报表系统', N'报表系统的功能', N'報表系統', N'Reports', N'報表系統的功能',
    N'Functions of the reporting module')
insert into t_ObjectAccessType (FObjectType, FObjectID, FIndex, FAccessMask, FAccessUse, FName, FDescription, FName_Cht,
    FName_En, FDescription_Cht, FDescription_En)
  values (50, 0, 0, 67108864, 0, N'共享报表', N'用户可查看共享报表和报表模板', N'共享報表', N'Shared reports',
    N'用戶可查看共享報表和報表範本', N'The user may view shared reports and templates')
insert into t_ObjectAccessType (FObjectType, FObjectID, FIndex, FAccessMask, FAccessUse, FName, FDescription, FName_Cht,
    FName_En, FDescription_Cht, FDescription_En)
  values (50, 0, 1, 134217728, 0, N'全部报表', N'用户可查看全部报表', N'全部報表', N'All reports',
    N'用戶可查看全部報表', N'The user may view all reports')
GO

insert into t_Rpt_PropClass (FPropClsID, FNumber, FName, FName_Cht, FName_En)
  values (1, N'1', N'性质', N'性質', N'Nature')
insert into t_Rpt_PropClass (FPropClsID, FNumber, FName, FName_Cht, FName_En)
  values (1001, N'1001', N'会计制度', N'會計制度', N'Accounting Regime')
GO

-- Items of the nature standard stand for report types; item 3 is the templates.
insert into t_Rpt_PropItem (FPropClsID, FPropItemID, FNumber, FName, FName_Cht, FName_En)
  values (1, 1, N'1', N'普通报表', N'普通報表', N'Ordinary Reports')
insert into t_Rpt_PropItem (FPropClsID, FPropItemID, FNumber, FName, FName_Cht, FName_En)
  values (1, 2, N'2', N'分析报表', N'分析報表', N'Analysis Reports')
insert into t_Rpt_PropItem (FPropClsID, FPropItemID, FNumber, FName, FName_Cht, FName_En)
  values (1, 3, N'3', N'报表模板', N'報表範本', N'Report Templates')
insert into t_Rpt_PropItem (FPropClsID, FPropItemID, FNumber, FName, FName_Cht, FName_En)
  values (1001, 123, N'01', N'小企业会计制度', N'小企業會計制度', N'Accounting System for Small Enterprises')
insert into t_Rpt_PropItem (FPropClsID, FPropItemID, FNumber, FName, FName_Cht, FName_En)
  values (1001, 124, N'02', N'新会计准则', N'新會計準則', N'New Accounting Standards')
insert into t_Rpt_PropItem (FPropClsID, FPropItemID, FNumber, FName, FName_Cht, FName_En)
  values (1001, 125, N'03', N'企业会计制度', N'企業會計制度', N'Accounting System for Enterprises')
GO

insert into t_CsCurrency (FCurrencyID, FNumber) values (1, N'RMB')
insert into t_CsSysParam (FKey, FValue) values (N'CompanyNum', N'001')
GO
