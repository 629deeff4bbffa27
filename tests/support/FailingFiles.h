#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "components/base/SystemFile.h"

#ifndef _WIN32
#include <cerrno>
#endif

namespace kw::test {

// What a disk, another program or a network does to a call.
struct FileTrouble {
  const char* name;
  SystemCode code;
};

#ifdef _WIN32
inline constexpr std::array<FileTrouble, 5> FileTroubles{
    {{"disk full", 112}, {"sharing violation", 32}, {"access denied", 5}, {"I/O error", 1117}, {"network gone", 64}}};
#else
inline constexpr std::array<FileTrouble, 5> FileTroubles{{{"disk full", ENOSPC},
                                                          {"sharing violation", EWOULDBLOCK},
                                                          {"access denied", EACCES},
                                                          {"I/O error", EIO},
                                                          {"network gone", ESTALE}}};
#endif

// The file system of the process while it lives: counts the calls, fails those that it is told to, and keeps a log.
class FailingFiles : public FileSystem {
public:
  enum class Call { Look, List, Open, Read, Write, Seek, Flush, Close, Remove, MakeFolder, Name, Append, Lock };

  FailingFiles() { Replace(this); }
  FailingFiles(const FailingFiles&) = delete;
  FailingFiles& operator=(const FailingFiles&) = delete;
  ~FailingFiles() override { Replace(nullptr); }

  // The call of this number, from 1, fails with the code; all behind it, too, if the trouble stays. A call that moves
  // bytes moves half of them first.
  void FailFrom(std::size_t number, SystemCode code, bool isToStay = false) {
    calls = 0;
    failing = number;
    trouble = code;
    stays = isToStay;
  }
  void FailNone() { failing = 0; }
  // The calls since the last FailFrom().
  std::size_t Calls() const { return calls; }
  bool HasFailed() const { return failing != 0 && calls >= failing; }

  // Asked for each call before it is made, with the path that it is about (a name's new one); a code fails it.
  std::function<SystemCode(Call call, const Path& path)> onCall;

  // The first call that failed by FailFrom().
  mutable Call failed{};
  // Files that were named although bytes of them may not have been on the disk, or that were named at all.
  mutable std::vector<std::string> namedUnflushed;
  mutable std::vector<std::string> named;

  SystemCode LookAt(const Path& path, FileFacts& facts) const override {
    if (const SystemCode code = Fails(Call::Look, path); code != 0) return code;
    return FileSystem::LookAt(path, facts);
  }
  SystemCode LookAt(const Path& path, FileKind& kind) const override {
    if (const SystemCode code = Fails(Call::Look, path); code != 0) return code;
    return FileSystem::LookAt(path, kind);
  }
  SystemCode LookAt(std::FILE* file, FileFacts& facts) const override {
    if (const SystemCode code = Fails(Call::Look, PathOf(file)); code != 0) return code;
    return FileSystem::LookAt(file, facts);
  }
  SystemCode List(const Path& folder, const std::function<void(const Path& path)>& take) const override {
    if (const SystemCode code = Fails(Call::List, folder); code != 0) return code;
    return FileSystem::List(folder, take);
  }
  SystemCode Open(const Path& path, FileUse use, OpenedFile& file) const override {
    if (const SystemCode code = Fails(Call::Open, path); code != 0) return code;
    const SystemCode code = FileSystem::Open(path, use, file);
    if (code == 0) opened[file.get()] = path;
    return code;
  }
  SystemCode Read(std::FILE* file, void* to, std::size_t count, std::size_t& done) const override {
    const SystemCode code = Fails(Call::Read, PathOf(file));
    const SystemCode real = FileSystem::Read(file, to, code != 0 ? count / 2 : count, done);
    return code != 0 ? code : real;
  }
  SystemCode Write(std::FILE* file, const void* from, std::size_t count, std::size_t& done) const override {
    const SystemCode code = Fails(Call::Write, PathOf(file));
    unflushed.insert(PathOf(file));
    const SystemCode real = FileSystem::Write(file, from, code != 0 ? count / 2 : count, done);
    return code != 0 ? code : real;
  }
  SystemCode Seek(std::FILE* file, std::uint64_t to) const override {
    if (const SystemCode code = Fails(Call::Seek, PathOf(file)); code != 0) return code;
    return FileSystem::Seek(file, to);
  }
  SystemCode SizeOf(std::FILE* file, std::uint64_t& size) const override {
    if (const SystemCode code = Fails(Call::Seek, PathOf(file)); code != 0) return code;
    return FileSystem::SizeOf(file, size);
  }
  SystemCode Flush(std::FILE* file) const override {
    if (const SystemCode code = Fails(Call::Flush, PathOf(file)); code != 0) return code;
    const SystemCode code = FileSystem::Flush(file);
    if (code == 0) unflushed.erase(PathOf(file));
    return code;
  }
  SystemCode Close(std::FILE* file) const override {
    const Path path = PathOf(file);
    opened.erase(file);
    const SystemCode code = Fails(Call::Close, path);
    const SystemCode real = FileSystem::Close(file);
    return code != 0 ? code : real;
  }
  SystemCode Remove(const Path& path) const override {
    if (const SystemCode code = Fails(Call::Remove, path); code != 0) return code;
    return FileSystem::Remove(path);
  }
  SystemCode RemoveUnused(const Path& path) const override {
    if (const SystemCode code = Fails(Call::Remove, path); code != 0) return code;
    return FileSystem::RemoveUnused(path);
  }
  SystemCode MakeFolder(const Path& path) const override {
    if (const SystemCode code = Fails(Call::MakeFolder, path); code != 0) return code;
    return FileSystem::MakeFolder(path);
  }
  SystemCode PutInPlace(const Path& file, const Path& target, Existing existing, Durability durability) const override {
    if (const SystemCode code = Fails(Call::Name, target); code != 0) return code;
    named.push_back(target.filename().string());
    if (durability == Durability::Lasting && unflushed.contains(file)) namedUnflushed.push_back(target.string());
    return FileSystem::PutInPlace(file, target, existing, durability);
  }
  SystemCode Append(const Path& path, std::string_view text) const override {
    const SystemCode code = Fails(Call::Append, path);
    const SystemCode real = FileSystem::Append(path, code != 0 ? text.substr(0, text.size() / 2) : text);
    return code != 0 ? code : real;
  }
  SystemCode Lock(const Path& path, std::intptr_t& handle) const override {
    if (const SystemCode code = Fails(Call::Lock, path); code != 0) return code;
    return FileSystem::Lock(path, handle);
  }

private:
  SystemCode Fails(Call call, const Path& path) const {
    ++calls;
    if (failing != 0 && calls == failing) failed = call;
    if (failing != 0 && (stays ? calls >= failing : calls == failing)) return trouble;
    return onCall ? onCall(call, path) : 0;
  }
  Path PathOf(std::FILE* file) const {
    const auto found = opened.find(file);
    return found == opened.end() ? Path() : found->second;
  }

  std::size_t failing = 0;
  SystemCode trouble = 0;
  bool stays = false;
  mutable std::size_t calls = 0;
  mutable std::map<std::FILE*, Path> opened;
  mutable std::set<Path> unflushed;
};

}  // namespace kw::test
