#!/usr/bin/env python3
"""Writes the documents of the sample account set into samples/documents.

  make_documents.py           writes the files
  make_documents.py --check   says which file differs from what would be written; exit status 1 when one does

Workbooks are compared by what they hold, not by how they were packed.
"""

import pathlib
import sys

from spreadsheet import parts_of, variant_table, with_totals, workbook

FOLDER = pathlib.Path(__file__).parent / "documents"
UNIT = "单位：元　币别：人民币"


def balance_sheet(title, scale):
    items = [("货币资金", 1284500.36, 1102333.18), ("应收票据", 236000.00, 180000.00), ("应收账款", 2145870.55, 1987421.09),
             ("预付账款", 312400.00, 298750.00), ("其他应收款", 88930.42, 102114.77), ("存货", 3567210.88, 3321904.15),
             ("固定资产", 5820000.00, 5640000.00), ("减：累计折旧", -1932450.17, -1786320.44), ("在建工程", 450000.00, 260000.00),
             ("无形资产", 720000.00, 756000.00), ("长期待摊费用", 96000.00, 108000.00)]
    rows = [[name, index, round(end * scale, 2), round(start * scale, 2)]
            for index, (name, end, start) in enumerate(items, 1)]
    total = with_totals([[row[0], row[2], row[3]] for row in rows], "资产总计")[-1]
    move = str.maketrans("BC", "CD")
    rows.append([total[0], len(rows) + 1] + [cell.translate(move) for cell in total[1:]])
    return workbook(title, UNIT, ["资产", "行次", "期末数", "年初数"], rows)


def income_statement(title, scale):
    items = [("一、营业收入", 1865400.00, 5320870.50), ("减：营业成本", -1198730.25, -3476112.08),
             ("　　税金及附加", -21340.77, -60218.34), ("　　销售费用", -143880.60, -420117.93),
             ("　　管理费用", -186220.14, -551730.42), ("　　财务费用", -18450.09, -53006.71),
             ("加：投资收益", 12000.00, 36000.00), ("　　营业外收入", 5600.00, 9800.00), ("减：营业外支出", -1200.00, -4300.00),
             ("减：所得税费用", -78294.54, -200296.26)]
    rows = [[name, round(month * scale, 2), round(year * scale, 2)] for name, month, year in items]
    return workbook(title, UNIT, ["项目", "本月数", "本年累计数"], with_totals(rows, "净利润"))


def cash_flow(title, scale):
    items = [("销售商品、提供劳务收到的现金", 1978200.00, 5612009.40), ("收到的税费返还", 23110.00, 61870.00),
             ("收到其他与经营活动有关的现金", 41280.90, 120430.77), ("购买商品、接受劳务支付的现金", -1254090.31, -3670218.99),
             ("支付给职工以及为职工支付的现金", -298700.00, -889200.00), ("支付的各项税费", -87430.62, -276115.80),
             ("购建固定资产支付的现金", -190000.00, -370000.00), ("取得投资收益收到的现金", 12000.00, 36000.00),
             ("取得借款收到的现金", 300000.00, 300000.00), ("偿还债务支付的现金", -200000.00, -500000.00),
             ("分配股利、偿付利息支付的现金", -18450.09, -53006.71)]
    rows = [[name, round(month * scale, 2), round(year * scale, 2)] for name, month, year in items]
    return workbook(title, UNIT, ["项目", "本期金额", "本年累计"], with_totals(rows, "现金净增加额"))


def ageing(title, partners, scale):
    rows = []
    for index, name in enumerate(partners, 3):
        amounts = [48000.0 * index, 21500.5 * index % 90000, 9800.25 * index % 41000, 3300.75 * index % 9000]
        rows.append([name] + [round(amount * scale, 2) for amount in amounts])
    return workbook(title, UNIT, ["往来单位", "30天以内", "31至90天", "91至180天", "180天以上"], with_totals(rows, "合计"))


def grid(title, headings, names, base, unit=UNIT):
    rows = []
    for index, name in enumerate(names, 1):
        rows.append([name] + [round(base * (1 + 0.13 * index) * (1 + 0.07 * column), 2)
                              for column in range(len(headings) - 1)])
    return workbook(title, unit, headings, with_totals(rows, "合计"))


CUSTOMERS = ["华东经销处", "华南经销处", "华北经销处", "西南经销处", "东北经销处", "海外贸易处", "直营门店一", "直营门店二"]
VENDORS = ["原料供应商甲", "原料供应商乙", "包装供应商", "运输承运方", "设备维护方", "能源供应方"]
DEPARTMENTS = ["总经理办公室", "财务部", "人力资源部", "销售部", "生产一部", "生产二部", "采购部", "仓储部"]
MONTHS = ["一月", "二月", "三月", "四月", "五月", "六月"]


