// run: cscript //nologo open.js DOCUMENT FOLDER
// Opens a document in the control without a window. FOLDER takes the control's own files.
var words = WScript.Arguments;
if (words.length !== 2) {
  WScript.Echo("Say: cscript //nologo open.js DOCUMENT FOLDER");
  WScript.Quit(1);
}
var editor;
try {
  editor = new ActiveXObject("KwEditor.KwEditorLayers");
} catch (error) {
  WScript.Echo("The control cannot be created. Run check-installation.vbs: it says what is wrong.");
  WScript.Quit(1);
}
// Before anything else, and with a backslash at its end.
editor.AppDir = words(1).replace(/\\?$/, "\\");
editor.OpenFile(words(0));
if (!editor.IsEditable) {
  WScript.Echo("There is no such picture: " + words(0));
  WScript.Quit(1);
}
if (!editor.Enabled) {
  WScript.Echo("The document was not opened. FunctionsInExecution.txt in " + editor.AppDir + " has the reason.");
  WScript.Quit(1);
}
WScript.Echo("Opened " + words(0));
editor = null;
WScript.Quit(42);
