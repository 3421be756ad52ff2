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
from demo_data import (COMPANIES, CONFIGURATIONS, ENTRIES, FOLDERS, GRANTS, GROUPS, ITEMS, MEMBERS, REGIMES, REPORTS,
                       SCHEMES, STANDARDS, TEMPLATES, USERS, VIEWS)
from spreadsheet import statement

FOLDER = pathlib.Path(__file__).parent

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
    """Every report in the order of its identifier: names, type, owner, ..., regime, purpose, department."""
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
    columns = ("FRptName, FRptName_Cht, FRptName_En, FSysName, FYear, FPeriod, FOwner, FRptType, FLastOperator, "
               "FLastDate, FVisibleInList, F1001, F1002, F1003")
    rights, objects, kinds, access = [], [], [], []
    for number, report in enumerate(all_reports(), 1):
        name, cht, en, kind, owner, year, period, regime, purpose, department, web, _, _, granted = report
        saved = f"202506{(number - 1) % 28 + 1:02d} {9 + number % 8:02d}:30:00"
        script.insert("t_Rpt_Content", columns, [(name, cht, en, "报表系统", year, period, owner, kind, owner, saved,
                                                  str(web), regime, purpose, department)])
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
    script.insert("t_ObjectAccessType", "FObjectType, FObjectID, FIndex, FAccessMask, FAccessUse, FName, FDescription, "
                  "FName_Cht, FName_En, FDescription_Cht, FDescription_En", kinds)
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
        script.insert("t_Account", "FAccountID, FNumber, FName, FName_Cht, FName_En, FLevel, FDetail, FParentID, FDC",
                      [row])
        if number % 100 == 0:
            script.end()
    script.end()
    by_number = {row[1]: row[0] for row in accounts()}
    seen = {105: ["1122", "1123.01", "6001"], 104: ["1001", "1002.01", "1122.02"], 13: ["2202", "1403.01"],
            108: ["1001"], 0: ["6602", "1601"], 2: ["1405"]}
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
    columns = ("FRptGroupID, FRptType, FCurrencyID, FCompanyNum, FYear, FPeriod, FDay, FRptContent, FIsChecked, "
               "FIsAccepted")
    due = {1: [(-1, -1, "20250331")], 2: [(2025, 1, "20250131"), (2025, 2, "20250228"), (2025, 3, "20250331")],
           3: [(2025, 1, "20250331"), (2025, 2, "20250630")], 4: [(2025, 1, "20250630")], 5: [(2024, 1, "20241231")]}
    for company in COMPANIES:
        for group in GROUPS:
            for year, period, day in due[group[0]]:
                marks = (1, 0) if company[0] == "001" else (None, None)
                script.insert("t_CsRptContent", columns,
                              [(group[0], 1, 1, company[0], year, period, day, document(group, company), *marks)])
        # Statements that are matched by the day's place in the group's cycle.
        script.insert("t_CsRptContent", columns,
                      [(3, 5, 1, company[0], -100, -100, "20250215", document(GROUPS[2], company), None, None)])
        script.end()
    blank = ("000", "样表", 0.0)
    script.insert("t_CsRptSample", "FRptGroupID, FRptType, FRptContent",
                  [(group[0], 1, document(group, blank)) for group in GROUPS])
    script.insert("t_CsRptContentDel", "FRptID, FRptGroupNum, FRptGroupName, FCycleID, FBaseRptStyle, FCurrencyNum, "
                  "FCompanyNum, FRptType, FYear, FPeriod, FDay, FRptContent",
                  [(901, "G99", "停用月报", 1, 0, "RMB", "001", 1, 2023, 12, "20231231", document(GROUPS[1], COMPANIES[0])),
                   (902, "G01", "损益月报", 1, 0, "USD", "003", 1, 2024, 6, "20240630", document(GROUPS[1], COMPANIES[2]))])
    script.insert("t_CsRptItemData",
                  "FCompanyNum, FItemNum, FCurrencyNum, FDataClass, FYear, FPeriod, FDay, FAmount, FAccuAmount, FIsNew",
                  [(company, f"R00{index}", "RMB", 0, 2025, period, "19000101", 1000.25 * period * index,
                    3000.75 * period * index, 0)
                   for company, _, _ in COMPANIES for index in (1, 2, 3) for period in (1, 2, 3)])
    script.end()


def demo():
    script = Script(["A demonstration account set: what is inserted into a new one.",
                     "Made by make_demo.py; change that instead.", "Every name, number and amount in it is invented."])
    script.section("Users and groups.")
    script.insert("t_User", "FUserID, FName, FDescription, FPrimaryGroup, FDataVokeType, FIsGroup", USERS)
    script.insert("t_Group", "FGroupID, FUserID", MEMBERS)
    script.end()
    add_reports(script)
    script.section("Configurations of other account sets. The owner of the third holds no credentials for it.")
    script.insert("t_Rpt_MultiAcct", "FName, FCreatorID, FDriverType, FAisName, FSystemDB, FServerName, FCompanyID",
                  CONFIGURATIONS)
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
    groups = [(1, "P01", "旧版月报", 1, 0), (2, "P03", "旧版季报", 3, 0), (3, "P00", "旧版日报", 0, 0),
              (4, "P12", "旧版年报", 10000, 0)]
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
