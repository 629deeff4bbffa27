#include "tests/activex/CommandFixture.h"

#include <commctrl.h>

#include <algorithm>
#include <filesystem>

#include "picture/PictureDocument.h"
#include "tests/support/CommandScene.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

std::string Narrow(const std::wstring& text) { return {text.begin(), text.end()}; }

// So that there is something to paste.
void FillClipboard() {
  ASSERT_TRUE(OpenClipboard(nullptr) != FALSE);
  EmptyClipboard();
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, sizeof(BITMAPINFOHEADER) + 4);
  auto* const header = static_cast<BITMAPINFOHEADER*>(GlobalLock(memory));
  *header = {sizeof(BITMAPINFOHEADER), 1, 1, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
  GlobalUnlock(memory);
  SetClipboardData(CF_DIB, memory);
  CloseClipboard();
}

}  // namespace

std::string ShownAs(const CommandBox& box) {
  std::string prompt;
  for (const char c : box.prompt) {
    if (c != '\r') prompt += c == '\n' ? '/' : c;
  }
  return (box.title.empty() ? "test_activex" : box.title) + ": " + prompt;
}

std::string TitleOf(HWND window) {
  wchar_t text[200] = {};
  GetWindowTextW(window, text, 200);
  return Narrow(text);
}

void CommandTest::SetUp() {
  ControlTest::SetUp();
  FillClipboard();
  container.place = {0, 0, 900, 640};
  container.clip = {0, 0, 1200, 900};
  container.Take(control.Get());
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  control->put_IsOpenButtonVisible(VARIANT_TRUE);
  WriteSceneDocument(File("D.tif"));
  SavePicture(Bitmap(12, 8, 24), "back.bmp");
  SavePicture(Bitmap(30, 40, 24), "sign.bmp");
  {
    const BoxAnswerer user({Once(ListOfPendingWork)});
    control->OpenFile(Text(scratch.File(L"D.tif")));
  }
  control->put_BGImage(Text(scratch.File(L"back.bmp")));
  control->put_SignatureFilePath(Text(scratch.File(L"sign.bmp")));
  if (waitsForTools) {
    ASSERT_TRUE(PumpUntil([&] { return TracedTimes(scratch.Path(), "tmrDefaultToolsSelection_Timer") != 0; }));
  }
  control->put_IsEditable(VARIANT_TRUE);
  control->put_IsToAllowChooseColor(VARIANT_TRUE);
  control->put_IsFileChanged(VARIANT_TRUE);
  buttons = ToolBarButtons(container.ControlWindow());
  Button("Next Page").Click();
  SetScene();
}
void CommandTest::TearDown() {
  if (container.As<IOleObject>() != nullptr) container.LetGo();
  ControlTest::TearDown();
}

std::string CommandTest::File(const std::string& name) const { return Narrow(scratch.Path()) + name; }
void CommandTest::SavePicture(const Bitmap& picture, const std::string& name) const {
  PictureDocument engine;
  engine.Replace(picture);
  engine.Save(File(name));
}
Bitmap CommandTest::LoadPicture(const std::string& name) const {
  PictureDocument engine;
  EXPECT_TRUE(engine.Load(File(name))) << name;
  return engine.Current();
}

std::string CommandTest::ScratchBitmap() const {
  std::vector<std::string> found;
  for (const auto& entry : std::filesystem::directory_iterator(scratch.Path())) {
    const std::string name = entry.path().filename().string();
    if (name.starts_with("tmp") && name.ends_with(".bmp")) found.push_back(name);
  }
  EXPECT_EQ(found.size(), 1U);
  return found.empty() ? std::string() : found[0];
}

const ToolBarButton& CommandTest::Button(const std::string& toolTip) const {
  const auto found = buttons.find(toolTip);
  if (found != buttons.end()) return found->second;
  ADD_FAILURE() << "no button " << toolTip;
  static const ToolBarButton none;
  return none;
}

// Tools and page as the tests of the commands begin.
void CommandTest::SetScene() {
  Button("Rectangle").Click();
  Button("Fill Inside").Click();
  control->put_IsToolboxVisible(VARIANT_TRUE);
  control->put_IsToShowBackImage(VARIANT_FALSE);
  if (ComboText(true) == "150 %") Button("Zoom Out").Click();
  if (ComboText(true) == "90 %") Button("Zoom In").Click();
  // Page 2 as its file has it.
  if (ComboText(false) != "1") Button("Previous Page").Click();
  if (ComboText(false) == "1") Button("Next Page").Click();
}

