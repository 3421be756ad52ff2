' The tour of the command line (samples/tour.sh), once more through the automation objects: the same steps, in the same
' order, on an account set that is made here.
'
'   cscript //nologo tour.vbs FOLDER TEXTS
'
' TEXTS holds the Chinese texts as NAME=TEXT lines in UTF-16, since scripts are read in the code page of the machine.
' Says "the tour is done" at its end; a step that fails is named, and the status is 1.
Option Explicit

Dim folder, dsn, older, texts, suite, document, report, report5, standard, item, scheme
folder = WScript.Arguments(0)
dsn = "Database=" & folder & "\demo.db"
older = "Database=" & folder & "\older.db"
Set texts = CreateObject("Scripting.Dictionary")

On Error Resume Next
ReadTexts WScript.Arguments(1)
Set suite = CreateObject("NorvStandalone.Application")
Done "the standalone suite"
suite.CreateAccountSet dsn, "demo"
Done "1. a new account set with the demonstration's data"

SaveReport
ListReports
FetchDocument
ReadRights
ListForAnotherUser
ReadClassification
BeRefused
AddStandard
ReplaceRights
ImportTemplates
MarkAndAnalyse
DeliverStatements
ConvertOlderStatements
ConfigureAccountSet
PrintSchemes
WScript.Echo "the tour is done"

' The step is over; when something of it failed, so has the tour.
Sub Done(step)
  If Err.Number = 0 Then Exit Sub
  WScript.Echo "failed: " & step & ": " & Hex(Err.Number) & " " & Err.Source & ": " & Err.Description
  WScript.Quit 1
End Sub

Sub Expect(step, given, expected)
  Done step
  If CStr(given) = CStr(expected) Then Exit Sub
  WScript.Echo "failed: " & step & ": " & given & " where " & expected & " was expected"
  WScript.Quit 1
End Sub

Sub ReadTexts(name)
  Dim file, line, cut
  Set file = CreateObject("Scripting.FileSystemObject").OpenTextFile(name, 1, False, -1)
  Do Until file.AtEndOfStream
    line = file.ReadLine
    cut = InStr(line, "=")
    If cut > 0 Then texts(Left(line, cut - 1)) = Mid(line, cut + 1)
  Loop
  file.Close
  Done "the texts"
End Sub

Function Service(name)
  Set Service = CreateObject("NorvTolvane." & name)
  Done "NorvTolvane." & name
End Function

Function Bag()
  Set Bag = CreateObject("NorvStandalone.Dictionary")
End Function

' The rows that a free query gives, as a list of bags.
Function Query(sql)
  Dim rows
  Service("SrvRptRetrieve").GetSqlExecResult dsn, sql, rows
  Done sql
  Set Query = rows
End Function

Function Number(sql)
  Dim rows
  Set rows = Query(sql)
  Number = rows(1)("N")
  Done sql
End Function

Sub SaveReport
  Dim reader, printer, writer, found
  Set reader = Service("SrvRptRetrieve")
  found = reader.GetRptViaName(dsn, texts("monthly"), document, printer)
  Expect "3. the demonstration's document", found, True
  Set writer = Service("SrvRptUpdate")
  Expect "TransMode", writer.TransMode, 2
  report = writer.SavePlxToSrv(dsn, texts("system"), texts("report"), document, 1, , 2025, 6)
  Done "3. a designer saves a report"
End Sub

Sub ListReports
  Dim list, found, first, count, entry
  found = Service("SrvRptRetrieve").GetRptlistOrderBy(dsn, list, "FRptID DESC", 3)
  Expect "4. it is in the list", found, True
  Set first = list(1)
  Expect "4. it is the first", first("FRptID"), report
  count = 0
  For Each entry In list
    count = count + 1
  Next
  Expect "4. the list is walked", count, list.Count
End Sub

Sub FetchDocument
  Dim plx, printer, found
  found = Service("SrvRptRetrieve").GetRptPlx(dsn, report, plx, printer)
  Expect "6. the document comes back", found, True
  Expect "6. it is a byte array", VarType(plx), 8209
  Expect "6. it has its size", Number("select datalength(FRptData) as N from t_Rpt_Content where FRptID = " & report), _
    Number("select datalength(FRptData) as N from t_Rpt_Content where FRptName = N'" & texts("monthly") & "'")
