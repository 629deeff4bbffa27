#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <string_view>

namespace kw {

// Calls to the file system that standard C++ lacks. Paths are those of ToFilesystemPath().

// The system's own error code; 0 if a call succeeded.
using SystemCode = int;

// Raises PathNotFound, PermissionDenied, DiskFull, OutOfMemory or PathFileAccessError, with the code as its system
// error.
[[noreturn]] void RaiseFileError(SystemCode code);

// True for the code of a file or a folder that is not there.
bool IsMissing(SystemCode code);
bool IsLackOfMemory(SystemCode code);

// The code behind the call of the C library on a stream that failed since ForgetStreamError(); never 0.
void ForgetStreamError();
SystemCode LastStreamError();
SystemCode LastWriteError();

enum class FileKind { Plain, Folder, Other };

// Tells files apart, whatever path leads to them.
struct FileIdentity {
  std::uint64_t volume = 0;
  std::uint64_t index = 0;
  friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

struct FileFacts {
  FileKind kind = FileKind::Other;
  FileIdentity identity;
  std::uint64_t size = 0;
  // In tenths of a microsecond since the beginning of 1970.
  std::int64_t changed = 0;
};

// A name that the system keeps for a device, as CON, is of the kind Other.
SystemCode LookAt(const std::filesystem::path& path, FileFacts& facts);
SystemCode LookAt(std::FILE* file, FileFacts& facts);

struct CloseFile {
  void operator()(std::FILE* file) const noexcept { static_cast<void>(std::fclose(file)); }
};
using OpenedFile = std::unique_ptr<std::FILE, CloseFile>;

enum class FileUse {
  Read,
  // An existing file, to be read and written by nobody else meanwhile. Waits a few seconds if another program has it.
  Change,
  // A file that is not there yet.
  Create,
  // The same; only this user may open it until it takes the place of another file.
  CreatePrivate,
};

// Never waits for what a device or a pipe may give.
SystemCode OpenSystemFile(const std::filesystem::path& path, FileUse use, OpenedFile& file);
bool SeekFile(std::FILE* file, std::int64_t offset, int origin);
std::int64_t TellFile(std::FILE* file);
// Waits until all that was written to the file is on the disk.
SystemCode FlushToDisk(std::FILE* file);

SystemCode RemoveSystemFile(const std::filesystem::path& path);
// Leaves a file that some process holds open for writing.
void RemoveUnusedFile(const std::filesystem::path& path);
SystemCode MakeFolder(const std::filesystem::path& path);
// Hands over what lies in the folder, path by path; nothing if the folder cannot be read. The standard library's own
// iterator, and its operator /, end the process or read freed memory if they get none.
void ForEachIn(const std::filesystem::path& folder, const std::function<void(const std::filesystem::path&)>& take);

// The target of `path` if it is a link, through all links; else `path` itself.
std::filesystem::path BehindLinks(const std::filesystem::path& path);

enum class Durability {
  Lasting,  // also after a power cut
  Passing,  // nothing waits for the disk
};
enum class Existing { Replaced, Kept };

// Gives `file` the name `target` in the same folder, in one step. A file that is replaced hands on its mode and, on
// Windows, its attributes and its access rights; one that may not be written is not replaced. Waits a moment for who
// has one of both open. If the existing file is kept, IsTaken() is true for the code.
SystemCode PutInPlace(const std::filesystem::path& file, const std::filesystem::path& target, Existing existing,
                      Durability durability);
bool IsTaken(SystemCode code);

// Writes the text behind the end that the file has at that moment, creating the file if needed.
SystemCode AppendToSystemFile(const std::filesystem::path& path, std::string_view text);

// A lock that every process and thread which names this path takes in turn. The file at `path` is there while somebody
// has the lock. Waits a few seconds.
class FileLock {
public:
  explicit FileLock(std::filesystem::path lockPath);
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  ~FileLock();
  // False if the file cannot be made or the wait was over.
  bool IsHeld() const { return handle != None; }

private:
  static constexpr std::intptr_t None = -1;
  std::filesystem::path path;
  std::intptr_t handle = None;
};

}  // namespace kw
