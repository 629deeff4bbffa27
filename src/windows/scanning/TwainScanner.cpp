#include "windows/scanning/TwainScanner.h"

#include "components/base/RunTimeError.h"
#include "windows/base/Guard.h"

namespace kw::windows {
namespace {

// Not every manager wakes the message loop for a source's notice; so the loop polls at this interval in milliseconds.
constexpr UINT LongestWait = 100;

class WakeUpTimer {
public:
  WakeUpTimer() : id(SetTimer(nullptr, 0, LongestWait, nullptr)) {}
  WakeUpTimer(const WakeUpTimer&) = delete;
  WakeUpTimer& operator=(const WakeUpTimer&) = delete;
  ~WakeUpTimer() { KillTimer(nullptr, id); }

private:
  UINT_PTR id;
};

// The owner window of a source's dialog: the desktop's, or else a hidden window.
class ParentWindow {
public:
  explicit ParentWindow(HWND lent) : window(lent) {
    if (window != nullptr) return;
    own = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
    window = own;
  }
  ParentWindow(const ParentWindow&) = delete;
  ParentWindow& operator=(const ParentWindow&) = delete;
  ~ParentWindow() {
    if (own != nullptr) DestroyWindow(own);
  }

  HWND Handle() const { return window; }

private:
  HWND window;
  HWND own = nullptr;
};

HMODULE LoadFromWindowsFolder(const wchar_t* name) {
  wchar_t path[MAX_PATH] = {};
  // Use the machine's folder: on a terminal server old programs see a private folder for each user.
  const UINT length = GetSystemWindowsDirectoryW(static_cast<wchar_t*>(path), MAX_PATH);
  if (length == 0 || length + 1 + lstrlenW(name) >= MAX_PATH) return nullptr;
  path[length] = L'\\';
  lstrcpyW(path + length + 1, name);
  return LoadLibraryExW(static_cast<const wchar_t*>(path), nullptr,
                        LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
}

// The current manager is in the system folder; the old 32-bit one is in the Windows folder.
HMODULE LoadManagerLibrary() {
  for (const wchar_t* name : {L"TWAINDSM.dll", L"twain_32.dll"}) {
    HMODULE library = LoadLibraryExW(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (library == nullptr) library = LoadFromWindowsFolder(name);
    if (library != nullptr) return library;
  }
  return nullptr;
}

}  // namespace

TwainScanner::~TwainScanner() {
  if (library != nullptr) FreeLibrary(library);
}

bool TwainScanner::LoadManager() {
  if (library == nullptr) library = LoadManagerLibrary();
  if (library == nullptr) return false;
  manager = reinterpret_cast<twain::ManagerEntry>(reinterpret_cast<void*>(GetProcAddress(library, "DSM_Entry")));
  return manager != nullptr;
}

void TwainScanner::SelectSource() {
  if (!LoadManager()) return;
  const auto whileUp = desktop.enterDialog();
  const ParentWindow parent(desktop.owner());
  TwainSession session(manager, parent.Handle());
  twain::Identity source = chosen;
  if (session.OpenManager() && session.LetUserSelect(source)) chosen = source;
}

bool TwainScanner::Acquire() {
  isCancelled = false;
  if (!LoadManager()) return false;
  const auto underWay = desktop.enterEvents();
  const ParentWindow parent(desktop.owner());
  // Paint now, because the driver may take long to connect.
  RedrawWindow(parent.Handle(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  ScannedPages pages;
  {
    TwainSession session(manager, parent.Handle());
    if (!session.OpenManager()) return false;
    twain::Identity source = chosen;
    if (source.productName[0] == 0 && !session.FindDefault(source)) return false;
    if (!session.OpenSource(source) || !session.Enable()) return false;
    WaitForImage(session, parent.Handle());
    TakeImages(session, pages);
  }
  if (isCancelled || pages.IsEmpty()) return false;
  PutOnClipboard(pages.TakeJoined(), parent.Handle());
  return true;
}

void TwainScanner::CancelAcquisition() { isCancelled = true; }

// Passes a message of the queue to the source or dispatches it. False if the source wants to close.
bool TwainScanner::Handle(TwainSession& session, MSG& message) {
  WORD notice = twain::NoMessage;
  if (!session.Offer(message, notice)) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return notice != twain::CloseSourceRequest && notice != twain::CloseSourceOk;
}

// Ends in state 6, or in state 5 if no image will come.
void TwainScanner::WaitForImage(TwainSession& session, HWND parent) {
  const WakeUpTimer timer;
  MSG message = {};
  while (session.State() == 5 && !isCancelled && IsWindow(parent) != FALSE) {
    if (GetMessageW(&message, nullptr, 0, 0) <= 0) {
      PostQuitMessage(static_cast<int>(message.wParam));  // for the calling message loop
      return;
    }
    if (!Handle(session, message)) return;
  }
}

void TwainScanner::TakeImages(TwainSession& session, ScannedPages& pages) {
  while (session.State() == 6 && !isCancelled) {
    HGLOBAL image = nullptr;
    const auto outcome = session.Transfer(image);
    if (outcome == TwainSession::Outcome::Cancelled) isCancelled = true;
    if (outcome != TwainSession::Outcome::Image) return;
    // If memory runs out, the pages before are the image.
    bool isTaken = false;
    const bool hadMemory = Guard([&] { isTaken = pages.Add(image); });
    GlobalFree(image);
    if (!hadMemory && pages.IsEmpty()) Raise(ErrorNumber::OutOfMemory);
    if (!isTaken) return;
    MSG message = {};
    while (session.State() == 6 && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
      if (message.message == WM_QUIT) {
        PostQuitMessage(static_cast<int>(message.wParam));
        isCancelled = true;
        return;
      }
      if (!Handle(session, message)) return;
    }
  }
}

}  // namespace kw::windows
