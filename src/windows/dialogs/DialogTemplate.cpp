#include "windows/dialogs/DialogTemplate.h"

namespace kw::windows {
namespace {

// Word offset of the number of items.
constexpr std::size_t CountAt = 8;

}  // namespace

DialogTemplate::DialogTemplate(const std::wstring& title, int width, int height) {
  constexpr unsigned PointSize = 8;
  AddWord(1);  // version of DLGTEMPLATEEX
  AddWord(0xFFFF);
  AddDouble(0);
  AddDouble(0);
  AddDouble(static_cast<DWORD>(WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_SHELLFONT));
  AddWord(0);
  for (const int value : {0, 0, width, height}) AddWord(static_cast<unsigned>(value));
  AddWord(0);  // no menu
  AddWord(0);  // the default dialog class
  AddText(title);
  AddWord(PointSize);
  AddWord(FW_NORMAL);
  AddWord(static_cast<unsigned>(DEFAULT_CHARSET) << 8U);
  AddText(L"MS Shell Dlg");
}

void DialogTemplate::Add(const Item& item) {
  if (words.size() % 2 != 0) AddWord(0);
  ++words[CountAt];
  AddDouble(0);
  AddDouble(item.extendedStyle);
  AddDouble(WS_CHILD | WS_VISIBLE | item.style);
  for (const int value : {item.left, item.top, item.width, item.height}) AddWord(static_cast<unsigned>(value));
  AddDouble(static_cast<DWORD>(item.id));
  AddText(item.className);
  AddText(item.text);
  AddWord(0);  // no creation data
}

void DialogTemplate::AddDouble(DWORD value) {
  AddWord(LOWORD(value));
  AddWord(HIWORD(value));
}

void DialogTemplate::AddText(const std::wstring& text) {
  for (const wchar_t character : text) AddWord(character);
  AddWord(0);
}

}  // namespace kw::windows
