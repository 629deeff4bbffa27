#pragma once

#include "windows/WindowsDesktop.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "control/KwEditorLayers.h"
#include "tests/support/EditorFixture.h"
#include "tests/support/ExpectedBoxes.h"
#include "tests/windows/TestForm.h"
#include "windows/editor/EditorWindow.h"

namespace kw::test {

// The real desktop, but for its message boxes and dialogs, which are answered at once.
class QuietDesktop : public windows::WindowsDesktop {
public:
  MessageAnswer ShowMessageBox(const std::string& prompt, const std::string& title,
                               MessageButtons /*buttons*/) override {
    boxes.push_back(prompt);
    expectedBoxes.Came(title + ": " + prompt);
    return MessageAnswer::Ok;
  }
  void ShowModal(DialogForm& dialog) override {
    dialog.SetVisible(true);
    dialog.KeyDown.Raise(DialogForm::EnterKey, 0);
  }
  void DoEvents() override {
    if (beforeEvents) beforeEvents();
    WindowsDesktop::DoEvents();
  }

  // Boxes that the test expects; see ExpectedBoxes.
  void Expect(std::string words, int times = 1) { expectedBoxes.Add(Times(times, std::move(words))); }
  void Allow(std::string words) { expectedBoxes.Add(Perhaps(std::move(words))); }

  std::vector<std::string> boxes;
  std::function<void()> beforeEvents;
  HWND owner = nullptr;

protected:
  HWND DialogOwner() const override { return owner; }

private:
  ExpectedBoxes expectedBoxes;
};

// The whole control in a window, on the real desktop, with a folder of its own.
class WholeEditor : public testing::Test {
protected:
  WholeEditor() : host(TestForm::HostWindow()) {
    AppDir = folder.Path();
    desktop.Allow(ListOfPendingWork);
    control = std::make_unique<KwEditorLayers>(desktop, events);
    control->UserControl_Initialize();
    desktop.owner = host;
    window = std::make_unique<windows::EditorWindow>(control->Root(), host, RECT{0, 0, 0, 0});
    Resize(860, 640);
    window->Show(true);
  }
  ~WholeEditor() override {
    window.reset();
    DestroyWindow(host);
    control->UserControl_Terminate();
    control.reset();
    AppDir.clear();
  }

  EditorForm& Form() { return control->Form(); }
  // Shows every control that has a window.
  void ShowAll() {
    EditorForm& form = Form();
    for (Control* one : {static_cast<Control*>(&form.tbrOpenFile), static_cast<Control*>(&form.kwraTools),
                         static_cast<Control*>(&form.kwrpColors), static_cast<Control*>(&form.kwraPrintingStatus),
                         static_cast<Control*>(&form.kwraScanningStatus), static_cast<Control*>(&form.PageIndex),
                         static_cast<Control*>(&form.picTempBuffer), static_cast<Control*>(&form.Label1),
                         static_cast<Control*>(&form.Label2)}) {
      one->SetVisible(true);
    }
  }
  // Gives control and window another size in pixels.
  void Resize(int width, int height) {
    SetWindowPos(host, nullptr, 0, 0, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
    window->Resize({0, 0, width, height});
    control->Root().UserResize(static_cast<float>(width), static_cast<float>(height));
  }

  TemporaryFolder folder;
  QuietDesktop desktop;
  RecordedEvents events;
  std::unique_ptr<KwEditorLayers> control;
  HWND host;
  std::unique_ptr<windows::EditorWindow> window;
};

}  // namespace kw::test
