#include "windows/properties/PropertyPageWindow.h"

#include <commctrl.h>

#include <iterator>
#include <optional>
#include <utility>

#include "components/base/RaisedFlag.h"
#include "components/base/RunTimeError.h"
#include "components/base/Texts.h"
#include "windows/base/CommonControls.h"
#include "windows/base/Guard.h"
#include "windows/base/Module.h"
#include "windows/base/Text.h"
#include "windows/properties/PathQuestion.h"
#include "windows/properties/PropertyFields.h"
#include "windows/properties/PropertyPageIds.h"

namespace kw::windows {
namespace {

HWND CreatePage(HWND parent, DLGPROC procedure, LPARAM self) {
  const CommonControls controls;
  const HWND page = CreateDialogParamW(Module(), MAKEINTRESOURCEW(PROPERTY_PAGE), parent, procedure, self);
  if (page == nullptr) Raise(ErrorNumber::OutOfMemory, static_cast<std::int32_t>(GetLastError()));
  return page;
}

INT_PTR CALLBACK MeasuredPage(HWND /*dialog*/, UINT /*message*/, WPARAM /*wParam*/, LPARAM /*lParam*/) { return FALSE; }

// A field's text is the user's; before the page shows it, it is empty.
BOOL CALLBACK TranslateText(HWND child, LPARAM /*parameter*/) {
  return GuardOr(TRUE, [child] {
    wchar_t text[256] = {};
    GetWindowTextW(child, text, static_cast<int>(std::size(text)));
    SetWindowTextW(child, ToWide(TranslatedIfOwn(FromWide(text))).c_str());
    return TRUE;
  });
}

bool HasKeyboard(HWND window) { return window != nullptr && GetFocus() == window; }

}  // namespace

std::shared_ptr<PropertyPageWindow> PropertyPageWindow::Create(HWND parent, std::shared_ptr<PropertyEntries> entries,
                                                               Host host) {
  std::shared_ptr<PropertyPageWindow> page(new PropertyPageWindow(std::move(entries), std::move(host)));
  const RaisedFlag making(page->isShowing);
  CreatePage(parent, &Procedure, reinterpret_cast<LPARAM>(page.get()));
  page->ShowEntries();
  return page;
}

void PropertyPageWindow::Close() {
  if (window == nullptr) return;
  SetWindowLongPtrW(window, DWLP_USER, 0);
  DestroyWindow(std::exchange(window, nullptr));
}

SIZE PropertyPageWindow::WantedSize() {
  const HWND page = CreatePage(HWND_MESSAGE, &MeasuredPage, 0);
  RECT place = {};
  GetWindowRect(page, &place);
  DestroyWindow(page);
  return {place.right - place.left, place.bottom - place.top};
}

INT_PTR CALLBACK PropertyPageWindow::Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  return GuardOr(INT_PTR{FALSE}, [&]() -> INT_PTR {
    if (message == WM_INITDIALOG) {
      SetWindowLongPtrW(dialog, DWLP_USER, lParam);
      auto& created = *reinterpret_cast<PropertyPageWindow*>(lParam);
      created.window = dialog;
      EnumChildWindows(dialog, &TranslateText, 0);
      created.Initialise();
      return FALSE;  // the frame decides who has the keyboard
    }
    auto* const self = reinterpret_cast<PropertyPageWindow*>(GetWindowLongPtrW(dialog, DWLP_USER));
    if (self == nullptr) return FALSE;
    if (message == WM_NCDESTROY) self->window = nullptr;
    if (message != WM_COMMAND) return FALSE;
    const auto whileHandled = self->shared_from_this();
    const auto held = self->host.hold();
    return static_cast<INT_PTR>(self->Command(LOWORD(wParam), HIWORD(wParam)));
  });
}

void PropertyPageWindow::Initialise() const {
  constexpr WPARAM LongestPath = 32767;
  for (const PropertyField& field : PropertyFields()) {
    if (field.browse != 0) SendMessageW(Item(field.control), EM_LIMITTEXT, LongestPath, 0);
  }
  constexpr WPARAM Digits = 5;
  SendMessageW(Item(PAGE_UNDO_LEVELS), EM_LIMITTEXT, Digits, 0);
  SendMessageW(Item(PAGE_UNDO_SPIN), UDM_SETRANGE32, LeastNumber, GreatestNumber);
}

