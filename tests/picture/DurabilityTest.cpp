// Files survive the stop of the machine, a process or the disk; a replaced file hands on its attributes.

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#endif

#include <chrono>
#include <optional>
#include <thread>

#include "picture/PictureDocument.h"
#include "picture/formats/Formats.h"
#include "tests/picture/Scratch.h"

#ifndef _WIN32

namespace kw {
namespace {

// The calls of the system while it lives, in order. A flush fails with `flushError` if that is set.
class SystemCalls {
public:
  SystemCalls() { current = this; }
  SystemCalls(const SystemCalls&) = delete;
  SystemCalls& operator=(const SystemCalls&) = delete;
  ~SystemCalls() { current = nullptr; }
  static SystemCalls* Current() { return current; }

  std::vector<std::string> names;
  int flushError = 0;

private:
  static thread_local SystemCalls* current;
};

thread_local SystemCalls* SystemCalls::current = nullptr;

}  // namespace
}  // namespace kw

// These take the place of the C library's own in this program.

extern "C" int FsyncSeen(int file) __asm__("fsync");
extern "C" int FsyncSeen(int file) {
  if (auto* const calls = kw::SystemCalls::Current()) {
    struct stat status {};
    fstat(file, &status);
    calls->names.emplace_back(S_ISDIR(status.st_mode) ? "flush the folder" : "flush the file");
    if (calls->flushError != 0) {
      errno = calls->flushError;
      return -1;
    }
  }
  return static_cast<int>(syscall(SYS_fsync, file));
}

extern "C" int RenameSeen(const char* from, const char* to) noexcept __asm__("rename");
extern "C" int RenameSeen(const char* from, const char* to) noexcept {
  if (auto* const calls = kw::SystemCalls::Current()) calls->names.emplace_back("name");
  return static_cast<int>(syscall(SYS_renameat, AT_FDCWD, from, AT_FDCWD, to));
}

#endif

