#ifndef _WIN32

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "components/base/RunTimeError.h"
#include "components/base/SystemFile.h"
#include "components/base/SystemStream.h"

namespace kw {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds LongestWait{5000};
constexpr milliseconds Pause{5};
constexpr int MostLinks = 40;
constexpr mode_t PlainMode = 0666;
constexpr mode_t PrivateMode = 0600;
constexpr mode_t Permissions = 0777;
constexpr mode_t GroupPermissions = 0070;
constexpr mode_t OtherPermissions = 0007;
constexpr mode_t WritePermissions = 0222;

class Descriptor {
public:
  explicit Descriptor(int number) : descriptor(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (descriptor >= 0) close(descriptor);
  }
  bool IsOpen() const { return descriptor >= 0; }
  int Get() const { return descriptor; }
  void Release() { descriptor = -1; }

private:
  int descriptor;
};

SystemCode CodeOf(int result) { return result == 0 ? 0 : errno; }

FileFacts FactsOf(const struct stat& status) {
  constexpr std::int64_t ticks = 10'000'000;  // a second
  constexpr std::int64_t nanoseconds = 100;   // a tick
  FileFacts facts;
  if (S_ISREG(status.st_mode)) facts.kind = FileKind::Plain;
  if (S_ISDIR(status.st_mode)) facts.kind = FileKind::Folder;
  facts.identity = {static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino)};
  facts.size = static_cast<std::uint64_t>(status.st_size);
  facts.changed = status.st_mtim.tv_sec * ticks + status.st_mtim.tv_nsec / nanoseconds;
  return facts;
}

SystemCode LookAtDescriptor(int descriptor, FileFacts& facts) {
  struct stat status {};
  const SystemCode code = CodeOf(fstat(descriptor, &status));
  if (code == 0) facts = FactsOf(status);
  return code;
}

SystemCode LockDescriptor(int descriptor) {
  for (milliseconds waited{0};; waited += Pause) {
    if (flock(descriptor, LOCK_EX | LOCK_NB) == 0) return 0;
    if ((errno != EWOULDBLOCK && errno != EINTR) || waited >= LongestWait) return errno;
    std::this_thread::sleep_for(Pause);
  }
}

// The file may have got another name, or none, while this process waited for it.
bool IsStillAt(int descriptor, const std::filesystem::path& path) {
  FileFacts own;
  struct stat status {};
  if (LookAtDescriptor(descriptor, own) != 0 || stat(path.c_str(), &status) != 0) return false;
  return own.identity == FactsOf(status).identity;
}

bool IsMade(FileUse use) { return use == FileUse::Create || use == FileUse::CreatePrivate; }

int FlagsOf(FileUse use) {
  if (use == FileUse::Read) return O_RDONLY | O_NONBLOCK | O_CLOEXEC;
  if (use == FileUse::Change) return O_RDWR | O_NONBLOCK | O_CLOEXEC;
  return O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC;
}

SystemCode FlushFolderOf(const std::filesystem::path& path) {
  const std::string folder = path.parent_path().string();
  const Descriptor opened(open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!opened.IsOpen()) return errno == EACCES ? 0 : errno;  // a folder may be written and yet not be read
  const SystemCode code = CodeOf(fsync(opened.Get()));
  return code == EINVAL || code == ENOTSUP ? 0 : code;  // a file system without such a thing
}

// Owner and mode of the file that is about to be replaced.
SystemCode HandOn(const struct stat& old, const std::filesystem::path& file) {
  mode_t mode = old.st_mode & Permissions;
  // Who is in the new group has the rights of everybody, if the old group cannot be kept.
  const bool keepsOwner = chown(file.c_str(), old.st_uid, old.st_gid) == 0;
  if (!keepsOwner && chown(file.c_str(), static_cast<uid_t>(-1), old.st_gid) != 0) {
    mode &= ~GroupPermissions | (mode & OtherPermissions) << 3U;
  }
  return CodeOf(chmod(file.c_str(), mode));
}

SystemCode NameOnce(const std::filesystem::path& file, const std::filesystem::path& target) {
  if (renameat2(AT_FDCWD, file.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;
  if (link(file.c_str(), target.c_str()) != 0) return errno;
  return CodeOf(unlink(file.c_str()));
}

}  // namespace

void RaiseFileError(SystemCode code) {
  switch (code) {
    case ENOENT:
    case ENOTDIR:
      Raise(ErrorNumber::PathNotFound, code);
    case EACCES:
    case EPERM:
    case EROFS:
    case EWOULDBLOCK:
      Raise(ErrorNumber::PermissionDenied, code);
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      Raise(ErrorNumber::DiskFull, code);
    case ENOMEM:
      Raise(ErrorNumber::OutOfMemory, code);
    default:
      Raise(ErrorNumber::PathFileAccessError, code);
  }
}

bool IsLackOfMemory(SystemCode code) { return code == ENOMEM; }
bool IsMissing(SystemCode code) { return code == ENOENT || code == ENOTDIR || code == ENAMETOOLONG; }
bool IsTaken(SystemCode code) { return code == EEXIST; }

void ForgetStreamError() { errno = 0; }
SystemCode LastStreamError() { return errno != 0 ? errno : EIO; }
SystemCode LastWriteError() { return LastStreamError(); }

SystemCode FileSystem::LookAt(const Path& path, FileFacts& facts) const {
  struct stat status {};
  const SystemCode code = CodeOf(stat(path.c_str(), &status));
  if (code == 0) facts = FactsOf(status);
  return code;
}

SystemCode FileSystem::LookAt(const Path& path, FileKind& kind) const {
  FileFacts facts;
  const SystemCode code = FileSystem::LookAt(path, facts);
  kind = facts.kind;
  return code;
}

SystemCode FileSystem::LookAt(std::FILE* file, FileFacts& facts) const { return LookAtDescriptor(fileno(file), facts); }

SystemCode FileSystem::Open(const Path& path, FileUse use, OpenedFile& file) const {
  for (;;) {
    Descriptor opened(open(path.c_str(), FlagsOf(use), use == FileUse::CreatePrivate ? PrivateMode : PlainMode));
    if (!opened.IsOpen()) return errno;
    if (use == FileUse::Change) {
      if (const SystemCode code = LockDescriptor(opened.Get()); code != 0) return code;
      if (!IsStillAt(opened.Get(), path)) continue;
    } else if (IsMade(use)) {
      flock(opened.Get(), LOCK_EX | LOCK_NB);  // shows that it is still written; see RemoveUnusedFile()
    }
    file.reset(fdopen(opened.Get(), use == FileUse::Read ? "rb" : "r+b"));
    if (file != nullptr) {
      opened.Release();
      return 0;
    }
    const SystemCode code = errno;
    if (IsMade(use)) unlink(path.c_str());
    return code;
  }
}

SystemCode FileSystem::Seek(std::FILE* file, std::uint64_t to) const {
  if (to > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max())) return EOVERFLOW;
  ForgetStreamError();
  return fseeko(file, static_cast<off_t>(to), SEEK_SET) == 0 ? 0 : LastStreamError();
}

