#include "tests/activex/MonkeyHand.h"

#include <commctrl.h>
#include <ole2.h>

#include <fstream>
#include <iterator>

#include "tests/activex/GivenPage.h"
#include "tests/activex/PageFrame.h"
#include "tests/support/CommandCases.h"
#include "tests/support/TemporaryFolder.h"
#include "windows/properties/PropertyPageIds.h"

namespace kw::test {
namespace {

MonkeyHand* theHand = nullptr;

COLORREF ColourOfStripes(int /*x*/, int y) { return y % 20 < 10 ? RGB(240, 240, 240) : RGB(176, 176, 176); }

std::vector<ExpectedBox> BoxesOfTheControl() {
  std::vector<ExpectedBox> boxes;
  for (const CommandCase& row : CommandCases()) {
    for (const CommandBox& box : row.boxes) boxes.push_back(Perhaps(box.prompt.substr(0, box.prompt.find('\r'))));
    if (!row.dialog.empty()) boxes.push_back(Perhaps(row.dialog + ": "));
  }
  for (const char* const words :
       {"Zoom Error: Can not Zoom in more..", "Error: Can not Zoom out more..", "change the code below",
        "File Error: Invalid file format..", "File Open Error: File does not exist..",
        "Save changes..: Do you want to Save Current Page?",
        "Stamp: ", "Color: ", "Critical Error: There is not enough memory available to execute this task."}) {
    boxes.push_back(Perhaps(words));
  }
  // Those of absurd coordinates, a missing file, a cancelled dialog, a printer and a page that are not there.
  for (const int number : {6, 53, 91, 380, 482, 32755}) {
    boxes.push_back(Perhaps("Critical Error: Error Number : " + std::to_string(number)));
  }
  return boxes;
}

}  // namespace

void MonkeyHand::SetUp() {
  ASSERT_HRESULT_SUCCEEDED(OleInitialize(nullptr));
  ControlTest::SetUp();
  documents = {scratch.WriteBitmap(L"page.bmp", 500, 400, &ColourOfStripes),
               scratch.WriteTiff(L"pages.tif", PagesOfTheLongest), scratch.File(L"missing.tif"),
               scratch.File(L"bad.tif")};
  std::ofstream(std::filesystem::path(documents.back()), std::ios::binary) << "II*";
  for (ExpectedBox& box : BoxesOfTheControl()) expectedBoxes.Add(std::move(box));
  container.place = {0, 0, 900, 640};
  container.clip = {0, 0, 1200, 900};
  container.Take(control.Get());
  ASSERT_HRESULT_SUCCEEDED(container.DoVerb(OLEIVERB_UIACTIVATE));
  editor = container.ControlWindow();
  ASSERT_NE(editor, nullptr);
  connection = std::make_unique<Connection>(control.Get(), DIID___KwEditorLayers, &sink);
  sink.onEvent = [this](DISPID, VARIANT* /*arguments*/, UINT /*count*/) { OnEvent(sink.events.back()); };
  theHand = this;
  constexpr UINT Soon = 10;
  closer = SetTimer(nullptr, 0, Soon, &OnTick);
  control->OpenFile(Text(documents[0]));
}

void MonkeyHand::TearDown() {
  KillTimer(nullptr, closer);
  theHand = nullptr;
  sink.onEvent = {};
  connection.reset();
  container.LetGo();
  ControlTest::TearDown();
  OleUninitialize();
}

void MonkeyHand::Begin(int seed, int event) {
  std::seed_seq numbers{seed, event};
  random.seed(numbers);
  sink.events.clear();
  container.calls.clear();
}

void MonkeyHand::Tidy(int event) {
  if (event % 20 == 0) {
    control->put_Enabled(VARIANT_TRUE);
    control->put_IsEditable(VARIANT_TRUE);
  }
  constexpr int ATraceThatGrewLong = 500;
  if (event % ATraceThatGrewLong == 0) DeleteFileW(scratch.File(L"FunctionsInExecution.txt").c_str());
}

void MonkeyHand::Drain() {
  constexpr int Most = 2000;
  MSG message = {};
  for (int i = 0; i < Most && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE; ++i) {
    if (message.message != WM_TIMER) DispatchMessageW(&message);
  }
}

void MonkeyHand::DoAnything() {
  if (IsOneIn(12))
    ActAsHost();
  else
    UseMouseOrKeys();
}

void MonkeyHand::UseMouseOrKeys() {
  const std::vector<HWND> windows = VisibleWindows(editor);
  if (windows.empty()) return;
  const HWND canvas = CanvasOf(editor);
  HWND target = OneOf(windows);
  if (canvas != nullptr && !IsOneIn(4)) target = canvas;
  if (IsWindowEnabled(target) == FALSE) return;
  RECT client = {};
  GetClientRect(target, &client);
  const LPARAM at = MAKELPARAM(Below(client.right + 6) - 3, Below(client.bottom + 6) - 3);
  switch (Below(13)) {
    case 0:
    case 1:
      PostMessageW(target, WM_LBUTTONDOWN, MK_LBUTTON, at);
      break;
    case 2:
      PostMessageW(target, WM_RBUTTONDOWN, MK_RBUTTON, at);
      PostMessageW(target, WM_RBUTTONUP, 0, at);
      break;
    case 3:
    case 4:
      PostMessageW(target, WM_LBUTTONUP, 0, at);
      break;
    case 5: {
      const WPARAM characters[] = {27, 2, 6, 13, 'a', 'B', ' ', 3, 22, 26};
      PostMessageW(target, WM_CHAR, OneOf(characters), 1);
      break;
    }
    case 6: {
      const WPARAM keys[] = {VK_DELETE, VK_ESCAPE, VK_LEFT, VK_DOWN, VK_TAB, VK_RETURN, VK_PRIOR};
      const WPARAM key = OneOf(keys);
      PostMessageW(target, WM_KEYDOWN, key, 1);
      PostMessageW(target, WM_KEYUP, key, 1);
      break;
    }
    case 7:
      if (IsOneIn(10)) SetFocus(target);
      break;
    case 8:
      PostMessageW(target, WM_LBUTTONDBLCLK, MK_LBUTTON, at);
      break;
    default:
      PostMessageW(target, WM_MOUSEMOVE, IsOneIn(2) ? MK_LBUTTON : 0, at);
      break;
  }
}

void MonkeyHand::ActAsHost() {
  switch (Below(12)) {
    case 0:
      Open();
      break;
    case 1:
    case 2:
      TurnPage();
      break;
    case 3:
      container.DoVerb(1 + Below(9));
      break;
    case 4:
    case 5:
      LetProperty();
      break;
    case 6:
      TakeData();
      break;
    case 7:
      if (depth == 0) ShowPropertyPage();
      break;
    case 8:
      Resize();
      break;
    case 9:
      if (depth == 0) Design();
      break;
    case 10:
      Persist();
      break;
    default: {
      const std::vector<HWND> windows = VisibleWindows(editor);
      if (!windows.empty()) PartsOf(AccessibleOf(OneOf(windows)));
      break;
    }
  }
}

void MonkeyHand::LetProperty() {
  const VARIANT_BOOL value = IsOneIn(2) ? VARIANT_TRUE : VARIANT_FALSE;
  switch (Below(9)) {
    case 0:
      control->put_Enabled(value);
      break;
    case 1:
      control->put_IsEditable(value);
      break;
    case 2:
      control->put_IsToolboxVisible(value);
      break;
    case 3:
      control->put_IsToShowBackImage(value);
      break;
    case 4:
      control->put_IsOpenButtonVisible(value);
      break;
    case 5:
      control->put_IsToAllowChooseColor(value);
      break;
    case 6:
      control->put_BGImage(Text(OneOf(documents)));
      break;
    case 7:
      control->put_SignatureFilePath(Text(OneOf(documents)));
      break;
    default:
      control->SavePage();
      break;
  }
}

void MonkeyHand::TurnPage() {
  const std::vector<HWND> spinners = ChildWindows(editor, UPDOWN_CLASSW);
  if (spinners.empty() || IsWindowEnabled(spinners.front()) == FALSE) return;
  NMUPDOWN step = {};
  step.hdr = {.hwndFrom = spinners.front(),
              .idFrom = static_cast<UINT_PTR>(GetDlgCtrlID(spinners.front())),
              .code = static_cast<UINT>(UDN_DELTAPOS)};
  step.iDelta = Below(7) - 3;
  SendMessageW(GetParent(spinners.front()), WM_NOTIFY, step.hdr.idFrom, reinterpret_cast<LPARAM>(&step));
}

void MonkeyHand::TakeData() {
  const auto data = As<IDataObject>();
  FORMATETC dib = FormatOf(CF_DIB, TYMED_HGLOBAL);
  Given given;
  data->GetData(&dib, &given);
  QuietAdviseSink quiet;
  DWORD advice = 0;
  if (SUCCEEDED(data->DAdvise(&dib, 0, &quiet, &advice))) data->DUnadvise(advice);
}

void MonkeyHand::ShowPropertyPage() {
  PageFrame frame;
  frame.Open({control.Get()});
  if (IsOneIn(2)) frame.Click(PAGE_OPEN_BUTTON);
  frame.page->Apply();
  frame.Close();
}

void MonkeyHand::Resize() {
  const RECT place = {0, 0, 200 + Below(900), 150 + Below(700)};
  container.As<IOleInPlaceObject>()->SetObjectRects(&place, &container.clip);
}

void MonkeyHand::Design() {
  container.SetUserMode(false);
  control->put_IsToolboxVisible(IsOneIn(2) ? VARIANT_TRUE : VARIANT_FALSE);
  Resize();
  Drain();
  container.SetUserMode(true);
}

void MonkeyHand::Persist() {
  ComPtr<IStream> stream;
  if (FAILED(CreateStreamOnHGlobal(nullptr, TRUE, &stream))) return;
  EXPECT_EQ(As<IPersistStreamInit>()->Save(stream.Get(), FALSE), S_OK);
}

// A host that calls the control out of its event.
void MonkeyHand::OnEvent(const std::string& told) {
  if (told.starts_with("PageChanged(")) lastPage = std::stoi(told.substr(told.find('(') + 1));
  constexpr int Deepest = 2;
  if (depth >= Deepest || !IsOneIn(20)) return;
  ++depth;
  ActAsHost();
  --depth;
}

// Most message boxes are answered at once, so that the hand gets to more of the rest.
int WINAPI MonkeyHand::ShowBox(HWND owner, LPCWSTR text, LPCWSTR title, UINT type) {
  const auto narrow = [](const wchar_t* wide) {
    const std::wstring whole = wide == nullptr ? L"" : wide;
    return std::string(whole.begin(), whole.end());
  };
  if (theHand == nullptr || theHand->IsOneIn(10)) return MessageBoxW(owner, text, title, type);
  theHand->expectedBoxes.Came(narrow(title) + ": " + narrow(text));
  constexpr int answers[] = {IDOK, IDCANCEL, IDYES, IDNO};
  return theHand->OneOf(answers);
}

void CALLBACK MonkeyHand::OnTick(HWND /*window*/, UINT /*message*/, UINT_PTR /*id*/, DWORD /*time*/) {
  if (theHand != nullptr) theHand->CloseWhatIsModal();
}

// A menu; a scroll bar or a slider that waits for the release of the mouse in a loop of its own; a box or a dialog, by
// its OK or otherwise.
void MonkeyHand::CloseWhatIsModal() {
  EndMenu();
  const HWND captured = GetCapture();
  wchar_t name[64] = {};
  if (captured != nullptr) GetClassNameW(captured, static_cast<wchar_t*>(name), 64);
  const std::wstring className = static_cast<const wchar_t*>(name);
  if (className == WC_SCROLLBARW || className == TRACKBAR_CLASSW) PostMessageW(captured, WM_LBUTTONUP, 0, 0);
  const HWND box = BoxOf(GetCurrentThreadId());
  if (box == nullptr) {
    closed = nullptr;
    return;
  }
  if (box != closed) {
    expectedBoxes.Came(WordsOf(box));
    ++closings;
  }
  closed = box;
  AnswerBox(box, closings % 3 == 0);
  PostMessageW(box, WM_COMMAND, IDNO, 0);
  PostMessageW(box, WM_CLOSE, 0, 0);
}

}  // namespace kw::test
