#pragma once

#include <cstdint>
#include <string>

#include "components/Bitmap.h"

namespace kw {

class Timer;

enum class MessageButtons : std::uint8_t { Ok, YesNoCancel };
enum class MessageAnswer : std::uint8_t { Ok, Yes, No, Cancel };

struct LocalDate {
  int year = 0;
  int month = 0;
  int day = 0;
};

struct LocalTime {
  int hour = 0;
  int minute = 0;
  int second = 0;
};

// Clipboard format of a device-independent bitmap.
inline constexpr std::int32_t ClipboardDib = 8;

// The one seam between the editor and the platform. All calls come on the editor's own thread.
class Desktop {
 public:
  Desktop() = default;
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;
  virtual ~Desktop() = default;

  // Shows a modal box without an icon and waits for the answer. An empty title shows the application's name.
  virtual MessageAnswer ShowMessageBox(const std::string& prompt, const std::string& title = {},
                                       MessageButtons buttons = MessageButtons::Ok) = 0;

  // The screen's twips for each pixel.
  virtual float TwipsPerPixelX() const = 0;
  virtual float TwipsPerPixelY() const = 0;

  // Whether the clipboard holds data in that format. Raises InvalidClipboardFormat or the platform's error.
  virtual bool ClipboardHasFormat(std::int32_t format) = 0;

  // From now on, calls timer.Fire() every `milliseconds`, through the message loop, until StopTimer. Starting a
  // running timer begins its interval afresh; stopping a stopped one does nothing.
  virtual void StartTimer(Timer& timer, std::int32_t milliseconds) = 0;
  virtual void StopTimer(Timer& timer) = 0;

  // The date and the time are read apart, as the run time's two functions read them.
  virtual LocalDate Date() const = 0;
  virtual LocalTime Time() const = 0;

  // Reads an image file as a picture. Raises FileNotFound or InvalidPicture.
  virtual Bitmap LoadPicture(const std::string& path) = 0;
  // Raises FileNotFound or PathFileAccessError.
  virtual void RemoveFile(const std::string& path) = 0;
  // The name of the file at `path`; empty where there is none.
  virtual std::string DirectoryLookUp(const std::string& path) = 0;

  // The folder of the running application's executable, as the platform reports it.
  virtual std::string ApplicationFolder() const = 0;
  // A number that stays the same while the host runs and differs between hosts that run at the same time.
  virtual std::int32_t InstanceNumber() const = 0;
};

}  // namespace kw
