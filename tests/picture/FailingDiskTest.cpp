// Calls to the file system that fail for a moment: what cannot be read is not taken for what is damaged or not there.

#include <string>
#include <vector>

#include "components/base/Files.h"
#include "picture/PictureDocument.h"
#include "tests/picture/Scratch.h"
#include "tests/support/FailingFiles.h"

namespace kw {
namespace {

using test::FailingFiles;
using Call = FailingFiles::Call;

constexpr test::FileTrouble InputOutputError = test::FileTroubles[3];

class FailingDisk : public ScratchTest {
protected:
  void MakePages(const std::string& name, int pages) const {
    for (int page = 1; page <= pages; ++page) {
      PictureDocument made;
      made.Replace(Noise(60, 50, 24));
      made.Append(At(name));
    }
  }
  // From now on no byte of this file can be read behind the first so many calls.
  static void StopReading(FailingFiles& files, const std::string& name, int calls = 0) {
    files.onCall = [name, left = calls](Call call, const std::filesystem::path& path) mutable {
      if (call != Call::Read || path.filename() != name) return 0;
      return left-- > 0 ? 0 : InputOutputError.code;
    };
  }
};

TEST_F(FailingDisk, FileThatCannotBeReadIsNotShownInPart) {
  for (const char* const name : {"a.bmp", "a.gif", "a.jpg", "a.tif", "a.fmf"}) {
    PictureDocument maker;
    maker.Replace(Noise(60, 50, 24));
    maker.Save(At(name));
    for (const int calls : {0, 1, 2, 5}) {
      FailingFiles files;
      StopReading(files, name, calls);
      PictureDocument document;
      if (document.Load(At(name))) continue;  // it needed no more calls
      EXPECT_EQ(document.LastLoadError(), "Path/File access error") << name << ", call " << calls;
      EXPECT_TRUE(document.Current().IsEmpty());
    }
  }
}

TEST_F(FailingDisk, PageThatCannotBeReadIsNoDamagedPage) {
  MakePages("scan.tif", 2);
  PictureDocument document;
  ASSERT_TRUE(document.Load(At("scan.tif")));
  FailingFiles files;
  StopReading(files, "scan.tif");
  EXPECT_EQ(NumberOf(ErrorNumber::PathFileAccessError), ErrorOf([&] { document.SelectPage(2); }));
  EXPECT_EQ(NumberOf(ErrorNumber::PathFileAccessError), ErrorOf([&] { document.RecoverPage(2); }))
      << "white paper would take its place";
  EXPECT_EQ(NumberOf(ErrorNumber::PathFileAccessError), ErrorOf([&] { document.Current(); }));
  EXPECT_EQ(NumberOf(ErrorNumber::PathFileAccessError), ErrorOf([&] { document.Save(At("page.tif")); }));
  files.onCall = nullptr;
  document.SelectPage(2);
  EXPECT_EQ(document.Width(), 60);
  EXPECT_EQ(std::vector<std::string>{"scan.tif"}, Names());
}

TEST_F(FailingDisk, DocumentWhoseEndCannotBeReadIsNotAppendedTo) {
  PictureDocument page;
  page.Replace(Noise(9, 9, 24));
  for (const char* const name : {"scan.tif", "scan.fmf"}) {
    MakePages(name, 2);
    const Bytes before = BytesOf(At(name));
    for (int calls = 0; calls < 4; ++calls) {
      FailingFiles files;
      StopReading(files, name, calls);
      EXPECT_NE(0, ErrorOf([&] { page.Append(At(name)); })) << name << ", call " << calls;
      EXPECT_EQ(before, BytesOf(At(name))) << name << ", call " << calls;
    }
  }
}

TEST_F(FailingDisk, PageThatCannotBeAppendedToItsOwnFileIsOneOfSeveralStill) {
  for (const char* const name : {"scan.tif", "scan.fmf"}) {
    MakePages(name, 3);
    PictureDocument document;
    ASSERT_TRUE(document.Load(At(name)));
    document.SelectPage(2);
    document.Current();
    FailingFiles files;
    files.onCall = [](Call call, const std::filesystem::path&) {
      return call == Call::Open ? InputOutputError.code : 0;
    };
    EXPECT_EQ(NumberOf(ErrorNumber::PathFileAccessError), ErrorOf([&] { document.Append(At(name)); })) << name;
    files.onCall = nullptr;
    EXPECT_EQ(document.PageCount(), 3);
    document.SelectPage(3);
    EXPECT_EQ(document.Width(), 60);
  }
}

TEST_F(FailingDisk, FileThatCannotBeLookedAtIsNotTakenForMissing) {
  const std::string path = Put("a.bmp", {1});
  FailingFiles files;
  files.onCall = [](Call call, const std::filesystem::path&) { return call == Call::Look ? InputOutputError.code : 0; };
  EXPECT_EQ(NumberOf(ErrorNumber::PathFileAccessError), ErrorOf([&] { LookUpFile(path); }));
  EXPECT_EQ(NumberOf(ErrorNumber::PathFileAccessError), ErrorOf([&] { IsSameFile(path, At("b.bmp")); }));
  files.onCall = nullptr;
  EXPECT_EQ("", LookUpFile(At(std::string(1000, 'a')))) << "no file has such a name";
}

TEST_F(FailingDisk, EachStepOfSavingIsInItsOrder) {
  PictureDocument document;
  document.Replace(Noise(9, 9, 24));
  std::vector<Call> steps;
  FailingFiles files;
  files.onCall = [&](Call call, const std::filesystem::path&) {
    const bool isStep = call == Call::Flush || call == Call::Close || call == Call::Name;
    if (isStep) steps.push_back(call);
    return 0;
  };
  document.Save(At("a.bmp"));
  EXPECT_EQ(steps, (std::vector<Call>{Call::Flush, Call::Close, Call::Name}));
  EXPECT_TRUE(files.namedUnflushed.empty());
}

}  // namespace
}  // namespace kw
