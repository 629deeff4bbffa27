#include "windows/dialogs/ParameterDialog.h"

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <optional>

#include "components/base/RunTimeError.h"
#include "components/parameters/ParameterEntry.h"
#include "components/parameters/ParameterText.h"
#include "drawing/DrawPicture.h"
#include "windows/base/CommonControls.h"
#include "windows/base/Gdi.h"
#include "windows/base/Guard.h"
#include "windows/base/Hourglass.h"
#include "windows/base/Module.h"
#include "windows/base/Text.h"
#include "windows/dialogs/DialogTemplate.h"

namespace kw::windows {

namespace {

using parameter_dialog::Defaults;
using parameter_dialog::FieldId;
using parameter_dialog::LabelPart;
using parameter_dialog::Message;
using parameter_dialog::NumberPart;
using parameter_dialog::Part;
using parameter_dialog::PartCount;
using parameter_dialog::Picture;
using parameter_dialog::SliderPart;
using parameter_dialog::SpinPart;
using parameter_dialog::UnitPart;

// Dialog units.
constexpr int Margin = 7;
constexpr int PictureSide = 150;
constexpr int LabelWidth = 66;
constexpr int NumberWidth = 46;
constexpr int UnitWidth = 36;
constexpr int SliderWidth = 96;
constexpr int FieldRowHeight = 16;
constexpr int EditHeight = 12;
constexpr int ButtonWidth = 50;
constexpr int ButtonHeight = 14;

constexpr UINT_PTR PreviewTimer = 1;
constexpr UINT PreviewDelay = 15;  // milliseconds; a slider that moves on meanwhile starts only one preview

// The user's decimal separator.
std::string DecimalSeparator() {
  std::array<wchar_t, 4> text = {};
  const int length = GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, text.data(), static_cast<int>(text.size()));
  return length == 2 ? FromWide(text.data()) : ".";
}

// The dialog's procedure and state; lives during AskParameters.
class Dialog {
public:
  Dialog(const ParameterQuestion& asked, std::span<double> start)
      : question(asked), entry(asked.fields, start, DecimalSeparator()), chosen(start) {}

  INT_PTR Run(HWND owner) {
    const CommonControls controls;
    return DialogBoxIndirectParamW(Module(), Describe().Get(), owner, &Procedure, reinterpret_cast<LPARAM>(this));
  }

private:
  static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) SetWindowLongPtrW(window, DWLP_USER, lParam);
    auto* const self = reinterpret_cast<Dialog*>(GetWindowLongPtrW(window, DWLP_USER));
    if (self == nullptr) return FALSE;
    self->dialog = window;
    return GuardOr(INT_PTR{FALSE}, [&] { return self->Handle(message, wParam, lParam); });
  }

  bool HasPicture() const { return question.makePreview != nullptr; }
  HWND Item(int id) const { return GetDlgItem(dialog, id); }
  HWND Item(std::size_t field, Part part) const { return Item(FieldId(field, part)); }
  const Parameter& Field(std::size_t i) const { return entry.Field(i); }

  DialogTemplate Describe() const;
  INT_PTR Handle(UINT message, WPARAM wParam, LPARAM lParam);
  void Initialise();
  void Centre() const;
  bool Command(WORD id, WORD notification);
  void Accept();

  void ShowNumber(std::size_t i);
  void ShowSlider(std::size_t i) const;
  void ShowRange(std::size_t i) const { SetWindowTextW(Item(Message), ToWide(entry.Range(i)).c_str()); }
  void ReadNumber(std::size_t i);
  void Step(std::size_t i, int steps);
  void StartPreview() const {
    if (HasPicture()) SetTimer(dialog, PreviewTimer, PreviewDelay, nullptr);
  }
  void RenewPicture();
  void Draw(const DRAWITEMSTRUCT& item);

  const ParameterQuestion& question;
  ParameterEntry entry;
  std::span<double> chosen;
  HWND dialog = nullptr;
  bool isShowing = false;  // the dialog, not the user, changes its controls
  ParameterQuestion::Preview preview;
  DWORD previewTime = 0;  // milliseconds of the last preview
  Bitmap picture;
  BackBuffer buffer;
};

