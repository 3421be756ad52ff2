#!/usr/bin/env python3
"""Writes the sample account sets' SQL (demo.sql, older.sql) and the list of the demonstration's documents.

  make_demo.py           writes the files
  make_demo.py --check   says which file differs from what would be written; exit status 1 when one does

The identifiers of reports follow from the order in which they are inserted into a new account set.
"""

import json
import pathlib
import sys

from chart_of_accounts import accounts, cash_items
from spreadsheet import statement

FOLDER = pathlib.Path(__file__).parent

# Users and groups: identifier, name, description, primary group, restricted data view, is a group.
USERS = [
    (11, "Finance", "财务组", 11, 0, 1), (12, "Management", "管理层", 12, 0, 1), (13, "Branches", "分部人员", 13, 1, 1),
    (101, "陈雨", "财务经理", 11, 0, 0), (102, "林涛", "总账会计", 11, 0, 0), (103, "周敏", "成本会计", 11, 0, 0),
    (104, "何静", "分部会计", 13, 0, 0), (105, "吴越", "销售主管", 2, 1, 0), (106, "Anna Reed", "Controller", 12, 0, 0),
    (107, "張家豪", "稽核專員", 12, 0, 0), (108, "郑帆", "实习会计", 2, 1, 0)]
# Group 0 stands for "nobody in particular": rights of its members do not count.
MEMBERS = [(11, 101), (12, 101), (11, 102), (11, 103), (13, 104), (2, 105), (12, 106), (12, 107), (2, 108), (0, 108),
           (13, 105), (251, 101), (251, 102), (251, 103), (251, 104), (251, 105), (251, 106), (251, 107), (251, 108)]

STANDARDS = [(1002, "用途", "用途", "Purpose"), (1003, "部门", "部門", "Department")]
ITEMS = [
    (1002, 126, "01", "对外报送", "對外報送", "External Filing"), (1002, 127, "02", "内部管理", "內部管理", "Internal Management"),
    (1002, 128, "03", "税务申报", "稅務申報", "Tax Return"), (1002, 129, "04", "预算分析", "預算分析", "Budget Analysis"),
    (1003, 130, "01", "财务部", "財務部", "Finance Department"), (1003, 131, "02", "销售部", "銷售部", "Sales Department"),
    (1003, 132, "03", "生产部", "生產部", "Production Department"), (1003, 133, "04", "集团总部", "集團總部", "Headquarters")]

