// One traced call against a bare open, append and close of the same file.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>

#include "components/base/FilePath.h"
#include "components/controls/Log.h"
#include "components/controls/PictureBox.h"
#include "components/controls/UserControl.h"
#include "tests/support/RecordedEvents.h"
#include "tests/support/ScriptedDesktop.h"
#include "tests/support/TemporaryFolder.h"
#include "trap/Procedure.h"

namespace kw {
namespace {

constexpr const char* Name = "tmrWatchClipBoard_Timer";

void BareAppend(benchmark::State& state) {
  const test::TemporaryFolder folder;
  const std::string path = (folder.Native() / "FunctionsInExecution.txt").string();
  const std::string line = std::string(Name) + "\r\n";
  for (auto _ : state) {
    std::FILE* const file = std::fopen(path.c_str(), "ab");
    std::fwrite(line.data(), 1, line.size(), file);
    std::fclose(file);
  }
}

void TracedCall(benchmark::State& state) {
  const test::TemporaryFolder folder;
  AppDir = folder.Path();
  test::ScriptedDesktop desktop;
  UserControl editor("KwEditorLayers");
  PictureBox frame("picFrame");
  PictureBox canvas("picCanvas");
  Log log("KwLogCtl1");
  test::RecordedEvents events;
  Trap trap(desktop, events, editor, frame, canvas, log);
  for (auto _ : state) {
    const Procedure run(trap, Name);
    benchmark::DoNotOptimize(&run);
  }
  AppDir.clear();
}

BENCHMARK(BareAppend)->Name("trace/bare_append");
BENCHMARK(TracedCall)->Name("trace/traced_call");

}  // namespace
}  // namespace kw