// With a picture the sliders are below the numbers, else to the right of them.
DialogTemplate Dialog::Describe() const {
  const int left = Margin + (HasPicture() ? PictureSide + Margin : 0);
  const int below = HasPicture() ? FieldRowHeight : 0;
  const int lineWidth = LabelWidth + NumberWidth + 4 + UnitWidth;
  const int width = left + lineWidth + (HasPicture() ? 0 : SliderWidth) + Margin;
  const int rows = static_cast<int>(question.fields.size()) * (FieldRowHeight + below);
  const int bottom = Margin + std::max(rows, HasPicture() ? PictureSide : 0) + 4;
  const int height = bottom + 12 + ButtonHeight + Margin;
  DialogTemplate description(ToWide(question.title), width, height);
  if (HasPicture()) {
    description.Add(
        {WC_STATICW, L"", SS_OWNERDRAW, Picture, Margin, Margin, PictureSide, PictureSide, WS_EX_STATICEDGE});
  }
  const std::vector<std::string> labels = WithMnemonics(question.fields, "d");
  int top = Margin;
  for (std::size_t i = 0; i < question.fields.size(); ++i) {
    const int number = left + LabelWidth;
    description.Add(
        {WC_STATICW, ToWide(labels[i]) + L":", SS_LEFT, FieldId(i, LabelPart), left, top + 2, LabelWidth, 9});
    if (entry.IsChoice(i)) {
      description.Add({WC_COMBOBOXW, L"", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST, FieldId(i, NumberPart), number,
                       top, NumberWidth + 4 + UnitWidth, 80});
    } else {
      description.Add({WC_EDITW, L"", WS_TABSTOP | ES_AUTOHSCROLL | ES_RIGHT, FieldId(i, NumberPart), number, top,
                       NumberWidth, EditHeight, WS_EX_CLIENTEDGE});
      description.Add(
          {UPDOWN_CLASSW, L"", UDS_ALIGNRIGHT | UDS_ARROWKEYS, FieldId(i, SpinPart), number, top, 10, EditHeight});
      description.Add({WC_STATICW, ToWide(Field(i).unit), SS_LEFT, FieldId(i, UnitPart), number + NumberWidth + 4,
                       top + 2, UnitWidth, 9});
      const int sliderLeft = HasPicture() ? left - 3 : left + lineWidth;
      description.Add({TRACKBAR_CLASSW, L"", WS_TABSTOP | TBS_HORZ | TBS_NOTICKS, FieldId(i, SliderPart), sliderLeft,
                       top + below, HasPicture() ? lineWidth + 3 : SliderWidth, 14});
    }
    top += FieldRowHeight + below;
  }
  description.Add({WC_STATICW, L"", SS_LEFT | SS_NOPREFIX, Message, Margin, bottom, width - 2 * Margin, 9});
  const int buttons = bottom + 12;
  const int cancel = width - Margin - ButtonWidth;
  const auto button = [&](const wchar_t* text, DWORD style, int id, int at) {
    description.Add({WC_BUTTONW, text, WS_TABSTOP | style, id, at, buttons, ButtonWidth, ButtonHeight});
  };
  button(L"OK", BS_DEFPUSHBUTTON, IDOK, cancel - 4 - ButtonWidth);
  button(L"Cancel", BS_PUSHBUTTON, IDCANCEL, cancel);
  button(L"&Defaults", BS_PUSHBUTTON, Defaults, Margin);
  return description;
}