# Ordinary reports and those of variants: three names, type, owner, year, period, purpose, department, on the web list,
# document, print settings, rights of others.
REPORTS = [
    ("集团资产负债表", "集團資產負債表", "Group Balance Sheet", 1, 101, 2025, 6, 126, 133, 1, "balance_group.xlsx", "portrait", {106: 4, 107: 2, 102: 1}),
    ("集团利润表", "集團利潤表", "Group Income Statement", 1, 101, 2025, 6, 126, 133, 1, "income_group.xlsx", "portrait", {106: 2, 107: 2, 102: 1}),
    ("集团现金流量表", "集團現金流量表", "Group Cash Flow Statement", 1, 101, 2025, 6, 126, 133, 1, "cash_group.xlsx", "portrait", {106: 2, 102: 1}),
    ("华东分部资产负债表", "華東分部資產負債表", "East Branch Balance Sheet", 1, 104, 2025, 6, 127, 130, 0, "balance_east.xlsx", "portrait", {101: 2}),
    ("利润月报", "利潤月報", "Monthly Income Report", 1, 102, 2025, 3, 127, 130, 1, "income_monthly.xlsx", "portrait", {101: 4, 103: 1, 108: 0}),
    ("资金周报", "資金週報", "Weekly Cash Report", 1, 102, 2025, 3, 127, 130, 1, "cash_weekly.xlsx", "", {101: 2}),
    ("应收账款账龄分析表", "應收帳款帳齡分析表", "Receivables Ageing", 1, 102, 2025, 6, 127, 131, 1, "receivable_ageing.xlsx", "landscape", {101: 2, 105: 2}),
    ("应付账款账龄分析表", "應付帳款帳齡分析表", "Payables Ageing", 1, 102, 2025, 6, 127, 130, 0, "payable_ageing.xlsx", "landscape", {101: 2}),
    ("部门费用明细表", "部門費用明細表", "Expenses by Department", 1, 103, 2025, 5, 129, 130, 0, "expenses.xlsx", "landscape", {101: 1, 106: 1}),
    ("预算执行情况表", "預算執行情況表", "Budget Execution", 1, 101, 2025, 6, 129, 133, 1, "budget.xlsx", "landscape", {106: 4, 107: 1}),
    ("分地区销售统计表", "分地區銷售統計表", "Sales by Region", 1, 105, 2025, 6, 127, 131, 1, "sales_region.xlsx", "landscape", {101: 1, 105: 0}),
    ("存货收发存汇总表", "存貨收發存彙總表", "Inventory Movements", 1, 103, 2025, 6, 127, 132, 0, "inventory.xlsx", "landscape", {101: 1}),
    ("固定资产折旧表", "固定資產折舊表", "Depreciation of Fixed Assets", 1, 103, 2025, 6, 0, 130, 0, "fixed_assets.xlsx", "portrait", {}),
    ("银行存款余额表", "銀行存款餘額表", "Bank Balances", 1, 102, 2025, 6, 127, 130, 0, "bank.xlsx", "portrait", {101: 2, 108: 0}),
    ("应交税费明细表", "應交稅費明細表", "Taxes Payable", 1, 102, 2025, 6, 128, 130, 0, "tax.xlsx", "portrait", {101: 2}),
    ("工资汇总表", "工資彙總表", "Payroll Summary", 1, 101, 2025, 6, 0, 0, 0, "payroll.xlsx", "portrait", {}),
    ("产品成本计算表", "產品成本計算表", "Product Costing", 1, 103, 2025, 6, 127, 132, 0, "product_cost.xlsx", "landscape", {101: 1}),
    ("管理摘要", "管理摘要", "Management Summary", 1, 106, 2025, 6, 127, 133, 1, "english_summary.xlsx", "portrait", {101: 2, 107: 1}),
    ("临时工作底稿", "臨時工作底稿", "Working Paper", 1, 108, 0, 0, 0, 0, 0, "cash_weekly.xlsx", "", {}),
    ("收入成本趋势", "收入成本趨勢", "Revenue and Cost Trend", 2, 102, 2025, 6, 0, 130, 0, "trend.variant", "", {101: 2}),
    ("财务比率", "財務比率", "Financial Ratios", 2, 101, 2025, 6, 0, 133, 0, "ratios.variant", "", {106: 2}),
    ("员工人数", "員工人數", "Head Count", 2, 106, 2025, 6, 0, 133, 0, "staff.variant", "", {})]
REGIMES = [(123, "small", "小企业会计制度", "小企業會計制度", "Accounting System for Small Enterprises"),
           (124, "standards", "新会计准则", "新會計準則", "New Accounting Standards"),
           (125, "enterprise", "企业会计制度", "企業會計制度", "Accounting System for Enterprises")]
TEMPLATES = [("balance", "资产负债表", "資產負債表", "Balance Sheet"), ("income", "利润表", "利潤表", "Income Statement"),
             ("cash", "现金流量表", "現金流量表", "Cash Flow Statement")]

FOLDERS = [("集团报表", ""), ("2025年", "集团报表"), ("分部报表", ""), ("华东分部", "分部报表"), ("税务", "")]
VIEWS = [(1, r"1\1001"), (101, r"1\1001\1002\1003"), (102, r"1002\1003"), (103, "1003"), (105, "0001")]
SCHEMES = [("月末打印", "陈雨", [1, 2, 3, 5]), ("税务资料", "林涛", [15, 5]), ("月末打印", "林涛", [6, 7, 8])]

