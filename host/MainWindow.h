#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "CommandLine.h"
#include "Container.h"
#include "EditorControl.h"
#include "EventList.h"
#include "PropertyPanel.h"

namespace kw::host {

// The window: the control, its properties at the right, its events at the bottom.
class MainWindow final : public Container {
public:
  // Makes the window, not shown yet, with the control in it. Throws ControlError.
  // `settings` is the file in which the control is kept; empty for none.
  MainWindow(HINSTANCE program, const std::wstring& settings);
  ~MainWindow();
  MainWindow(const MainWindow&) = delete;
  MainWindow& operator=(const MainWindow&) = delete;

  // Shows the window, sets the control's properties and opens the document.
  void Start(const CommandLine& line, int show);
  // Runs until the window is closed.
  int Run();

private:
  HWND Window() const override { return window; }
  RECT ControlArea() const override;
  void ControlIsModal(bool isModal) override;
  void LeaveControl(bool backwards) override;
  void EventRaised(const std::wstring& event) override { events->Add(event); }
  void ErrorOccured(SHORT number, std::wstring& message) override;
  void PageChanged(SHORT page) override;
  void PropertyChanged() override;

  static LRESULT CALLBACK Procedure(HWND handle, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
  void OnActivate(bool isActive);
  void OnCommand(int command);
  // The menu "Image", of the control's verbs.
  void AddVerbMenu() const;
  void RunVerb(LONG number);
  void OnClose();

  void Rescale();
  void Arrange();
  int Scale(int size) const { return MulDiv(size, dpi, USER_DEFAULT_SCREEN_DPI); }
  void ChooseFile();
  void SaveAnnotatedPage();
  void CopyAnnotatedPage();
  void EnableMenu(HMENU menu) const;
  void EnableControl();
  void OnSystemChange(UINT message, WPARAM wParam, LPARAM lParam);
  void Open(const std::wstring& path);
  // Lists a failure, with what the control says about it. `interfaceId` is the interface that was called.
  void Expect(HRESULT result, const wchar_t* action, REFIID interfaceId = IID__KwEditorLayers);

  HINSTANCE instance;
  HWND window = nullptr;
  HFONT font = nullptr;
  HWND lastFocus = nullptr;
  std::wstring document;  // its file's name
  int dpi = USER_DEFAULT_SCREEN_DPI;
  int modalDepth = 0;
  SIZE panelSize = {};
  std::unique_ptr<EventList> events;
  std::unique_ptr<EditorControl> control;
  std::unique_ptr<PropertyPanel> panel;
};

}  // namespace kw::host
