#ifdef _WIN32

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "components/base/RunTimeError.h"
#include "components/base/SystemFile.h"
#include "components/base/SystemStream.h"
#include "components/base/Unicode.h"

namespace kw {
namespace {

constexpr DWORD LongestWait = 5000;
constexpr DWORD Pause = 5;
constexpr DWORD SharedWithAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
// What a scanner or an indexer that has a file open is waited for, in milliseconds.
constexpr std::array<DWORD, 7> Pauses{0, 10, 20, 50, 100, 200, 400};

template <BOOL(WINAPI* CloseIt)(HANDLE)>
class Owned {
public:
  explicit Owned(HANDLE opened) : handle(opened) {}
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;
  ~Owned() {
    if (IsOpen()) CloseIt(handle);
  }
  bool IsOpen() const { return handle != INVALID_HANDLE_VALUE; }
  HANDLE Get() const { return handle; }
  void Release() { handle = INVALID_HANDLE_VALUE; }

private:
  HANDLE handle;
};

using Handle = Owned<CloseHandle>;
using Search = Owned<FindClose>;

SystemCode LastCode() {
  const DWORD code = GetLastError();
  return static_cast<SystemCode>(code != 0 ? code : ERROR_GEN_FAILURE);
}

SystemCode CodeOf(BOOL result) { return result != FALSE ? 0 : LastCode(); }

std::uint64_t Joined(DWORD high, DWORD low) { return std::uint64_t{high} << 32U | low; }

FileFacts FactsOf(const BY_HANDLE_FILE_INFORMATION& information) {
  constexpr std::int64_t ticksUntil1970 = 116'444'736'000'000'000;
  FileFacts facts;
  facts.kind = (information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? FileKind::Folder : FileKind::Plain;
  facts.identity = {information.dwVolumeSerialNumber, Joined(information.nFileIndexHigh, information.nFileIndexLow)};
  facts.size = Joined(information.nFileSizeHigh, information.nFileSizeLow);
  const FILETIME changed = information.ftLastWriteTime;
  facts.changed = static_cast<std::int64_t>(Joined(changed.dwHighDateTime, changed.dwLowDateTime)) - ticksUntil1970;
  return facts;
}

SystemCode LookAtHandle(HANDLE handle, FileFacts& facts) {
  facts = {};
  if (GetFileType(handle) != FILE_TYPE_DISK) return 0;
  BY_HANDLE_FILE_INFORMATION information{};
  const SystemCode code = CodeOf(GetFileInformationByHandle(handle, &information));
  if (code == 0) facts = FactsOf(information);
  return code;
}

// Devices have these names in every folder, also with an extension and with blanks behind them.
bool NamesDevice(const std::filesystem::path& path) {
  if (path.native().starts_with(L"\\\\.\\")) return true;
  std::wstring name = path.native().substr(path.native().find_last_of(L"\\/:") + 1);
  name.resize(std::min(name.find_first_of(L".:"), name.size()));
  name.erase(name.find_last_not_of(L' ') + 1);
  constexpr std::size_t longest = 7;
  if (name.size() > longest) return false;
  CharUpperBuffW(name.data(), static_cast<DWORD>(name.size()));
  constexpr std::array<std::wstring_view, 6> names{L"CON", L"PRN", L"AUX", L"NUL", L"CONIN$", L"CONOUT$"};
  if (std::ranges::find(names, name) != names.end()) return true;
  const bool isPort = name.starts_with(L"COM") || name.starts_with(L"LPT");
  return isPort && name.size() == 4 && name.find_first_of(L"123456789\u00B9\u00B2\u00B3", 3) == 3;
}

// In use by another process, for a moment perhaps.
bool IsInUse(SystemCode code) {
  constexpr std::array<SystemCode, 4> codes{ERROR_ACCESS_DENIED, ERROR_SHARING_VIOLATION, ERROR_LOCK_VIOLATION,
                                            ERROR_USER_MAPPED_FILE};
  return std::ranges::find(codes, code) != codes.end();
}

HANDLE OpenFor(const std::filesystem::path& path, FileUse use) {
  if (use == FileUse::Read) {
    return CreateFileW(path.c_str(), GENERIC_READ, SharedWithAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                       nullptr);
  }
  return CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                     use == FileUse::Change ? OPEN_EXISTING : CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
}

// A lock needs the right to read, which a file that all may only append to does not give.
HANDLE OpenForAppending(const std::filesystem::path& path) {
  HANDLE opened = INVALID_HANDLE_VALUE;
  for (const DWORD right : {FILE_READ_DATA, 0}) {
    opened = CreateFileW(path.c_str(), FILE_APPEND_DATA | SYNCHRONIZE | right, SharedWithAll, nullptr, OPEN_ALWAYS,
                         FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened != INVALID_HANDLE_VALUE || GetLastError() != ERROR_ACCESS_DENIED) break;
  }
  return opened;
}

// Between those who append to one file, since not every file system puts the bytes of two of them behind each other.
// They do without it if it cannot be had. It lasts until the file is closed: to give it back by a call of its own takes
// a seventh of the time of the whole.
void AwaitOtherWriters(HANDLE file) {
  const ULONGLONG start = GetTickCount64();
  do {
    // Behind all bytes that a file can have, so that readers do not meet it.
    OVERLAPPED place = {};
    place.OffsetHigh = 0x7FFFFFFF;
    const bool isLocked =
        LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) != FALSE;
    if (isLocked || GetLastError() != ERROR_LOCK_VIOLATION) return;
    Sleep(1);
  } while (GetTickCount64() - start < LongestWait);
}

// Attributes and access rights of the file that is about to be replaced, as far as this user and the file system allow.
// ReplaceFile() would hand on more, but it takes two steps: between them there is no file of that name.
void HandOn(const std::filesystem::path& target, DWORD attributes, const std::filesystem::path& file) {
  constexpr DWORD kept = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
  if ((attributes & kept) != 0) SetFileAttributesW(file.c_str(), attributes & (kept | FILE_ATTRIBUTE_ARCHIVE));
  DWORD size = 0;
  GetFileSecurityW(target.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
  std::vector<BYTE> rights(size);
  SECURITY_DESCRIPTOR_CONTROL control = 0;
  DWORD revision = 0;
  if (size == 0 || GetFileSecurityW(target.c_str(), DACL_SECURITY_INFORMATION, rights.data(), size, &size) == FALSE ||
      GetSecurityDescriptorControl(rights.data(), &control, &revision) == FALSE) {
    return;
  }
  const DWORD inherits =
      (control & SE_DACL_PROTECTED) != 0 ? PROTECTED_DACL_SECURITY_INFORMATION : UNPROTECTED_DACL_SECURITY_INFORMATION;
  SetFileSecurityW(file.c_str(), DACL_SECURITY_INFORMATION | inherits, rights.data());
}

}  // namespace

void RaiseFileError(SystemCode code) {
  constexpr SystemCode diskQuotaExceeded = 1295;
  switch (code) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_FILENAME_EXCED_RANGE:
    case ERROR_DIRECTORY:
      Raise(ErrorNumber::PathNotFound, code);
    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_USER_MAPPED_FILE:
      Raise(ErrorNumber::PermissionDenied, code);
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case diskQuotaExceeded:
    case ERROR_FILE_TOO_LARGE:
      Raise(ErrorNumber::DiskFull, code);
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
      Raise(ErrorNumber::OutOfMemory, code);
    default:
      Raise(ErrorNumber::PathFileAccessError, code);
  }
}

bool IsLackOfMemory(SystemCode code) { return code == ERROR_NOT_ENOUGH_MEMORY || code == ERROR_OUTOFMEMORY; }
bool IsMissing(SystemCode code) {
  constexpr std::array<SystemCode, 6> codes{ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND,       ERROR_INVALID_NAME,
                                            ERROR_BAD_PATHNAME,   ERROR_FILENAME_EXCED_RANGE, ERROR_INVALID_DRIVE};
  return std::ranges::find(codes, code) != codes.end();
}
bool IsTaken(SystemCode code) { return code == ERROR_ALREADY_EXISTS || code == ERROR_FILE_EXISTS; }

void ForgetStreamError() { _doserrno = 0; }
SystemCode LastStreamError() { return _doserrno != 0 ? static_cast<SystemCode>(_doserrno) : ERROR_GEN_FAILURE; }
// A disk takes what it has room for and calls that no error.
SystemCode LastWriteError() { return _doserrno != 0 ? static_cast<SystemCode>(_doserrno) : ERROR_DISK_FULL; }

SystemCode FileSystem::LookAt(const Path& path, FileFacts& facts) const {
  facts = {};
  if (NamesDevice(path)) return 0;
  const Handle file(CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, SharedWithAll, nullptr, OPEN_EXISTING,
                                FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  return file.IsOpen() ? LookAtHandle(file.Get(), facts) : LastCode();
}

SystemCode FileSystem::LookAt(const Path& path, FileKind& kind) const {
  kind = FileKind::Other;
  if (NamesDevice(path)) return 0;
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return LastCode();
  // Only opening a link tells what lies behind it.
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
    FileFacts facts;
    const SystemCode code = FileSystem::LookAt(path, facts);
    kind = facts.kind;
    return code;
  }
  kind = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? FileKind::Folder : FileKind::Plain;
  return 0;
}

SystemCode FileSystem::LookAt(std::FILE* file, FileFacts& facts) const {
  return LookAtHandle(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file))), facts);
}