namespace kw {
namespace {

using std::chrono::milliseconds;

class Durable : public ScratchTest {
protected:
  void SetUp() override { engine.Replace(Noise(50, 40, 24)); }
  void Append(const std::string& path, const Bitmap& page) const {
    PictureDocument maker;
    maker.Replace(page);
    maker.Append(path);
  }
  PictureDocument engine;
};

TEST_F(Durable, NewDocumentDoesNotTakeThePlaceOfOneThatCameMeanwhile) {
  OutputFile made(At("document.fmf"));
  ASSERT_TRUE(made.WriteAll(Bytes{1, 2, 3}));
  const Bytes other{4, 5};
  Put("document.fmf", other);
  EXPECT_FALSE(made.CommitNew());
  EXPECT_EQ(other, BytesOf(At("document.fmf")));
}

TEST_F(Durable, TwoWritersAddTheirPagesToOneNewDocument) {
  constexpr int pagesOfEach = 15;
  const std::string path = At("document.fmf");
  const std::vector<Bitmap> pictures{Noise(33, 21, 24), Noise(17, 40, 8)};
  std::vector<std::thread> writers;
  writers.reserve(pictures.size());
  for (const Bitmap& picture : pictures) {
    writers.emplace_back([this, &picture, &path] {
      for (int i = 0; i < pagesOfEach; ++i) EXPECT_EQ(0, ErrorOf([&] { Append(path, picture); }));
    });
  }
  for (std::thread& writer : writers) writer.join();
  ASSERT_TRUE(engine.Load(path)) << engine.LastLoadError();
  ASSERT_EQ(2 * pagesOfEach, engine.PageCount());
  std::vector<int> found(pictures.size());
  for (int page = 1; page <= engine.PageCount(); ++page) {
    engine.SelectPage(page);
    const std::size_t writer = engine.Width() == pictures[0].Width() ? 0 : 1;
    EXPECT_TRUE(SamePicture(pictures[writer], engine.Current())) << page;
    ++found[writer];
  }
  EXPECT_EQ((std::vector<int>{pagesOfEach, pagesOfEach}), found);
  EXPECT_EQ((std::vector<std::string>{"document.fmf"}), Names());
}

TEST_F(Durable, AppendWaitsForWhoChangesTheDocument) {
  const std::string path = At("document.fmf");
  Append(path, Noise(9, 9, 24));
  OpenedFile other;
  ASSERT_EQ(0, FileSystem::Current().Open(ToFilesystemPath(path), FileUse::Change, other));
  std::thread holder([&other] {
    std::this_thread::sleep_for(milliseconds(100));
    other.reset();
  });
  EXPECT_EQ(0, ErrorOf([&] { engine.Append(path); }));
  holder.join();
  ASSERT_TRUE(engine.Load(path));
  EXPECT_EQ(2, engine.PageCount());
}

TEST_F(Durable, FileThatWasReplacedAtTheSameMomentByOneOfTheSameSizeGivesNoMorePages) {
  const std::string path = At("document.tif");
  for (int i = 0; i < 2; ++i) Append(path, Noise(9, 9, 24));
  ASSERT_TRUE(engine.Load(path));
  const auto changed = std::filesystem::last_write_time(folder / "document.tif");
  Put("other.tif", BytesOf(path));
  std::filesystem::rename(folder / "other.tif", folder / "document.tif");
  std::filesystem::last_write_time(folder / "document.tif", changed);
  EXPECT_EQ(NumberOf(ErrorNumber::InvalidPicture), ErrorOf([&] { engine.SelectPage(2); }));
}

TEST_F(Durable, ErrorCarriesTheSystemsOwnCode) {
  try {
    engine.Save(At("no/such/a.tif"));
    FAIL() << "no error came";
  } catch (const RunTimeError& error) {
#ifdef _WIN32
    EXPECT_EQ(ERROR_PATH_NOT_FOUND, error.LastDllError());
#else
    EXPECT_EQ(ENOENT, error.LastDllError());
#endif
  }
}

#ifdef _WIN32

TEST_F(Durable, NamesOfDevicesAreRefused) {
  for (const char* name : {"CON", "con.tif", "COM1", "COM1.tif", "lpt9 .bmp", "NUL.jpg", "aux.fmf", "CONIN$.gif"}) {
    EXPECT_FALSE(engine.Load(At(name))) << name;
    EXPECT_EQ("The path does not name a file that can be read.", engine.LastLoadError()) << name;
  }
  engine.Replace(Noise(9, 9, 24));
  EXPECT_EQ(NumberOf(ErrorNumber::PathFileAccessError), ErrorOf([&] { engine.Save(At("COM1.tif")); }));
  EXPECT_EQ(NumberOf(ErrorNumber::PathFileAccessError), ErrorOf([&] { engine.Append(At("con.fmf")); }));
  engine.Save(At("CONTRACT.tif"));
  EXPECT_EQ((std::vector<std::string>{"CONTRACT.tif"}), Names());
}

TEST_F(Durable, ReplacedFileKeepsItsAttributesAndAReadOnlyOneStays) {
  const auto path = ToFilesystemPath(Put("a.bmp", {'o', 'l', 'd'}));
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN);
  engine.Save(At("a.bmp"));
  EXPECT_NE(0U, GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_HIDDEN);
  EXPECT_TRUE(engine.Load(At("a.bmp"))) << "and is the new one";
  const Bytes before = BytesOf(At("a.bmp"));
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
  engine.Replace(Noise(9, 9, 8));
  EXPECT_EQ(NumberOf(ErrorNumber::PermissionDenied), ErrorOf([&] { engine.Save(At("a.bmp")); }));
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  EXPECT_EQ(before, BytesOf(At("a.bmp")));
}

// Opens the new file as soon as it is there and keeps it open a while, as a virus scanner does.
TEST_F(Durable, ScannerThatHoldsTheNewFileForAMomentDoesNotDisturb) {
  for (const bool isThere : {false, true}) {
    if (isThere) Put("a.bmp", {'o', 'l', 'd'});
    std::thread scanner([this] {
      for (const auto start = GetTickCount64(); GetTickCount64() - start < 5000;) {
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
          if (entry.path().extension() != ".tmp") continue;
          const HANDLE held = CreateFileW(entry.path().c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                          nullptr, OPEN_EXISTING, 0, nullptr);
          if (held == INVALID_HANDLE_VALUE) continue;
          Sleep(150);
          CloseHandle(held);
          return;
        }
      }
      ADD_FAILURE() << "no new file was seen";
    });
    engine.Replace(Noise(900, 900, 24));
    OutputFile file(At("a.bmp"));
    ASSERT_TRUE(file.WriteAll(Bytes{1, 2, 3}));
    Sleep(100);
    EXPECT_EQ(0, ErrorOf([&] { file.Commit(); })) << isThere;
    scanner.join();
    EXPECT_EQ((Bytes{1, 2, 3}), BytesOf(At("a.bmp")));
  }
}

