#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "components/base/SystemFile.h"
#include "picture/Stream.h"

namespace kw {

// A file on the disk as a stream: the base of the classes below.
class FileStream : public Stream {
public:
  std::size_t Read(void* to, std::size_t count) noexcept override;
  std::size_t Write(const void* from, std::size_t count) noexcept override;
  bool Seek(std::uint64_t to) noexcept override;
  std::uint64_t Position() const noexcept override { return position; }
  std::uint64_t Size() noexcept override;

  bool HasFailed() const noexcept override { return failure != 0; }
  bool Settle() noexcept override;
  // Raises PathNotFound, PermissionDenied, DiskFull or PathFileAccessError for the first call that failed, if one did.
  void RaiseFailure() const;

protected:
  FileStream() = default;
  // Closing writes what is still buffered, so it can be the step that fails; raises the same errors.
  void Close();
  OpenedFile file;

  // Leaves it to the caller whether a failure counts.
  SystemCode MoveTo(std::uint64_t to) noexcept;

private:
  // Records the first failure; false if the call failed.
  bool Note(SystemCode code) noexcept;

  // The error of the first call that failed.
  SystemCode failure = 0;
  std::uint64_t position = 0;
};

// Identifies a version of a file: equal stamps mean that the file did not change.
struct FileStamp {
  FileIdentity identity;
  std::uint64_t size = 0;
  std::int64_t changed = 0;
  friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

// The stamp of the file at `path`; an empty one, which no file has, if there is none.
FileStamp StampOf(const std::string& path);

// An existing file, opened for reading. Other processes may read and write it meanwhile, so keep it open for one
// operation only.
class InputFile : public FileStream {
public:
  // Raises InvalidPicture, with the reason in words, for a path that is missing, a folder, a device, empty or locked.
  explicit InputFile(const std::string& path);
  const FileStamp& Stamp() const { return stamp; }
  std::uint64_t Size() noexcept override { return stamp.size; }
  // A damaged file may name places behind its end; that they cannot be reached is no failure.
  bool Seek(std::uint64_t to) noexcept override;

private:
  FileStamp stamp;
};

// A file that appears whole or not at all: the bytes go to a file of another name in the same folder, which takes the
// place of `path` at Commit(). Without a Commit() nothing of it remains. If the path is a link, the file that it leads
// to is replaced. What processes that were ended left in the folder is removed; see RemoveLeftovers().
class OutputFile : public FileStream {
public:
  // Raises PathNotFound, PermissionDenied, DiskFull or PathFileAccessError.
  explicit OutputFile(const std::string& path, Durability lasting = Durability::Lasting);
  ~OutputFile() override;
  // Flushes the bytes and makes them visible at `path`.
  bool Settle() noexcept override { return !HasFailed(); }
  // Raises the same errors, also for a write that failed before.
  void Commit();
  // As above, but does not replace an existing file: returns false if there is one now.
  bool CommitNew();

private:
  SystemCode PutBy(Existing existing);

  std::filesystem::path target;
  std::filesystem::path temporary;
  Durability durability;
};

// An existing file that is changed in place and locked against other writers. After Settle() the bytes so far are on
// the disk whatever happens.
class ChangedFile : public FileStream {
public:
  // The stream is empty if there is no such file. Waits a few seconds for another writer. Raises the errors of
  // FileStream.
  static std::unique_ptr<ChangedFile> Open(const std::string& path);
  // Raises the same errors, also for a write that failed before.
  void Finish() { Close(); }

private:
  ChangedFile() = default;
};

}  // namespace kw
