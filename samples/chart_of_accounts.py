"""A chart of accounts of three levels, and the cash-flow items.

Accounts of the first level are listed; those below repeat a few divisions (by region, by product, by kind of expense),
as they do in a real chart.
"""

# Lists of names for the levels below the first: Simplified, Traditional, English.
_DIVISIONS = {
    "banks": "基本户|基本戶|Basic account;一般户|一般戶|General account;专用户|專用戶|Special account;外币户|外幣戶|Foreign currency account",
    "currencies": "人民币|人民幣|RMB;美元|美元|USD;欧元|歐元|EUR;港币|港幣|HKD",
    "regions": "华东|華東|East;华南|華南|South;华北|華北|North;华中|華中|Centre;西南|西南|Southwest;西北|西北|Northwest;"
               "东北|東北|Northeast;海外|海外|Overseas",
    "terms": "一年以内|一年以內|Within a year;一年以上|一年以上|Over a year",
    "products": "产品甲|產品甲|Product A;产品乙|產品乙|Product B;产品丙|產品丙|Product C;产品丁|產品丁|Product D",
    "materials": "主要材料|主要材料|Main materials;辅助材料|輔助材料|Auxiliary materials;外购件|外購件|Bought parts;燃料|燃料|Fuel;"
                 "包装物|包裝物|Packaging",
    "grades": "一级|一級|First grade;二级|二級|Second grade",
    "assets": "房屋建筑物|房屋建築物|Buildings;机器设备|機器設備|Machinery;运输工具|運輸工具|Vehicles;电子设备|電子設備|Electronics;"
              "办公家具|辦公傢俱|Furniture",
    "sites": "总部|總部|Headquarters;工厂|工廠|Plant",
    "people": "职工|職工|Staff;单位|單位|Entities;押金|押金|Deposits",
    "taxes": "增值税|增值稅|Value-added tax;企业所得税|企業所得稅|Income tax;个人所得税|個人所得稅|Personal income tax;"
             "城建税|城建稅|Urban construction tax;教育费附加|教育費附加|Education surcharge;印花税|印花稅|Stamp duty",
    "vat": "进项税额|進項稅額|Input tax;销项税额|銷項稅額|Output tax;已交税金|已交稅金|Tax paid;转出未交|轉出未交|Transferred out",
    "wages": "工资|工資|Wages;奖金|獎金|Bonuses;福利费|福利費|Welfare;社会保险费|社會保險費|Social insurance;"
             "住房公积金|住房公積金|Housing fund",
    "expenses": "工资|工資|Wages;办公费|辦公費|Office supplies;差旅费|差旅費|Travel;折旧费|折舊費|Depreciation;"
                "水电费|水電費|Utilities;通讯费|通訊費|Communication;招待费|招待費|Entertainment;其他|其他|Other",
    "costs": "直接材料|直接材料|Direct materials;直接人工|直接人工|Direct labour;制造费用|製造費用|Overheads",
    "interest": "利息|利息|Interest;手续费|手續費|Charges;汇兑损益|匯兌損益|Exchange differences",
}