CONFIGURATIONS = [("华东分部账套", 101, 0, "EAST2025", "sysdb", "finance-east", 2), ("华南分部账套", 101, 0, "SOUTH2025", "sysdb", "finance-south", 3),
                  ("总部历史账套", 102, 1, "HQ2020", "sysdb", "archive", 1), ("Overseas", 106, 2, "OVERSEAS", "sysdb", "finance-overseas", 4)]
ENTRIES = [(101, "华东分部账套", "east_reader", "east-demo", "TimeOut=30"), (101, "华南分部账套", "south_reader", "south-demo", ""),
           (104, "华东分部账套", "east_branch", "branch-demo", "TimeOut=60"), (106, "Overseas", "overseas", "overseas-demo", "Language=en")]
GRANTS = [("华东分部账套", 102, 101), ("华东分部账套", 104, 101), ("华南分部账套", 106, 101), ("Overseas", 107, 106)]

COMPANIES = [("001", "集团本部", 1.0), ("002", "华东分部", 0.42), ("003", "华南分部", 0.31)]
# Group: identifier, number, name, cycle in months, lines of its statement.
GROUPS = [(1, "G00", "资金日报", 0, ["库存现金", "银行存款", "其他货币资金"]), (2, "G01", "损益月报", 1, ["营业收入", "营业成本", "期间费用", "净利润"]),
          (3, "G03", "资产负债季报", 3, ["流动资产", "非流动资产", "流动负债", "非流动负债", "所有者权益"]),
          (4, "G06", "经营半年报", 6, ["产量", "销量", "职工人数"]), (5, "G12", "年度决算", 12, ["利润总额", "所得税费用", "净利润"])]


def text(value):
    return "N'" + value.replace("'", "''") + "'"


def literal(value):
    if value is None:
        return "null"
    if isinstance(value, bytes):
        return "0x" + value.hex().upper()
    return text(value) if isinstance(value, str) else str(value)


class Script:
    """SQL text that grows by inserts; a batch ends after every section."""

    def __init__(self, head):
        self._lines = [f"-- {line}".rstrip() for line in head] + [""]

    def section(self, title):
        self._lines += [f"-- {title}"]

    def insert(self, table, columns, rows):
        for row in rows:
            values = ", ".join(literal(value) for value in row)
            self._lines.append(f"insert into {table} ({columns}) values ({values})")

    def end(self):
        self._lines += ["GO", ""]

    def add(self, *lines):
        self._lines += lines

    def result(self):
        return "\n".join(self._lines).rstrip("\n") + "\n"


def all_reports():
    """Every report in the order of its identifier: names, type, owner, ..., filed under regime, purpose and department."""
    for name, cht, en, kind, owner, year, period, purpose, department, web, document, printer, rights in REPORTS:
        yield (name, cht, en, kind, owner, year, period, 0, purpose, department, web, document, printer, rights)
    for item, code, chs, cht, en in REGIMES:
        for kind, name, name_cht, name_en in TEMPLATES:
            yield (chs + name, cht + name_cht, f"{name_en}, {en}", 3, 1, 0, 0, item, 126, 0, 0,
                   f"template_{code}_{kind}.xlsx", "portrait", {})


