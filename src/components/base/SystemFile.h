#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace kw {

// All that this system does with files goes through FileSystem, so that a test can make any call of it fail. Paths are
// those of ToFilesystemPath().

// The system's own error code; 0 if a call succeeded.
using SystemCode = int;

// Raises PathNotFound, PermissionDenied, DiskFull, OutOfMemory or PathFileAccessError, with the code as its system
// error.
[[noreturn]] void RaiseFileError(SystemCode code);

// True for the code of a file or a folder that is not there, or cannot be, because no file has such a name.
bool IsMissing(SystemCode code);
bool IsLackOfMemory(SystemCode code);
// True for the code of a file that is there, although it should not be.
bool IsTaken(SystemCode code);

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

struct CloseFile {
  void operator()(std::FILE* file) const noexcept;
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

enum class Durability {
  Lasting,  // also after a power cut
  Passing,  // nothing waits for the disk
};
enum class Existing { Replaced, Kept };

// The calls to the file system. What is here is the system's own; a test derives from it.
class FileSystem {
public:
  using Path = std::filesystem::path;

  constexpr FileSystem() = default;
  FileSystem(const FileSystem&) = delete;
  FileSystem& operator=(const FileSystem&) = delete;
  constexpr virtual ~FileSystem() = default;

  // The one in use in this process.
  static const FileSystem& Current();
  // For tests: `other` is in use from now on; the system's own if it is null.
  static void Replace(const FileSystem* other);

  // A name that the system keeps for a device, as CON, is of the kind Other.
  virtual SystemCode LookAt(const Path& path, FileFacts& facts) const;
  // The same kind and codes; does not open the file if there is another way.
  virtual SystemCode LookAt(const Path& path, FileKind& kind) const;
  virtual SystemCode LookAt(std::FILE* file, FileFacts& facts) const;
  // Calls take() with the path of each plain file in the folder that is no link. An empty path is the current folder.
  virtual SystemCode List(const Path& folder, const std::function<void(const Path& path)>& take) const;
  // The target of `path` if it is a link, through all links; else `path` itself.
  virtual Path BehindLinks(const Path& path) const;

  // Never waits for what a device or a pipe may give.
  virtual SystemCode Open(const Path& path, FileUse use, OpenedFile& file) const;
  // Success with fewer bytes than `count` is the end of the file.
  virtual SystemCode Read(std::FILE* file, void* to, std::size_t count, std::size_t& done) const;
  virtual SystemCode Write(std::FILE* file, const void* from, std::size_t count, std::size_t& done) const;
  virtual SystemCode Seek(std::FILE* file, std::uint64_t to) const;
  // Also moves to the end.
  virtual SystemCode SizeOf(std::FILE* file, std::uint64_t& size) const;
  // Waits until all that was written to the file is on the disk.
  virtual SystemCode Flush(std::FILE* file) const;
  // Writes what is still buffered. The file is closed also if that fails.
  virtual SystemCode Close(std::FILE* file) const;

  virtual SystemCode Remove(const Path& path) const;
  // Leaves a file that some process holds open for writing.
  virtual SystemCode RemoveUnused(const Path& path) const;
  virtual SystemCode MakeFolder(const Path& path) const;
  // Gives `file` the name `target` in the same folder, in one step. A file that is replaced hands on its mode and, on
  // Windows, its attributes and its access rights; one that may not be written is not replaced. Waits a moment for who
  // has one of both open. If the existing file is kept, IsTaken() is true for the code.
  virtual SystemCode PutInPlace(const Path& file, const Path& target, Existing existing, Durability durability) const;
  // Writes the text behind the end that the file has at that moment, creating the file if needed.
  virtual SystemCode Append(const Path& path, std::string_view text) const;

  // See FileLock.
  virtual SystemCode Lock(const Path& path, std::intptr_t& handle) const;
  virtual void Unlock(const Path& path, std::intptr_t handle) const;
};

// A lock that every process and thread which names this path takes in turn. The file at `path` is there while somebody
// has the lock. Waits a few seconds.
class FileLock {
public:
  explicit FileLock(std::filesystem::path lockPath);
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  ~FileLock();
  // False if the file cannot be made or the wait was over.
  bool IsHeld() const { return isHeld; }

private:
  std::filesystem::path path;
  std::intptr_t handle = 0;
  bool isHeld = false;
};

// The name of this machine, the number of this process on it, and whether it has a process of that number now; also if
// that cannot be found out.
std::string MachineName();
std::int64_t ProcessNumber();
bool IsProcessRunning(std::int64_t number);

}  // namespace kw
