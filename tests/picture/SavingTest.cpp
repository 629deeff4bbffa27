#include <array>

#ifndef _WIN32
#include <csignal>

#include <sys/resource.h>
#endif

#include "picture/PictureDocument.h"
#include "picture/formats/Formats.h"
#include "tests/picture/Scratch.h"

namespace kw {
namespace {

class Saving : public ScratchTest {
protected:
  void SetUp() override { engine.Replace(Noise(50, 40, 24)); }
  PictureDocument engine;
};

TEST_F(Saving, ExtensionDecidesTheFormatInAnyLetterCase) {
  struct Case {
    const char* name;
    Bytes mark;
  };
  for (const Case& expected :
       {Case{"a.TIF", {'I', 'I', 42}}, Case{"a.tiff", {'I', 'I', 42}}, Case{"a.Jpg", {0xFF, 0xD8, 0xFF}},
        Case{"a.jpeg", {0xFF, 0xD8, 0xFF}}, Case{"a.gif", {'G', 'I', 'F'}}, Case{"a.b.BMP", {'B', 'M'}},
        Case{"a.dib", {'B', 'M'}}}) {
    engine.Save(At(expected.name));
    const Bytes bytes = BytesOf(At(expected.name));
    ASSERT_LT(expected.mark.size(), bytes.size()) << expected.name;
    EXPECT_TRUE(std::equal(expected.mark.begin(), expected.mark.end(), bytes.begin())) << expected.name;
  }
}

TEST_F(Saving, ExtensionThatNamesNoFormatIsRefusedAndNothingIsWritten) {
  for (const char* name : {"a.png", "a.", "a", "tif", "a.tif2", "a.tif/b", "a.tif.txt", "a. tif"}) {
    EXPECT_EQ(NumberOf(ErrorNumber::InvalidProcedureCall), ErrorOf([&] { engine.Save(At(name)); })) << name;
  }
  EXPECT_TRUE(Names().empty());
}

TEST_F(Saving, FolderThatIsMissingIsPathNotFound) {
  EXPECT_EQ(NumberOf(ErrorNumber::PathNotFound), ErrorOf([&] { engine.Save(At("no/such/a.tif")); }));
}

TEST_F(Saving, FolderInTheWayIsAnErrorAndLeavesNothingBehind) {
  std::filesystem::create_directory(folder / "a.tif");
  EXPECT_NE(0, ErrorOf([&] { engine.Save(At("a.tif")); }));
  EXPECT_EQ(std::vector<std::string>{"a.tif"}, Names());
}

TEST_F(Saving, PictureThatTheFormatCannotHoldLeavesTheOldFileAsItWas) {
  const Bytes old{'o', 'l', 'd'};
  engine.Replace(Bitmap(70000, 1, 8));
  for (const char* name : {"a.gif", "a.jpg"}) {
    Put(name, old);
    EXPECT_EQ(NumberOf(ErrorNumber::InvalidPicture), ErrorOf([&] { engine.Save(At(name)); })) << name;
    EXPECT_EQ(old, BytesOf(At(name)));
  }
  EXPECT_EQ((std::vector<std::string>{"a.gif", "a.jpg"}), Names());
}

TEST_F(Saving, OldFileIsReplacedWhole) {
  Put("a.bmp", Bytes(100000, 1));
  engine.Save(At("a.bmp"));
  PictureDocument again;
  ASSERT_TRUE(again.Load(At("a.bmp"))) << again.LastLoadError();
  EXPECT_TRUE(SamePicture(engine.Current(), again.Current()));
  EXPECT_EQ(std::vector<std::string>{"a.bmp"}, Names());
}

TEST_F(Saving, UnicodeAndBlanksInPaths) {
  const std::string name = "Скан № 1 – 日本語 \xF0\x9F\x93\x84 é.tif";
  std::filesystem::create_directory(folder / ToFilesystemPath("папка с пробелами"));
  for (const std::string& path : {At(name), At("папка с пробелами/" + name)}) {
    engine.Save(path);
    EXPECT_TRUE(std::filesystem::exists(ToFilesystemPath(path)));
    PictureDocument again;
    ASSERT_TRUE(again.Load(path)) << again.LastLoadError();
    EXPECT_TRUE(SamePicture(engine.Current(), again.Current()));
  }
}

TEST_F(Saving, BackslashesSeparateFolders) {
  std::filesystem::create_directory(folder / "sub");
  engine.Save(At("sub") + "\\page.bmp");
  EXPECT_TRUE(std::filesystem::exists(folder / "sub" / "page.bmp"));
}

TEST_F(Saving, LongPaths) {
  const std::string path = LongFolder() + "/page.tif";
  ASSERT_GT(path.size(), 500U);
  engine.Save(path);
  engine.Save(path);
  PictureDocument again;
  ASSERT_TRUE(again.Load(path)) << again.LastLoadError();
  EXPECT_TRUE(SamePicture(engine.Current(), again.Current()));
  again.Save(path);
  EXPECT_EQ("", again.FormatName()) << "saved over itself, the picture is the engine's own";
}

// Takes `room` bytes and counts the bytes that a writer goes on to write after a failure.
class FullStream : public MemoryStream {
public:
  using MemoryStream::MemoryStream;
  std::size_t Write(const void* from, std::size_t count) noexcept override {
    if (failed) bytesAfterwards += count;
    return MemoryStream::Write(from, count);
  }
  std::size_t bytesAfterwards = 0;
};

class FailingStream : public testing::TestWithParam<const PictureFormat*> {};

TEST_P(FailingStream, WriterStops) {
  const PictureFormat& format = *GetParam();
  const Bitmap picture = Noise(1500, 1000, 24);
  FullStream whole;
  format.write(picture, whole, {});
  ASSERT_FALSE(whole.failed);
  std::size_t most = 0;
  for (std::size_t room = 0; room < whole.bytes.size(); room += 1 + whole.bytes.size() / 20) {
    FullStream stream(room);
    try {
      format.write(picture, stream, {});
    } catch (const RunTimeError& error) {
      EXPECT_EQ(NumberOf(ErrorNumber::InvalidPicture), error.Number());
    }
    EXPECT_EQ(room, stream.bytes.size());
    most = std::max(most, stream.bytesAfterwards);
  }
  // A codec may close its file, and write what it has in its buffer.
  EXPECT_LE(most, 1024U) << "of " << whole.bytes.size();
}

INSTANTIATE_TEST_SUITE_P(AllFormats, FailingStream, testing::ValuesIn(Formats().begin(), Formats().end()),
                         [](const auto& row) { return std::string(row.param->name); });

#ifndef _WIN32
TEST_F(Saving, FullDiskIsReportedAndTheOldFileStaysAsItWas) {
  const Bytes old{'o', 'l', 'd'};
  engine.Replace(Noise(500, 400, 24));
  rlimit before{};
  ASSERT_EQ(0, getrlimit(RLIMIT_FSIZE, &before));
  auto* const handler = std::signal(SIGXFSZ, SIG_IGN);
  for (const char* name : {"a.tif", "a.jpg", "a.gif", "a.bmp"}) {
    Put(name, old);
    const rlimit small{4096, before.rlim_max};
    ASSERT_EQ(0, setrlimit(RLIMIT_FSIZE, &small));
    const std::int32_t error = ErrorOf([&] { engine.Save(At(name)); });
    ASSERT_EQ(0, setrlimit(RLIMIT_FSIZE, &before));
    EXPECT_EQ(NumberOf(ErrorNumber::DiskFull), error) << name;
    EXPECT_EQ(old, BytesOf(At(name)));
  }
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(4U, Names().size());
}
#else
TEST_F(Saving, FileThatIsOpenElsewhereStaysAsItWas) {
  Put("a.bmp", {'o', 'l', 'd'});
  {
    std::FILE* holder = _wfopen(ToFilesystemPath(At("a.bmp")).c_str(), L"rb");
    ASSERT_NE(nullptr, holder);
    EXPECT_EQ(NumberOf(ErrorNumber::PermissionDenied), ErrorOf([&] { engine.Save(At("a.bmp")); }));
    std::fclose(holder);
  }
  EXPECT_EQ((Bytes{'o', 'l', 'd'}), BytesOf(At("a.bmp")));
  EXPECT_EQ(std::vector<std::string>{"a.bmp"}, Names());
}
#endif

TEST_F(Saving, QualityOfJpegIsAnOptionOfTheEngine) {
  engine.Replace(Noise(64, 64, 24));
  EXPECT_EQ(90, engine.GetOptions().writing.jpegQuality);
  engine.Save(At("standard.jpg"));
  engine.GetOptions().writing.jpegQuality = 30;
  engine.Save(At("coarse.jpg"));
  engine.GetOptions().writing.jpegQuality = 90;
  engine.Save(At("again.jpg"));
  EXPECT_EQ(BytesOf(At("standard.jpg")), BytesOf(At("again.jpg")));
  EXPECT_LT(BytesOf(At("coarse.jpg")).size() * 2, BytesOf(At("standard.jpg")).size());
}

}  // namespace
}  // namespace kw