def add_reports(script):
    script.section("Classification: two standards of the users' own, each with its column in the report table.")
    script.insert("t_Rpt_PropClass", "FPropClsID, FNumber, FName, FName_Cht, FName_En",
                  [(number, str(number), chs, cht, en) for number, chs, cht, en in STANDARDS])
    script.insert("t_Rpt_PropItem", "FPropClsID, FPropItemID, FNumber, FName, FName_Cht, FName_En", ITEMS)
    script.end()
    for number, *_ in STANDARDS:
        script.add(f"alter table t_Rpt_Content add F{number} smallint not null default (0)")
    script.end()
    script.section("Reports. Their documents are loaded from the files that documents.json names.")
    columns = ("FRptName, FRptName_Cht, FRptName_En, FSysName, FYear, FPeriod, FOwner, FRptType, FLastOperator, FLastDate, "
               "FVisibleInList, F1001, F1002, F1003")
    rights, objects, kinds, access = [], [], [], []
    for number, report in enumerate(all_reports(), 1):
        name, cht, en, kind, owner, year, period, regime, purpose, department, web, _, _, granted = report
        saved = f"202506{(number - 1) % 28 + 1:02d} {9 + number % 8:02d}:30:00"
        script.insert("t_Rpt_Content", columns, [(name, cht, en, "报表系统", year, period, owner, kind, owner, saved, str(web),
                                                  regime, purpose, department)])
        # The owner of "Sales by Region" was once denied it: the owner's right counts all the same.
        rights += [(number, user, code) for user, code in {owner: 4, **granted}.items() if kind != 3]
        objects.append((136, number, name, cht, en))
        for index, (mask, chs, title) in enumerate(((0x2000, "查看", "用户可查看报表"), (0x4000, "图形分析", "用户可查看图形分析"))):
            kinds.append((136, number, index, mask, 0, chs, title, chs, chs, title, title))
        access.append((251, 136, number, 0))
    script.end()
    script.section("Rights, and the registration of every report as a securable object.")
    script.insert("t_Rpt_Right", "FRptID, FUserID, FRightCode", rights)
    script.end()
    script.insert("t_ObjectType", "FObjectType, FObjectID, FName, FName_Cht, FName_En", objects)
    script.insert("t_ObjectAccessType", "FObjectType, FObjectID, FIndex, FAccessMask, FAccessUse, FName, FDescription, FName_Cht, "
                  "FName_En, FDescription_Cht, FDescription_En", kinds)
    script.insert("t_ObjectAccess", "FGroupID, FObjectType, FObjectID, FAccessMask", access)
    script.section("Finance may see shared reports, management all of them.")
    script.insert("t_ObjectAccess", "FGroupID, FObjectType, FObjectID, FAccessMask",
                  [(11, 50, 0, 0x4000000), (12, 50, 0, 0x4000000 | 0x8000000)])
    script.end()
    script.section("Views, folders, audit marks, print schemes.")
    script.insert("t_Rpt_View", "FUserID, FViewCode", VIEWS)
    script.insert("t_Rpt_Path", "FPathName, FParentPath", FOLDERS)
    script.insert("t_Rpt_LeaderAudit", "FRptID, FUserID, FUserName", [(5, 101, "陈雨"), (14, 106, "Anna Reed")])
    names = [report[0] for report in all_reports()]
    for number, (name, author, members) in enumerate(SCHEMES, 1):
        script.insert("t_Rpt_PrintScheme", "FSchemeName, FAuthor", [(name, author)])
        script.insert("t_Rpt_PrintSchemeDetail", "FSchemeID, FRptID, FRptName",
                      [(number, report, names[report - 1]) for report in members])
    script.end()


def add_accounts(script):
    script.section("The chart of accounts, and who may see which part of it.")
    for number, row in enumerate(accounts(), 1):
        script.insert("t_Account", "FAccountID, FNumber, FName, FName_Cht, FName_En, FLevel, FDetail, FParentID, FDC", [row])
        if number % 100 == 0:
            script.end()
    script.end()
    by_number = {row[1]: row[0] for row in accounts()}
    seen = {105: ["1122", "1123.01", "6001"], 104: ["1001", "1002.01", "1122.02"], 13: ["2202", "1403.01"], 108: ["1001"],
            0: ["6602", "1601"], 2: ["1405"]}
    script.add("update t_SystemProfile set FValue = N'1' where FCategory = N'GL' and FKey = N'CheckAcctTable'")
    # Bit 1 lets see, bit 4 hands a right on to the accounts below: 105 has it, 13 gives it to its members, 108 has not.
    script.insert("t_UserItemClassRight", "FUserID, FItemClassID, FUserItemClassRight",
                  [(105, 105, 5), (13, 105, 4), (108, 105, 1), (104, 105, 1)])
    script.insert("t_ItemRight", "FTypeID, FItemID, FUserID, FAuthType",
                  [(105, by_number[number], user, 1) for user, numbers in seen.items() for number in numbers])
    # A right without the bit that lets see.
    script.insert("t_ItemRight", "FTypeID, FItemID, FUserID, FAuthType", [(105, by_number["2203"], 105, 2)])
    script.end()
    script.section("Cash-flow items (class 9) and departments (class 2).")
    script.insert("t_Item", "FItemID, FItemClassID, FParentID, FNumber, FName, FLevel, FDetail", cash_items())
    script.insert("t_Item", "FItemID, FItemClassID, FParentID, FNumber, FName, FLevel, FDetail",
                  [(2001, 2, 0, "01", "财务部", 1, 1), (2002, 2, 0, "02", "销售部", 1, 1), (2003, 2, 0, "03", "生产部", 1, 0),
                   (2004, 2, 2003, "03.01", "一车间", 2, 1), (2005, 2, 2003, "03.02", "二车间", 2, 1)])
    script.end()


