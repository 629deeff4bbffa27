#include "picture/File.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <mutex>
#include <random>
#include <set>
#include <string_view>
#include <utility>

#include "components/base/FilePath.h"
#include "components/base/RunTimeError.h"
#include "picture/Unreadable.h"

namespace kw {
namespace {

constexpr std::string_view TemporaryBegin = "kw";
constexpr std::string_view TemporaryEnd = ".tmp";
constexpr std::string_view Digits = "0123456789abcdef";
constexpr std::size_t DigitCount = 16;

// A name in the folder of `path` that no other writer chooses. It is short, so that it fits if the folder's path does.
std::filesystem::path TemporaryBeside(const std::filesystem::path& path) {
  std::random_device random;
  std::string name(TemporaryBegin);
  for (unsigned bits = 0, n = 0; n < DigitCount; ++n, bits >>= 4U) {
    if (n % 8 == 0) bits = random();
    name += Digits[bits & 15U];
  }
  return path.parent_path() / name.append(TemporaryEnd);
}

bool IsTemporaryName(std::string_view name) {
  if (name.size() != TemporaryBegin.size() + DigitCount + TemporaryEnd.size()) return false;
  return name.starts_with(TemporaryBegin) && name.ends_with(TemporaryEnd) &&
         name.substr(TemporaryBegin.size(), DigitCount).find_first_not_of(Digits) == std::string_view::npos;
}

bool IsOld(const FileFacts& facts) {
  using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
  const auto now = std::chrono::duration_cast<Ticks>(std::chrono::system_clock::now().time_since_epoch());
  return now - Ticks(facts.changed) > std::chrono::hours(24);
}

// Once for each folder and process: a split must not search its own page files again and again.
bool IsFirstVisit(const std::filesystem::path& folder) {
  static std::mutex mutex;
  static std::set<std::filesystem::path> visited;
  constexpr std::size_t most = 1000;
  const std::scoped_lock lock(mutex);
  if (visited.size() > most) visited.clear();
  return visited.insert(folder).second;
}

void RemoveLeftovers(const std::filesystem::path& folder) {
  if (!IsFirstVisit(folder)) return;
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::path place = folder.empty() ? fs::path(".") : folder;
  for (fs::directory_iterator entry(place, error), end; !error && entry != end; entry.increment(error)) {
    FileFacts facts;
    if (!IsTemporaryName(FromFilesystemPath(entry->path().filename()))) continue;
    if (LookAt(entry->path(), facts) == 0 && facts.kind == FileKind::Plain && IsOld(facts)) {
      RemoveUnusedFile(entry->path());
    }
  }
}

}  // namespace

void FileStream::Fail(SystemCode code) {
  if (failure == 0) failure = code;
}

std::size_t FileStream::Read(void* to, std::size_t count) noexcept {
  const std::size_t done = std::fread(to, 1, count, file.get());
  position += done;
  return done;
}

std::size_t FileStream::Write(const void* from, std::size_t count) noexcept {
  ForgetStreamError();
  const std::size_t done = std::fwrite(from, 1, count, file.get());
  position += done;
  if (done != count) Fail(LastWriteError());
  return done;
}

bool FileStream::Seek(std::uint64_t to) noexcept {
  constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  ForgetStreamError();
  if (to > most || !SeekFile(file.get(), static_cast<std::int64_t>(to), SEEK_SET)) {
    Fail(LastStreamError());
    return false;
  }
  position = to;
  return true;
}

std::uint64_t FileStream::Size() noexcept {
  ForgetStreamError();
  const std::int64_t size = SeekFile(file.get(), 0, SEEK_END) ? TellFile(file.get()) : -1;
  if (size < 0) Fail(LastStreamError());
  Seek(position);
  return size < 0 ? 0 : static_cast<std::uint64_t>(size);
}

bool FileStream::Settle() noexcept {
  ForgetStreamError();
  if (failure == 0) failure = FlushToDisk(file.get());
  return failure == 0;
}

void FileStream::RaiseFailure() const {
  if (failure != 0) RaiseFileError(failure);
}

void FileStream::Close() {
  ForgetStreamError();
  if (std::fclose(file.release()) != 0) Fail(LastWriteError());
  RaiseFailure();
}

FileStamp StampOf(const std::string& path) {
  FileFacts facts;
  if (LookAt(ToFilesystemPath(path), facts) != 0 || facts.kind != FileKind::Plain) return {};
  return {facts.identity, facts.size, facts.changed};
}

InputFile::InputFile(const std::string& path) {
  const std::filesystem::path native = ToFilesystemPath(path);
  const SystemCode code = OpenSystemFile(native, FileUse::Read, file);
  FileFacts facts;
  const SystemCode unknown = code == 0 ? LookAt(file.get(), facts) : LookAt(native, facts);
  if (unknown != 0) {
    RaiseUnreadable(IsMissing(unknown) ? "The file does not exist."
                                       : "The file cannot be opened: it is in use or access is denied.");
  }
  if (facts.kind == FileKind::Folder) RaiseUnreadable("The path names a folder.");
  // Reading a device or a pipe may never end.
  if (facts.kind == FileKind::Other) RaiseUnreadable("The path does not name a file that can be read.");
  if (code != 0) RaiseUnreadable("The file cannot be opened: it is in use or access is denied.");
  stamp = {facts.identity, facts.size, facts.changed};
  if (stamp.size == 0) RaiseUnreadable("The file is empty.");
}

std::unique_ptr<ChangedFile> ChangedFile::Open(const std::string& path) {
  std::unique_ptr<ChangedFile> changed(new ChangedFile);
  const SystemCode code = OpenSystemFile(ToFilesystemPath(path), FileUse::Change, changed->file);
  if (IsMissing(code)) return nullptr;
  if (code != 0) RaiseFileError(code);
  FileFacts facts;
  if (LookAt(changed->file.get(), facts) != 0 || facts.kind != FileKind::Plain) Raise(ErrorNumber::PathFileAccessError);
  return changed;
}

OutputFile::OutputFile(const std::string& path, Durability lasting)
    : target(BehindLinks(ToFilesystemPath(path))), temporary(TemporaryBeside(target)), durability(lasting) {
  FileFacts facts;
  const SystemCode unknown = LookAt(target, facts);
  if (unknown != 0 && !IsMissing(unknown)) RaiseFileError(unknown);
  const bool isThere = unknown == 0;
  if (isThere && facts.kind != FileKind::Plain) Raise(ErrorNumber::PathFileAccessError);
  if (durability == Durability::Lasting) RemoveLeftovers(target.parent_path());
  const SystemCode code = OpenSystemFile(temporary, isThere ? FileUse::CreatePrivate : FileUse::Create, file);
  if (code != 0) RaiseFileError(code);
}

OutputFile::~OutputFile() {
  if (temporary.empty()) return;
  file.reset();
  RemoveSystemFile(temporary);
}

SystemCode OutputFile::PutBy(Existing existing) {
  if (durability == Durability::Lasting) FileStream::Settle();
  Close();
  const SystemCode code = PutInPlace(temporary, target, existing, durability);
  if (code == 0) temporary.clear();
  return code;
}

void OutputFile::Commit() {
  if (const SystemCode code = PutBy(Existing::Replaced); code != 0) RaiseFileError(code);
}

bool OutputFile::CommitNew() {
  const SystemCode code = PutBy(Existing::Kept);
  if (code != 0 && !IsTaken(code)) RaiseFileError(code);
  return code == 0;
}

}  // namespace kw