End Sub

Sub ReadRights
  Dim code, found, users, codes
  found = Service("SrvRptRetrieve").GetRptRight(dsn, report, code)
  Expect "7. the creator's right", code, 4
  found = Service("SrvRptRetrieve").GetRptAuthorize(dsn, 1, users, codes)
  Expect "7. as many rights as users", UBound(codes), UBound(users)
End Sub

Sub ListForAnotherUser
  Dim list, found
  found = Service("SrvRptRetrieve").GetRptlistWeb(dsn & ";UserID=106;Language=en", list)
  Expect "8. the list of another user", found, True
End Sub

Sub ReadClassification
  Dim reader, rows
  Set reader = Service("RptPropItemClassInfo")
  Set rows = reader.GetList(dsn)
  Done "9. the standards"
  Expect "9. a record set, on its first row", rows.EOF, False
  Set rows = reader.GetAllPropName(dsn)
  Done "9. the items"
  Set rows = reader.GetRptByProp(dsn, texts("item"))
  Done "9. the reports under an item"
End Sub

Sub BeRefused
  Dim refused
  refused = Service("SrvRptUpdate").SavePlxToSrv(dsn & ";Language=en", "GL", "  ", document, 1)
  If Err.Number <> &H80044047 Then Done "10. a refusal"
  Expect "10. a refusal's source", Err.Source, "SrvRptRetrive.SavePlxToSrv"
End Sub

Sub AddStandard
  Dim properties, made
  Err.Clear
  Set properties = Bag()
  properties.Add "FName", texts("standard")
  made = Service("RptPropItemClassUpdate").Create(dsn, properties)
  Done "11. a standard of one's own"
  standard = Number("select max(FPropClsID) as N from t_Rpt_PropClass")
  AddItem "01", texts("month")
  item = Number("select max(FPropItemID) as N from t_Rpt_PropItem")
  FileReport report
  FileReport 5
  AddItem "02", texts("quarter")
End Sub

Sub AddItem(code, name)
  Dim properties, made
  Set properties = Bag()
  properties("FNumber") = code
  properties("FName") = name
  made = Service("RptPropItemUpdate").Create(dsn, standard, properties)
  Done "11. an item"
End Sub

Sub FileReport(id)
  Dim properties
  Set properties = Bag()
  properties(CStr(standard)) = item
  Service("SrvRptUpdate").SetReportProp dsn, id, properties
  Done "11. a report is filed"
End Sub

Sub ReplaceRights
  Dim users, codes, done13
  users = Array(101, 102, 106)
  codes = Array(4, 1, 2)
  done13 = Service("SrvRptUpdate").SetRptRight(dsn, report, users, codes)
  Done "13. rights are replaced"
  done13 = Service("SrvRptRetrieve").GetRptAuthorize(dsn, report, users, codes)
  Expect "13. three have rights", UBound(users) - LBound(users), 2
End Sub

Sub ImportTemplates
  Dim regime, imported
  regime = "124"
  imported = Service("SrvRptUpdate").ImportRpt(dsn, regime)
  Expect "14. templates become reports (the answer is always False)", imported, False
End Sub

Sub MarkAndAnalyse
  Dim parts, stored, row, first, second
  stored = Service("RptPropItemUpdate").SetRptIsAudit(dsn, report, 101, texts("leader"))
  Done "15. a leader's mark"
  stored = Service("RptPropItemInfo").CheckRptIsAudit(dsn, report)
  Done "15. who approved"
  Set row = Query("select 0x4A756E653A20 as FFirst, 0x626574746572207468616E204D61792E as FSecond")(1)
  first = row("FFirst")
  second = row("FSecond")
  parts = Array(first, second)
  stored = Service("RptPropItemUpdate").PutOutDoc(dsn, texts("analysis"), "txt", parts)
  Done "15. an analysis document"
  stored = Service("RptPropItemInfo").GetEISFileName(dsn)
  Done "15. the documents"
