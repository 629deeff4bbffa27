#include "picture/File.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <limits>
#include <random>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include "components/FilePath.h"
#include "components/RunTimeError.h"
#include "picture/Unreadable.h"

// Standard C++ cannot ask for this, and no header of the system belongs here.
#ifdef _WIN32
extern "C" int _commit(int file);
#else
extern "C" int fsync(int);  // NOLINT(readability-redundant-declaration)
#endif

namespace kw {
namespace {

enum class Use { Read, Create, Change };

#ifdef _WIN32
std::FILE* OpenFile(const std::filesystem::path& path, Use use) {
  return _wfopen(path.c_str(), use == Use::Read ? L"rb" : use == Use::Create ? L"w+b" : L"r+b");
}
bool WriteThrough(std::FILE* file) { return _commit(_fileno(file)) == 0; }
// The standard library's own looks the file up first, which fails for long paths.
void RemoveFile(const std::filesystem::path& path) { _wremove(path.c_str()); }
bool SeekFile(std::FILE* file, std::int64_t offset, int origin) { return _fseeki64(file, offset, origin) == 0; }
std::int64_t TellFile(std::FILE* file) { return _ftelli64(file); }
constexpr std::string_view FolderEnds = "\\/:";
#else
std::FILE* OpenFile(const std::filesystem::path& path, Use use) {
  return std::fopen(path.c_str(), use == Use::Read ? "rb" : use == Use::Create ? "w+b" : "r+b");
}
bool WriteThrough(std::FILE* file) { return fsync(fileno(file)) == 0; }
void RemoveFile(const std::filesystem::path& path) { std::remove(path.c_str()); }
bool SeekFile(std::FILE* file, std::int64_t offset, int origin) { return fseeko(file, offset, origin) == 0; }
std::int64_t TellFile(std::FILE* file) { return ftello(file); }
constexpr std::string_view FolderEnds = "\\/";
#endif

[[noreturn]] void RaiseFileError(std::error_code error) {
  const auto is = [error](std::errc code) { return error == std::make_error_condition(code); };
  if (is(std::errc::no_such_file_or_directory) || is(std::errc::not_a_directory)) Raise(ErrorNumber::PathNotFound);
  if (is(std::errc::permission_denied) || is(std::errc::operation_not_permitted) ||
      is(std::errc::read_only_file_system)) {
    Raise(ErrorNumber::PermissionDenied);
  }
  if (is(std::errc::no_space_on_device) || is(std::errc::file_too_large)) Raise(ErrorNumber::DiskFull);
  Raise(ErrorNumber::PathFileAccessError);
}

// A name in the folder of `path` that no other writer chooses. Kept short: where the folder's path fits, it fits too.
std::filesystem::path TemporaryBeside(const std::string& path) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::random_device random;
  const std::size_t folderEnd = path.find_last_of(FolderEnds);
  std::string name = folderEnd == std::string::npos ? std::string() : path.substr(0, folderEnd + 1);
  name += "kw";
  for (int i = 0; i < 2; ++i) {
    for (unsigned bits = random(), n = 0; n < 8; ++n, bits >>= 4U) name += digits[bits & 15U];
  }
  return ToFilesystemPath(name + ".tmp");
}

}  // namespace

std::size_t FileStream::Read(void* to, std::size_t count) noexcept {
  const std::size_t done = std::fread(to, 1, count, file.get());
  position += done;
  return done;
}

std::size_t FileStream::Write(const void* from, std::size_t count) noexcept {
  errno = 0;
  const std::size_t done = std::fwrite(from, 1, count, file.get());
  position += done;
  if (done != count && failure == 0) failure = errno != 0 ? errno : EIO;
  return done;
}

bool FileStream::Seek(std::uint64_t to) noexcept {
  constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  errno = 0;
  if (to > most || !SeekFile(file.get(), static_cast<std::int64_t>(to), SEEK_SET)) {
    if (failure == 0) failure = errno != 0 ? errno : EINVAL;
    return false;
  }
  position = to;
  return true;
}

std::uint64_t FileStream::Size() noexcept {
  if (!SeekFile(file.get(), 0, SEEK_END)) return 0;
  const std::int64_t size = TellFile(file.get());
  Seek(position);
  return size < 0 ? 0 : static_cast<std::uint64_t>(size);
}

bool FileStream::Settle() noexcept {
  errno = 0;
  if (failure == 0 && (std::fflush(file.get()) != 0 || !WriteThrough(file.get()))) failure = errno != 0 ? errno : EIO;
  return failure == 0;
}

void FileStream::RaiseFailure() const {
  if (failure != 0) RaiseFileError({failure, std::generic_category()});
}

void FileStream::Close() {
  errno = 0;
  if (std::fclose(file.release()) != 0 && failure == 0) failure = errno != 0 ? errno : EIO;
  RaiseFailure();
}

InputFile::InputFile(const std::string& path) {
  namespace fs = std::filesystem;
  const fs::path native = ToFilesystemPath(path);
  std::error_code error;
  const fs::file_type type = fs::status(native, error).type();
  if (type == fs::file_type::directory) RaiseUnreadable("The path names a folder.");
  // A device or a pipe could keep a reader waiting for ever. The run time of Windows does not find a long path that it
  // can open, so what is not found is tried all the same.
  if (type != fs::file_type::regular && type != fs::file_type::not_found && type != fs::file_type::none) {
    RaiseUnreadable("The path does not name a file that can be read.");
  }
  file.reset(OpenFile(native, Use::Read));
  if (file == nullptr) {
    RaiseUnreadable(type == fs::file_type::not_found ? "The file does not exist."
                                                     : "The file cannot be opened: it is in use or access is denied.");
  }
  stamp.size = FileStream::Size();
  stamp.changed = fs::last_write_time(native, error);
  if (stamp.size == 0) RaiseUnreadable("The file is empty.");
}

ChangedFile::ChangedFile(const std::string& path) {
  errno = 0;
  file.reset(OpenFile(ToFilesystemPath(path), Use::Change));
  if (file == nullptr) RaiseFileError({errno, std::generic_category()});
}

OutputFile::OutputFile(const std::string& target) : path(target), temporary(TemporaryBeside(target)) {
  errno = 0;
  file.reset(OpenFile(temporary, Use::Create));
  if (file == nullptr) RaiseFileError({errno, std::generic_category()});
}

OutputFile::~OutputFile() {
  if (temporary.empty()) return;
  file.reset();
  RemoveFile(temporary);
}

void OutputFile::Commit() {
  Close();
  const std::filesystem::path target = ToFilesystemPath(path);
  std::error_code error;
  // A virus scanner may hold the new file, or an indexer the old one, for a moment.
  constexpr std::array<std::chrono::milliseconds, 4> pauses{std::chrono::milliseconds(0), std::chrono::milliseconds(10),
                                                            std::chrono::milliseconds(40),
                                                            std::chrono::milliseconds(100)};
  for (const auto pause : pauses) {
    if (pause.count() != 0) std::this_thread::sleep_for(pause);
    std::filesystem::rename(temporary, target, error);
    if (error != std::errc::permission_denied) break;
  }
  if (error) RaiseFileError(error);
  temporary.clear();
}

}  // namespace kw
