#include "MainWindow.h"

#include <commdlg.h>

#include <algorithm>
#include <cwchar>
#include <filesystem>
#include <utility>

#include "AnnotatedPage.h"
#include "OpenFilter.h"
#include "Resource.h"

namespace kw::host {
namespace {

constexpr wchar_t MainClassName[] = L"KwHost";
constexpr wchar_t Title[] = L"KwHost - Kw image annotation editor";
constexpr UINT RefreshMessage = WM_APP;
constexpr UINT EnableMessage = WM_APP + 1;

// Sizes at 96 dots per inch.
constexpr SIZE FirstSize = {1200, 820};
constexpr int EventsHeight = 132;
constexpr int LeastControlWidth = 320;

VARIANT_BOOL ToCom(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }

}  // namespace

MainWindow::MainWindow(HINSTANCE program, const std::wstring& settings) : instance(program) {
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
  control = std::make_unique<EditorControl>(*this, settings);
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
  {
    const EditorControl::FrozenEvents quiet(*control);
    if (!line.appDir.empty()) Expect(editor.put_AppDir(_bstr_t(line.appDir.c_str())), L"Setting AppDir");
    if (!control->IsLoaded()) {
      Expect(editor.put_IsOpenButtonVisible(VARIANT_TRUE), L"Setting IsOpenButtonVisible");
      Expect(editor.put_IsToolboxVisible(VARIANT_TRUE), L"Setting IsToolboxVisible");
    }
    if (line.isEditable) Expect(editor.put_IsEditable(ToCom(*line.isEditable)), L"Setting IsEditable");
    if (!line.signature.empty())
      Expect(editor.put_SignatureFilePath(_bstr_t(line.signature.c_str())), L"Setting SignatureFilePath");
  }
  if (!line.file.empty()) Open(line.file);
  if (control == nullptr) return;  // closed meanwhile
  if (!line.background.empty()) {  // after opening, which removes the background
    Expect(editor.put_BGImage(_bstr_t(line.background.c_str())), L"Setting BGImage");
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
  document = std::filesystem::path(path).filename().wstring();
  control->SetHostNames(document);
  Expect(control->Members().OpenFile(_bstr_t(path.c_str())), L"Opening the file");
}

void MainWindow::Expect(HRESULT result, const wchar_t* action, REFIID interfaceId) {
  if (SUCCEEDED(result)) return;
  const std::wstring reason =
      control == nullptr ? ErrorText(result) : ErrorText(result, control->Members(), interfaceId);
  if (events != nullptr) events->Add(std::wstring(action) + L" failed - " + reason);
}

void MainWindow::SaveAnnotatedPage() {
  std::wstring path(32768, L'\0');
  OPENFILENAMEW dialog = {};
  dialog.lStructSize = sizeof dialog;
  dialog.hwndOwner = window;
  dialog.lpstrFilter = L"TIFF (*.tif)\0*.tif\0";
  dialog.lpstrDefExt = L"tif";
  dialog.lpstrFile = path.data();
  dialog.nMaxFile = static_cast<DWORD>(path.size());
  dialog.Flags = OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
  if (GetSaveFileNameW(&dialog) == FALSE || control == nullptr) return;
  path.resize(std::wcslen(path.c_str()));
  const HRESULT result = host::SaveAnnotatedPage(control->Members(), path);
  Expect(result, L"Saving the annotated page", IID_IDataObject);
  if (SUCCEEDED(result)) events->Add(L"Saved - " + path);
}

void MainWindow::CopyAnnotatedPage() {
  const HRESULT result = host::CopyAnnotatedPage(control->Members());
  Expect(result, L"Copying the annotated page", IID_IDataObject);
  if (SUCCEEDED(result)) events->Add(L"Copied - the annotated page is on the clipboard");
}

void MainWindow::EnableMenu(HMENU menu) const {
  const UINT state = control != nullptr && HasAnnotatedPage(control->Members()) ? MF_ENABLED : MF_GRAYED;
  for (const UINT command : {COMMAND_SAVE_PAGE, COMMAND_COPY_PAGE}) EnableMenuItem(menu, command, MF_BYCOMMAND | state);
}

// The control is disabled now. It is enabled when its procedure is over: until then each further error of the procedure
// would be reported, too. The list shows the message, which has lines of its own, in one line.
void MainWindow::ErrorOccured(SHORT /*number*/, std::wstring& message) {
  std::replace_if(
      message.begin(), message.end(), [](wchar_t c) { return c == L'\r' || c == L'\n'; }, L' ');
  PostMessageW(window, EnableMessage, 0, 0);
}

void MainWindow::EnableControl() {
  if (control == nullptr) return;
  Expect(control->Members().put_Enabled(VARIANT_TRUE), L"Enabling the control");
  events->Add(L"Enabled - the control can be used again after its error");
}

void MainWindow::PageChanged(SHORT page) {
  std::wstring title = Title;
  if (!document.empty()) title = document + (page > 0 ? L", page " + std::to_wstring(page) : L"") + L" - " + Title;
  SetWindowTextW(window, title.c_str());
}

void MainWindow::OnSystemChange(UINT message, WPARAM wParam, LPARAM lParam) {
  if (panel == nullptr) return;
  control->SystemChanged(message, wParam, lParam);
  Rescale();  // the font may be another one, too
  RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
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
  if (command == COMMAND_SAVE_PAGE) SaveAnnotatedPage();
  if (command == COMMAND_COPY_PAGE) CopyAnnotatedPage();
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
  Expect(result, L"Running the command", IID_IOleObject);
}

// A box of the control has to be answered first.
void MainWindow::OnClose() {
  if (modalDepth > 0) {
    MessageBeep(MB_OK);
    return;
  }
  const HRESULT saved = control->SaveIfDirty();
  if (FAILED(saved)) {
    const std::wstring question = L"The settings cannot be saved.\n" + ErrorText(saved) + L"\n\nEnd all the same?";
    if (MessageBoxW(window, question.c_str(), L"KwHost", MB_YESNO | MB_ICONWARNING) != IDYES) return;
  }
  DestroyWindow(window);
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
    case WM_INITMENUPOPUP:
      EnableMenu(reinterpret_cast<HMENU>(wParam));
      return 0;
    case WM_SYSCOLORCHANGE:
    case WM_SETTINGCHANGE:
    case WM_THEMECHANGED:
      OnSystemChange(message, wParam, lParam);
      return 0;
    case EnableMessage:
      EnableControl();
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
  if (self == nullptr) return DefWindowProcW(handle, message, wParam, lParam);
  try {
    return self->OnMessage(message, wParam, lParam);
  } catch (const _com_error& error) {  // no exception may leave a window procedure
    self->Expect(error.Error(), L"The command");
  } catch (const std::exception&) {
    self->Expect(E_OUTOFMEMORY, L"The command");
  }
  return 0;
}

}  // namespace kw::host
