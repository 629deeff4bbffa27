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

}  // namespace

OcxMemory::OcxMemory(long failing)
    : malloc(Ocx::Library(), "malloc", &Malloc),
      calloc(Ocx::Library(), "calloc", &Calloc),
      realloc(Ocx::Library(), "realloc", &Realloc) {
  failingRequest = failing;
  requests = 0;
  countedThread = GetCurrentThreadId();
}

OcxMemory::~OcxMemory() { countedThread = 0; }

long OcxMemory::Requests() const { return requests; }

}  // namespace kw::test
