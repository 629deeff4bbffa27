#include "picture/File.h"

#include "components/base/FilePath.h"
#include "components/base/RunTimeError.h"
#include "components/base/TemporaryFiles.h"
#include "picture/Unreadable.h"

namespace kw {

bool FileStream::Note(SystemCode code) noexcept {
  if (failure == 0) failure = code;
  return code == 0;
}

std::size_t FileStream::Read(void* to, std::size_t count) noexcept {
  std::size_t done = 0;
  Note(FileSystem::Current().Read(file.get(), to, count, done));
  position += done;
  return done;
}

std::size_t FileStream::Write(const void* from, std::size_t count) noexcept {
  std::size_t done = 0;
  Note(FileSystem::Current().Write(file.get(), from, count, done));
  position += done;
  return done;
}

bool FileStream::Seek(std::uint64_t to) noexcept { return Note(MoveTo(to)); }

SystemCode FileStream::MoveTo(std::uint64_t to) noexcept {
  const SystemCode code = FileSystem::Current().Seek(file.get(), to);
  if (code == 0) position = to;
  return code;
}

std::uint64_t FileStream::Size() noexcept {
  std::uint64_t size = 0;
  const bool isKnown = Note(FileSystem::Current().SizeOf(file.get(), size));
  Seek(position);
  return isKnown ? size : 0;
}

bool FileStream::Settle() noexcept { return failure == 0 && Note(FileSystem::Current().Flush(file.get())); }

void FileStream::RaiseFailure() const {
  if (failure != 0) RaiseFileError(failure);
}

void FileStream::Close() {
  Note(FileSystem::Current().Close(file.release()));
  RaiseFailure();
}

FileStamp StampOf(const std::string& path) {
  FileFacts facts;
  if (FileSystem::Current().LookAt(ToFilesystemPath(path), facts) != 0 || facts.kind != FileKind::Plain) return {};
  return {facts.identity, facts.size, facts.changed};
}

InputFile::InputFile(const std::string& path) {
  const std::filesystem::path native = ToFilesystemPath(path);
  const FileSystem& files = FileSystem::Current();
  const SystemCode code = files.Open(native, FileUse::Read, file);
  if (IsLackOfMemory(code)) RaiseFileError(code);
  FileFacts facts;
  const SystemCode unknown = code == 0 ? files.LookAt(file.get(), facts) : files.LookAt(native, facts);
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

bool InputFile::Seek(std::uint64_t to) noexcept { return to <= Size() ? FileStream::Seek(to) : MoveTo(to) == 0; }

std::unique_ptr<ChangedFile> ChangedFile::Open(const std::string& path) {
  std::unique_ptr<ChangedFile> changed(new ChangedFile);
  const FileSystem& files = FileSystem::Current();
  const SystemCode code = files.Open(ToFilesystemPath(path), FileUse::Change, changed->file);
  if (IsMissing(code)) return nullptr;
  if (code != 0) RaiseFileError(code);
  FileFacts facts;
  const SystemCode unknown = files.LookAt(changed->file.get(), facts);
  if (unknown != 0) RaiseFileError(unknown);
  if (facts.kind != FileKind::Plain) Raise(ErrorNumber::PathFileAccessError);
  return changed;
}

OutputFile::OutputFile(const std::string& path, Durability lasting)
    : target(FileSystem::Current().BehindLinks(ToFilesystemPath(path))),
      temporary(TemporaryBeside(target)),
      durability(lasting) {
  const FileSystem& files = FileSystem::Current();
  FileKind kind{};
  const SystemCode unknown = files.LookAt(target, kind);
  if (unknown != 0 && !IsMissing(unknown)) RaiseFileError(unknown);
  const bool isThere = unknown == 0;
  if (isThere && kind != FileKind::Plain) Raise(ErrorNumber::PathFileAccessError);
  if (durability == Durability::Lasting) RemoveLeftovers(target.parent_path());
  const SystemCode code = files.Open(temporary, isThere ? FileUse::CreatePrivate : FileUse::Create, file);
  if (code != 0) RaiseFileError(code);
}

OutputFile::~OutputFile() {
  if (temporary.empty()) return;
  file.reset();
  FileSystem::Current().Remove(temporary);
}

SystemCode OutputFile::PutBy(Existing existing) {
  if (durability == Durability::Lasting) FileStream::Settle();
  Close();
  const SystemCode code = FileSystem::Current().PutInPlace(temporary, target, existing, durability);
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