SystemCode FileSystem::Open(const Path& path, FileUse use, OpenedFile& file) const {
  if (NamesDevice(path)) return ERROR_INVALID_NAME;
  const ULONGLONG start = GetTickCount64();
  HANDLE opened = OpenFor(path, use);
  while (opened == INVALID_HANDLE_VALUE) {
    const SystemCode code = LastCode();
    const bool mayWait = use == FileUse::Change && code == ERROR_SHARING_VIOLATION;
    if (!mayWait || GetTickCount64() - start > LongestWait) return code;
    Sleep(Pause);
    opened = OpenFor(path, use);
  }
  Handle handle(opened);
  const int descriptor = _open_osfhandle(reinterpret_cast<intptr_t>(opened), _O_BINARY);
  if (descriptor < 0) return ERROR_TOO_MANY_OPEN_FILES;
  handle.Release();
  file.reset(_fdopen(descriptor, use == FileUse::Read ? "rb" : "r+b"));
  if (file != nullptr) return 0;
  _close(descriptor);
  return ERROR_TOO_MANY_OPEN_FILES;
}

SystemCode FileSystem::Seek(std::FILE* file, std::uint64_t to) const {
  if (to > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) return ERROR_NEGATIVE_SEEK;
  ForgetStreamError();
  return _fseeki64(file, static_cast<std::int64_t>(to), SEEK_SET) == 0 ? 0 : LastStreamError();
}

