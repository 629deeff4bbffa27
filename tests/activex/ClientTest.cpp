// A program of its own whose trace folder is gone when it lets go of the control.

#include <windows.h>

#include "tests/activex/Fixture.h"
#include "tests/support/win32/Process.h"

namespace kw::test {
namespace {

TEST(Client, ComesToItsOwnEndWhichEverWayItGoes) {
  constexpr DWORD itsOwnEnd = 7;
  const ScratchFolder scratch;
  for (const wchar_t* way : {L"release", L"close", L"window", L"unload", L"nothing"}) {
    SCOPED_TRACE(std::string(way, way + std::char_traits<wchar_t>::length(way)));
    // A quote behind a backslash would not end the argument.
    const Process client(L"Client.exe",
                         L"\"" + Ocx::Path() + L"\" \"" + scratch.File(L"gone") + L"\\\\\" " + std::wstring(way));
    EXPECT_EQ(client.ExitCode(), itsOwnEnd);
    EXPECT_FALSE(FileExists(scratch.File(L"gone")));
  }
}

}  // namespace
}  // namespace kw::test
