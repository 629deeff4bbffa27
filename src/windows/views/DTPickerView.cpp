#include "windows/views/DTPickerView.h"

#include <string>

#include "windows/base/Gdi.h"

namespace kw::windows {
namespace {

// Month, day and year without leading zeros, whatever the user's format.
constexpr const wchar_t* Format = L"M'/'d'/'yyyy";

SYSTEMTIME ToSystemTime(const LocalDate& date) {
  SYSTEMTIME time = {};
  time.wYear = static_cast<WORD>(date.year);
  time.wMonth = static_cast<WORD>(date.month);
  time.wDay = static_cast<WORD>(date.day);
  return time;
}

}  // namespace

HWND DTPickerView::Create(HWND parent) {
  const HWND created = CreateSystemWindow(parent, DATETIMEPICK_CLASSW, DTS_SHORTDATEFORMAT | WS_TABSTOP);
  if (created != nullptr) SendMessageW(created, DTM_SETFORMATW, 0, reinterpret_cast<LPARAM>(Format));
  return created;
}

void DTPickerView::Show(Aspect aspect) {
  if (aspect != Aspect::Content) return;
  SYSTEMTIME shown = {};
  SendMessageW(Handle(), DTM_GETSYSTEMTIME, 0, reinterpret_cast<LPARAM>(&shown));
  if (LocalDate{shown.wYear, shown.wMonth, shown.wDay} == picker.Value()) return;
  SYSTEMTIME wanted = ToSystemTime(picker.Value());
  SendMessageW(Handle(), DTM_SETSYSTEMTIME, GDT_VALID, reinterpret_cast<LPARAM>(&wanted));
}

LRESULT DTPickerView::OnNotify(NMHDR& header) {
  if (header.code == static_cast<UINT>(DTN_DATETIMECHANGE)) {
    if (!TakesInput()) {
      Show(Aspect::Content);
      return 0;
    }
    const SYSTEMTIME& chosen = reinterpret_cast<const NMDATETIMECHANGE&>(header).st;
    picker.UserChoose({chosen.wYear, chosen.wMonth, chosen.wDay});
  } else if (header.code == static_cast<UINT>(NM_SETFOCUS)) {
    FocusCame();
  }
  return 0;
}

void DTPickerView::Draw(const Look& look, const RECT& bounds, const DTPicker& picker) {
  FillWith(look.context, bounds, GetSysColor(COLOR_WINDOW));
  RECT edge = bounds;
  DrawEdge(look.context, &edge, BDR_SUNKENOUTER, BF_RECT | BF_ADJUST);
  edge.left += look.scale.LengthOnDevice(3);
  const std::wstring text =
      std::to_wstring(picker.Month()) + L"/" + std::to_wstring(picker.Day()) + L"/" + std::to_wstring(picker.Year());
  SetBkMode(look.context, TRANSPARENT);
  SetTextColor(look.context, GetSysColor(picker.Enabled() ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT));
  DrawTextW(look.context, text.c_str(), static_cast<int>(text.size()), &edge, DT_SINGLELINE | DT_VCENTER);
}

}  // namespace kw::windows