SystemCode FileSystem::SizeOf(std::FILE* file, std::uint64_t& size) const {
  ForgetStreamError();
  const std::int64_t end = _fseeki64(file, 0, SEEK_END) == 0 ? _ftelli64(file) : -1;
  if (end < 0) return LastStreamError();
  size = static_cast<std::uint64_t>(end);
  return 0;
}

SystemCode FileSystem::Flush(std::FILE* file) const {
  ForgetStreamError();
  if (std::fflush(file) != 0) return LastWriteError();
  return CodeOf(FlushFileBuffers(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)))));
}

SystemCode FileSystem::Remove(const Path& path) const { return CodeOf(DeleteFileW(path.c_str())); }
// Who writes a file does not let others delete it.
SystemCode FileSystem::RemoveUnused(const Path& path) const { return Remove(path); }
SystemCode FileSystem::MakeFolder(const Path& path) const { return CodeOf(CreateDirectoryW(path.c_str(), nullptr)); }

// The library's operator / reads freed memory if it gets none. Where a path is long, one backslash more would be part
// of a name.
SystemCode FileSystem::List(const Path& folder, const std::function<void(const Path& path)>& take) const {
  constexpr DWORD others = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_DEVICE;
  std::wstring before = folder.native();
  if (!before.empty() && before.back() != L'\\') before += L'\\';
  WIN32_FIND_DATAW found{};
  const Search search(FindFirstFileW((before + L"*").c_str(), &found));
  if (!search.IsOpen()) return LastCode();
  do {
    if ((found.dwFileAttributes & others) == 0) take(before + found.cFileName);
  } while (FindNextFileW(search.Get(), &found) != FALSE);
  const SystemCode code = LastCode();
  return code == ERROR_NO_MORE_FILES ? 0 : code;
}

