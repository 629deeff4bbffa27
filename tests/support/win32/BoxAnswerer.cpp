#include "tests/support/win32/BoxAnswerer.h"

#include <utility>

namespace kw::test {
namespace {

// The class of a message box and of the system's dialogs, and that of the control's own.
constexpr const wchar_t* SystemDialog = L"#32770";
constexpr const wchar_t* OwnDialog = L"KwEditorView";

std::wstring ClassOf(HWND window) {
  wchar_t name[64] = {};
  GetClassNameW(window, name, 64);
  return name;
}

struct Search {
  HWND box = nullptr;
};

BOOL CALLBACK FindBox(HWND window, LPARAM search) {
  const std::wstring name = ClassOf(window);
  if ((name == SystemDialog || name == OwnDialog) && IsWindowVisible(window) != 0) {
    reinterpret_cast<Search*>(search)->box = window;
    return FALSE;
  }
  return TRUE;
}

std::string TextOf(HWND window) {
  wchar_t text[2048];
  const int length = GetWindowTextW(window, text, 2048);
  std::string narrow;
  for (int index = 0; index < length; ++index) {
    if (text[index] == L'\r') continue;
    narrow.push_back(text[index] == L'\n' ? '/' : static_cast<char>(text[index]));
  }
  return narrow;
}

// The text is a child window of the box; the icon, if there is one, has no text.
std::string PromptOf(HWND box) {
  HWND child = nullptr;
  std::string longest;
  while ((child = FindWindowExW(box, child, L"Static", nullptr)) != nullptr) {
    std::string text = TextOf(child);
    if (text.size() > longest.size()) longest = std::move(text);
  }
  return longest;
}

}  // namespace

HWND BoxOf(DWORD thread) {
  Search search;
  EnumThreadWindows(thread, &FindBox, reinterpret_cast<LPARAM>(&search));
  return search.box;
}

std::string WordsOf(HWND box) { return TextOf(box) + ": " + PromptOf(box); }

void AnswerBox(HWND box, bool isOk) {
  if (ClassOf(box) == OwnDialog)
    PostMessageW(box, WM_KEYDOWN, isOk ? VK_RETURN : VK_ESCAPE, 1);
  else
    PostMessageW(box, WM_COMMAND, isOk ? IDOK : IDCANCEL, 0);
}

BoxAnswerer::BoxAnswerer(std::vector<ExpectedBox> expected, std::function<void(HWND)> beforeAnswer)
    : owner(GetCurrentThreadId()),
      expectedBoxes(std::move(expected)),
      act(std::move(beforeAnswer)),
      watcher([this] { Watch(); }) {}

BoxAnswerer::~BoxAnswerer() {
  stop = true;
  watcher.join();
  for (const std::string& box : boxes) expectedBoxes.Came(box);
}

std::vector<std::string> BoxAnswerer::Boxes() const {
  const std::lock_guard lock(mutex);
  return boxes;
}

void BoxAnswerer::Watch() {
  HWND answered = nullptr;
  while (!stop) {
    const HWND box = BoxOf(owner);
    if (box != nullptr && box != answered) {
      {
        const std::lock_guard lock(mutex);
        boxes.push_back(WordsOf(box));
      }
      if (act) act(box);
      answered = box;
      AnswerBox(box, true);
    }
    if (answered != nullptr && IsWindow(answered) == 0) answered = nullptr;
    Sleep(5);
  }
}

}  // namespace kw::test
