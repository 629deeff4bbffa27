// Another program at the clipboard: ClipboardUser image | bitmap | text | empty | hold EVENT EVENT
//   image  copies an image, as the device-independent bitmap that programs exchange
//   bitmap copies an image as a plain bitmap, of which the system makes a device-independent one if asked
//   text   copies a text
//   empty  leaves nothing on it
//   hold   keeps it open: sets the first event when it has it, and lets it go when the second one is set
// The exit code is 0 if that was done.

#include <windows.h>

#include <cstring>
#include <string>

namespace {

// Another program may have the clipboard for a moment.
bool Open(HWND window) {
  for (int i = 0; i < 100; ++i) {
    if (OpenClipboard(window) != FALSE) return true;
    Sleep(20);
  }
  return false;
}

bool Put(UINT format, const void* bytes, std::size_t count) {
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, count);
  std::memcpy(GlobalLock(memory), bytes, count);
  GlobalUnlock(memory);
  return SetClipboardData(format, memory) != nullptr;
}

bool PutImage() {
  struct {
    BITMAPINFOHEADER header;
    DWORD pixels[4 * 4];
  } image = {};
  image.header = {sizeof image.header, 4, 4, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  return Put(CF_DIB, &image, sizeof image);
}

bool PutBitmap() {
  const HBITMAP bitmap = CreateBitmap(4, 4, 1, 32, nullptr);
  return bitmap != nullptr && SetClipboardData(CF_BITMAP, bitmap) != nullptr;
}

bool PutText() {
  constexpr wchar_t text[] = L"a text";
  return Put(CF_UNICODETEXT, static_cast<const wchar_t*>(text), sizeof text);
}

bool HoldIt(const wchar_t* isHeld, const wchar_t* isOver) {
  const HANDLE held = OpenEventW(EVENT_MODIFY_STATE, FALSE, isHeld);
  const HANDLE over = OpenEventW(SYNCHRONIZE, FALSE, isOver);
  if (held == nullptr || over == nullptr) return false;
  SetEvent(held);
  constexpr DWORD longest = 60000;
  const bool wasTold = WaitForSingleObject(over, longest) == WAIT_OBJECT_0;
  CloseHandle(held);
  CloseHandle(over);
  return wasTold;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count < 2) return 2;
  const std::wstring task = arguments[1];
  const HWND window = CreateWindowExW(0, L"Static", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
  if (!Open(window)) return 1;
  bool isDone = false;
  if (task == L"hold") {
    isDone = count == 4 && HoldIt(arguments[2], arguments[3]);
  } else {
    EmptyClipboard();
    isDone = (task == L"image" && PutImage()) || (task == L"bitmap" && PutBitmap()) || (task == L"text" && PutText()) ||
             task == L"empty";
  }
  CloseClipboard();
  DestroyWindow(window);
  return isDone ? 0 : 1;
}
