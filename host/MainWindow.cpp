#include "MainWindow.h"

#include <commdlg.h>

#include <algorithm>
#include <cwchar>
#include <utility>

#include "OpenFilter.h"
#include "Resource.h"

namespace kw::host {
namespace {

constexpr wchar_t MainClassName[] = L"KwHost";
constexpr wchar_t Title[] = L"KwHost - Kw image annotation editor";
constexpr UINT RefreshMessage = WM_APP;

// Sizes at 96 dots per inch.
constexpr SIZE FirstSize = {1200, 820};
constexpr int EventsHeight = 132;
constexpr int LeastControlWidth = 320;

// A BSTR for the time of a call.
class Bstr {
public:
  explicit Bstr(const std::wstring& from) : text(SysAllocStringLen(from.data(), static_cast<UINT>(from.size()))) {}
  ~Bstr() { SysFreeString(text); }
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  BSTR Get() const { return text; }

private:
  BSTR text;
};

VARIANT_BOOL ToCom(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }

}  // namespace

MainWindow::MainWindow(HINSTANCE program) : instance(program) {
  WNDCLASSW windowClass = {};
  windowClass.lpfnWndProc = &Procedure;
  windowClass.hInstance = instance;
  windowClass.hIcon = LoadIconW(instance, MAKEINTRESOURCEW(APPLICATION_ICON));
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  windowClass.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
  windowClass.lpszMenuName = MAKEINTRESOURCEW(MAIN_MENU);
  windowClass.lpszClassName = MainClassName;
  RegisterClassW(&windowClass);
  CreateWindowExW(0, MainClassName, Title, WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT, 0, CW_USEDEFAULT, 0,
                  nullptr, nullptr, instance, this);
  events = std::make_unique<EventList>(window);
  control = std::make_unique<EditorControl>(*this);
  panel = std::make_unique<PropertyPanel>(
      window, control->Members(), control->Properties(),
      PropertyPanel::Callbacks{[this](const std::wstring& error) { events->Add(L"Refused - " + error); },
                               [this] { control->DeactivateUi(); }, [this](bool) { control->ActivateUi(); }});
  AddVerbMenu();
  Rescale();
  RECT screen = {};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &screen, 0);
  SetWindowPos(window, nullptr, 0, 0, std::min<int>(Scale(FirstSize.cx), screen.right - screen.left),
               std::min<int>(Scale(FirstSize.cy), screen.bottom - screen.top), SWP_NOMOVE | SWP_NOZORDER);
}

MainWindow::~MainWindow() {
  if (window != nullptr) DestroyWindow(window);
  DeleteObject(font);
}

void MainWindow::Start(const CommandLine& line, int show) {
  ShowWindow(window, show);
  UpdateWindow(window);
  _KwEditorLayers& editor = control->Members();
  Expect(editor.put_AppDir(Bstr(line.appDir).Get()), L"Setting AppDir");
  Expect(editor.put_IsOpenButtonVisible(VARIANT_TRUE), L"Setting IsOpenButtonVisible");
  Expect(editor.put_IsEditable(ToCom(line.isEditable)), L"Setting IsEditable");
  Expect(editor.put_IsToolboxVisible(VARIANT_TRUE), L"Setting IsToolboxVisible");
  if (!line.signature.empty())
    Expect(editor.put_SignatureFilePath(Bstr(line.signature).Get()), L"Setting SignatureFilePath");
  if (!line.file.empty()) Open(line.file);
  if (control == nullptr) return;  // closed meanwhile
  if (!line.background.empty()) {  // after opening, which removes the background
    Expect(editor.put_BGImage(Bstr(line.background).Get()), L"Setting BGImage");
    Expect(editor.put_IsToShowBackImage(VARIANT_TRUE), L"Setting IsToShowBackImage");
  }
  PropertyChanged();
}

int MainWindow::Run() {
  MSG message = {};
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (control != nullptr && (control->TranslateAccelerator(message) || panel->TranslateMessage(message))) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return static_cast<int>(message.wParam);
}

RECT MainWindow::ControlArea() const {
  RECT area = {};
  GetClientRect(window, &area);
  area.right = std::max(area.left, area.right - panelSize.cx);
  area.bottom = std::max<LONG>(area.top, area.bottom - Scale(EventsHeight));
  return area;
}

void MainWindow::ControlIsModal(bool isModal) { modalDepth += isModal ? 1 : -1; }

void MainWindow::LeaveControl(bool backwards) { panel->Focus(backwards); }

// One refresh answers all changes that come together.
void MainWindow::PropertyChanged() {
  MSG waiting = {};
  if (PeekMessageW(&waiting, window, RefreshMessage, RefreshMessage, PM_NOREMOVE) == FALSE)
    PostMessageW(window, RefreshMessage, 0, 0);
}

void MainWindow::Rescale() {
  dpi = static_cast<int>(GetDpiForWindow(window));
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, static_cast<UINT>(dpi));
  const HFONT before = font;
  font = CreateFontIndirectW(&metrics.lfMessageFont);
  panelSize = panel->Arrange(font, dpi);
  Arrange();
  DeleteObject(before);
}