FileSystem::Path FileSystem::BehindLinks(const Path& path) const {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return path;
  const Handle file(CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, SharedWithAll, nullptr, OPEN_EXISTING,
                                FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  if (!file.IsOpen()) return path;
  std::wstring place(GetFinalPathNameByHandleW(file.Get(), nullptr, 0, 0), L'\0');
  const DWORD length = GetFinalPathNameByHandleW(file.Get(), place.data(), static_cast<DWORD>(place.size()), 0);
  if (length == 0 || length >= place.size()) return path;
  place.resize(length);
  return place;
}

SystemCode FileSystem::PutInPlace(const Path& file, const Path& target, Existing existing,
                                  Durability durability) const {
  constexpr DWORD fixed = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY;
  const DWORD attributes = GetFileAttributesW(target.c_str());
  if (existing == Existing::Replaced && attributes != INVALID_FILE_ATTRIBUTES) {
    if ((attributes & fixed) != 0) return ERROR_ACCESS_DENIED;
    if (durability == Durability::Lasting) HandOn(target, attributes, file);
  }
  const DWORD flags = (existing == Existing::Replaced ? MOVEFILE_REPLACE_EXISTING : 0U) |
                      (durability == Durability::Lasting ? MOVEFILE_WRITE_THROUGH : 0U);
  SystemCode code = 0;
  for (const DWORD pause : Pauses) {
    Sleep(pause);
    code = CodeOf(MoveFileExW(file.c_str(), target.c_str(), flags));
    if (!IsInUse(code)) break;
  }
  return code;
}

SystemCode FileSystem::Append(const Path& path, std::string_view text) const {
  if (NamesDevice(path)) return ERROR_INVALID_NAME;
  const Handle file(OpenForAppending(path));
  if (!file.IsOpen()) return LastCode();
  AwaitOtherWriters(file.Get());
  while (!text.empty()) {
    DWORD written = 0;
    constexpr std::size_t most = 1U << 30U;
    if (WriteFile(file.Get(), text.data(), static_cast<DWORD>(std::min(text.size(), most)), &written, nullptr) ==
        FALSE) {
      return LastCode();
    }
    text.remove_prefix(written);
  }
  return 0;
}

SystemCode FileSystem::Lock(const Path& path, std::intptr_t& handle) const {
  const ULONGLONG start = GetTickCount64();
  for (;;) {
    HANDLE opened = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                                FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (opened != INVALID_HANDLE_VALUE) {
      handle = reinterpret_cast<std::intptr_t>(opened);
      return 0;
    }
    const SystemCode code = LastCode();
    // A file that is being deleted answers that access is denied.
    if (!IsInUse(code) || GetTickCount64() - start > LongestWait) return code;
    Sleep(Pause);
  }
}

void FileSystem::Unlock(const Path& /*path*/, std::intptr_t handle) const {
  CloseHandle(reinterpret_cast<HANDLE>(handle));
}

namespace {

std::string AskForMachineName() {
  constexpr COMPUTER_NAME_FORMAT kind = ComputerNamePhysicalDnsFullyQualified;
  DWORD size = 0;
  GetComputerNameExW(kind, nullptr, &size);
  std::wstring name(size, L'\0');
  if (size == 0 || GetComputerNameExW(kind, name.data(), &size) == FALSE) return {};
  name.resize(size);
  return Utf8FromUtf16(std::u16string(name.begin(), name.end()));
}

}  // namespace

// The system looks it up in the network, which takes a millisecond or more.
std::string MachineName() {
  static const std::string name = AskForMachineName();
  return name;
}

std::int64_t ProcessNumber() { return GetCurrentProcessId(); }

bool IsProcessRunning(std::int64_t number) {
  if (number < 0 || number > MAXDWORD) return false;
  const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(number));
  if (process == nullptr) return GetLastError() != ERROR_INVALID_PARAMETER;
  const bool isOver = WaitForSingleObject(process, 0) == WAIT_OBJECT_0;
  CloseHandle(process);
  return !isOver;
}

}  // namespace kw

#endif
