#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "tests/activex/Ocx.h"

namespace kw::test {

// A new control that nobody has used yet, in a folder of the test's own.
class NewControlTest : public testing::Test {
protected:
  NewControlTest() : control(Ocx::Create()) {}

  template <class Interface>
  ComPtr<Interface> As() const {
    ComPtr<Interface> asked;
    EXPECT_HRESULT_SUCCEEDED(control.As(&asked));
    return asked;
  }

  void SetUp() override { ASSERT_NE(control.Get(), nullptr); }
  // Drops what the test held, handles what is still posted, and looks whether the library is free.
  void TearDown() override {
    control.Reset();
    PumpMessages(20);
    EXPECT_TRUE(Ocx::CanUnload()) << "something of the control is still alive";
    Ocx::ForgetFolder();
    if (HasFailure()) TellTrace();
  }

  // What the control was at before it failed.
  void TellTrace() const {
    constexpr std::size_t most = 3000;
    std::ifstream file(std::filesystem::path(scratch.File(L"FunctionsInExecution.txt")), std::ios::binary);
    const std::string trace((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    std::cout << "the end of the trace:\n" << trace.substr(trace.size() - std::min(most, trace.size())) << '\n';
  }

  ScratchFolder scratch;
  ComPtr<_KwEditorLayers> control;
};

// One whose files lie there.
class ControlTest : public NewControlTest {
protected:
  ControlTest() {
    if (control != nullptr) control->put_AppDir(Text(scratch.Path()));
  }
};

}  // namespace kw::test