// The text of the combo whose entries end in a percent sign, or of the one whose entries do not.
std::string CommandTest::ComboText(bool isZoom) const {
  for (const HWND combo : ChildWindows(container.ControlWindow(), WC_COMBOBOXW)) {
    std::string shown = Narrow(EntryOf(combo, SendMessageW(combo, CB_GETCURSEL, 0, 0)));
    if (shown.ends_with('%') == isZoom) return shown;
  }
  return {};
}

// The canvas is what lies in the largest of the windows that the control's own window holds.
HWND CommandTest::Canvas() const {
  HWND largest = nullptr;
  LONG most = 0;
  for (HWND child = GetWindow(container.ControlWindow(), GW_CHILD); child != nullptr;
       child = GetWindow(child, GW_HWNDNEXT)) {
    RECT client = {};
    GetClientRect(child, &client);
    if (client.right * client.bottom > most) largest = child;
    most = std::max(most, client.right * client.bottom);
  }
  return GetWindow(largest, GW_CHILD);
}

CommandTest::State CommandTest::Look() const {
  State state{{"page", ComboText(false)}, {"zoom", ComboText(true)}, {"pointer", PointerOver(Canvas())}};
  for (const CommandCase& row : CommandCases()) {
    if (row.bar.empty()) continue;
    const ToolBarButton& button = Button(row.toolTip);
    state[row.key] = button.IsEnabled() ? "on" : "off";
    if (row.bar == command_cases::Tools && button.IsPressed()) state["tool"] += row.key;
    if (row.bar == command_cases::Pattern && button.IsPressed()) state["pattern"] += row.key;
  }
  state["tool box"] = Button("Rectangle").IsShown() ? "shown" : "hidden";
  VARIANT_BOOL value = VARIANT_FALSE;
  control->get_IsToShowBackImage(&value);
  state["background"] = value == VARIANT_FALSE ? "hidden" : "shown";
  control->get_Enabled(&value);
  state["control"] = value == VARIANT_FALSE ? "off" : "on";
  return state;
}

void CommandTest::ForgetTrace() const { DeleteFileW(scratch.File(L"FunctionsInExecution.txt").c_str()); }
// Without what the system sends whenever it likes: paints and moves of the mouse.
CommandTest::Names CommandTest::Trace() const {
  Names lines;
  const std::string whole = ReadWhole(File("FunctionsInExecution.txt"));
  for (std::size_t start = 0; start < whole.size();) {
    const std::size_t end = whole.find("\r\n", start);
    const std::string line = whole.substr(start, end - start);
    start = end == std::string::npos ? whole.size() : end + 2;
    if (line != "UserControl_Paint" && line.find("MouseMove") == std::string::npos) lines.push_back(line);
  }
  const Names watch{"tmrWatchClipBoard_Timer", "Get IsEditable"};
  for (auto at = lines.begin(); (at = std::search(at, lines.end(), watch.begin(), watch.end())) != lines.end();) {
    at = lines.erase(at, at + static_cast<std::ptrdiff_t>(watch.size()));
  }
  return lines;
}

std::vector<ExpectedBox> CommandTest::BoxesOf(const std::string& toolTip) const {
  std::vector<ExpectedBox> boxes = furtherBoxes;
  for (const CommandCase& row : CommandCases()) {
    if (row.toolTip != toolTip) continue;
    for (const CommandBox& box : row.boxes) boxes.push_back(Perhaps(ShownAs(box)));
    if (!row.dialog.empty()) boxes.push_back(Perhaps(row.dialog + ": "));
  }
  return boxes;
}

// Clicks the button and answers what comes up; the boxes as they were shown.
CommandTest::Names CommandTest::Run(const std::string& toolTip, const std::function<void(HWND)>& beforeAnswer,
                                    Way way) {
  ForgetTrace();
  const BoxAnswerer user(BoxesOf(toolTip), [&](HWND box) {
    EXPECT_EQ(GetWindow(box, GW_OWNER), container.Window()) << "a box belongs to the host's window";
    EXPECT_EQ(IsWindowEnabled(container.Window()), FALSE) << "a box is modal";
    if (beforeAnswer) beforeAnswer(box);
  });
  (Button(toolTip).*way)();
  return user.Boxes();
}

}  // namespace kw::test
