#include "windows/dialogs/ParameterDialog.h"

#include <commctrl.h>

#include <algorithm>
#include <cmath>
#include <optional>

#include "components/base/RunTimeError.h"
#include "drawing/DrawPicture.h"
#include "windows/base/CommonControls.h"
#include "windows/base/Gdi.h"
#include "windows/base/Guard.h"
#include "windows/base/Hourglass.h"
#include "windows/base/Module.h"
#include "windows/base/Text.h"
#include "windows/dialogs/DialogTemplate.h"
#include "windows/dialogs/ParameterText.h"

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
constexpr UINT PreviewDelay = 15;  // milliseconds: so that a slider's way is not shown step by step

// The dialog while it is up. The system calls Procedure; nothing of it is used after AskParameters.
class Dialog {
public:
  Dialog(const ParameterQuestion& asked, std::span<double> start)
      : question(asked), values(start.begin(), start.end()), chosen(start) {}

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
  const Parameter& Field(std::size_t i) const { return question.fields[i]; }

  DialogTemplate Describe() const;
  INT_PTR Handle(UINT message, WPARAM wParam, LPARAM lParam);
  void Initialise();
  void Centre() const;
  bool Command(WORD id, WORD notification);
  void Accept();

  void ShowNumber(std::size_t i);
  void ShowSlider(std::size_t i) const;
  void ShowRange(std::size_t i) const { SetWindowTextW(Item(Message), RangeText(Field(i)).c_str()); }
  void Set(std::size_t i, double value);
  void ReadNumber(std::size_t i);
  void Step(std::size_t i, int steps);
  void ValuesChanged() const {
    if (HasPicture()) SetTimer(dialog, PreviewTimer, PreviewDelay, nullptr);
  }
  void RenewPicture();
  void Draw(const DRAWITEMSTRUCT& item);

  const ParameterQuestion& question;
  std::vector<std::optional<double>> values;  // empty: the text is no number that the field takes
  std::span<double> chosen;
  HWND dialog = nullptr;
  bool isShowing = false;  // the dialog itself changes its controls
  ParameterQuestion::Preview preview;
  DWORD previewTime = 0;  // milliseconds that the last one took
  Bitmap picture;
  BackBuffer buffer;
};

// The sliders stand below the numbers beside a picture, else behind them.
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
    if (!Field(i).choices.empty()) {
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
      if (lParam == 0 || i >= values.size()) break;
      const auto position = SendMessageW(Item(i, SliderPart), TBM_GETPOS, 0, 0);
      Set(i, std::min(Field(i).least + static_cast<double>(position) * StepOf(Field(i)), Field(i).greatest));
      ShowNumber(i);
      ShowRange(i);
      return TRUE;
    }
    case WM_NOTIFY: {
      const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
      if (header.code != static_cast<UINT>(UDN_DELTAPOS)) break;
      Step(static_cast<std::size_t>(static_cast<int>(header.idFrom) - FieldId(0, LabelPart)) / PartCount,
           reinterpret_cast<const NMUPDOWN*>(lParam)->iDelta);
      SetWindowLongPtrW(dialog, DWLP_MSGRESULT, TRUE);  // the spin button itself stays in the middle of its range
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
  for (std::size_t i = 0; i < values.size(); ++i) {
    const Parameter& field = Field(i);
    for (const std::string_view choice : field.choices) {
      SendMessageW(Item(i, NumberPart), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(ToWide(choice).c_str()));
    }
    if (field.choices.empty()) {
      constexpr WPARAM TextLimit = 12;
      SendMessageW(Item(i, NumberPart), EM_LIMITTEXT, TextLimit, 0);
      SendMessageW(Item(i, SpinPart), UDM_SETBUDDY, reinterpret_cast<WPARAM>(Item(i, NumberPart)), 0);
      SendMessageW(Item(i, SpinPart), UDM_SETRANGE32, static_cast<WPARAM>(-1), 1);
      SendMessageW(Item(i, SpinPart), UDM_SETPOS32, 0, 0);
      const auto steps = std::lround((field.greatest - field.least) / StepOf(field));
      SendMessageW(Item(i, SliderPart), TBM_SETRANGEMAX, FALSE, steps);
      SendMessageW(Item(i, SliderPart), TBM_SETPAGESIZE, 0, std::max(1L, steps / 10));
    }
    ShowNumber(i);
    ShowSlider(i);
  }
  Centre();
  ValuesChanged();
}

