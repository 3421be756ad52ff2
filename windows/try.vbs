' Tries the classes without the suite: makes an account set with the demonstration's data, saves a report in it and shows
' the list of reports. Run by try.cmd, which finds the script host of the right word size:
'
'   try.cmd [FILE]
'
' FILE is the account set; without one it is tolvane-try.db in your folder of temporary files. It is made when it is not
' there, and kept.
Option Explicit

Dim files, name, dsn, suite, report
Set files = CreateObject("Scripting.FileSystemObject")
name = files.BuildPath(files.GetSpecialFolder(2), "tolvane-try.db")
If WScript.Arguments.Count > 0 Then name = files.GetAbsolutePathName(WScript.Arguments(0))
dsn = "Database={" & name & "}"

On Error Resume Next
Set suite = CreateObject("NorvStandalone.Application")
Done "the standalone objects (is NorvStandalone.dll of this word size registered?)"
WScript.Echo "NorvStandalone " & suite.Version
If Not files.FileExists(name) Then suite.CreateAccountSet dsn, True
Done "a new account set"
WScript.Echo "account set: " & name

SaveReport
ShowReports
WScript.Echo "all went well"

' The step is over; when something of it failed, that is the end.
Sub Done(step)
  If Err.Number = 0 Then Exit Sub
  WScript.Echo "failed: " & step & ": " & Hex(Err.Number) & " " & Err.Source & ": " & Err.Description
  WScript.Quit 1
End Sub

Sub SaveReport
  Dim document, printer, found, writer
  On Error Resume Next
  found = CreateObject("NorvTolvane.SrvRptRetrieve").GetRptPlx(dsn, 1, document, printer)
  Done "reading the first report's document"
  Set writer = CreateObject("NorvTolvane.SrvRptUpdate")
  Done "NorvTolvane.SrvRptUpdate"
  report = writer.SavePlxToSrv(dsn & ";Language=en", "GL", "Try " & Now, document, 1)
  Done "saving a report"
  WScript.Echo "saved a report: FRptID " & report
  Done "what was saved"
End Sub

Sub ShowReports
  Dim list, found, entry, shown
  On Error Resume Next
  found = CreateObject("NorvTolvane.SrvRptRetrieve").GetRptlistOrderBy(dsn & ";Language=en", list, "FRptID DESC", 3)
  Done "the list of reports"
  WScript.Echo list.Count & " reports; the newest:"
  shown = 0
  For Each entry In list
    If shown < 5 Then WScript.Echo "  " & entry("FRptID") & "  " & entry("FRptName")
    Done "an entry of the list"
    shown = shown + 1
  Next
End Sub
