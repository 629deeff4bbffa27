#pragma once

#include <gtest/gtest.h>

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