void MainWindow::Arrange() {
  RECT client = {};
  GetClientRect(window, &client);
  const RECT area = ControlArea();
  MoveWindow(panel->Window(), area.right, 0, panelSize.cx, area.bottom, TRUE);
  events->Arrange({0, area.bottom, client.right, client.bottom}, font, dpi);
  control->Move();
}

void MainWindow::ChooseFile() {
  std::wstring path(32768, L'\0');
  OPENFILENAMEW dialog = {};
  dialog.lStructSize = sizeof dialog;
  dialog.hwndOwner = window;
  dialog.lpstrFilter = KW_OPEN_FILTER;
  dialog.lpstrFile = path.data();
  dialog.nMaxFile = static_cast<DWORD>(path.size());
  dialog.Flags = OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
  if (GetOpenFileNameW(&dialog) == FALSE) return;
  path.resize(std::wcslen(path.c_str()));
  Open(path);
}

void MainWindow::Open(const std::wstring& path) {
  Expect(control->Members().OpenFile(Bstr(path).Get()), L"Opening the file");
}

void MainWindow::Expect(HRESULT result, const wchar_t* action) {
  if (FAILED(result)) events->Add(std::wstring(action) + L" failed - " + ErrorText(result));
}

void MainWindow::OnActivate(bool isActive) {
  if (!isActive) {
    lastFocus = GetFocus();
  } else if (lastFocus != nullptr && IsChild(window, lastFocus) != FALSE) {
    SetFocus(lastFocus);
  } else if (control != nullptr) {
    control->ActivateUi();
  }
}

void MainWindow::OnCommand(int command) {
  if (command == COMMAND_OPEN) ChooseFile();
  if (command == COMMAND_EXIT) OnClose();
  if (command > COMMAND_VERB) RunVerb(command - COMMAND_VERB);
}

void MainWindow::AddVerbMenu() const {
  const HMENU menu = CreatePopupMenu();
  for (const EditorControl::Verb& verb : control->Verbs())
    AppendMenuW(menu, verb.menuFlags, COMMAND_VERB + static_cast<UINT_PTR>(verb.number), verb.menuText.c_str());
  AppendMenuW(GetMenu(window), MF_POPUP, reinterpret_cast<UINT_PTR>(menu), L"&Image");
  DrawMenuBar(window);
}

void MainWindow::RunVerb(LONG number) {
  const HRESULT result = control->RunVerb(number);
  if (result == OLEOBJ_S_CANNOT_DOVERB_NOW) events->Add(L"Refused - the control cannot run this command now");
  Expect(result, L"Running the command");
}

// A box of the control has to be answered first.
void MainWindow::OnClose() {
  if (modalDepth > 0) {
    MessageBeep(MB_OK);
  } else {
    DestroyWindow(window);
  }
}

LRESULT MainWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_ACTIVATE:
      OnActivate(LOWORD(wParam) != WA_INACTIVE);
      return 0;
    case WM_CLOSE:
      OnClose();
      return 0;
    case WM_COMMAND:
      OnCommand(LOWORD(wParam));
      return 0;
    case WM_DESTROY:
      panel.reset();
      control.reset();
      PostQuitMessage(0);
      return 0;
    case WM_NCDESTROY:
      SetWindowLongPtrW(window, GWLP_USERDATA, 0);
      return DefWindowProcW(std::exchange(window, nullptr), message, wParam, lParam);
    case WM_DPICHANGED: {
      const RECT& suggested = *reinterpret_cast<const RECT*>(lParam);
      SetWindowPos(window, nullptr, suggested.left, suggested.top, suggested.right - suggested.left,
                   suggested.bottom - suggested.top, SWP_NOZORDER | SWP_NOACTIVATE);
      Rescale();
      return 0;
    }
    case WM_GETMINMAXINFO: {
      RECT least = {0, 0, panelSize.cx + Scale(LeastControlWidth), panelSize.cy + Scale(EventsHeight)};
      AdjustWindowRectExForDpi(&least, WS_OVERLAPPEDWINDOW, TRUE, 0, static_cast<UINT>(dpi));
      reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {least.right - least.left, least.bottom - least.top};
      return 0;
    }
    case WM_SIZE:
      if (panel != nullptr && wParam != SIZE_MINIMIZED) Arrange();
      return 0;
    case RefreshMessage:
      if (panel != nullptr) panel->Refresh();
      return 0;
    default:
      return DefWindowProcW(window, message, wParam, lParam);
  }
}

LRESULT CALLBACK MainWindow::Procedure(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    auto* const created = static_cast<MainWindow*>(reinterpret_cast<const CREATESTRUCTW*>(lParam)->lpCreateParams);
    created->window = handle;
    SetWindowLongPtrW(handle, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(created));
  }
  auto* const self = reinterpret_cast<MainWindow*>(GetWindowLongPtrW(handle, GWLP_USERDATA));
  return self == nullptr ? DefWindowProcW(handle, message, wParam, lParam) : self->OnMessage(message, wParam, lParam);
}

}  // namespace kw::host
