#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "components/base/Bitmap.h"
#include "control/KwEditorLayers.h"
#include "picture/PictureDocument.h"
#include "tests/support/RecordedEvents.h"
#include "tests/support/ScriptedDesktop.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/torture/Scenarios.h"

namespace kw::test {

// The parts of Scenarios(), each in a file of its own.
std::vector<Scenario> LibraryScenarios();
std::vector<Scenario> DocumentScenarios();
std::vector<Scenario> DrawingScenarios();
std::vector<Scenario> HostScenarios();

// Size, depth and pixels of a picture in a few letters; "none" for an empty one.
std::string Told(const Bitmap& picture);
// A picture on which every effect shows.
Bitmap StagePicture(std::int32_t width = 24, std::int32_t height = 16, int bitsPerPixel = 24);
// A page of the documents that EditorStage makes.
Bitmap PageOfGreyTiff(int page);
// Each file of the folder with its content, apart from the trace and the scratch bitmaps.
void TellFiles(const TemporaryFolder& folder, State& state);

// The folder of one scenario, emptied.
class StageFolder {
public:
  explicit StageFolder(std::shared_ptr<TemporaryFolder> shared);
  std::string File(const std::string& name) const { return folder->File(name); }
  const TemporaryFolder& Folder() const { return *folder; }

private:
  std::shared_ptr<TemporaryFolder> folder;
};

// A document of the picture library and what is done with it.
class LibraryStage : public Stage {
public:
  using Procedure = std::function<void(LibraryStage&)>;
  LibraryStage(std::shared_ptr<TemporaryFolder> shared, const Procedure& setUp, Procedure procedure);

  State Look() override;

  StageFolder files;
  PictureDocument document;
  // A picture that shares its pixels with the document's, told if there is one.
  Bitmap shown;
  // What an action found out, told as "result".
  std::string result;
  bool isRefused = false;
  // A file of several pages that is told page by page: behind them its bytes may be anything.
  std::string appended;

protected:
  void Act(Outcome& outcome) override;

private:
  Procedure action;
};
Scenario OfLibrary(std::string name, LibraryStage::Procedure setUp, LibraryStage::Procedure action);

// The whole control on the scripted desktop.
class EditorStage : public Stage {
public:
  using Procedure = std::function<void(EditorStage&)>;
  EditorStage(std::shared_ptr<TemporaryFolder> shared, const Procedure& setUp, Procedure procedure);
  ~EditorStage() override;

  State Look() override;
  std::vector<std::string> Broken() override;
  void Recover() override;

  EditorForm& Form() const { return control->Form(); }
  std::string File(const std::string& name) const { return files.File(name); }
  // Page p is 10 p wide and 20 high.
  std::string MakeDocument(const std::string& name, int pages) const;
  std::string MakePicture(const std::string& name) const;
  // A page that fills the canvas, for a hand on the mouse.
  void OpenLargePage() const;
  void Choose(const char* tool) const { Form().tbrEditingTools.SetButtonPressed(tool, true); }
  void DragOut(float left, float top, float right, float bottom) const;

  StageFolder files;
  ScriptedDesktop desktop;
  RecordedEvents events;
  std::unique_ptr<KwEditorLayers> control;
  std::string result;

protected:
  void Act(Outcome& outcome) override;

private:
  Procedure action;
};
Scenario OfEditor(std::string name, EditorStage::Procedure setUp, EditorStage::Procedure action);

}  // namespace kw::test
