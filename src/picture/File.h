#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "picture/Stream.h"

namespace kw {

struct CloseFile {
  void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

// A file of the disk as a stream. The base of the two kinds below.
class FileStream : public Stream {
public:
  std::size_t Read(void* to, std::size_t count) noexcept override;
  std::size_t Write(const void* from, std::size_t count) noexcept override;
  bool Seek(std::uint64_t to) noexcept override;
  std::uint64_t Position() const noexcept override { return position; }
  std::uint64_t Size() noexcept override;

  bool Settle() noexcept override;
  // Raises PathNotFound, PermissionDenied, DiskFull or PathFileAccessError for the first write that failed, if one did.
  void RaiseFailure() const;

protected:
  FileStream() = default;
  // Closing writes what is still buffered, so it can be the step that fails; raises the same errors.
  void Close();
  std::unique_ptr<std::FILE, CloseFile> file;
  // errno of the first write or seek that failed; 0 while all went well.
  int failure = 0;

private:
  std::uint64_t position = 0;
};

// What tells whether a file is still the one that was looked at earlier.
struct FileStamp {
  std::uint64_t size = 0;
  std::filesystem::file_time_type changed;
  friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

// An existing file, opened to read. Others may read and write it meanwhile; keep it open for one operation only.
class InputFile : public FileStream {
public:
  // Raises InvalidPicture, with the reason in words, for a path that is missing, a folder, a device, empty or locked.
  explicit InputFile(const std::string& path);
  const FileStamp& Stamp() const { return stamp; }
  std::uint64_t Size() noexcept override { return stamp.size; }

private:
  FileStamp stamp;
};

// A file that appears whole or not at all: the bytes go to a file of another name in the same folder, which takes the
// place of `path` at Commit(). Without a Commit() nothing of it remains.
class OutputFile : public FileStream {
public:
  // Raises PathNotFound, PermissionDenied, DiskFull or PathFileAccessError.
  explicit OutputFile(const std::string& target);
  ~OutputFile() override;
  // Raises the same errors, also for a write that failed before.
  void Commit();

private:
  std::string path;
  std::filesystem::path temporary;
};

// An existing file that is changed in place. What Settle() let through is on the disk whatever happens then.
class ChangedFile : public FileStream {
public:
  // Raises the errors of FileStream.
  explicit ChangedFile(const std::string& path);
  // Raises the same errors, also for a write that failed before.
  void Finish() { Close(); }
};

}  // namespace kw
