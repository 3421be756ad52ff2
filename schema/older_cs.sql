-- The older layout of the companies' periodic statements. An account set has these tables only while it still holds
-- statements that were never converted: that the first of them exists is what says "conversion is needed".
--
-- A group that has been converted carries 10000 in FCycleID. Statements hang on their group by its name, items by its
-- identifier, and item values by the item's number alone.

create table t_Rpt_CsRptGroup (
  FRptGroupID   int not null,
  FRptGroupNum  nvarchar(80) not null,
  FRptGroupName nvarchar(255) not null,
  FCycleID      int not null default (1),
  FBaseRptStyle int not null default (0),
  constraint PK_t_Rpt_CsRptGroup primary key (FRptGroupID)
)
GO

create table t_Rpt_CsRptContent (
  FRptID        int not null identity(1,1),
  FRptGroupName nvarchar(255) not null,
  FYear         int not null,
  FPeriod       int not null,
  FDay          datetime null,
  FIsChecked    bit null,
  FIsAccepted   bit null,
  FRptContent   image null,
  constraint PK_t_Rpt_CsRptContent primary key (FRptID)
)
GO
create index IX_t_Rpt_CsRptContent_Group on t_Rpt_CsRptContent (FRptGroupName)
GO

create table t_Rpt_CsRptItem (
  FRptGroupID int not null,
  FItemNum    nvarchar(80) not null,
  FItemName   nvarchar(255) null,
  constraint PK_t_Rpt_CsRptItem primary key (FRptGroupID, FItemNum)
)
GO

create table t_Rpt_CsRptItemData (
  FID         int not null identity(1,1),
  FItemNum    nvarchar(80) not null,
  FYear       int not null,
  FPeriod     int not null,
  FDay        datetime null,
  FAmount     decimal(20,4) null,
  FAccuAmount decimal(20,4) null,
  FIsNew      bit null,
  constraint PK_t_Rpt_CsRptItemData primary key (FID)
)
GO
create index IX_t_Rpt_CsRptItemData_Item on t_Rpt_CsRptItemData (FItemNum)
GO
