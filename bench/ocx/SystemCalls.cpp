#include "bench/ocx/SystemCalls.h"

#include <windows.h>

#include <commctrl.h>

#include <array>
#include <cstddef>
#include <utility>

#include "tests/activex/Ocx.h"
#include "tests/windows/ImportPatch.h"

namespace kw::bench {
namespace {

enum Kind : std::size_t { Files, Windows, Messages, Drawing, Kinds };
constexpr std::array<const char*, Kinds> Names{"files", "windows", "messages", "drawing"};

std::array<double, Kinds> spent{};
// Of the calls within the one that runs now.
double inner = 0;
DWORD measuredThread = 0;

class Timer {
public:
  explicit Timer(Kind its) : kind(its), outer(std::exchange(inner, 0)), begin(Now()) {}
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;
  ~Timer() {
    const double whole = Now() - begin;
    spent[kind] += whole - inner;
    inner = outer + whole;
  }

private:
  Kind kind;
  double outer;
  double begin;
};

// Stands in for one function of the system; `Line` tells those of one type apart.
template <int Line, class Result, class... Arguments>
class Measured {
public:
  using Function = Result(WINAPI*)(Arguments...);
  Measured(const char* name, Kind its, Function function)
      : patch((real = function, kind = its, test::Ocx::Library()), name, &Call) {}

private:
  static Result WINAPI Call(Arguments... arguments) {
    if (GetCurrentThreadId() != measuredThread) return real(arguments...);
    const Timer timer(kind);
    return real(arguments...);
  }

  static inline Function real = nullptr;
  static inline Kind kind = Files;
  test::ImportPatch patch;
};

template <int Line, class Result, class... Arguments>
Measured<Line, Result, Arguments...> TypeOf(Result(WINAPI* function)(Arguments...));

}  // namespace

struct SystemCalls::Patches {
#define KW_MEASURED(kind, function) \
  decltype(TypeOf<__LINE__>(&::function)) function##Measured { #function, kind, &::function }
  KW_MEASURED(Files, CreateFileW);
  KW_MEASURED(Files, WriteFile);
  KW_MEASURED(Files, LockFileEx);
  KW_MEASURED(Files, MoveFileExW);
  KW_MEASURED(Files, DeleteFileW);
  KW_MEASURED(Files, GetFileAttributesW);
  KW_MEASURED(Files, GetFileInformationByHandle);
  KW_MEASURED(Files, fread);
  KW_MEASURED(Files, fwrite);
  KW_MEASURED(Files, fflush);
  KW_MEASURED(Files, fclose);
  KW_MEASURED(Windows, CreateWindowExW);
  KW_MEASURED(Windows, DestroyWindow);
  KW_MEASURED(Windows, SetWindowPos);
  KW_MEASURED(Windows, MoveWindow);
  KW_MEASURED(Windows, ShowWindow);
  KW_MEASURED(Windows, SendMessageW);
  KW_MEASURED(Windows, SetFocus);
  KW_MEASURED(Messages, PeekMessageW);
  KW_MEASURED(Messages, GetMessageW);
  KW_MEASURED(Messages, DispatchMessageW);
  KW_MEASURED(Drawing, BeginPaint);
  KW_MEASURED(Drawing, BitBlt);
  KW_MEASURED(Drawing, CreateDIBSection);
  KW_MEASURED(Drawing, GdiAlphaBlend);
  KW_MEASURED(Drawing, ExtTextOutW);
  KW_MEASURED(Drawing, RedrawWindow);
#undef KW_MEASURED
};

SystemCalls::SystemCalls() : patches(std::make_unique<Patches>()) { measuredThread = GetCurrentThreadId(); }
SystemCalls::~SystemCalls() = default;

Times SystemCalls::TimesOf(int count, const std::function<void()>& work, std::vector<Part>& parts,
                           const std::function<void()>& prepare) {
  Times times;
  for (int i = 0; i < count; ++i) {
    if (prepare) prepare();
    spent.fill(0);
    inner = 0;
    const double begin = Now();
    work();
    const double whole = Now() - begin;
    if (!times.Add(whole)) continue;
    parts.clear();
    for (std::size_t kind = 0; kind < Kinds; ++kind) parts.push_back({Names[kind], spent[kind]});
  }
  return times;
}

}  // namespace kw::bench
