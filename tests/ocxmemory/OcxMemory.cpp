#include "tests/ocxmemory/OcxMemory.h"

#include <cstdlib>

#include "tests/activex/Ocx.h"

namespace kw::test {
namespace {

DWORD countedThread = 0;
long failingRequest = 0;
long requests = 0;

bool IsRefused() { return GetCurrentThreadId() == countedThread && ++requests == failingRequest; }

void* Malloc(std::size_t size) { return IsRefused() ? nullptr : std::malloc(size); }
void* Calloc(std::size_t count, std::size_t size) { return IsRefused() ? nullptr : std::calloc(count, size); }
void* Realloc(void* memory, std::size_t size) { return IsRefused() ? nullptr : std::realloc(memory, size); }

BSTR WINAPI MakeText(const OLECHAR* text, UINT length) {
  return IsRefused() ? nullptr : SysAllocStringLen(text, length);
}
LPVOID WINAPI TaskMemory(SIZE_T size) { return IsRefused() ? nullptr : CoTaskMemAlloc(size); }
HGLOBAL WINAPI GlobalMemory(UINT flags, SIZE_T size) { return IsRefused() ? nullptr : GlobalAlloc(flags, size); }
HBITMAP WINAPI MakeBitmap(HDC context, const BITMAPINFO* head, UINT usage, void** pixels, HANDLE section,
                          DWORD offset) {
  return IsRefused() ? nullptr : CreateDIBSection(context, head, usage, pixels, section, offset);
}
HDC WINAPI MakeContext(HDC like) { return IsRefused() ? nullptr : CreateCompatibleDC(like); }

}  // namespace

OcxMemory::OcxMemory(long failing)
    : malloc(Ocx::Library(), "malloc", &Malloc),
      calloc(Ocx::Library(), "calloc", &Calloc),
      realloc(Ocx::Library(), "realloc", &Realloc),
      text(Ocx::Library(), "SysAllocStringLen", &MakeText),
      task(Ocx::Library(), "CoTaskMemAlloc", &TaskMemory),
      global(Ocx::Library(), "GlobalAlloc", &GlobalMemory),
      bitmap(Ocx::Library(), "CreateDIBSection", &MakeBitmap),
      context(Ocx::Library(), "CreateCompatibleDC", &MakeContext) {
  failingRequest = failing;
  requests = 0;
  countedThread = GetCurrentThreadId();
}

OcxMemory::~OcxMemory() { countedThread = 0; }

long OcxMemory::Requests() const { return requests; }

}  // namespace kw::test