def document(group, company):
    _, _, title, _, lines = group
    number, name, share = company
    rows = [[line, round(128400.5 * (index + 1) * share, 2)] for index, line in enumerate(lines)]
    return statement(title, f"{number} {name}", ["项目", "金额"], rows)


def add_statements(script):
    script.section("Cs reports: groups of every cycle, three companies' statements, samples, withdrawn statements.")
    script.insert("t_CsCurrency", "FCurrencyID, FNumber", [(2, "USD"), (3, "EUR"), (4, "HKD")])
    script.insert("t_CsRptGroup", "FRptGroupID, FRptGroupNum, FRptGroupName, FCycleID, FBaseRptStyle",
                  [(number, code, name, cycle, 0) for number, code, name, cycle, _ in GROUPS])
    script.end()
    columns = "FRptGroupID, FRptType, FCurrencyID, FCompanyNum, FYear, FPeriod, FDay, FRptContent, FIsChecked, FIsAccepted"
    for company in COMPANIES:
        due = {2: [(2025, 1, "20250131"), (2025, 2, "20250228"), (2025, 3, "20250331")], 3: [(2025, 1, "20250331"), (2025, 2, "20250630")],
               4: [(2025, 1, "20250630")], 5: [(2024, 1, "20241231")], 1: [(-1, -1, "20250331")]}
        for group in GROUPS:
            for year, period, day in due[group[0]]:
                checked = 1 if company[0] == "001" else None
                script.insert("t_CsRptContent", columns, [(group[0], 1, 1, company[0], year, period, day, document(group, company),
                                                           checked, 0 if checked else None)])
        # Statements that are matched by the day's place in the group's cycle.
        script.insert("t_CsRptContent", columns, [(3, 5, 1, company[0], -100, -100, "20250215", document(GROUPS[2], company), None, None)])
        script.end()
    blank = ("000", "样表", 0.0)
    script.insert("t_CsRptSample", "FRptGroupID, FRptType, FRptContent", [(group[0], 1, document(group, blank)) for group in GROUPS])
    script.insert("t_CsRptContentDel", "FRptID, FRptGroupNum, FRptGroupName, FCycleID, FBaseRptStyle, FCurrencyNum, FCompanyNum, FRptType, "
                  "FYear, FPeriod, FDay, FRptContent",
                  [(901, "G99", "停用月报", 1, 0, "RMB", "001", 1, 2023, 12, "20231231", document(GROUPS[1], COMPANIES[0])),
                   (902, "G01", "损益月报", 1, 0, "USD", "003", 1, 2024, 6, "20240630", document(GROUPS[1], COMPANIES[2]))])
    script.insert("t_CsRptItemData", "FCompanyNum, FItemNum, FCurrencyNum, FDataClass, FYear, FPeriod, FDay, FAmount, FAccuAmount, FIsNew",
                  [(company, item, "RMB", 0, 2025, period, "19000101", 1000.25 * period * index, 3000.75 * period * index, 0)
                   for company, _, _ in COMPANIES for index, item in enumerate(("R001", "R002", "R003"), 1) for period in (1, 2, 3)])
    script.end()