INT_PTR Dialog::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      Initialise();
      return TRUE;  // the first field gets the focus
    case WM_COMMAND:
      return static_cast<INT_PTR>(Command(LOWORD(wParam), HIWORD(wParam)));
    case WM_HSCROLL: {
      const int id = GetDlgCtrlID(reinterpret_cast<HWND>(lParam));
      const auto i = static_cast<std::size_t>(id - FieldId(0, LabelPart)) / PartCount;
      if (lParam == 0 || i >= entry.Count()) break;
      entry.SlideTo(i, static_cast<std::int32_t>(SendMessageW(Item(i, SliderPart), TBM_GETPOS, 0, 0)));
      ShowNumber(i);
      ShowRange(i);
      return TRUE;
    }
    case WM_NOTIFY: {
      const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
      if (header.code != static_cast<UINT>(UDN_DELTAPOS)) break;
      Step(static_cast<std::size_t>(static_cast<int>(header.idFrom) - FieldId(0, LabelPart)) / PartCount,
           reinterpret_cast<const NMUPDOWN*>(lParam)->iDelta);
      SetWindowLongPtrW(dialog, DWLP_MSGRESULT, TRUE);  // the spin button itself must not move
      return TRUE;
    }
    case WM_TIMER:
      KillTimer(dialog, PreviewTimer);
      RenewPicture();
      return TRUE;
    case WM_DRAWITEM:
      Draw(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
      return TRUE;
    default:
      break;
  }
  return FALSE;
}

void Dialog::Initialise() {
  for (std::size_t i = 0; i < entry.Count(); ++i) {
    for (const std::string_view choice : Field(i).choices) {
      SendMessageW(Item(i, NumberPart), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(ToWide(choice).c_str()));
    }
    if (!entry.IsChoice(i)) {
      constexpr WPARAM TextLimit = 12;
      SendMessageW(Item(i, NumberPart), EM_LIMITTEXT, TextLimit, 0);
      SendMessageW(Item(i, SpinPart), UDM_SETBUDDY, reinterpret_cast<WPARAM>(Item(i, NumberPart)), 0);
      SendMessageW(Item(i, SpinPart), UDM_SETRANGE32, static_cast<WPARAM>(-1), 1);
      SendMessageW(Item(i, SpinPart), UDM_SETPOS32, 0, 0);
      const std::int32_t last = entry.LastPosition(i);
      SendMessageW(Item(i, SliderPart), TBM_SETRANGEMAX, FALSE, last);
      SendMessageW(Item(i, SliderPart), TBM_SETPAGESIZE, 0, std::max(1, last / 10));
    }
    ShowNumber(i);
    ShowSlider(i);
  }
  Centre();
  entry.OnChange([this] { StartPreview(); });
  StartPreview();
}

// Centres the dialog on its owner, but keeps it on the screen.
void Dialog::Centre() const {
  const HWND owner = GetWindow(dialog, GW_OWNER);
  MONITORINFO screen = {};
  screen.cbSize = sizeof screen;
  GetMonitorInfoW(MonitorFromWindow(owner == nullptr ? dialog : owner, MONITOR_DEFAULTTONEAREST), &screen);
  RECT around = screen.rcWork;
  RECT own = {};
  if (owner != nullptr) GetWindowRect(owner, &around);
  GetWindowRect(dialog, &own);
  const auto within = [](LONG low, LONG high, int size, LONG least, LONG greatest) {
    return std::max(least, std::min((low + high - size) / 2, greatest - size));
  };
  const RECT& work = screen.rcWork;
  SetWindowPos(dialog, nullptr, within(around.left, around.right, WidthOf(own), work.left, work.right),
               within(around.top, around.bottom, HeightOf(own), work.top, work.bottom), 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

bool Dialog::Command(WORD id, WORD notification) {
  if (id == IDOK) {
    Accept();
    return true;
  }
  if (id == IDCANCEL) return EndDialog(dialog, IDCANCEL) != FALSE;
  if (id == Defaults) {
    entry.SetDefaults();
    for (std::size_t i = 0; i < entry.Count(); ++i) {
      ShowNumber(i);
      ShowSlider(i);
    }
    return true;
  }
  const auto i = static_cast<std::size_t>(id - FieldId(0, LabelPart)) / PartCount;
  if (id < FieldId(0, LabelPart) || i >= entry.Count() || isShowing) return false;
  const bool isChoice = entry.IsChoice(i);
  if (notification == (isChoice ? CBN_SETFOCUS : EN_SETFOCUS)) ShowRange(i);
  if (isChoice && notification == CBN_SELCHANGE) {
    entry.Choose(i, static_cast<std::size_t>(SendMessageW(Item(i, NumberPart), CB_GETCURSEL, 0, 0)));
  }
  if (!isChoice && notification == EN_CHANGE) ReadNumber(i);
  return true;
}

void Dialog::Accept() {
  if (const auto values = entry.Values()) {
    std::ranges::copy(*values, chosen.begin());
    EndDialog(dialog, IDOK);
    return;
  }
  const std::size_t i = *entry.FirstInvalid();
  MessageBeep(MB_ICONEXCLAMATION);
  SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Item(i, NumberPart)), TRUE);
  SendMessageW(Item(i, NumberPart), EM_SETSEL, 0, -1);
  SetWindowTextW(Item(Message), ToWide("Not allowed. " + entry.Range(i)).c_str());
}