End Sub

Sub DeliverStatements
  Dim writer, reader, company, kept, list, filter, checked
  Set writer = Service("CsUpdate")
  Set reader = Service("CsRetrieve")
  For Each company In Array("001", "002", "003")
    kept = writer.SaveCsData(dsn, 2025, 3, DateSerial(2025, 9, 30), 3, 1, company, document)
    Expect "16. a statement", kept, True
  Next
  kept = reader.GetExistRpt(dsn, 2025, 9, DateSerial(2025, 9, 30), 1, list)
  Done "16. the groups with statements"
  filter = "FRptGroupID=3 And FYear=2025 And FPeriod=3 And FCompanyNum='002'"
  kept = writer.CsDataStatusUpdate(dsn, filter, "FIsChecked", True)
  Done "16. a statement is checked"
  kept = reader.CsDataStatusInfo(dsn, filter, "FIsChecked", checked)
  Done "16. whether it is"
  kept = writer.DelOneCsRpt(dsn, 2025, 3, DateSerial(2025, 9, 30), 3, 1, "003")
  Done "16. a statement is deleted"
End Sub

Sub ConvertOlderStatements
  Dim list, left, context, upgraded
  suite.CreateAccountSet older, "older"
  Done "17. an account set of the older layout"
  left = Service("CsRetrieve").GetRptGroupList(older, list)
  Done "17. the groups"
  Set context = suite.GetContext
  context.OpenDataSource older
  context.GetConnection.Execute "insert into t_CsRptGroup values (101, N'P01', N'" & texts("older") & "', 1, 0)"
  Done "17. a group of the new layout"
  upgraded = Service("CsUpdate").UpGradeOneCsRpt(older, 1, 101, 1, "RMB")
  Done "17. a group is converted"
End Sub

Sub ConfigureAccountSet
  Dim properties, grant, list, reader
  Set properties = Bag()
  properties("FDriverType") = 0
  properties("FAisName") = "SW2025"
  properties("FSystemDB") = "sysdb"
  properties("FServerName") = "finance-southwest"
  properties("FMUserName") = "reader"
  properties("FMPassword") = "demo"
  properties("FPropsString") = ""
  Service("MultiAccountUpdate").CreateAcct dsn, texts("branch"), properties
  Done "18. a configuration"
  Set grant = Bag()
  grant("FName") = texts("branch")
  grant("FUserID") = 107
  grant("FCreatorID") = 1
  Service("MultiAccountUpdate").CreateAcctRight dsn, grant
  Done "18. a grant"
  Set reader = Service("MultiAccountInfo")
  Set list = reader.GetListByUser(dsn & ";UserID=107")
  Expect "18. the grantee sees it", list.Count > 0, True
  Expect "18. an account that may be seen", reader.CheckAccountRight(dsn & ";UserID=105", "1122.01.02") <> 0, True
End Sub

Function SchemeEntry(id, name)
  Set SchemeEntry = Bag()
  SchemeEntry("lRptID") = id
  SchemeEntry("sRptName") = name
End Function

Sub PrintSchemes
  Dim writer, reports, kept, rows
  Set writer = Service("RptBatchPrnUpdate")
  Set reports = CreateObject("NorvStandalone.Vector")
  reports.Add SchemeEntry(1, texts("balance"))
  reports.Add SchemeEntry(2, texts("income"))
  kept = writer.Add(dsn, texts("scheme"), "Administrator", reports)
  Expect "19. a scheme", kept, True
  scheme = Number("select max(FSchemeID) as N from t_Rpt_PrintScheme")
  Set reports = CreateObject("NorvStandalone.Vector")
  reports.Add SchemeEntry(3, texts("cash"))
  reports.Add SchemeEntry(1, texts("balance"))
  kept = writer.Modify(dsn, scheme, texts("scheme"), reports)
  Expect "19. a scheme is changed", kept, True
  Set rows = Service("RptBatchPrnInfo").GetDetail(dsn, scheme)
  Done "19. a scheme's reports"
End Sub
