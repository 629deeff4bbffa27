' run: cscript //nologo open.vbs DOCUMENT FOLDER
' Opens a document in the control without a window, and tells of an error what to do about it.
' FOLDER takes the control's own files. VBScript hears no events of an object that CreateObject made.
Option Explicit
Const NotCreated = 429
Dim arguments, editor, folder
Set arguments = WScript.Arguments
If arguments.Count <> 2 Then
  WScript.Echo "Say: cscript //nologo open.vbs DOCUMENT FOLDER"
  WScript.Quit 1
End If

On Error Resume Next
Set editor = CreateObject("KwEditor.KwEditorLayers")
If Err.Number = NotCreated Then
  WScript.Echo "The control cannot be created. Run check-installation.vbs: it says what is wrong."
  WScript.Quit 1
End If
On Error GoTo 0

' Before anything else: until AppDir is set, the trace is written to the current folder.
folder = arguments(1)
If Right(folder, 1) <> "\" Then folder = folder & "\"
editor.AppDir = folder

' The notice that comes with every document waits until it is confirmed.
editor.OpenFile arguments(0)
' A file that is missing or no picture makes it read-only; any other error is shown in a box and disables it.
If Not editor.IsEditable Then
  WScript.Echo "There is no such picture: " & arguments(0)
  WScript.Quit 1
End If
If Not editor.Enabled Then
  WScript.Echo "The document was not opened. FunctionsInExecution.txt in " & folder & " has the reason."
  WScript.Quit 1
End If
WScript.Echo "Opened " & arguments(0)
editor.MaxUndoLevels = 20
Set editor = Nothing
WScript.Quit 42