#else

using Calls = std::vector<std::string>;

TEST_F(Durable, BytesAreOnTheDiskBeforeTheFileHasItsNameAndTheNameIsBeforeSaveEnds) {
  for (const char* name : {"a.tif", "a.fmf", "a.jpg", "a.gif", "a.bmp"}) {
    for (const char* what : {"a new file", "a replaced file"}) {
      const SystemCalls calls;
      engine.Save(At(name));
      EXPECT_EQ((Calls{"flush the file", "name", "flush the folder"}), calls.names) << name << ", " << what;
    }
  }
}

TEST_F(Durable, ScratchFileWaitsForNoDisk) {
  const SystemCalls calls;
  engine.SaveScratch(At("a.bmp"), "mark");
  const Bytes bytes = BytesOf(At("a.bmp"));
  EXPECT_EQ(std::string(bytes.end() - 4, bytes.end()), "mark");
  EXPECT_EQ((Calls{"name"}), calls.names);
}

TEST_F(Durable, PagesOfADocumentThatNobodySeesYetAreNotFlushedOneByOne) {
  const SystemCalls calls;
  OutputFile file(At("a.fmf"));
  const auto appender = FmfFormat.append(file);
  for (int i = 0; i < 3; ++i) engine.AppendTo(*appender);
  EXPECT_EQ(Calls{}, calls.names);
  file.Commit();
  EXPECT_EQ((Calls{"flush the file", "name", "flush the folder"}), calls.names);
}

TEST_F(Durable, PageThatIsAppendedIsOnTheDiskBeforeItsLinkAndTheLinkBeforeAppendEnds) {
  engine.Append(At("a.fmf"));
  const SystemCalls calls;
  engine.Append(At("a.fmf"));
  EXPECT_EQ((Calls{"flush the file", "flush the file"}), calls.names);
}

TEST_F(Durable, DiskThatDoesNotTakeTheBytesIsReportedAndTheOldFileStays) {
  const Bytes old{'o', 'l', 'd'};
  Put("a.bmp", old);
  for (const auto& [code, number] :
       {std::pair(EIO, ErrorNumber::PathFileAccessError), std::pair(ENOSPC, ErrorNumber::DiskFull)}) {
    SystemCalls calls;
    calls.flushError = code;
    EXPECT_EQ(NumberOf(number), ErrorOf([&] { engine.Save(At("a.bmp")); }));
    EXPECT_EQ((Calls{"flush the file"}), calls.names);
    EXPECT_EQ(old, BytesOf(At("a.bmp")));
    EXPECT_EQ((std::vector<std::string>{"a.bmp"}), Names());
  }
}

mode_t ModeOf(const std::filesystem::path& path) {
  struct stat status {};
  EXPECT_EQ(0, lstat(path.c_str(), &status));
  return status.st_mode & 0777U;
}