void PropertyPageWindow::ShowEntries() {
  const RaisedFlag showing(isShowing);
  for (std::size_t i = 0; i < PropertyFields().size(); ++i) {
    const PropertyField& field = PropertyFields()[i];
    if (field.kind == PropertyField::Kind::Switch) {
      const std::optional<bool> tick = entries->IsTicked(i);
      CheckDlgButton(window, field.control, !tick ? BST_INDETERMINATE : *tick ? BST_CHECKED : BST_UNCHECKED);
    } else if (const std::wstring text = ToWide(entries->Text(i)); text != TextOf(i)) {
      SetWindowTextW(Item(field.control), text.c_str());
    }
  }
}

void PropertyPageWindow::Focus(std::size_t field) const {
  const HWND control = Item(PropertyFields()[field].control);
  SetFocus(control);
  if (PropertyFields()[field].kind != PropertyField::Kind::Switch) SendMessageW(control, EM_SETSEL, 0, -1);
}

void PropertyPageWindow::Complain(const std::string& message) const {
  wchar_t caption[128] = {};
  const HWND frame = GetAncestor(window, GA_ROOT);
  GetWindowTextW(frame, static_cast<wchar_t*>(caption), 128);
  MessageBoxW(frame, ToWide(message).c_str(), static_cast<wchar_t*>(caption), MB_OK | MB_ICONEXCLAMATION);
}

bool PropertyPageWindow::Command(WORD control, WORD notification) {
  if (isShowing) return false;
  for (std::size_t i = 0; i < PropertyFields().size(); ++i) {
    const PropertyField& field = PropertyFields()[i];
    const bool isSwitch = field.kind == PropertyField::Kind::Switch;
    if (field.browse != 0 && control == field.browse && notification == BN_CLICKED) {
      Browse(i);
      return true;
    }
    if (control != field.control || notification != (isSwitch ? BN_CLICKED : EN_CHANGE)) continue;
    if (isSwitch) {
      Toggle(i);
    } else {
      ReadText(i);
    }
    return true;
  }
  return false;
}

void PropertyPageWindow::Toggle(std::size_t field) {
  const bool ticked = !entries->IsTicked(field).value_or(false);
  entries->Tick(field, ticked);
  CheckDlgButton(window, PropertyFields()[field].control, ticked ? BST_CHECKED : BST_UNCHECKED);
  host.changed();
}

void PropertyPageWindow::ReadText(std::size_t field) {
  entries->Type(field, FromWide(TextOf(field)));
  host.changed();
}

void PropertyPageWindow::Browse(std::size_t field) {
  const auto ask = PropertyFields()[field].kind == PropertyField::Kind::Folder ? &AskForFolder : &AskForFile;
  const auto path = ask(GetAncestor(window, GA_ROOT), TextOf(field));
  if (!path || window == nullptr) return;
  SetWindowTextW(Item(PropertyFields()[field].control), path->c_str());
  Focus(field);
}

std::wstring PropertyPageWindow::TextOf(std::size_t field) const {
  const HWND control = Item(PropertyFields()[field].control);
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(control)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(control, text.data(), static_cast<int>(text.size()))));
  return text;
}

bool PropertyPageWindow::IsLastStop(bool backwards) const {
  const HWND first = GetNextDlgTabItem(window, nullptr, FALSE);
  return HasKeyboard(backwards ? first : GetNextDlgTabItem(window, first, TRUE));
}

bool PropertyPageWindow::TakesKey(MSG message, const std::function<bool()>& leave) const {
  if (message.message < WM_KEYFIRST || message.message > WM_KEYLAST) return false;
  if (message.hwnd != window && IsChild(window, message.hwnd) == FALSE) {
    // The frame itself has the keyboard: of its keys the page has its mnemonics.
    if (message.message != WM_SYSCHAR) return false;
    message.hwnd = window;
  }
  if (message.message == WM_KEYDOWN) {
    const bool isButton =
        (SendMessageW(GetFocus(), WM_GETDLGCODE, 0, 0) & (DLGC_UNDEFPUSHBUTTON | DLGC_DEFPUSHBUTTON)) != 0;
    switch (message.wParam) {
      case VK_ESCAPE:
      case VK_CANCEL:
        return false;
      case VK_RETURN:
        if (!isButton) return false;
        SendMessageW(GetFocus(), BM_CLICK, 0, 0);
        return true;
      case VK_TAB:
        if (GetKeyState(VK_CONTROL) < 0) return false;
        if (IsLastStop(GetKeyState(VK_SHIFT) < 0) && leave()) return true;
        break;
      default:
        break;
    }
  }
  return IsDialogMessageW(window, &message) != FALSE;
}

}  // namespace kw::windows
