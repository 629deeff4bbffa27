#include "tests/torture/FileScenarios.h"

#include <string>

#include "components/base/Files.h"
#include "stamps/StampList.h"
#include "tests/support/Documents.h"
#include "tests/torture/Stages.h"

namespace kw::test {
namespace {

void MakeThreePages(const std::string& path) {
  for (int page = 1; page <= 3; ++page) {
    PictureDocument made;
    made.Replace(StagePicture(20 + page, 16));
    made.Append(path);
  }
}

// As the program joins documents: all pages into one file that nobody sees before.
void JoinTo(const std::string& from, const std::string& to, const PictureFormat& format) {
  OutputFile file(to);
  try {
    const auto appender = format.append(file);
    PictureDocument document;
    if (!document.Load(from)) Raise(ErrorNumber::InvalidPicture);
    for (int page = 1; page <= document.PageCount(); ++page) {
      document.SelectPage(page);
      document.AppendTo(*appender);
    }
  } catch (...) {
    file.RaiseFailure();
    throw;
  }
  file.Commit();
}

}  // namespace

std::vector<Scenario> FileScenarios() {
  std::vector<Scenario> rows;
  for (const std::string extension : {"tif", "fmf"}) {
    const std::string name = "scan." + extension;
    rows.push_back(OfLibrary(
        "files.join." + extension,
        [=](LibraryStage& stage) {
          MakeThreePages(stage.files.File(name));
          SavePicture(StagePicture(5, 5), stage.files.File("all." + extension));
        },
        [=](LibraryStage& stage) {
          const std::string to = stage.files.File("all." + extension);
          JoinTo(stage.files.File(name), to, *FormatOfPath(to));
        }));
    rows.push_back(OfLibrary(
        "files.join_itself." + extension, [=](LibraryStage& stage) { MakeThreePages(stage.files.File(name)); },
        [=](LibraryStage& stage) {
          const std::string path = stage.files.File(name);
          JoinTo(path, path, *FormatOfPath(path));
        }));
  }
  for (const std::string extension : {"fmf", "tif", "jpg", "gif", "bmp"}) {
    const std::string name = "page." + extension;
    rows.push_back(OfLibrary(
        "files.over_itself." + extension,
        [=](LibraryStage& stage) { SavePicture(StagePicture(), stage.files.File(name)); },
        [=](LibraryStage& stage) {
          const std::string path = stage.files.File(name);
          stage.isRefused = !stage.document.Load(path);
          if (!stage.isRefused) stage.document.Save(path);
        }));
  }
  rows.push_back(OfLibrary(
      "files.folders", [](LibraryStage&) {},
      [](LibraryStage& stage) {
        const std::string folder = stage.files.File("one\\two\\three");
        MakeFolders(folder);
        SavePicture(StagePicture(), folder + "\\page.bmp");
      }));
  rows.push_back(OfEditor(
      "files.stamps", [](EditorStage& stage) { WriteWhole(stage.File("stamps.lst"), "[Stamps]\r\n1=OLD\r\n"); },
      [](EditorStage& stage) {
        StampList list(stage.desktop, stage.control->ErrorTrap());
        list.AddStamp("NEW");
        ImageCombo combo("combo");
        list.FillStampList(combo);
      }));
  return rows;
}

}  // namespace kw::test
