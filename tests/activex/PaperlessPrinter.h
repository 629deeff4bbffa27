#pragma once

#include <windows.h>

#include <commdlg.h>

#include "tests/activex/Ocx.h"
#include "tests/windows/ImportPatch.h"

namespace kw::test {

// While it lives, the control finds one printer, whose user wants all pages of each job, and which only counts them.
class PaperlessPrinter {
public:
  PaperlessPrinter() { count = 0; }
  static int Pages() { return count; }

private:
  static BOOL WINAPI One(DWORD /*flags*/, LPWSTR /*name*/, DWORD /*level*/, LPBYTE /*printers*/, DWORD /*size*/,
                         LPDWORD needed, LPDWORD found) {
    *needed = 1;
    *found = 1;
    return TRUE;
  }
  static BOOL WINAPI ChooseAllPages(LPPRINTDLGW fields) {
    fields->hDC = CreateCompatibleDC(nullptr);
    return TRUE;
  }
  static int WINAPI BeginJob(HDC /*printer*/, const DOCINFOW* /*job*/) { return 1; }
  static int WINAPI BeginPage(HDC /*printer*/) { return 1; }
  static int WINAPI EndPage(HDC /*printer*/) { return ++count; }
  static int WINAPI EndJob(HDC /*printer*/) { return 1; }

  static inline int count = 0;
  const ImportPatch patches[6] = {
      {Ocx::Library(), "EnumPrintersW", &One},  {Ocx::Library(), "PrintDlgW", &ChooseAllPages},
      {Ocx::Library(), "StartDocW", &BeginJob}, {Ocx::Library(), "StartPage", &BeginPage},
      {Ocx::Library(), "EndPage", &EndPage},    {Ocx::Library(), "EndDoc", &EndJob}};
};

}  // namespace kw::test
