#pragma once

#include <windows.h>

#include <ocidl.h>
#include <ole2.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "tests/activex/DrawnPixels.h"
#include "tests/activex/Fixture.h"
#include "tests/activex/StrictContainer.h"

namespace kw::test {

// A container that designs the form on which a new control lies, and says so by its ambient UserMode.
class Designer : public NewControlTest {
protected:
  Designer() { container.userMode = false; }

  // What lies in the current folder, which is the folder of a control that was given none.
  std::set<std::string> Files() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(scratch.Path()))
      names.insert(entry.path().filename().string());
    return names;
  }
  std::vector<std::string> Trace() const {
    std::vector<std::string> lines;
    std::ifstream file(std::filesystem::path(scratch.File(L"FunctionsInExecution.txt")), std::ios::binary);
    for (std::string line; std::getline(file, line);) lines.push_back(line.substr(0, line.find('\r')));
    return lines;
  }
  bool IsTrue(HRESULT (STDMETHODCALLTYPE _KwEditorLayers::*get)(VARIANT_BOOL*)) const {
    VARIANT_BOOL value = VARIANT_FALSE;
    EXPECT_EQ((control.Get()->*get)(&value), S_OK);
    return value != VARIANT_FALSE;
  }
  static std::string Saved(const ComPtr<_KwEditorLayers>& of) {
    ComPtr<IPersistStreamInit> persist;
    ComPtr<IStream> stream;
    EXPECT_EQ(of.As(&persist), S_OK);
    EXPECT_HRESULT_SUCCEEDED(CreateStreamOnHGlobal(nullptr, TRUE, &stream));
    EXPECT_EQ(persist->Save(stream.Get(), TRUE), S_OK);
    ULARGE_INTEGER size = {};
    EXPECT_EQ(persist->GetSizeMax(&size), S_OK);
    HGLOBAL memory = nullptr;
    EXPECT_HRESULT_SUCCEEDED(GetHGlobalFromStream(stream.Get(), &memory));
    std::string bytes(static_cast<const char*>(GlobalLock(memory)), static_cast<std::size_t>(size.QuadPart));
    GlobalUnlock(memory);
    return bytes;
  }
  static HRESULT Load(const ComPtr<_KwEditorLayers>& into, const std::string& bytes) {
    ComPtr<IPersistStreamInit> persist;
    ComPtr<IStream> stream;
    EXPECT_EQ(into.As(&persist), S_OK);
    EXPECT_HRESULT_SUCCEEDED(CreateStreamOnHGlobal(nullptr, TRUE, &stream));
    stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr);
    EXPECT_HRESULT_SUCCEEDED(stream->Seek({}, STREAM_SEEK_SET, nullptr));
    return persist->Load(stream.Get());
  }
  // The form as the control draws it.
  static std::vector<DWORD> Drawn(const ComPtr<_KwEditorLayers>& of) { return DrawnPixels(of.Get(), 400, 300); }

  StrictContainer container;
};

}  // namespace kw::test