// Over the owner, but on the screen.
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
    for (std::size_t i = 0; i < values.size(); ++i) {
      Set(i, Field(i).standard);
      ShowNumber(i);
      ShowSlider(i);
    }
    return true;
  }
  const auto i = static_cast<std::size_t>(id - FieldId(0, LabelPart)) / PartCount;
  if (id < FieldId(0, LabelPart) || i >= values.size() || isShowing) return false;
  const bool isChoice = !Field(i).choices.empty();
  if (notification == (isChoice ? CBN_SETFOCUS : EN_SETFOCUS)) ShowRange(i);
  if (isChoice && notification == CBN_SELCHANGE) {
    Set(i, Field(i).least + static_cast<double>(SendMessageW(Item(i, NumberPart), CB_GETCURSEL, 0, 0)));
  }
  if (!isChoice && notification == EN_CHANGE) ReadNumber(i);
  return true;
}

void Dialog::Accept() {
  const auto wrong = std::ranges::find_if(values, [](const auto& value) { return !value; });
  if (wrong == values.end()) {
    std::ranges::transform(values, chosen.begin(), [](const auto& value) { return *value; });
    EndDialog(dialog, IDOK);
    return;
  }
  const auto i = static_cast<std::size_t>(wrong - values.begin());
  MessageBeep(MB_ICONEXCLAMATION);
  SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Item(i, NumberPart)), TRUE);
  SendMessageW(Item(i, NumberPart), EM_SETSEL, 0, -1);
  SetWindowTextW(Item(Message), (L"Not allowed. " + RangeText(Field(i))).c_str());
}

void Dialog::Set(std::size_t i, double value) {
  if (values[i] == value) return;
  values[i] = value;
  ValuesChanged();
}

void Dialog::ShowNumber(std::size_t i) {
  isShowing = true;
  if (Field(i).choices.empty()) {
    SetWindowTextW(Item(i, NumberPart), NumberText(values[i].value_or(0)).c_str());
  } else {
    SendMessageW(Item(i, NumberPart), CB_SETCURSEL, static_cast<WPARAM>(*values[i] - Field(i).least), 0);
  }
  isShowing = false;
}

void Dialog::ShowSlider(std::size_t i) const {
  if (!values[i] || !Field(i).choices.empty()) return;
  SendMessageW(Item(i, SliderPart), TBM_SETPOS, TRUE, std::lround((*values[i] - Field(i).least) / StepOf(Field(i))));
}

void Dialog::ReadNumber(std::size_t i) {
  wchar_t text[32] = {};
  GetWindowTextW(Item(i, NumberPart), text, 32);
  const auto value = NumberOf(text, Field(i));
  if (!value) {
    values[i].reset();
    return;
  }
  Set(i, *value);
  ShowRange(i);
  ShowSlider(i);
}

// From a number between two steps the first step goes to the next one; a text that is no number becomes the default.
void Dialog::Step(std::size_t i, int steps) {
  if (i >= values.size()) return;
  const Parameter& field = Field(i);
  const double next = values[i] ? *values[i] + steps * StepOf(field) : field.standard;
  Set(i, std::clamp(std::round(next * 1000) / 1000, field.least, field.greatest));
  ShowNumber(i);
  ShowSlider(i);
  ShowRange(i);
}

void Dialog::RenewPicture() {
  std::vector<double> numbers;
  for (const auto& value : values) {
    if (!value) return;  // the last picture stays until the number is whole
    numbers.push_back(*value);
  }
  RECT client = {};
  GetClientRect(Item(Picture), &client);
  constexpr DWORD LongTime = 50;
  std::optional<Hourglass> hourglass;
  if (preview == nullptr || previewTime > LongTime) hourglass.emplace();
  const DWORD start = GetTickCount();
  picture = {};
  Guard([&] {
    if (preview == nullptr) preview = question.makePreview(WidthOf(client), HeightOf(client));
    picture = preview(numbers);
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
  if (!picture.IsEmpty()) FillArea(pixels, bounds, MakeColour(255, 255, 255));  // below what is transparent
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
