// Calls all classes as the suite's web pages do: late bound, with this language's own objects and values.
//
//   cscript //nologo classes.js FOLDER
//
// Says "all classes answered" at its end; what is wrong is named, and the status is 1.
var dsn = "Database=" + WScript.Arguments(0) + "\\classes.db";
var modes = {
  SrvRptRetrieve: 3, SrvRptUpdate: 2, RptPropItemClassInfo: 3, RptPropItemClassUpdate: 2, RptPropItemInfo: 3,
  RptPropItemUpdate: 2, CsRetrieve: 3, CsUpdate: 2, MultiAccountInfo: 3, MultiAccountUpdate: 2, RptBatchPrnInfo: 3,
  RptBatchPrnUpdate: 2
};

function check(what, given, expected) {
  if (given === expected) return;
  WScript.Echo("failed: " + what + ": " + given + " where " + expected + " was expected");
  WScript.Quit(1);
}

function service(name) { return new ActiveXObject("NorvTolvane." + name); }

function selected(sql) {
  var row = service("CsRetrieve");  // any class may be alive meanwhile
  check("TransMode", row.TransMode, 3);
  var context = suite.GetContext();
  context.OpenDataSource(dsn);
  return context.GetConnection().Execute(sql).Fields.Item(0).Value;
}

try {
  var suite = new ActiveXObject("NorvStandalone.Application");
  suite.CreateAccountSet(dsn, "demo");

  for (var name in modes) check(name + ".TransMode", service(name).TransMode, modes[name]);

  // One call of every class; arguments go by value here.
  check("GetCurUserID", service("SrvRptRetrieve").GetCurUserID(dsn + ";UserID=101"), 101);
  var standards = service("RptPropItemClassInfo").GetList(dsn);
  check("standards", standards.EOF, false);
  var bag = new ActiveXObject("NorvStandalone.Dictionary");
  bag.Add("FName", "\u5468\u671f");
  service("RptPropItemClassUpdate").Create(dsn, bag);
  var standard = selected("select max(FPropClsID) from t_Rpt_PropClass");
  check("the standard's name", selected("select FName from t_Rpt_PropClass where FPropClsID = " + standard),
        "\u5468\u671f");
  check("items", service("RptPropItemInfo").GetList(dsn, 1).EOF, false);
  check("an audit mark", service("RptPropItemUpdate").SetRptIsAudit(dsn, 1, 101, "\u9648\u96e8"), 1);
  check("a statement's status", typeof service("CsRetrieve").TransMode, "number");
  service("CsUpdate").CsDataStatusUpdate(dsn, "FRptGroupID=3 And FYear=2025 And FPeriod=2 And FCompanyNum='001'",
                                         "FIsChecked", true);
  check("configurations", service("MultiAccountInfo").GetListByUser(dsn).Count >= 0, true);
  var account = new ActiveXObject("NorvStandalone.Dictionary");
  account.Add("FDriverType", 0);
  account.Add("FAisName", "AIS");
  account.Add("FSystemDB", "sys");
  account.Add("FServerName", "server");
  account.Add("FMUserName", "u");
  account.Add("FMPassword", "p");
  account.Add("FPropsString", "");
  service("MultiAccountUpdate").CreateAcct(dsn, "branch", account);
  check("the configuration", selected("select count(*) from t_Rpt_MultiAcct where FName = 'branch'"), 1);
  var entry = new ActiveXObject("NorvStandalone.Dictionary");
  entry.Add("lRptID", 1);
  entry.Add("sRptName", "one");
  var reports = new ActiveXObject("NorvStandalone.Vector");
  reports.Add(entry);
  check("a scheme", service("RptBatchPrnUpdate").Add(dsn, "scheme", "author", reports), true);
  var scheme = selected("select max(FSchemeID) from t_Rpt_PrintScheme");
  check("the scheme's reports", service("RptBatchPrnInfo").GetDetail(dsn, scheme).EOF, false);

  // The system's own error.
  var number = 0;
  try {
    service("RptPropItemClassInfo").GetDetail(dsn, 424242);
  } catch (error) {
    number = error.number;
    check("the error's words", error.message || error.description, "PropClsID");
  }
  check("the error's number", number, 0x80044041 | 0);
  WScript.Echo("all classes answered");
} catch (error) {
  WScript.Echo("failed: " + (error.number >>> 0).toString(16) + " " + (error.message || error.description));
  WScript.Quit(1);
}
