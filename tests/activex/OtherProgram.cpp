#include "tests/activex/OtherProgram.h"

namespace kw::test {
namespace {

constexpr const wchar_t* ClipboardUser = L"ClipboardUser.exe";

}  // namespace

void OtherProgram::LeaveOnTheClipboard(const std::wstring& what) {
  EXPECT_EQ(Process(ClipboardUser, what).ExitCode(), 0U);
}

OtherProgram::OtherProgram() : process(ClipboardUser, L"hold " + isHeld.Name() + L" " + isOver.Name()) {
  constexpr DWORD deadline = 30000;
  EXPECT_EQ(WaitForSingleObject(isHeld.Handle(), deadline), WAIT_OBJECT_0);
}

OtherProgram::~OtherProgram() {
  isOver.Set();
  EXPECT_EQ(process.ExitCode(), 0U);
}

}  // namespace kw::test
