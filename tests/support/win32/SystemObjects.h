#pragma once

#include <windows.h>

#include <tlhelp32.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

// How much of the system's things this process holds. Wine's GetGuiResources counts nothing, so there it is counted by
// other means; each has a test of its own that it counts.
namespace kw::test::SystemObjects {

// Pens, bitmaps, fonts, device contexts: those in the process's table of handles.
inline int CountGdi() {
  if (const DWORD counted = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS)) return static_cast<int>(counted);
  struct Entry {
    std::uint64_t object;
    std::uint32_t owner;
    std::uint16_t unique;
    std::uint8_t type;  // 0 for a free one
    std::uint8_t flags;
    std::uint64_t user;
  };
  constexpr std::size_t Entries = 0x10000;
  // In a process of 64 bits. One of 32 bits has such a block, too, and its thread knows where that of the thread is.
  constexpr std::size_t TableOffset = 0xF8;  // in the process's environment block
#ifdef _WIN64
  using GetBlock = const std::byte*(WINAPI*)();
  const auto getBlock = reinterpret_cast<GetBlock>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetCurrentPeb")));
  const std::byte* const block = getBlock();
#else
  constexpr std::size_t ThreadOffset = 0xF70;
  constexpr std::size_t BlockOffset = 0x60;
  const auto* const own = reinterpret_cast<const std::byte*>(NtCurrentTeb());
  const auto* const thread = *reinterpret_cast<const std::byte* const*>(own + ThreadOffset);
  const auto* const block = *reinterpret_cast<const std::byte* const*>(thread + BlockOffset);
#endif
  const Entry* const table = *reinterpret_cast<const Entry* const*>(block + TableOffset);
  return static_cast<int>(std::count_if(table, table + Entries, [](const Entry& one) { return one.type != 0; }));
}

// Windows, menus, cursors. Handles that became free are given out again before new ones: once a new one comes, all
// others are taken, and their number tells how many there were. Those of the desktop's other programs count, too.
inline int CountUser() {
  if (const DWORD counted = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS)) return static_cast<int>(counted);
  constexpr std::size_t Many = 3000;  // more than were ever free when the first count begins
  static int highest = 0;
  const bool isFirst = highest == 0;
  const int before = highest;
  std::vector<HMENU> menus;
  while (highest == before || (isFirst && menus.size() < Many)) {
    menus.push_back(CreateMenu());
    if (menus.back() == nullptr) break;
    highest = std::max(highest, static_cast<int>(LOWORD(reinterpret_cast<std::uintptr_t>(menus.back()))));
  }
  for (const HMENU menu : menus) DestroyMenu(menu);
  constexpr int Step = 2;  // from one handle to the next
  return highest / Step - static_cast<int>(menus.size());
}

// Files, events, threads and whatever else the system's kernel gives handles for.
inline int CountHandles() {
  DWORD counted = 0;
  if (GetProcessHandleCount(GetCurrentProcess(), &counted) != FALSE && counted != 0) return static_cast<int>(counted);
  struct Entry {
    void* object;
    ULONG_PTR process;
    ULONG_PTR handle;
    ULONG access;
    USHORT trace;
    USHORT type;
    ULONG attributes;
    ULONG reserved;
  };
  struct Table {
    ULONG_PTR count;
    ULONG_PTR reserved;
    Entry entries[1];
  };
  constexpr int allHandles = 64;
  using Query = LONG(NTAPI*)(int, void*, ULONG, ULONG*);
  const auto query = reinterpret_cast<Query>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation")));
  std::vector<std::byte> bytes(std::size_t{1} << 20U);
  if (query(allHandles, bytes.data(), static_cast<ULONG>(bytes.size()), nullptr) < 0) return -1;
  const Table& table = *reinterpret_cast<const Table*>(bytes.data());
  return static_cast<int>(std::count_if(static_cast<const Entry*>(table.entries),
                                        static_cast<const Entry*>(table.entries) + table.count,
                                        [](const Entry& one) { return one.process == GetCurrentProcessId(); }));
}

inline int CountThreads() {
  const HANDLE all = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  THREADENTRY32 entry = {};
  entry.dwSize = sizeof entry;
  int count = 0;
  for (BOOL isOne = Thread32First(all, &entry); isOne != FALSE; isOne = Thread32Next(all, &entry)) {
    if (entry.th32OwnerProcessID == GetCurrentProcessId()) ++count;
  }
  CloseHandle(all);
  return count;
}

// Bytes that are in use on the heaps of the process.
inline std::size_t CountHeap() {
  std::vector<HANDLE> heaps(64);
  heaps.resize(std::min<std::size_t>(GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()), heaps.size()));
  std::size_t bytes = 0;
  for (const HANDLE heap : heaps) {
    PROCESS_HEAP_ENTRY entry = {};
    HeapLock(heap);
    while (HeapWalk(heap, &entry) != FALSE) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
    }
    HeapUnlock(heap);
  }
  return bytes;
}

}  // namespace kw::test::SystemObjects
