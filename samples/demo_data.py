"""Who and what is in the demonstration account set. Every name, number and amount is invented."""

# Users and groups: identifier, name, description, primary group, restricted data view, is a group.
USERS = [
    (11, "Finance", "财务组", 11, 0, 1), (12, "Management", "管理层", 12, 0, 1), (13, "Branches", "分部人员", 13, 1, 1),
    (101, "陈雨", "财务经理", 11, 0, 0), (102, "林涛", "总账会计", 11, 0, 0), (103, "周敏", "成本会计", 11, 0, 0),
    (104, "何静", "分部会计", 13, 0, 0), (105, "吴越", "销售主管", 2, 1, 0), (106, "Anna Reed", "Controller", 12, 0, 0),
    (107, "張家豪", "稽核專員", 12, 0, 0), (108, "郑帆", "实习会计", 2, 1, 0)]
# Group 0 stands for "nobody in particular": rights of its members do not count.
MEMBERS = [
    (11, 101),
    (12, 101),
    (11, 102),
    (11, 103),
    (13, 104),
    (2, 105),
    (12, 106),
    (12, 107),
    (2, 108),
    (0, 108),
           (13, 105),
           (251, 101),
           (251, 102),
           (251, 103),
           (251, 104),
           (251, 105),
           (251, 106),
           (251, 107),
           (251, 108)]

STANDARDS = [(1002, "用途", "用途", "Purpose"), (1003, "部门", "部門", "Department")]
ITEMS = [
    (1002, 126, "01", "对外报送", "對外報送", "External Filing"), (1002, 127, "02", "内部管理", "內部管理", "Internal Management"),
    (1002, 128, "03", "税务申报", "稅務申報", "Tax Return"), (1002, 129, "04", "预算分析", "預算分析", "Budget Analysis"),
    (1003, 130, "01", "财务部", "財務部", "Finance Department"), (1003, 131, "02", "销售部", "銷售部", "Sales Department"),
    (1003, 132, "03", "生产部", "生產部", "Production Department"), (1003, 133, "04", "集团总部", "集團總部", "Headquarters")]

# Ordinary reports and those of variants: three names, type, owner, year, period, purpose, department, on the web list,
# document, print settings, rights of others.
REPORTS = [
    ("集团资产负债表", "集團資產負債表", "Group Balance Sheet",
     1, 101, 2025, 6, 126, 133, 1, "balance_group.xlsx", "portrait", {106: 4, 107: 2, 102: 1}),
    ("集团利润表", "集團利潤表", "Group Income Statement",
     1, 101, 2025, 6, 126, 133, 1, "income_group.xlsx", "portrait", {106: 2, 107: 2, 102: 1}),
    ("集团现金流量表", "集團現金流量表", "Group Cash Flow Statement",
     1, 101, 2025, 6, 126, 133, 1, "cash_group.xlsx", "portrait", {106: 2, 102: 1}),
    ("华东分部资产负债表", "華東分部資產負債表", "East Branch Balance Sheet",
     1, 104, 2025, 6, 127, 130, 0, "balance_east.xlsx", "portrait", {101: 2}),
    ("利润月报", "利潤月報", "Monthly Income Report",
     1, 102, 2025, 3, 127, 130, 1, "income_monthly.xlsx", "portrait", {101: 4, 103: 1, 108: 0}),
    ("资金周报", "資金週報", "Weekly Cash Report", 1, 102, 2025, 3, 127, 130, 1, "cash_weekly.xlsx", "", {101: 2}),
    ("应收账款账龄分析表", "應收帳款帳齡分析表", "Receivables Ageing",
     1, 102, 2025, 6, 127, 131, 1, "receivable_ageing.xlsx", "landscape", {101: 2, 105: 2}),
    ("应付账款账龄分析表", "應付帳款帳齡分析表", "Payables Ageing",
     1, 102, 2025, 6, 127, 130, 0, "payable_ageing.xlsx", "landscape", {101: 2}),
    ("部门费用明细表", "部門費用明細表", "Expenses by Department",
     1, 103, 2025, 5, 129, 130, 0, "expenses.xlsx", "landscape", {101: 1, 106: 1}),
    ("预算执行情况表", "預算執行情況表", "Budget Execution",
     1, 101, 2025, 6, 129, 133, 1, "budget.xlsx", "landscape", {106: 4, 107: 1}),
    ("分地区销售统计表", "分地區銷售統計表", "Sales by Region",
     1, 105, 2025, 6, 127, 131, 1, "sales_region.xlsx", "landscape", {101: 1, 105: 0}),
    ("存货收发存汇总表", "存貨收發存彙總表", "Inventory Movements",
     1, 103, 2025, 6, 127, 132, 0, "inventory.xlsx", "landscape", {101: 1}),
    ("固定资产折旧表", "固定資產折舊表", "Depreciation of Fixed Assets",
     1, 103, 2025, 6, 0, 130, 0, "fixed_assets.xlsx", "portrait", {}),
    ("银行存款余额表", "銀行存款餘額表", "Bank Balances",
     1, 102, 2025, 6, 127, 130, 0, "bank.xlsx", "portrait", {101: 2, 108: 0}),
    ("应交税费明细表", "應交稅費明細表", "Taxes Payable", 1, 102, 2025, 6, 128, 130, 0, "tax.xlsx", "portrait", {101: 2}),
    ("工资汇总表", "工資彙總表", "Payroll Summary", 1, 101, 2025, 6, 0, 0, 0, "payroll.xlsx", "portrait", {}),
    ("产品成本计算表", "產品成本計算表", "Product Costing",
     1, 103, 2025, 6, 127, 132, 0, "product_cost.xlsx", "landscape", {101: 1}),
    ("管理摘要", "管理摘要", "Management Summary",
     1, 106, 2025, 6, 127, 133, 1, "english_summary.xlsx", "portrait", {101: 2, 107: 1}),
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

CONFIGURATIONS = [
    ("华东分部账套", 101, 0, "EAST2025", "sysdb", "finance-east", 2),
    ("华南分部账套", 101, 0, "SOUTH2025", "sysdb", "finance-south", 3),
                  ("总部历史账套", 102, 1, "HQ2020", "sysdb", "archive", 1),
                  ("Overseas", 106, 2, "OVERSEAS", "sysdb", "finance-overseas", 4)]
ENTRIES = [
    (101, "华东分部账套", "east_reader", "east-demo", "TimeOut=30"),
    (101, "华南分部账套", "south_reader", "south-demo", ""),
           (104, "华东分部账套", "east_branch", "branch-demo", "TimeOut=60"),
           (106, "Overseas", "overseas", "overseas-demo", "Language=en")]
GRANTS = [("华东分部账套", 102, 101), ("华东分部账套", 104, 101), ("华南分部账套", 106, 101), ("Overseas", 107, 106)]

COMPANIES = [("001", "集团本部", 1.0), ("002", "华东分部", 0.42), ("003", "华南分部", 0.31)]
# Group: identifier, number, name, cycle in months, lines of its statement.
GROUPS = [(1, "G00", "资金日报", 0, ["库存现金", "银行存款", "其他货币资金"]), (2, "G01", "损益月报", 1, ["营业收入", "营业成本", "期间费用", "净利润"]),
          (3, "G03", "资产负债季报", 3, ["流动资产", "非流动资产", "流动负债", "非流动负债", "所有者权益"]),
          (4, "G06", "经营半年报", 6, ["产量", "销量", "职工人数"]), (5, "G12", "年度决算", 12, ["利润总额", "所得税费用", "净利润"])]
