#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace kw::windows {

// Builds a DLGTEMPLATEEX in memory, in dialog units, which the system scales by the dialog's font.
class DialogTemplate {
public:
  struct Item {
    const wchar_t* className;
    std::wstring text;
    DWORD style;  // added to WS_CHILD and WS_VISIBLE
    int id;
    int left;
    int top;
    int width;
    int height;
    DWORD extendedStyle = 0;
  };

  DialogTemplate(const std::wstring& title, int width, int height);

  // Adds an item; the order is the tab order.
  void Add(const Item& item);
  // The template for the system's functions; valid until the next Add.
  const DLGTEMPLATE* Get() const { return reinterpret_cast<const DLGTEMPLATE*>(words.data()); }

private:
  void AddWord(unsigned value) { words.push_back(static_cast<WORD>(value)); }
  void AddDouble(DWORD value);
  void AddText(const std::wstring& text);

  std::vector<WORD> words;
};

}  // namespace kw::windows
