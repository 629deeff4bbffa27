#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>

// The library leaves no data of threads behind when it is unloaded. The compiler's run time would keep a library in
// memory until each thread ends that has an object of the library, which for a host's first thread is never; and its
// threads library never gives back its slot for data of threads, of which a process has about a thousand, nor the
// handles of its locks. So the run time's function for such objects is replaced here, and what that library takes of
// the system is noted and given back. Nothing else in this library makes events and semaphores.

namespace {

#ifdef _WIN64
#define KW_DESTRUCTOR
#define KW_IMPORTED(name, bytes) "__imp_" name
#else
#define KW_DESTRUCTOR __thiscall
#define KW_IMPORTED(name, bytes) "__imp__" name "@" bytes
#endif

// The compiler hands over destructors of classes as plain functions with their convention of calls.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wattributes"
using Destructor = void(KW_DESTRUCTOR*)(void*);
#pragma GCC diagnostic pop

// An object of a thread.
struct Owned {
  Owned* next;
  Destructor destroy;
  void* object;
  DWORD thread;
};

SRWLOCK lock = SRWLOCK_INIT;
Owned* newest = nullptr;
bool isUnloading = false;

// What was taken and not given back, up to so many; further ones are not noted.
template <class Thing>
class Noted {
public:
  void Add(Thing thing) {
    AcquireSRWLockExclusive(&lock);
    if (count < Most) things[count++] = thing;
    ReleaseSRWLockExclusive(&lock);
  }
  void Remove(Thing thing) {
    AcquireSRWLockExclusive(&lock);
    count = static_cast<std::size_t>(std::remove(things, things + count, thing) - things);
    ReleaseSRWLockExclusive(&lock);
  }
  template <class Give>
  void GiveBack(Give&& give) {
    for (std::size_t i = 0; i < count; ++i) give(things[i]);
    count = 0;
  }

private:
  static constexpr std::size_t Most = 64;
  Thing things[Most] = {};
  std::size_t count = 0;
};

constinit Noted<DWORD> slots;
constinit Noted<HANDLE> handles;

// Takes the newest object of the thread, or of any if it is 0, off the list.
Owned* TakeNewest(DWORD thread) {
  AcquireSRWLockExclusive(&lock);
  Owned** place = &newest;
  while (*place != nullptr && thread != 0 && (*place)->thread != thread) place = &(*place)->next;
  Owned* const taken = *place;
  if (taken != nullptr) *place = taken->next;
  ReleaseSRWLockExclusive(&lock);
  return taken;
}

// A destructor may make other objects, which are destroyed, too.
void DestroyObjects(DWORD thread) {
  while (Owned* const owned = TakeNewest(thread)) {
    owned->destroy(owned->object);
    std::free(owned);
  }
}

void NTAPI AtThreadEvent(void* /*library*/, DWORD reason, void* isProcessEnding) {
  if (reason == DLL_THREAD_DETACH) DestroyObjects(GetCurrentThreadId());
  if (reason != DLL_PROCESS_DETACH || isProcessEnding != nullptr) return;
  isUnloading = true;
  DestroyObjects(0);
}

template <class Function>
Function FromSystem(const char* name) {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), name)));
}

DWORD WINAPI NotedTlsAlloc() {
  const auto allocate = FromSystem<decltype(&TlsAlloc)>("TlsAlloc");
  const DWORD slot = allocate();
  if (slot != TLS_OUT_OF_INDEXES) slots.Add(slot);
  return slot;
}

HANDLE WINAPI NotedCreateEvent(LPSECURITY_ATTRIBUTES security, BOOL isManual, BOOL isSet, LPCSTR name) {
  const auto create = FromSystem<decltype(&CreateEventA)>("CreateEventA");
  const HANDLE handle = create(security, isManual, isSet, name);
  if (handle != nullptr) handles.Add(handle);
  return handle;
}

HANDLE WINAPI NotedCreateSemaphore(LPSECURITY_ATTRIBUTES security, LONG begin, LONG most, LPCSTR name) {
  const auto create = FromSystem<decltype(&CreateSemaphoreA)>("CreateSemaphoreA");
  const HANDLE handle = create(security, begin, most, name);
  if (handle != nullptr) handles.Add(handle);
  return handle;
}

BOOL CloseUnnoted(HANDLE handle) { return FromSystem<decltype(&CloseHandle)>("CloseHandle")(handle); }

BOOL WINAPI NotedCloseHandle(HANDLE handle) {
  handles.Remove(handle);
  return CloseUnnoted(handle);
}

}  // namespace

extern "C" {

// The threads library's own function for events of threads.
// NOLINTNEXTLINE(bugprone-reserved-identifier): its name there
extern const PIMAGE_TLS_CALLBACK __xl_f;

// Before that one, which frees the memory of the objects.
[[gnu::section(".CRT$XLE"), gnu::used]] const PIMAGE_TLS_CALLBACK KwThreadEvents = &AtThreadEvent;

// What the libraries' calls of the system go through.
#define KW_INSTEAD(function, bytes, own)                                                       \
  extern decltype(&(function)) const KwInsteadOf##function asm(KW_IMPORTED(#function, bytes)); \
  decltype(&(function)) const KwInsteadOf##function = &(own);
KW_INSTEAD(TlsAlloc, "0", NotedTlsAlloc)
KW_INSTEAD(CreateEventA, "16", NotedCreateEvent)
KW_INSTEAD(CreateSemaphoreA, "16", NotedCreateSemaphore)
KW_INSTEAD(CloseHandle, "4", NotedCloseHandle)
#undef KW_INSTEAD

// NOLINTNEXTLINE(bugprone-reserved-identifier): the name by which the compiler calls it
int __cxa_thread_atexit(Destructor destroy, void* object, void* /*library*/) noexcept {
  auto* const owned = static_cast<Owned*>(std::malloc(sizeof(Owned)));
  if (owned == nullptr) return -1;
  AcquireSRWLockExclusive(&lock);
  *owned = {newest, destroy, object, GetCurrentThreadId()};
  newest = owned;
  ReleaseSRWLockExclusive(&lock);
  return 0;
}

}  // extern "C"

namespace {

// Made first, and so destroyed behind all that might still use data of the thread.
struct SlotsGiven {
  ~SlotsGiven() {
    if (!isUnloading) return;
    __xl_f(nullptr, DLL_THREAD_DETACH, nullptr);
    slots.GiveBack(&TlsFree);
    handles.GiveBack(&CloseUnnoted);
  }
};
[[gnu::init_priority(101)]] const SlotsGiven slotsGiven;

}  // namespace
