// What the picture library does with files and pictures.

#include <array>

#include "picture/effects/Effect.h"
#include "picture/effects/ParallelRows.h"
#include "tests/data/TestData.h"
#include "tests/support/Documents.h"
#include "tests/torture/Stages.h"

namespace kw::test {
namespace {

constexpr std::array Extensions = {"fmf", "tif", "jpg", "gif", "bmp"};
constexpr std::array SeveralPages = {"fmf", "tif"};

void MakePages(const std::string& path, int pages) {
  for (int page = 1; page <= pages; ++page) {
    PictureDocument one;
    one.Replace(StagePicture(20 + page, 16, page == 2 ? 8 : 24));
    one.Append(path);
  }
}

void AddLoading(std::vector<Scenario>& rows, const std::string& extension) {
  const std::string name = "page." + extension;
  rows.push_back(OfLibrary(
      "library.load." + extension, [=](LibraryStage& stage) { SavePicture(StagePicture(), stage.files.File(name)); },
      [=](LibraryStage& stage) { stage.isRefused = !stage.document.Load(stage.files.File(name)); }));
}

void AddSaving(std::vector<Scenario>& rows, const std::string& extension) {
  const std::string name = "page." + extension;
  rows.push_back(OfLibrary(
      "library.save." + extension,
      [=](LibraryStage& stage) {
        SavePicture(StagePicture(5, 5), stage.files.File(name));
        stage.document.Replace(StagePicture());
      },
      [=](LibraryStage& stage) { stage.document.Save(stage.files.File(name)); }));
}

// Pages keep their coded pixels, or are encoded anew in another format.
void AddSplit(std::vector<Scenario>& rows, const std::string& extension, const std::string& to) {
  rows.push_back(OfLibrary(
      "library.split." + extension + "." + to,
      [=](LibraryStage& stage) {
        MakePages(stage.files.File("scan." + extension), 3);
        stage.document.Load(stage.files.File("scan." + extension));
      },
      [=](LibraryStage& stage) {
        for (int page = 3; page >= 1; --page) {
          stage.document.SelectPage(page);
          stage.document.SavePage(stage.files.File("page" + std::to_string(page) + "." + to));
        }
      }));
  // Each page is decoded to be encoded, and stays the current one if the next cannot be had.
  for (int page = 1; page <= 3; ++page) {
    PictureDocument made;
    made.Replace(StagePicture(20 + page, 16, page == 2 ? 8 : 24));
    rows.back().between["picture"].insert(Told(made.Current()));
  }
}

void AddAppending(std::vector<Scenario>& rows, const std::string& extension) {
  const std::string name = "scan." + extension;
  rows.push_back(OfLibrary(
      "library.append." + extension,
      [=](LibraryStage& stage) {
        MakePages(stage.files.File(name), 2);
        stage.document.Replace(StagePicture(31, 16));
        stage.appended = name;
      },
      [=](LibraryStage& stage) { stage.document.Append(stage.files.File(name)); }));
}

void AddFolderDocument(std::vector<Scenario>& rows, const char* name) {
  rows.push_back(OfLibrary(
      std::string("library.read.") + name, [](LibraryStage&) {},
      [=](LibraryStage& stage) {
        PictureDocument document;
        stage.isRefused = !document.Load(TestData(name).string());
        std::string told;
        for (int page = 1; page <= document.PageCount(); ++page) {
          document.SelectPage(page);
          told += Told(document.Current()) + ", ";
        }
        stage.result = told;
      }));
}

void AddEffects(std::vector<Scenario>& rows, int bitsPerPixel) {
  for (const Effect& effect : Effects()) {
    rows.push_back(OfLibrary(
        "library.effect." + std::string(effect.command) + "." + std::to_string(bitsPerPixel),
        [=](LibraryStage& stage) { stage.document.Replace(StagePicture(24, 16, bitsPerPixel)); },
        [&effect](LibraryStage& stage) { stage.document.Apply(effect, StandardValues(effect)); }));
  }
}

// Several threads work, however little there is to do.
template <typename Step>
void ByThreads(const Step& step) {
  SetLeastWork(1);
  SetMostThreads(4);
  const std::shared_ptr<void> usual(nullptr, [](void*) {
    SetLeastWork(0);
    SetMostThreads(0);
  });
  step();
}

// Enough rows that several threads work on them.
void AddParallelEffect(std::vector<Scenario>& rows, const char* command) {
  rows.push_back(OfLibrary(
      std::string("library.threads.") + command,
      [](LibraryStage& stage) { stage.document.Replace(StagePicture(64, 96)); },
      [=](LibraryStage& stage) {
        const Effect& effect = *FindEffect(command);
        ByThreads([&] { stage.document.Apply(effect, StandardValues(effect)); });
      }));
}

// Effects that leave a shared page in its own depth, on several threads.
void AddKeptDepth(std::vector<Scenario>& rows, const char* command, int bitsPerPixel) {
  rows.push_back(OfLibrary(
      "library.kept." + std::string(command),
      [=](LibraryStage& stage) {
        stage.shown = StagePicture(64, 96, bitsPerPixel);
        stage.document.Replace(stage.shown);
      },
      [=](LibraryStage& stage) {
        const Effect& effect = *FindEffect(command);
        auto depth = static_cast<std::int16_t>(bitsPerPixel);
        ByThreads([&] { stage.document.Apply(effect, StandardValues(effect), depth); });
        stage.document.ConvertToBitsPerPixel(depth);
      }));
}

void AddWideBlur(std::vector<Scenario>& rows) {
  rows.push_back(OfLibrary(
      "library.threads.WideBlur", [](LibraryStage& stage) { stage.document.Replace(StagePicture(64, 96)); },
      [](LibraryStage& stage) {
        ByThreads([&] { stage.document.Apply(*FindEffect("Blur"), std::vector<double>{10}); });
      }));
}

// A page of several strips.
void AddParallelLoading(std::vector<Scenario>& rows) {
  rows.push_back(OfLibrary(
      "library.threads.load",
      [](LibraryStage& stage) { SavePicture(StagePicture(400, 600), stage.files.File("large.tif")); },
      [](LibraryStage& stage) {
        ByThreads([&] { stage.isRefused = !stage.document.Load(stage.files.File("large.tif")); });
      }));
  rows.back().isOfThreads = true;
}

// A picture that is coded in bands.
void AddParallelSaving(std::vector<Scenario>& rows) {
  rows.push_back(OfLibrary(
      "library.threads.save", [](LibraryStage& stage) { stage.document.Replace(StagePicture(1450, 1000)); },
      [](LibraryStage& stage) { ByThreads([&] { stage.document.Save(stage.files.File("large.jpg")); }); }));
  rows.back().isOfThreads = true;
}

void AddDepths(std::vector<Scenario>& rows) {
  for (const int from : {24, 8, 1}) {
    for (const std::int16_t to : {std::int16_t{1}, std::int16_t{4}, std::int16_t{8}, std::int16_t{32}}) {
      if (from == to) continue;
      rows.push_back(OfLibrary(
          "library.depth." + std::to_string(from) + "." + std::to_string(to),
          [=](LibraryStage& stage) { stage.document.Replace(StagePicture(24, 16, from)); },
          [=](LibraryStage& stage) {
            std::int16_t depth = to;
            stage.document.ConvertToBitsPerPixel(depth);
          }));
    }
  }
}

}  // namespace

std::vector<Scenario> LibraryScenarios() {
  std::vector<Scenario> rows;
  for (const char* const extension : Extensions) AddLoading(rows, extension);
  for (const char* const extension : Extensions) AddSaving(rows, extension);
  for (const char* const extension : SeveralPages) {
    AddSplit(rows, extension, extension);
    AddSplit(rows, extension, "bmp");
    AddAppending(rows, extension);
  }
  for (const char* const name : {"letter.tif", "colour.jpg", "grey.jpg"}) AddFolderDocument(rows, name);
  AddEffects(rows, 24);
  AddEffects(rows, 8);
  AddEffects(rows, 1);
  for (const char* const command : {"Blur", "Rotate", "Invert"}) AddParallelEffect(rows, command);
  for (const char* const command : {"Blur", "Sharpen"}) AddKeptDepth(rows, command, 1);
  AddKeptDepth(rows, "GrayScale", 24);
  AddWideBlur(rows);
  AddParallelLoading(rows);
  AddParallelSaving(rows);
  AddDepths(rows);
  rows.push_back(OfLibrary(
      "library.signature", [](LibraryStage& stage) { stage.document.Replace(StagePicture()); },
      [](LibraryStage& stage) { stage.document.PrepareSignature(); }));
  return rows;
}

}  // namespace kw::test