TEST_F(Durable, ReplacedFileKeepsItsMode) {
  for (const mode_t mode : {0600U, 0640U, 0664U, 0777U}) {
    Put("a.bmp", {'o', 'l', 'd'});
    ASSERT_EQ(0, chmod((folder / "a.bmp").c_str(), mode));
    engine.Save(At("a.bmp"));
    EXPECT_EQ(mode, ModeOf(folder / "a.bmp"));
  }
  const mode_t mask = umask(027);
  engine.Save(At("new.bmp"));
  umask(mask);
  EXPECT_EQ(0640U, ModeOf(folder / "new.bmp"));
}

TEST_F(Durable, FileThatMayNotBeWrittenIsNotReplaced) {
  const Bytes old{'o', 'l', 'd'};
  Put("a.bmp", old);
  ASSERT_EQ(0, chmod((folder / "a.bmp").c_str(), 0444));
  EXPECT_EQ(NumberOf(ErrorNumber::PermissionDenied), ErrorOf([&] { engine.Save(At("a.bmp")); }));
  EXPECT_EQ(old, BytesOf(At("a.bmp")));
  EXPECT_EQ((std::vector<std::string>{"a.bmp"}), Names());
}

TEST_F(Durable, LinkIsFollowed) {
  std::filesystem::create_directory(folder / "far");
  std::filesystem::create_symlink("far/second.bmp", folder / "link.bmp");
  std::filesystem::create_symlink("page.bmp", folder / "far" / "second.bmp");
  for (const char* what : {"a file that is not there yet", "one that is"}) {
    engine.Save(At("link.bmp"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.bmp")) << what;
    EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status(folder / "far" / "page.bmp"))) << what;
  }
  EXPECT_TRUE(PictureDocument().Load(At("far/page.bmp")));
  std::filesystem::create_symlink("circle.bmp", folder / "circle.bmp");
  EXPECT_NE(0, ErrorOf([&] { engine.Save(At("circle.bmp")); }));
}

TEST_F(Durable, PipesAndFoldersAreNeitherReadNorReplaced) {
  ASSERT_EQ(0, mkfifo((folder / "pipe.bmp").c_str(), 0666));
  EXPECT_FALSE(PictureDocument().Load(At("pipe.bmp")));
  EXPECT_EQ(NumberOf(ErrorNumber::PathFileAccessError), ErrorOf([&] { engine.Save(At("pipe.bmp")); }));
  EXPECT_EQ((std::vector<std::string>{"pipe.bmp"}), Names());
}

// A stream that cannot be moved in.
class PipeStream : public FileStream {
public:
  PipeStream() {
    int ends[2] = {};
    EXPECT_EQ(0, pipe(ends));
    close(ends[1]);
    file.reset(fdopen(ends[0], "rb"));
  }
};

TEST_F(Durable, SizeThatCannotBeToldIsAFailure) {
  PipeStream stream;
  EXPECT_EQ(0U, stream.Size());
  EXPECT_TRUE(stream.HasFailed());
  EXPECT_NE(0, ErrorOf([&] { stream.RaiseFailure(); }));
}

TEST_F(Durable, ProcessThatIsEndedAtAnyMomentLeavesTheOldFileOrTheNewOne) {
  const std::vector<Bitmap> pictures{Noise(300, 200, 24), Noise(250, 220, 8)};
  engine.Replace(pictures[0]);
  engine.Save(At("a.bmp"));
  std::mt19937 random(1);
  for (int round = 0; round < 30; ++round) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      PictureDocument saver;
      for (std::size_t i = 0;; ++i) {
        saver.Replace(pictures[i % 2]);
        saver.Save(At("a.bmp"));
      }
    }
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 20000));
    kill(child, SIGKILL);
    ASSERT_EQ(child, waitpid(child, nullptr, 0));
    PictureDocument reader;
    ASSERT_TRUE(reader.Load(At("a.bmp"))) << reader.LastLoadError();
    EXPECT_TRUE(SamePicture(pictures[0], reader.Current()) || SamePicture(pictures[1], reader.Current())) << round;
  }
}

#endif

}  // namespace
}  // namespace kw
