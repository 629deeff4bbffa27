' run: cscript //nologo check-installation.vbs [VERSION]
' Looks at the installation of the control for programs of the script host's own architecture, and names the mend of what
' is wrong. Run C:\Windows\SysWOW64\cscript.exe to look at the installation for 32-bit programs. VERSION is the one that a
' program needs, such as 1.0.0. Ends with 0 if all is well, else with 1.
Option Explicit
Const ClassId = "{68034BF5-A1E1-413F-8FB1-FA19204BC7A4}"
Const ProgId = "KwEditor.KwEditorLayers"
Dim shell, files, path, bits, other, version, editor, number, text, folder, former
Set shell = CreateObject("WScript.Shell")
Set files = CreateObject("Scripting.FileSystemObject")

' What the registry says; empty if the key is missing.
Function Registered(key)
  Registered = ""
  On Error Resume Next
  Registered = shell.RegRead("HKCR\" & key)
End Function

Sub Wrong(what, mend)
  WScript.Echo "Wrong: " & what
  WScript.Echo "Mend:  " & mend
  WScript.Quit 1
End Sub

bits = "x64"
other = Registered("Wow6432Node\CLSID\" & ClassId & "\InprocServer32\")
If LCase(shell.ExpandEnvironmentStrings("%PROCESSOR_ARCHITECTURE%")) = "x86" Then bits = "x86" : other = ""

path = Registered("CLSID\" & ClassId & "\InprocServer32\")
If path = "" Then
  If other <> "" Then
    Wrong "the control is registered for 32-bit programs only.", "install KwEditor-<version>-x64.msi, too."
  End If
  Wrong "the control is not registered for " & bits & " programs.", _
    "install KwEditor-<version>-" & bits & ".msi, or run regsvr32 KwEditor.ocx as an administrator."
End If
If Not files.FileExists(path) Then
  Wrong "the registered file is missing: " & path, _
    "install KwEditor-<version>-" & bits & ".msi again, or run regsvr32 with the place where KwEditor.ocx is now."
End If
If Registered(ProgId & "\CLSID\") <> ClassId Then
  Wrong "the name " & ProgId & " is not registered, or belongs to another class.", _
    "run regsvr32 """ & path & """ as an administrator."
End If
version = "unknown"
On Error Resume Next
version = files.GetFileVersion(path)
On Error GoTo 0
If WScript.Arguments.Count > 0 Then
  If Left(version, Len(WScript.Arguments(0))) <> WScript.Arguments(0) Then
    Wrong "version " & version & " is registered, and " & WScript.Arguments(0) & " is needed: " & path, _
      "remove the other version (Settings, Apps), then install KwEditor-" & WScript.Arguments(0) & "-" & bits & ".msi."
  End If
End If

' A new control writes its trace to the current folder: one of its own, which goes again.
former = shell.CurrentDirectory
folder = files.GetSpecialFolder(2) & "\" & files.GetTempName()
files.CreateFolder folder
shell.CurrentDirectory = folder
On Error Resume Next
Set editor = CreateObject(ProgId)
number = Err.Number
text = Err.Description
Set editor = Nothing
shell.CurrentDirectory = former
files.DeleteFolder folder
On Error GoTo 0
If number <> 0 Then
  Wrong "the control cannot be loaded (error " & number & " " & text & "): " & path, _
    "install KwEditor-<version>-" & bits & ".msi again: the file is damaged, or it is that of the other architecture."
End If
WScript.Echo "The installation for " & bits & " programs is in order: version " & version & ", " & path
WScript.Quit 0
