#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace kw::windows {

// A dialog described in memory, in dialog units: the system lays it out by the size of its font on the screen.
class DialogTemplate {
public:
  struct Item {
    const wchar_t* className;
    std::wstring text;
    DWORD style;  // a child that shows, and what is named here
    int id;
    int left;
    int top;
    int width;
    int height;
    DWORD extendedStyle = 0;
  };

  DialogTemplate(const std::wstring& title, int width, int height);

  // In the order of the keyboard.
  void Add(const Item& item);
  // The description that the system's functions take; valid until the next Add.
  const DLGTEMPLATE* Get() const { return reinterpret_cast<const DLGTEMPLATE*>(words.data()); }

private:
  void AddWord(unsigned value) { words.push_back(static_cast<WORD>(value)); }
  void AddDouble(DWORD value);
  void AddText(const std::wstring& text);

  std::vector<WORD> words;
};

}  // namespace kw::windows
