#include "tests/containers/ContainerWalk.h"

#include <gtest/gtest.h>
#include <ole2.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/activex/EditorWindows.h"
#include "tests/data/TestData.h"
#include "tests/support/win32/BoxAnswerer.h"
#include "tests/support/win32/ToolBarButtons.h"

namespace kw::test {
namespace {

constexpr int Pages = 5;  // of tests/data/letter.tif

void SendButton(DWORD flags) {
  INPUT input = {};
  input.type = INPUT_MOUSE;
  input.mi.dwFlags = flags;
  EXPECT_EQ(SendInput(1, &input, sizeof input), 1U) << GetLastError();
}

POINT OnScreen(HWND window, POINT point) {
  ClientToScreen(window, &point);
  return point;
}

// A bitmap in memory that an object is drawn on.
class Paper {
public:
  static constexpr int Width = 500;
  static constexpr int Height = 400;

  Paper() : context(CreateCompatibleDC(nullptr)) {
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, Width, -Height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    pixels = static_cast<const COLORREF*>(bits);
    SelectObject(context, bitmap);
  }
  Paper(const Paper&) = delete;
  Paper& operator=(const Paper&) = delete;
  ~Paper() {
    DeleteDC(context);
    DeleteObject(bitmap);
  }

  HDC Context() const { return context; }
  // How many colours the object left there.
  std::size_t Colours() const {
    GdiFlush();
    std::vector<COLORREF> all(pixels, pixels + static_cast<std::ptrdiff_t>(Width) * Height);
    std::ranges::sort(all);
    return static_cast<std::size_t>(std::unique(all.begin(), all.end()) - all.begin());
  }

private:
  HDC context;
  HBITMAP bitmap = nullptr;
  const COLORREF* pixels = nullptr;
};

}  // namespace

ContainerWalk::ContainerWalk(IUnknown* hosted, const ScratchFolder& folder, Pump messageLoop)
    : scratch(folder), pump(std::move(messageLoop)) {
  EXPECT_HRESULT_SUCCEEDED(hosted->QueryInterface(IID_PPV_ARGS(&control)));
  if (control == nullptr) return;
  EXPECT_HRESULT_SUCCEEDED(control->put_AppDir(Text(scratch.Path())));
  connection = std::make_unique<Connection>(control.Get(), DIID___KwEditorLayers, &sink);
  EXPECT_HRESULT_SUCCEEDED(connection->Result());
}

void ContainerWalk::Release() {
  connection.reset();
  control.Reset();
}

HWND ContainerWalk::Window() const {
  ComPtr<IOleInPlaceObject> object;
  HWND window = nullptr;
  if (SUCCEEDED(control.As(&object))) object->GetWindow(&window);
  return window;
}

bool ContainerWalk::Await(const std::function<bool()>& condition) const {
  constexpr DWORD longest = 10000;
  for (const DWORD start = GetTickCount(); GetTickCount() - start < longest;) {
    pump(10);
    if (condition()) return true;
  }
  return false;
}

void ContainerWalk::WalkThrough() {
  ASSERT_NE(control, nullptr);
  ASSERT_NE(Window(), nullptr) << "the container did not activate the control";
  OpenDocument();
  TurnPage();
  DrawRectangle();
  Print();
  Persist();
}

void ContainerWalk::OpenDocument() {
  const std::filesystem::path own = std::filesystem::path(scratch.Path()) / "letter.tif";
  std::filesystem::copy_file(TestData("letter.tif"), own);
  const auto timesChosen = [&] { return TracedTimes(scratch.Path(), "tmrDefaultToolsSelection_Timer"); };
  const BoxAnswerer user({Once(ListOfPendingWork)});
  EXPECT_EQ(control->OpenFile(Text(own.wstring())), S_OK);
  const auto created =
      std::ranges::count_if(sink.events, [](const std::string& event) { return event.starts_with("NewPageCreated("); });
  EXPECT_EQ(created, Pages) << testing::PrintToString(sink.events);
  EXPECT_EQ(sink.events.empty() ? "" : sink.events.back(), "PageChanged(1)");
  // A second later the standard tools are chosen; they may have been before, too.
  const int before = timesChosen();
  EXPECT_TRUE(Await([&] { return timesChosen() > before; }));
}

void ContainerWalk::ClickButton(const char* toolTip) const {
  const auto buttons = ToolBarButtons(Window());
  const auto found = buttons.find(toolTip);
  ASSERT_NE(found, buttons.end()) << "no button " << toolTip;
  const BoxAnswerer user;
  const POINT middle = found->second.Middle();
  SetCursorPos(middle.x, middle.y);
  pump(50);
  SendButton(MOUSEEVENTF_LEFTDOWN);
  pump(50);
  SendButton(MOUSEEVENTF_LEFTUP);
  pump(50);
}

void ContainerWalk::TurnPage() {
  const Snapshot before(CanvasOf(Window()));
  ClickButton("Next Page");
  EXPECT_TRUE(Await([&] { return sink.events.back() == "PageChanged(2)"; })) << sink.events.back();
  EXPECT_TRUE(Await([&] { return Snapshot(CanvasOf(Window())) != before; }));
}

void ContainerWalk::Drag(HWND canvas, POINT from, POINT to) const {
  const POINT start = OnScreen(canvas, from);
  const POINT end = OnScreen(canvas, to);
  SetCursorPos(start.x, start.y);
  pump(50);
  SendButton(MOUSEEVENTF_LEFTDOWN);
  pump(50);
  SetCursorPos((start.x + end.x) / 2, (start.y + end.y) / 2);
  pump(50);
  SetCursorPos(end.x, end.y);
  pump(50);
  SendButton(MOUSEEVENTF_LEFTUP);
  pump(50);
}

void ContainerWalk::DrawRectangle() {
  EXPECT_HRESULT_SUCCEEDED(control->put_IsToolboxVisible(VARIANT_TRUE));
  pump(50);
  ClickButton("Rectangle");
  const HWND canvas = CanvasOf(Window());
  const Snapshot before(canvas);
  Drag(canvas, {40, 40}, {140, 100});
  RECT changed = {};
  EXPECT_TRUE(Await([&] {
    changed = Snapshot(canvas).ChangesSince(before);
    return EqualRect(&changed, std::vector<RECT>{{40, 40, 140, 100}}.data()) != FALSE;
  })) << changed.left
      << ", " << changed.top << " to " << changed.right << ", " << changed.bottom;
}

void ContainerWalk::Print() const {
  ComPtr<IViewObject2> view;
  ASSERT_HRESULT_SUCCEEDED(control.As(&view));
  const Paper paper;
  const RECTL bounds = {0, 0, Paper::Width, Paper::Height};
  EXPECT_EQ(view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, paper.Context(), &bounds, nullptr, nullptr, 0),
            S_OK);
  EXPECT_GT(paper.Colours(), 5U);
}

void ContainerWalk::Persist() const {
  EXPECT_HRESULT_SUCCEEDED(control->put_MaxUndoLevels(33));
  ComPtr<IPersistStreamInit> kept;
  ComPtr<IPersistStreamInit> loaded;
  ASSERT_HRESULT_SUCCEEDED(control.As(&kept));
  ComPtr<IStream> stream;
  ASSERT_HRESULT_SUCCEEDED(CreateStreamOnHGlobal(nullptr, TRUE, &stream));
  EXPECT_EQ(kept->Save(stream.Get(), TRUE), S_OK);
  ASSERT_EQ(stream->Seek({}, STREAM_SEEK_SET, nullptr), S_OK);
  const auto other = Ocx::Create();
  ASSERT_HRESULT_SUCCEEDED(other.As(&loaded));
  EXPECT_EQ(loaded->Load(stream.Get()), S_OK);
  short levels = 0;
  EXPECT_EQ(other->get_MaxUndoLevels(&levels), S_OK);
  EXPECT_EQ(levels, 33);
  BSTR folder = nullptr;
  EXPECT_EQ(other->get_AppDir(&folder), S_OK);
  EXPECT_EQ(Take(folder), scratch.Path());
}

}  // namespace kw::test
