// compiled: mcs -target:winexe -platform:x64 -r:System.Windows.Forms.dll -r:System.Drawing.dll EditorForm.cs
// A form with the control on it, its events, and its errors. Build it for x64 or x86, whichever control is installed:
// "AnyCPU" meets the one that is missing. No import library is needed: the control is used by name, the events by number.
using System;
using System.IO;
using System.Reflection;
using System.Runtime.InteropServices;
using System.Windows.Forms;

// The events. Every argument comes by reference.
[ComImport, Guid("A549A3B5-B8DE-4FAD-926A-76A603117A5C"), InterfaceType(ComInterfaceType.InterfaceIsIDispatch)]
public interface IEditorEvents
{
    [DispId(1)] void ErrorOccured(ref short errorNo, ref string errorMsg);
    [DispId(4)] void NewPageCreated(ref string filePath, ref short currentPageNo, ref short totalPages);
    [DispId(5)] void PageChanged(ref short pageNo);
}

public class AxEditor : AxHost, IEditorEvents
{
    private ConnectionPointCookie cookie;

    public AxEditor() : base("68034bf5-a1e1-413f-8fb1-fa19204bc7a4") { }

    public event Action<int> PageShown;
    public event Action<int, string> Failed;

    public string AppDir { set { Set("AppDir", value); } }
    public bool IsToolboxVisible { set { Set("IsToolboxVisible", value); } }
    public bool IsEnabled { get { return (bool)Get("Enabled"); } set { Set("Enabled", value); } }

    public void OpenFile(string path) { Call(BindingFlags.InvokeMethod, "OpenFile", path); }

    protected override void CreateSink() { cookie = new ConnectionPointCookie(GetOcx(), this, typeof(IEditorEvents)); }

    protected override void DetachSink()
    {
        if (cookie != null) cookie.Disconnect();
        cookie = null;
    }

    void IEditorEvents.ErrorOccured(ref short errorNo, ref string errorMsg)
    {
        int number = errorNo;
        string message = errorMsg;
        // Later: an event must not change the control whose call raised it.
        BeginInvoke((Action)delegate { if (Failed != null) Failed(number, message); });
    }

    void IEditorEvents.NewPageCreated(ref string filePath, ref short currentPageNo, ref short totalPages) { }

    void IEditorEvents.PageChanged(ref short pageNo) { if (PageShown != null) PageShown(pageNo); }

    private object Get(string name) { return Call(BindingFlags.GetProperty, name); }
    private void Set(string name, object value) { Call(BindingFlags.SetProperty, name, value); }

    private object Call(BindingFlags kind, string name, params object[] values)
    {
        object ocx = GetOcx();
        return ocx.GetType().InvokeMember(name, kind, null, ocx, values);
    }
}

public class EditorForm : Form
{
    private readonly AxEditor editor = new AxEditor();

    private EditorForm(string document)
    {
        Text = "KwEditor";
        Width = 1000;
        Height = 750;
        editor.Dock = DockStyle.Fill;
        editor.PageShown += delegate(int page) { Text = "KwEditor, page " + page; };
        editor.Failed += delegate { editor.IsEnabled = true; };
        Controls.Add(editor);
        string folder = Path.Combine(Environment.GetFolderPath(Environment.SpecialFolder.LocalApplicationData), "KwSample");
        Directory.CreateDirectory(folder);
        Load += delegate
        {
            // Before anything else, and with a backslash at its end.
            editor.AppDir = folder + "\\";
            editor.IsToolboxVisible = true;
            if (document != null) editor.OpenFile(document);
        };
    }

    [STAThread]
    public static void Main(string[] words)
    {
        // The control writes its trace to the current folder until AppDir is set.
        Directory.SetCurrentDirectory(Path.GetTempPath());
        try
        {
            Application.Run(new EditorForm(words.Length > 0 ? words[0] : null));
        }
        catch (COMException error)
        {
            MessageBox.Show("The control cannot be used (" + error.Message + "). Run samples\\script\\check-installation.vbs" +
                            " with the script host of this program's architecture: it says what is wrong.", "KwEditor");
        }
    }
}
