' NorvStandalone.dll as a script sees it.
'     cscript //nologo standalone.vbs FOLDER
' makes account sets in FOLDER, which must be there. The status is the number of checks that failed; each is printed.
Option Explicit

Dim failures, checks
failures = 0
checks = 0

Sub Check(what, actual, expected)
  checks = checks + 1
  If Kind(actual) = Kind(expected) Then
    If IsNull(expected) Then Exit Sub
    If actual = expected Then Exit Sub
  End If
  failures = failures + 1
  WScript.Echo "not ok: " & what & ": " & Shown(actual) & " instead of " & Shown(expected)
End Sub

' Whole numbers are of one kind: a script's own are short.
Function Kind(value)
  Kind = VarType(value)
  If Kind = 2 Then Kind = 3
End Function

' An error that is there to be read is cleared; a check that expected none shows it.
Sub CheckError(what, number, source, description)
  checks = checks + 1
  If Err.Number <> number Or (source <> "" And Err.Source <> source) Or _
     (description <> "" And Err.Description <> description) Then
    failures = failures + 1
    WScript.Echo "not ok: " & what & ": error " & Hex(Err.Number) & " of """ & Err.Source & """: " & Err.Description
  End If
  Err.Clear
End Sub

Function Shown(value)
  If IsNull(value) Then
    Shown = "Null"
  ElseIf IsEmpty(value) Then
    Shown = "Empty"
  ElseIf IsArray(value) Then
    Shown = TypeName(value)
  Else
    Shown = TypeName(value) & " " & value
  End If
End Function

Dim folder, dsn
folder = WScript.Arguments(0)
dsn = "Database=" & folder & "\demo.db"

Dim application
Set application = CreateObject("NorvStandalone.Application")

' --- An account set -----------------------------------------------------------------------------------------------

Dim files
Set files = CreateObject("Scripting.FileSystemObject")

Sub RemoveFile(name)
  If files.FileExists(folder & "\" & name) Then files.DeleteFile folder & "\" & name
End Sub

RemoveFile "demo.db"
RemoveFile "fails.db"

Sub AccountSets()
  On Error Resume Next
  application.CreateAccountSet dsn, True
  CheckError "a new account set", 0, "", ""
  application.CreateAccountSet dsn
  CheckError "an account set that is there", 5, "Tolvane", "There is " & folder & "\demo.db already. " & _
    "An account set is made in a new file only; nothing was changed."
  application.CreateAccountSet "Database=" & folder & "\fails.db", "nosuch"
  CheckError "a sample that there is not", 5, "Tolvane", "There is no sample nosuch; there is demo, older."
  Check "nothing left of it", files.FileExists(folder & "\fails.db"), False
  application.CreateAccountSet
  CheckError "an argument too few", 449, "", ""
End Sub
AccountSets

' --- Context and login --------------------------------------------------------------------------------------------

Dim context, connection, ignored
Set context = application.GetContext

Sub Contexts()
  Dim login
  On Error Resume Next
  Set connection = context.GetConnection
  CheckError "a connection before a data source is open", 91, "", ""
  context.OpenDataSource "Database=" & folder & "\nothing.db", ignored
  Check "a data source that there is not", Hex(Err.Number), "80004005"
  Err.Clear
  context.OpenDataSource dsn & ";UserID=2;Language=en", ignored
  CheckError "opening a data source", 0, "", ""
  Set login = context.GetLoginInfo
  Check "the user", login.CurrentUserID, 2
  Check "the user's key", login.UserKey, "2"
  Check "the user's language", login.LanguageCode, "en"
  Check "the text of the call", context.CallText, "2"
  context.OpenDataSource dsn, ignored
  context.BeginWork
  context.CompleteWork
  Set connection = context.GetConnection
  CheckError "a connection", 0, "", ""
  Check "the connection's state", connection.State, 1
  Check "the connection's cursors", connection.CursorLocation, 3
End Sub
Contexts

' --- Rows ---------------------------------------------------------------------------------------------------------

Dim chinese, document
chinese = connection.Execute("Select NChar(36164) + NChar(20135) + NChar(36127) + NChar(20538) + NChar(34920)")(0).Value
Check "its length", Len(chinese), 5

Sub Rows()
  Dim rs, affected, id
  On Error Resume Next
  connection.Execute "create table t_Try (FID int not null identity(1,1), FName nvarchar(10) null, FAmount money null, " & _
    "FDay datetime null, FData image null, FFlag bit not null default (0), constraint PK_t_Try primary key (FID))"
  CheckError "a table", 0, "", ""
  connection.Execute "insert into t_Try (FName, FAmount) values (N'" & chinese & "', 12.5)", affected
  CheckError "a row by a statement", 0, "", ""
  Check "rows that a statement affected", affected, 1

  Set rs = CreateObject("NorvStandalone.Recordset")
  Check "a new set's state", rs.State, 0
  Check "a new set's cursors", rs.CursorLocation, 2
  rs.Open "Select * From t_Try", connection, 1, 3
  CheckError "opening a set", 0, "", ""
  Check "the set's state", rs.State, 1
  Check "its rows", rs.RecordCount, 1
  Check "its fields", rs.Fields.Count, 6
  Check "a Chinese text", rs("FName").Value, chinese
  Check "a field without Value", rs.Fields("fname") & "", chinese
  Check "a field by position", rs.Fields(1).Name, "FName"
  Check "an amount", rs("FAmount").Value, CCur(12.5)
  Check "an empty date", rs("FDay").Value, Null
  Check "the date's type", rs("FDay").Type, 135
  Check "the text's type", rs("FName").Type, 202
  Check "the text's size", rs("FName").DefinedSize, 10
  Check "what the text takes", rs("FName").ActualSize, 10
  Check "a field that may be null", rs("FName").Attributes And 96, 96
  Check "a field that is long", rs("FData").Attributes And 128, 128
  Check "a field that is neither", rs("FID").Attributes And 224, 0
  CheckError "looking at fields", 0, "", ""

  rs.AddNew
  Check "a new row's state", rs.EditMode, 2
  rs("FName") = "second"
  rs.Fields("FAmount").Value = 3
  rs.Fields("FDay") = DateSerial(2012, 3, 15)
  rs("FFlag") = True
  rs.Update
  CheckError "adding a row", 0, "", ""
  id = rs("FID").Value
  Check "the new row's number", id, 2
  Check "the new row's date", rs("FDay").Value, DateSerial(2012, 3, 15)
  Check "the new row's mark", rs("FFlag").Value, True
  rs.AddNew Array("FName", "FAmount"), Array("third", 7)
  CheckError "adding a row at once", 0, "", ""
  rs.MoveFirst
  rs.Update "FName", "first"
  CheckError "changing a row at once", 0, "", ""
  Check "the changed row", rs("FName").Value, "first"
  rs.MoveLast
  rs.MoveNext
  Check "behind the last row", rs.EOF, True
  Check "not before the first", rs.BOF, False

  rs.Filter = "FAmount > 3.5"
  Check "rows with the filter", rs.RecordCount, 2
  Check "the filter", rs.Filter, "FAmount > 3.5"
  rs.Filter = 0
  Check "rows without", rs.RecordCount, 3
  Check "no filter", rs.Filter, 0
  CheckError "filtering", 0, "", ""
  rs.Close
  Check "a closed set's state", rs.State, 0
  CheckError "closing", 0, "", ""
End Sub
Rows

Sub Documents()
  Dim rs, bytes, size
  On Error Resume Next
  Set rs = CreateObject("NorvStandalone.Recordset")
  rs.Open "Select FRptID, FRptData From t_Rpt_Content Where FRptData Is Not Null", connection, 1, 3
  bytes = rs("FRptData").Value
  size = rs("FRptData").ActualSize
  CheckError "reading a document", 0, "", ""
  Check "a document's type", VarType(bytes), 8192 + 17
  Check "a document has content", size > 100, True
  rs.Close
  Set rs = CreateObject("NorvStandalone.Recordset")
  rs.Open "Select * From t_Try", connection, 1, 3
  rs("FData") = bytes
  rs.Update
  CheckError "writing a document", 0, "", ""
  rs.MoveNext
  rs("FData").AppendChunk bytes
  bytes = rs("FData").GetChunk(5)
  rs("FData").AppendChunk bytes
  bytes = Empty
  rs.Update
  Check "a document in two pieces", rs("FData").ActualSize, size + 5
  rs.MoveFirst
  Check "the same document", rs("FData").ActualSize, size
  rs("FData") = Null
  rs.Update
  Check "no document", rs("FData").Value, Null
  CheckError "documents", 0, "", ""
End Sub
Documents

Sub Detached()
  Dim rs
  On Error Resume Next
  Set rs = CreateObject("NorvStandalone.Recordset")
  rs.CursorLocation = 3
  rs.Open "Select FID, FName From t_Try Order By FID", connection, 3, 4
  Set rs.ActiveConnection = Nothing
  CheckError "detaching", 0, "", ""
  Check "no connection left", rs.ActiveConnection Is Nothing, True
  connection.Execute "delete from t_Try where FID = 3"
  Check "rows of a detached set", rs.RecordCount, 3
  rs.Filter = "FName = 'THIRD'"
  Check "a row of a detached set", rs("FID").Value, 3
  CheckError "using a detached set", 0, "", ""
  rs("FName") = "x"
  CheckError "writing to a detached set", 3709, "ADODB.Recordset", ""
End Sub
Detached

' --- Errors -------------------------------------------------------------------------------------------------------

Sub Errors()
  Dim rs, field
  On Error Resume Next
  Set rs = CreateObject("NorvStandalone.Recordset")
  ignored = rs.RecordCount
  CheckError "a closed set", 3704, "ADODB.Recordset", "Operation is not allowed when the object is closed."
  rs.Open "Select 1"
  CheckError "a set without connection", 3709, "ADODB.Recordset", ""
  rs.Open "Select 1", CreateObject("NorvStandalone.Dictionary")
  CheckError "a connection that is none", 3001, "ADODB.Recordset", ""
  rs.Open "Select * From t_Nothing", connection
  CheckError "a table that there is not", -2147217865, "Microsoft OLE DB Provider for SQL Server", _
    "Invalid object name 't_Nothing'."
  rs.Open "Select FID From t_Try Where FID = 1", connection
  CheckError "a set", 0, "", ""
  rs.Open "Select 1", connection
  CheckError "opening an open set", 3705, "ADODB.Recordset", ""
  ignored = rs("FNothing")
  CheckError "a field that there is not", 3265, "ADODB.Recordset", ""
  ignored = rs(1)
  CheckError "a position that there is not", 3265, "ADODB.Recordset", ""
  rs.AddNew
  CheckError "a set to read only", 3251, "ADODB.Recordset", ""
  rs.MoveNext
  ignored = rs("FID").Value
  CheckError "no current row", 3021, "ADODB.Field", ""
  Set field = rs("FID")
  rs.Close
  ignored = field.Value
  CheckError "a field that outlived its set", 3420, "ADODB.Field", "Object is no longer valid."
  rs.NoSuchMember
  CheckError "a member that there is not", 438, "", ""
  connection.Execute ""
  CheckError "an empty statement", -2147217908, "", ""
  connection.Execute "insert into t_Try (FID) values (1)"
  CheckError "a number that the server gives", -2147217873, "Microsoft OLE DB Provider for SQL Server", ""
End Sub
Errors

' --- Commands -----------------------------------------------------------------------------------------------------

Sub Commands()
  Dim command, rs, parameter
  On Error Resume Next
  Set command = CreateObject("NorvStandalone.Command")
  Set rs = command.Execute
  CheckError "a command without connection", 3709, "ADODB.Command", ""
  Set command.ActiveConnection = connection
  command.CommandText = "Select FName From t_Try Where FID = ? And FName = ?"
  command.CommandType = 1
  command.CommandTimeout = 5
  command.Parameters.Append command.CreateParameter("id", 3, 1, 4, 2)
  Set parameter = command.CreateParameter("name", 202, 1, 20)
  parameter.Value = "second"
  command.Parameters.Append parameter
  Check "the parameters", command.Parameters.Count, 2
  Check "a parameter by name", command.Parameters("NAME").Value, "second"
  Set rs = command.Execute
  CheckError "a command", 0, "", ""
  Check "its row", rs("FName").Value, "second"
  command.Parameters("id") = 1
  Set rs = command.Execute
  Check "the command once more", rs.EOF, True
  CheckError "the command once more", 0, "", ""
  command.Parameters.Append connection
  CheckError "a parameter that is none", 3001, "ADODB.Command", ""
End Sub
Commands

' --- A host's calls -----------------------------------------------------------------------------------------------

Function CountOf(condition)
  CountOf = connection.Execute("Select Count(*) From t_Try Where " & condition)(0).Value
End Function

Sub Write(name)
  Dim own
  Set own = application.GetContext
  own.OpenDataSource dsn, ignored
  own.GetConnection.Execute "insert into t_Try (FName) values (N'" & name & "')"
End Sub

Sub Calls()
  On Error Resume Next
  application.EndCall
  CheckError "the end of no call", 5, "Tolvane", "No call is under way: BeginCall begins one."
  application.BeginCall 1
  CheckError "a mode that there is not", 5, "", ""
  application.BeginCall 2
  Write "kept"
  Check "a call that is kept", application.EndCall, True
  Check "what was kept", CountOf("FName = N'kept'"), 1
  application.BeginCall 2
  Write "aborted"
  application.AbortCall
  Check "what was aborted", CountOf("FName = N'aborted'"), 0
  CheckError "calls", 0, "", ""
  application.BeginCall 2
  Write "doomed"
  connection.Execute "insert into t_Nothing values (1)"
  Err.Clear
  Check "a call in which an operation failed", application.EndCall, False
  Check "what was doomed", CountOf("FName = N'doomed'"), 0
  application.BeginCall 2
  application.BeginCall 2
  Write "inner"
  Check "a call within a call", application.EndCall, True
  application.AbortCall
  Check "what the inner call did", CountOf("FName = N'inner'"), 0
  CheckError "calls within calls", 0, "", ""
End Sub
Calls

' --- The suite's other components ---------------------------------------------------------------------------------

Sub Components()
  Dim security, loader, dataFlow, dictionary, list, key, keys
  On Error Resume Next
  Set security = CreateObject("NorvStandalone.Security")
  Check "who calls", VarType(security.GetCurrentUserID("1")), 2
  Check "an administrator", security.IsAdministrator("1"), True
  Check "a right", security.AccessCheck("1", 50, 0, &H8000000, True, "Tolvane.SrvRptRetrieve"), True
  CheckError "security", 0, "", ""

  Set loader = CreateObject("NorvStandalone.Loader")
  loader.ResFileBaseName = "ebo"
  loader.LanguageID = "en"
  Check "the language", loader.LanguageID, "en"
  Check "a text without translation", loader.LoadString("no such text"), "no such text"
  loader.Unload
  CheckError "the loader", 0, "", ""
  loader.LanguageID = "xx"
  ignored = loader.LoadString("a")
  Check "a language that there is not", Err.Number <> 0, True
  Err.Clear

  Set dictionary = CreateObject("NorvStandalone.Dictionary")
  dictionary("FSubFuncID") = 701
  dictionary.Add "FFuncName", chinese
  dictionary("FFuncName_Cht") = "t"
  dictionary("FFuncName_En") = "e"
  dictionary("FClassName") = "A.B"
  dictionary("FClassParam") = ""
  dictionary("FRefresh") = True
  Check "an entry", dictionary("ffuncname"), chinese
  Check "the entries", dictionary.Count, 7
  Check "an entry's key", dictionary.Name(1), "FSubFuncID"
  Check "an entry that there is not", dictionary.GetValue("FNothing", "none"), "none"
  For Each key In dictionary
    keys = keys & key & " "
  Next
  Check "the keys in order", keys, "FSubFuncID FFuncName FFuncName_Cht FFuncName_En FClassName FClassParam FRefresh "
  Set list = CreateObject("NorvStandalone.Vector")
  list.Add dictionary
  Check "a list's items", list.Count, 1
  Check "a list's item", list(1)("FFuncName"), chinese
  ignored = list(2)
  CheckError "an item that there is not", 9, "", ""
  Check "a collection's items", CreateObject("NorvStandalone.Collection").Count, 0

  Set dataFlow = CreateObject("NorvStandalone.DataFlow")
  application.BeginCall 2
  context.OpenDataSource dsn, ignored
  dataFlow.RefreshSubFunc context.CallText, CInt(7), list, True, True
  CheckError "the menu", 0, "", ""
  Check "the menu kept", application.EndCall, True
  Check "the menu's entry", _
    connection.Execute("Select FFuncName From t_LocalSubFunc Where FSystem = 7")(0).Value, chinese
  dataFlow.RefreshSubFunc "", CInt(7), Nothing, True, True
  CheckError "no list", 424, "", ""
  dataFlow.RefreshSubFunc "", CInt(7)
  CheckError "arguments too few", 449, "", ""
  dataFlow.RefreshSubFunc "", "x", list, True, True
  CheckError "an argument of the wrong type", 13, "", ""
End Sub
Components

WScript.Echo checks & " checks, " & failures & " failed"
WScript.Quit failures