def workbooks():
    yield "balance_group", balance_sheet("集团资产负债表", 3.2)
    yield "balance_east", balance_sheet("华东分部资产负债表", 1.1)
    yield "income_group", income_statement("集团利润表", 3.2)
    yield "income_monthly", income_statement("利润月报", 1.0)
    yield "cash_group", cash_flow("集团现金流量表", 3.2)
    yield "cash_weekly", cash_flow("资金周报", 0.25)
    yield "receivable_ageing", ageing("应收账款账龄分析表", CUSTOMERS, 1.0)
    yield "payable_ageing", ageing("应付账款账龄分析表", VENDORS, 0.8)
    yield "expenses", grid("部门费用明细表", ["部门", "工资", "办公费", "差旅费", "折旧"], DEPARTMENTS, 18600.0)
    yield "budget", grid("预算执行情况表", ["部门", "年度预算", "累计执行", "剩余预算"], DEPARTMENTS, 240000.0)
    yield "sales_region", grid("分地区销售统计表", ["地区"] + MONTHS, CUSTOMERS[:6], 156000.0)
    yield "inventory", grid("存货收发存汇总表", ["类别", "期初", "收入", "发出", "结存"],
                            ["原材料", "在产品", "半成品", "产成品", "包装物", "低值易耗品"], 320000.0)
    yield "fixed_assets", grid("固定资产折旧表", ["类别", "原值", "本月折旧", "累计折旧"],
                               ["房屋建筑物", "机器设备", "运输工具", "电子设备", "办公家具"], 410000.0)
    yield "bank", grid("银行存款余额表", ["账户", "期初余额", "本期借方", "本期贷方"], ["基本存款户", "一般存款户", "专用存款户", "外币存款户"], 260000.0)
    yield "tax", grid("应交税费明细表", ["税种", "应交", "已交"], ["增值税", "城建税", "教育费附加", "企业所得税", "个人所得税", "印花税"], 36400.0)
    yield "payroll", grid("工资汇总表", ["部门", "应发", "扣款", "实发"], DEPARTMENTS, 86000.0)
    yield "product_cost", grid("产品成本计算表", ["产品", "直接材料", "直接人工", "制造费用"], ["产品甲", "产品乙", "产品丙", "产品丁"], 73200.0)
    yield "english_summary", grid("Management Summary", ["Item", "Actual", "Budget", "Last Year"],
                                  ["Revenue", "Cost of sales", "Selling expenses", "Administration", "Finance cost"],
                                  512000.0, "Unit: RMB yuan")
    for code, regime in (("small", "小企业会计制度"), ("standards", "新会计准则"), ("enterprise", "企业会计制度")):
        yield f"template_{code}_balance", balance_sheet(f"{regime}资产负债表", 0)
        yield f"template_{code}_income", income_statement(f"{regime}利润表", 0)
        yield f"template_{code}_cash", cash_flow(f"{regime}现金流量表", 0)


def other_files():
    trend = [["月份", "收入", "成本"]]
    trend += [[month, 160000.0 + 4200.5 * index, 110000.0 + 3100.25 * index] for index, month in enumerate(MONTHS)]
    ratio = [["指标", "本期", "上期"], ["流动比率", 1.82, 1.76], ["速动比率", 1.13, 1.08], ["资产负债率", 0.46, 0.48]]
    staff = [["Department", "Head count"], ["Finance", 12.0], ["Sales", 31.0], ["Production", 86.0]]
    yield "trend.variant", variant_table(trend)
    yield "ratios.variant", variant_table(ratio)
    yield "staff.variant", variant_table(staff)
    for name, orientation, scale in (("portrait", "Portrait", 100), ("landscape", "Landscape", 85)):
        lines = ["[Page]", "Paper=A4", f"Orientation={orientation}", f"Scale={scale}", "Margins=20,20,15,15", "Copies=1", ""]
        yield f"{name}.printer", "\r\n".join(lines).encode("ascii")


def main():
    check = "--check" in sys.argv[1:]
    wanted = {f"{name}.xlsx": content for name, content in workbooks()}
    wanted.update(other_files())
    stale = []
    for name, content in wanted.items():
        path = FOLDER / name
        old = path.read_bytes() if path.exists() else None
        if old is not None and (old == content or name.endswith(".xlsx") and parts_of(old) == parts_of(content)):
            continue
        stale.append(name)
        if not check:
            FOLDER.mkdir(exist_ok=True)
            path.write_bytes(content)
    stale += [path.name for path in FOLDER.iterdir() if path.name not in wanted]
    for name in stale:
        print(f"samples/documents/{name}: {'differs' if check else 'written'}")
    return 1 if check and stale else 0


if __name__ == "__main__":
    sys.exit(main())
