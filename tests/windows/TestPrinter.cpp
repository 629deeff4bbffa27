#include "tests/windows/TestPrinter.h"

#include <gtest/gtest.h>
#include <windows.h>
#include <winspool.h>

#include "picture/PictureDocument.h"
#include "tests/windows/UnixHost.h"
#include "windows/base/Text.h"

namespace kw::test {
namespace {

constexpr const char* Description =
    "*PPD-Adobe: \"4.3\"\n"
    "*FormatVersion: \"4.3\"\n"
    "*FileVersion: \"1.0\"\n"
    "*LanguageVersion: English\n"
    "*LanguageEncoding: ISOLatin1\n"
    "*PCFileName: \"KWTEST.PPD\"\n"
    "*Manufacturer: \"Kw\"\n"
    "*Product: \"(Kw Test Printer)\"\n"
    "*PSVersion: \"(3010) 0\"\n"
    "*ModelName: \"Kw Test Printer\"\n"
    "*ShortNickName: \"Kw Test Printer\"\n"
    "*NickName: \"Kw Test Printer\"\n"
    "*LanguageLevel: \"3\"\n"
    "*ColorDevice: True\n"
    "*DefaultColorSpace: RGB\n"
    "*FileSystem: False\n"
    "*LandscapeOrientation: Plus90\n"
    "*TTRasterizer: Type42\n"
    "*DefaultResolution: 300dpi\n"
    "*OpenUI *PageSize: PickOne\n"
    "*DefaultPageSize: Letter\n"
    "*PageSize Letter: \"<</PageSize [612 792]>> setpagedevice\"\n"
    "*CloseUI: *PageSize\n"
    "*OpenUI *PageRegion: PickOne\n"
    "*DefaultPageRegion: Letter\n"
    "*PageRegion Letter: \"<</PageSize [612 792]>> setpagedevice\"\n"
    "*CloseUI: *PageRegion\n"
    "*DefaultImageableArea: Letter\n"
    "*ImageableArea Letter: \"18 18 594 774\"\n"
    "*DefaultPaperDimension: Letter\n"
    "*PaperDimension Letter: \"612 792\"\n"
    "*DefaultFont: Courier\n"
    "*Font Courier: Standard \"(001.000)\" Standard ROM\n";

constexpr wchar_t Name[] = L"Kw Test Printer";

template <class Info>
BYTE* BytesOf(Info& info) {
  return reinterpret_cast<BYTE*>(&info);
}

}  // namespace

TestPrinter::TestPrinter() : job(folder.File("job.ps")) {
  WriteWhole(folder.File("printer.ppd"), Description);
  std::wstring name = Name;
  std::wstring driver = L"wineps.drv";
  std::wstring environment = sizeof(void*) == 8 ? L"Windows x64" : L"Windows NT x86";
  std::wstring description = windows::ToWide(folder.File("printer.ppd"));
  DRIVER_INFO_3W installed = {};
  installed.cVersion = 3;
  installed.pName = name.data();
  installed.pEnvironment = environment.data();
  installed.pDriverPath = driver.data();
  installed.pDataFile = description.data();
  installed.pConfigFile = driver.data();
  EXPECT_TRUE(AddPrinterDriverExW(nullptr, 3, BytesOf(installed), APD_COPY_NEW_FILES | APD_COPY_FROM_DIRECTORY))
      << GetLastError();
  std::wstring port = windows::ToWide(UnixHost::PathOf(job));
  std::wstring processor = L"WinPrint";
  std::wstring dataType = L"RAW";
  PRINTER_INFO_2W printer = {};
  printer.pPrinterName = name.data();
  printer.pPortName = port.data();
  printer.pDriverName = name.data();
  printer.pPrintProcessor = processor.data();
  printer.pDatatype = dataType.data();
  const HANDLE added = AddPrinterW(nullptr, 2, BytesOf(printer));
  EXPECT_NE(added, nullptr) << GetLastError();
  ClosePrinter(added);
  EXPECT_TRUE(SetDefaultPrinterW(Name)) << GetLastError();
}

TestPrinter::~TestPrinter() {
  std::wstring name = Name;
  PRINTER_DEFAULTSW access = {nullptr, nullptr, PRINTER_ALL_ACCESS};
  HANDLE printer = nullptr;
  if (OpenPrinterW(name.data(), &printer, &access) == FALSE) return;
  EXPECT_TRUE(DeletePrinter(printer)) << GetLastError();
  ClosePrinter(printer);
}

void TestPrinter::Break() const { CreateDirectoryW(windows::ToWide(job).c_str(), nullptr); }

void TestPrinter::Mend() const { RemoveDirectoryW(windows::ToWide(job).c_str()); }

std::string TestPrinter::Job() const { return ReadWhole(job); }

int TestPrinter::PageCount() const {
  const std::string text = Job();
  int pages = 0;
  for (std::size_t at = text.find("\n%%Page:"); at != std::string::npos; at = text.find("\n%%Page:", at + 1)) ++pages;
  return pages;
}

std::vector<Bitmap> TestPrinter::Sheets() {
  const std::string command = "gs -q -dSAFER -dBATCH -dNOPAUSE -sDEVICE=bmp16m -r" + std::to_string(Resolution) +
                              " -o " + UnixHost::PathOf(folder.Path()) + "/sheet%d.bmp " + UnixHost::PathOf(job);
  std::vector<Bitmap> sheets;
  if (!UnixHost::Run(command, folder.File("done"))) {
    ADD_FAILURE() << "the interpreter cannot be run: " << command;
    return sheets;
  }
  for (int i = 1; Exists(folder.File("sheet" + std::to_string(i) + ".bmp")); ++i) {
    PictureDocument engine;
    EXPECT_TRUE(engine.Load(folder.File("sheet" + std::to_string(i) + ".bmp")));
    sheets.push_back(engine.Current());
  }
  return sheets;
}

}  // namespace kw::test