void Dialog::ShowNumber(std::size_t i) {
  isShowing = true;
  if (entry.IsChoice(i)) {
    SendMessageW(Item(i, NumberPart), CB_SETCURSEL, entry.Choice(i), 0);
  } else {
    SetWindowTextW(Item(i, NumberPart), ToWide(entry.Text(i)).c_str());
  }
  isShowing = false;
}

void Dialog::ShowSlider(std::size_t i) const {
  if (entry.IsChoice(i)) return;
  if (const auto position = entry.Position(i)) SendMessageW(Item(i, SliderPart), TBM_SETPOS, TRUE, *position);
}

void Dialog::ReadNumber(std::size_t i) {
  wchar_t text[32] = {};
  GetWindowTextW(Item(i, NumberPart), text, 32);
  entry.Type(i, FromWide(text));
  if (!entry.Position(i)) return;
  ShowRange(i);
  ShowSlider(i);
}

void Dialog::Step(std::size_t i, int steps) {
  if (i >= entry.Count()) return;
  entry.Step(i, steps);
  ShowNumber(i);
  ShowSlider(i);
  ShowRange(i);
}

void Dialog::RenewPicture() {
  const auto values = entry.Values();
  if (!values) return;  // the last picture stays until all numbers are allowed
  RECT client = {};
  GetClientRect(Item(Picture), &client);
  constexpr DWORD LongTime = 50;
  std::optional<Hourglass> hourglass;
  if (preview == nullptr || previewTime > LongTime) hourglass.emplace();
  const DWORD start = GetTickCount();
  picture = {};
  Guard([&] {
    if (preview == nullptr) preview = question.makePreview(WidthOf(client), HeightOf(client));
    picture = preview(*values);
  });
  previewTime = GetTickCount() - start;
  InvalidateRect(Item(Picture), nullptr, FALSE);
}

void Dialog::Draw(const DRAWITEMSTRUCT& item) {
  const RECT& client = item.rcItem;
  const int width = WidthOf(client);
  const int height = HeightOf(client);
  if (!buffer.Reserve(width, height)) return;
  const RECT whole = {0, 0, width, height};
  FillWith(buffer.Context(), whole, GetSysColor(COLOR_APPWORKSPACE));
  GdiFlush();
  const int left = (width - picture.Width()) / 2;
  const int top = (height - picture.Height()) / 2;
  const PixelRect bounds{left, top, left + picture.Width(), top + picture.Height()};
  const FrameBuffer pixels = buffer.Pixels(whole);
  if (!picture.IsEmpty()) FillArea(pixels, bounds, MakeColour(255, 255, 255));  // below transparent pixels
  DrawPicture(pixels, picture, bounds, {});
  BitBlt(item.hDC, client.left, client.top, width, height, buffer.Context(), 0, 0, SRCCOPY);
}

}  // namespace

bool AskParameters(HWND owner, const ParameterQuestion& question, std::span<double> values) {
  const INT_PTR answer = Dialog(question, values).Run(owner);
  if (answer == -1) Raise(ErrorNumber::OutOfMemory, static_cast<std::int32_t>(GetLastError()));
  return answer == IDOK;
}

}  // namespace kw::windows