def demo():
    script = Script(["A demonstration account set: what is inserted into a new one. Made by make_demo.py; change that instead.",
                     "Every name, number and amount in it is invented."])
    script.section("Users and groups.")
    script.insert("t_User", "FUserID, FName, FDescription, FPrimaryGroup, FDataVokeType, FIsGroup", USERS)
    script.insert("t_Group", "FGroupID, FUserID", MEMBERS)
    script.end()
    add_reports(script)
    script.section("Configurations of other account sets. The owner of the third holds no credentials for it.")
    script.insert("t_Rpt_MultiAcct", "FName, FCreatorID, FDriverType, FAisName, FSystemDB, FServerName, FCompanyID", CONFIGURATIONS)
    script.insert("t_Rpt_MultiAcctEntry", "FUserID, FName, FMUserName, FMPassWord, FPropsString", ENTRIES)
    script.insert("t_Rpt_MultiAcctRight", "FName, FUserID, FCreatorID", GRANTS)
    script.end()
    add_accounts(script)
    add_statements(script)
    return script.result()


def older():
    script = Script(["Statements in the older layout, in an account set that has the tables of schema/older_cs.sql.",
                     "Made by make_demo.py; change that instead. Every name, number and amount in it is invented."])
    script.insert("t_CsCurrency", "FCurrencyID, FNumber", [(2, "USD")])
    groups = [(1, "P01", "旧版月报", 1, 0), (2, "P03", "旧版季报", 3, 0), (3, "P00", "旧版日报", 0, 0), (4, "P12", "旧版年报", 10000, 0)]
    script.insert("t_Rpt_CsRptGroup", "FRptGroupID, FRptGroupNum, FRptGroupName, FCycleID, FBaseRptStyle", groups)
    script.end()
    rows = []
    for year in (2010, 2011):
        rows += [("旧版月报", year, month, None, month % 2, 0, 1) for month in range(1, 13)]
        rows += [("旧版季报", year, quarter, f"{year}{quarter * 3:02d}28", 1, 1, 2) for quarter in range(1, 5)]
    rows += [("旧版日报", -1, -1, f"201103{day:02d}", 0, None, 0) for day in range(1, 11)]
    rows += [("旧版年报", 2010, 1, None, 1, 1, 4)]
    script.insert("t_Rpt_CsRptContent", "FRptGroupName, FYear, FPeriod, FDay, FIsChecked, FIsAccepted, FRptContent",
                  [row[:6] + (document(GROUPS[row[6]], COMPANIES[0]),) for row in rows])
    script.end()
    items = [(group, f"{group}{index:02d}", f"项目{group}-{index}") for group in (1, 2, 3) for index in range(1, 9)]
    script.insert("t_Rpt_CsRptItem", "FRptGroupID, FItemNum, FItemName", items)
    values = []
    for group, item, _ in items:
        for period in range(1, 5):
            day = f"2011030{period}" if group == 3 else None
            amount = None if period == 4 else 250.5 * period * int(item)
            values.append((item, -1 if group == 3 else 2011, -period if group == 3 else period, day, amount,
                           None if amount is None else amount * 2, period % 2))
    script.insert("t_Rpt_CsRptItemData", "FItemNum, FYear, FPeriod, FDay, FAmount, FAccuAmount, FIsNew", values)
    script.end()
    return script.result()


def documents():
    entries = []
    for report in all_reports():
        entry = {"name": report[0], "type": report[3], "file": f"documents/{report[11]}"}
        if report[12]:
            entry["printer"] = f"documents/{report[12]}.printer"
        entries.append(entry)
    lines = ",\n".join("  " + json.dumps(entry, ensure_ascii=False) for entry in entries)
    return f"[\n{lines}\n]\n"


def main():
    check = "--check" in sys.argv[1:]
    stale = 0
    for name, content in (("demo.sql", demo()), ("older.sql", older()), ("documents.json", documents())):
        path = FOLDER / name
        if path.exists() and path.read_text(encoding="utf-8") == content:
            continue
        stale += 1
        print(f"samples/{name}: {'differs' if check else 'written'}")
        if not check:
            path.write_text(content, encoding="utf-8", newline="\n")
    return 1 if check and stale else 0


if __name__ == "__main__":
    sys.exit(main())
