# not run: there is no Python for Windows where this was made; its syntax is checked
"""Opens a document in the control and hears its events: open_document.py DOCUMENT FOLDER

FOLDER takes the control's own files. Needs the package pywin32, and the control for Python's own architecture.
"""

import os
import sys

import pythoncom
import win32com.client


class Events:
    """The names of the methods are those of the events, with On in front."""

    def OnNewPageCreated(self, path, page, pages):
        print(f"page {page} of {pages}: {path}")

    def OnPageChanged(self, page):
        print(f"page {page} is shown")

    def OnErrorOccured(self, number, message):
        print(f"error {number}: {message}")


def main():
    if len(sys.argv) != 3:
        sys.exit("say open_document.py DOCUMENT FOLDER")
    document, folder = (os.path.abspath(path) for path in sys.argv[1:])
    try:
        editor = win32com.client.DispatchWithEvents("KwEditor.KwEditorLayers", Events)
    except pythoncom.com_error as error:
        sys.exit(f"the control cannot be created ({error.strerror}): run samples/script/check-installation.vbs")
    # Before anything else, and with a backslash at its end.
    editor.AppDir = os.path.join(folder, "")
    editor.OpenFile(document)
    if not editor.IsEditable:
        sys.exit(f"there is no such picture: {document}")
    if not editor.Enabled:
        sys.exit(f"the document was not opened: see FunctionsInExecution.txt in {folder}")


if __name__ == "__main__":
    main()