SystemCode FileSystem::SizeOf(std::FILE* file, std::uint64_t& size) const {
  ForgetStreamError();
  const off_t end = fseeko(file, 0, SEEK_END) == 0 ? ftello(file) : -1;
  if (end < 0) return LastStreamError();
  size = static_cast<std::uint64_t>(end);
  return 0;
}

SystemCode FileSystem::Flush(std::FILE* file) const {
  ForgetStreamError();
  if (std::fflush(file) != 0) return LastWriteError();
  return CodeOf(fsync(fileno(file)));
}

SystemCode FileSystem::Remove(const Path& path) const { return CodeOf(unlink(path.c_str())); }

SystemCode FileSystem::RemoveUnused(const Path& path) const {
  const Descriptor opened(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (!opened.IsOpen() || flock(opened.Get(), LOCK_EX | LOCK_NB) != 0) return errno;
  return CodeOf(unlink(path.c_str()));
}

// The library's iterator over a folder and its operator / end the process, or read freed memory, if they get none.
SystemCode FileSystem::List(const Path& folder, const std::function<void(const Path& path)>& take) const {
  const auto close = [](DIR* opened) { closedir(opened); };
  const std::unique_ptr<DIR, decltype(close)> opened(opendir(folder.empty() ? "." : folder.c_str()), close);
  if (opened == nullptr) return errno;
  std::string before = folder.native();
  if (!before.empty() && before.back() != '/') before += '/';
  for (;;) {
    errno = 0;
    const dirent* const entry = readdir(opened.get());
    if (entry == nullptr) return errno;
    const Path path = before + entry->d_name;
    struct stat status {};
    if (lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode)) take(path);
  }
}

SystemCode FileSystem::MakeFolder(const Path& path) const { return CodeOf(mkdir(path.c_str(), Permissions)); }

FileSystem::Path FileSystem::BehindLinks(const Path& path) const {
  Path place = path;
  for (int i = 0; i < MostLinks; ++i) {
    std::error_code error;
    const Path next = std::filesystem::read_symlink(place, error);
    if (error) return place;
    place = place.parent_path() / next;
  }
  return path;
}

SystemCode FileSystem::PutInPlace(const Path& file, const Path& target, Existing existing,
                                  Durability durability) const {
  struct stat old {};
  if (existing == Existing::Replaced && stat(target.c_str(), &old) == 0) {
    if (S_ISDIR(old.st_mode)) return EISDIR;
    if ((old.st_mode & WritePermissions) == 0) return EACCES;
    if (access(target.c_str(), W_OK) != 0) return errno;
    if (const SystemCode code = HandOn(old, file); code != 0) return code;
  }
  const SystemCode code =
      existing == Existing::Replaced ? CodeOf(std::rename(file.c_str(), target.c_str())) : NameOnce(file, target);
  return code != 0 || durability == Durability::Passing ? code : FlushFolderOf(target);
}

SystemCode FileSystem::Append(const Path& path, std::string_view text) const {
  const Descriptor opened(open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK | O_CLOEXEC, PlainMode));
  if (!opened.IsOpen()) return errno;
  while (!text.empty()) {
    const ssize_t written = write(opened.Get(), text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return errno != 0 ? errno : EIO;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

SystemCode FileSystem::Lock(const Path& path, std::intptr_t& handle) const {
  for (;;) {
    Descriptor opened(open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, PlainMode));
    if (!opened.IsOpen()) return errno;
    if (const SystemCode code = LockDescriptor(opened.Get()); code != 0) return code;
    if (!IsStillAt(opened.Get(), path)) continue;
    handle = opened.Get();
    opened.Release();
    return 0;
  }
}

void FileSystem::Unlock(const Path& path, std::intptr_t handle) const {
  unlink(path.c_str());
  close(static_cast<int>(handle));
}

std::string MachineName() {
  std::array<char, HOST_NAME_MAX + 1> name{};
  return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

std::int64_t ProcessNumber() { return getpid(); }

bool IsProcessRunning(std::int64_t number) {
  return number > 0 && number <= std::numeric_limits<pid_t>::max() &&
         (kill(static_cast<pid_t>(number), 0) == 0 || errno != ESRCH);
}

}  // namespace kw

#endif
