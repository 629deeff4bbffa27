// The program ended at any moment of its work: every file is the old one or the new one.

#include <string>
#include <vector>

#include "picture/PictureDocument.h"
#include "tests/kwpic/Program.h"
#include "tests/support/Killing.h"
#include "tests/support/Watched.h"

namespace kw {
namespace {

#ifdef _WIN32
constexpr int Kills = 2;
#else
constexpr int Kills = test::Amount(30, 12);
#endif

class KwpicKilled : public ProgramTest {
protected:
  void MakePages(const std::string& name, int pages, int bitsPerPixel) const {
    const std::string first = At(name);
    for (int page = 1; page <= pages; ++page) {
      PictureDocument document;
      document.Replace(Noise(120 + page, 90, bitsPerPixel));
      document.Append(first);
    }
  }
  // The document is made once; making it takes longer than copying it.
  void Keep(const std::string& name, int pages, int bitsPerPixel) {
    MakePages(name, pages, bitsPerPixel);
    kept.emplace_back(name, BytesOf(At(name)));
  }
  void Run(const std::vector<std::string>& arguments) {
    std::vector<std::string> command{ProgramPath()};
    command.insert(command.end(), arguments.begin(), arguments.end());
    test::Killing(temporary, command, [this] {
      for (const auto& [name, bytes] : kept) Put(name, bytes);
    }).Run(Kills);
  }

private:
  std::vector<std::pair<std::string, Bytes>> kept;
};

TEST_F(KwpicKilled, InASplit) {
  Keep("scan.tif", 12, 24);
  // Of another document that had this name.
  Keep("scan_Page_2.tif", 1, 8);
  Keep("scan_Page_11.tif", 1, 8);
  Run({"split", At("scan.tif")});
}

TEST_F(KwpicKilled, InAJoin) {
  Keep("one.tif", 6, 24);
  Keep("two.fmf", 6, 8);
  Keep("all.tif", 2, 24);
  Run({"join", At("all.tif"), At("one.tif"), At("two.fmf")});
}

TEST_F(KwpicKilled, InAConversionOfAFileToItself) {
  Keep("scan.tif", 8, 24);
  Run({"convert", "--bpp", "1", At("scan.tif"), At("scan.tif")});
}

}  // namespace
}  // namespace kw
