// The control in wxWidgets' container for ActiveX controls.

#include <wx/evtloop.h>
#include <wx/msw/ole/activex.h>
#include <wx/wx.h>

#include <gtest/gtest.h>

#include "tests/containers/ContainerWalk.h"

namespace kw::test {
namespace {

class HostedEditor : public wxActiveXContainer {
public:
  HostedEditor(wxWindow* parent, IUnknown* control) : wxActiveXContainer(parent, IID__KwEditorLayers, control) {
    Bind(wxEVT_ACTIVEX, [this](wxActiveXEvent& event) {
      if (event.GetDispatchId() == PageChangedEventId) ++pageChanges;
    });
  }
  int PageChanges() const { return pageChanges; }

private:
  int pageChanges = 0;
};

// Lets the toolkit's own loop run: idle events and deferred deletions included.
void RunLoop(DWORD milliseconds) {
  for (const DWORD start = GetTickCount(); GetTickCount() - start < milliseconds;) {
    wxEventLoopBase* const loop = wxEventLoopBase::GetActive();
    while (loop->Pending()) loop->Dispatch();
    loop->ProcessIdle();
    wxMilliSleep(1);
  }
}

class WxContainer : public testing::Test {
protected:
  void SetUp() override {
    frame = new wxFrame(nullptr, wxID_ANY, "Host", wxPoint(0, 0), wxSize(910, 670));
    frame->Show();
    control = Ocx::Create();
    ASSERT_NE(control, nullptr);
    editor = new HostedEditor(frame, control.Get());
    editor->SetSize(frame->GetClientSize());
    RunLoop(100);
  }
  void TearDown() override {
    if (frame != nullptr) frame->Destroy();
    RunLoop(100);
    control.Reset();
    RunLoop(20);
    EXPECT_TRUE(Ocx::CanUnload()) << "something of the control is still alive";
    Ocx::ForgetFolder();
  }

  const ScratchFolder scratch;
  wxFrame* frame = nullptr;
  ComPtr<_KwEditorLayers> control;
  HostedEditor* editor = nullptr;
};

TEST_F(WxContainer, IsWalkedThroughAndHearsEvents) {
  ContainerWalk walk(control.Get(), scratch, &RunLoop);
  walk.WalkThrough();
  EXPECT_GE(editor->PageChanges(), 2);
}

TEST_F(WxContainer, ResizesHidesAndDisables) {
  ContainerWalk walk(control.Get(), scratch, &RunLoop);
  const HWND window = walk.Window();
  ASSERT_NE(window, nullptr);
  editor->SetSize(0, 0, 640, 480);
  RunLoop(50);
  RECT client = {};
  GetClientRect(window, &client);
  EXPECT_EQ(client.right, 640);
  EXPECT_EQ(client.bottom, 480);
  editor->Hide();
  RunLoop(50);
  EXPECT_EQ(IsWindowVisible(window), FALSE);
  editor->Show();
  frame->Iconize();
  RunLoop(50);
  frame->Restore();
  frame->Disable();
  RunLoop(50);
  frame->Enable();
  RunLoop(50);
  EXPECT_NE(IsWindowVisible(window), FALSE);
}

TEST_F(WxContainer, ClosesByItsFrame) {
  ContainerWalk walk(control.Get(), scratch, &RunLoop);
  const HWND window = walk.Window();
  walk.Release();
  frame->Close();
  RunLoop(100);
  frame = nullptr;
  EXPECT_EQ(IsWindow(window), FALSE);
}

TEST_F(WxContainer, ClosesByTheContainerAndKeepsItsFrame) {
  ContainerWalk walk(control.Get(), scratch, &RunLoop);
  const HWND window = walk.Window();
  walk.Release();
  editor->Destroy();
  RunLoop(100);
  EXPECT_EQ(IsWindow(window), FALSE);
}

TEST_F(WxContainer, ClosesTheControlBeforeItsContainer) {
  ContainerWalk walk(control.Get(), scratch, &RunLoop);
  walk.Release();
  ComPtr<IOleObject> object;
  ASSERT_HRESULT_SUCCEEDED(control.As(&object));
  EXPECT_EQ(object->Close(OLECLOSE_NOSAVE), S_OK);
  RunLoop(50);
}

}  // namespace
}  // namespace kw::test

// The tests are begun by the toolkit's own start.
class TestProgram : public wxApp {
public:
  bool OnInit() override { return true; }
  int OnRun() override {
    SetExitOnFrameDelete(false);
    wxGUIEventLoop loop;
    const wxEventLoopActivator active(&loop);
    testing::InitGoogleTest(&argc, static_cast<wchar_t**>(argv));
    return RUN_ALL_TESTS();
  }
};

wxIMPLEMENT_APP_CONSOLE(TestProgram);