# Number, names, 1 debit or -1 credit, division of the second level, division of the third.
_FIRST_LEVEL = """
1001|库存现金|庫存現金|Cash on Hand|1|currencies|
1002|银行存款|銀行存款|Cash at Bank|1|banks|currencies
1012|其他货币资金|其他貨幣資金|Other Monetary Funds|1||
1101|交易性金融资产|交易性金融資產|Trading Financial Assets|1||
1121|应收票据|應收票據|Notes Receivable|1|terms|
1122|应收账款|應收帳款|Accounts Receivable|1|regions|terms
1123|预付账款|預付帳款|Prepayments|1|regions|
1131|应收股利|應收股利|Dividends Receivable|1||
1132|应收利息|應收利息|Interest Receivable|1||
1221|其他应收款|其他應收款|Other Receivables|1|people|terms
1231|坏账准备|壞帳準備|Bad Debt Provision|-1||
1402|在途物资|在途物資|Goods in Transit|1|materials|
1403|原材料|原材料|Raw Materials|1|materials|grades
1405|库存商品|庫存商品|Finished Goods|1|products|grades
1408|委托加工物资|委託加工物資|Materials for Processing|1||
1411|周转材料|週轉材料|Consumables|1|materials|
1471|存货跌价准备|存貨跌價準備|Inventory Provision|-1||
1511|长期股权投资|長期股權投資|Long-term Equity Investments|1||
1601|固定资产|固定資產|Fixed Assets|1|assets|sites
1602|累计折旧|累計折舊|Accumulated Depreciation|-1|assets|sites
1604|在建工程|在建工程|Construction in Progress|1|sites|
1606|固定资产清理|固定資產清理|Disposal of Fixed Assets|1||
1701|无形资产|無形資產|Intangible Assets|1||
1702|累计摊销|累計攤銷|Accumulated Amortisation|-1||
1801|长期待摊费用|長期待攤費用|Long-term Deferred Expenses|1||
2001|短期借款|短期借款|Short-term Loans|-1|banks|
2201|应付票据|應付票據|Notes Payable|-1|terms|
2202|应付账款|應付帳款|Accounts Payable|-1|regions|
2203|预收账款|預收帳款|Advances from Customers|-1|regions|
2211|应付职工薪酬|應付職工薪酬|Employee Benefits Payable|-1|wages|sites
2221|应交税费|應交稅費|Taxes Payable|-1|taxes|
2231|应付利息|應付利息|Interest Payable|-1||
2232|应付股利|應付股利|Dividends Payable|-1||
2241|其他应付款|其他應付款|Other Payables|-1|people|terms
2501|长期借款|長期借款|Long-term Loans|-1|banks|
2701|长期应付款|長期應付款|Long-term Payables|-1||
4001|实收资本|實收資本|Paid-in Capital|-1||
4002|资本公积|資本公積|Capital Reserve|-1||
4101|盈余公积|盈餘公積|Surplus Reserve|-1||
4103|本年利润|本年利潤|Profit for the Year|-1||
4104|利润分配|利潤分配|Profit Distribution|-1||
5001|生产成本|生產成本|Production Cost|1|products|costs
5101|制造费用|製造費用|Manufacturing Overheads|1|expenses|sites
6001|主营业务收入|主營業務收入|Main Business Revenue|-1|regions|products
6051|其他业务收入|其他業務收入|Other Business Revenue|-1|products|
6111|投资收益|投資收益|Investment Income|-1||
6301|营业外收入|營業外收入|Non-operating Income|-1||
6401|主营业务成本|主營業務成本|Main Business Cost|1|regions|
6402|其他业务成本|其他業務成本|Other Business Cost|1|products|
6403|税金及附加|稅金及附加|Taxes and Surcharges|1|taxes|
6601|销售费用|銷售費用|Selling Expenses|1|expenses|sites
6602|管理费用|管理費用|Administrative Expenses|1|expenses|sites
6603|财务费用|財務費用|Finance Expenses|1|interest|
6701|资产减值损失|資產減值損失|Impairment Losses|1||
6711|营业外支出|營業外支出|Non-operating Expenses|1||
6801|所得税费用|所得稅費用|Income Tax Expense|1||
"""

_CASH_ITEMS = """
1|CI|现金流量项目
2|CI1|经营活动产生的现金流量
3|CI1.01|销售商品、提供劳务收到的现金
3|CI1.02|收到的税费返还
3|CI1.03|收到其他与经营活动有关的现金
3|CI1.04|购买商品、接受劳务支付的现金
3|CI1.05|支付给职工以及为职工支付的现金
3|CI1.06|支付的各项税费
2|CI2|投资活动产生的现金流量
3|CI2.01|收回投资收到的现金
3|CI2.02|取得投资收益收到的现金
3|CI2.03|购建固定资产支付的现金
2|CI3|筹资活动产生的现金流量
3|CI3.01|吸收投资收到的现金
3|CI3.02|取得借款收到的现金
3|CI3.03|偿还债务支付的现金
3|CI3.04|分配股利、偿付利息支付的现金
"""


def _division(name):
    return [entry.split("|") for entry in _DIVISIONS[name].split(";")] if name else []


def accounts():
    """Rows of t_Account: identifier, number, names, level, leaf, parent, debit or credit."""
    rows = []

    def add(number, names, level, parent, side):
        rows.append([1000 + len(rows), number, *names, level, 1, 0 if parent is None else parent[0], side])
        if parent is not None:
            parent[6] = 0
        return rows[-1]

    for line in _FIRST_LEVEL.strip().splitlines():
        number, chs, cht, english, side, second, third = line.split("|")
        first = add(number, (chs, cht, english), 1, None, int(side))
        for place, names in enumerate(_division(second), 1):
            # Only the value-added tax has accounts of its own below it.
            below = "vat" if second == "taxes" and place == 1 and number == "2221" else third
            middle = add(f"{number}.{place:02d}", names, 2, first, int(side))
            for index, leaf in enumerate(_division(below), 1):
                add(f"{number}.{place:02d}.{index:02d}", leaf, 3, middle, int(side))
    return [tuple(row) for row in rows]


def cash_items():
    """Rows of t_Item, class 9: identifier, class, parent, number, name, level, leaf."""
    rows, above = [], {0: 0}
    for number, line in enumerate(_CASH_ITEMS.strip().splitlines(), 9001):
        level, code, name = line.split("|")
        rows.append((number, 9, above[int(level) - 1], code, name, int(level), int(level == "3")))
        above[int(level)] = number
    return rows
