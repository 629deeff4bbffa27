#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "components/Desktop.h"

namespace kw::windows {

// The Windows desktop. Its timers run in the message loop of the thread that starts them.
class WindowsDesktop : public Desktop {
public:
  using PictureLoader = std::function<Bitmap(const std::string& path)>;

  // `loader` does LoadPicture; without one every picture is invalid.
  explicit WindowsDesktop(PictureLoader loader = {}) : loadPicture(std::move(loader)) {}
  ~WindowsDesktop() override;

  MessageAnswer ShowMessageBox(const std::string& prompt, const std::string& title, MessageButtons buttons) override;
  float TwipsPerPixelX() const override;
  float TwipsPerPixelY() const override;
  bool ClipboardHasFormat(std::int32_t format) override;
  void StartTimer(Timer& timer, std::int32_t milliseconds) override;
  void StopTimer(Timer& timer) override;
  LocalDate Date() const override;
  LocalTime Time() const override;
  Bitmap LoadPicture(const std::string& path) override;
  void RemoveFile(const std::string& path) override;
  std::string DirectoryLookUp(const std::string& path) override;
  std::string ApplicationFolder() const override;
  std::int32_t InstanceNumber() const override;

protected:
  // The window that dialogs belong to; the thread's active window where nobody knows better.
  virtual HWND DialogOwner() const;

private:
  PictureLoader loadPicture;
};

}  // namespace kw::windows
