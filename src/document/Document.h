#pragma once

#include <cstdint>
#include <string>

#include "components/Desktop.h"
#include "components/Event.h"
#include "components/PictureEngine.h"
#include "document/CommandBracket.h"
#include "document/EditorProperties.h"
#include "form/EditorForm.h"
#include "layers/Layers.h"
#include "trap/Procedure.h"

namespace kw {

// The open document: opening, splitting into page files, and the way from page to page. The control edits one page at
// a time, the one that the picture engine KWPic holds.
class Document {
public:
  struct Rooms {
    Desktop& desktop;
    EditorForm& form;
    Trap& trap;
    Layers& layers;
    CommandBracket& bracket;
    EditorProperties& properties;
    PictureEngine& KWPic;
  };

  // What is referred to must outlive the document.
  explicit Document(const Rooms& rooms);

  // Opens an image or a multi-page file, which is split into page files beside it. Failures are shown to the user.
  void OpenFile(const std::string& fPath);
  void PageIndex_Change();
  void cmbPageNo_Click();

  const std::string& FilePath() const { return m_FilePath; }
  const std::string& FirstFilePath() const { return m_FirstFilePath; }
  void SetFirstFilePath(const std::string& path) { m_FirstFilePath = path; }
  std::int16_t CurrentPageNo() const { return m_CurrentPageNo; }

  // Path, page and page count of a page file that was written.
  Event<std::string&, std::int16_t&, std::int16_t&> NewPageCreated;
  // The page spinner's value.
  Event<std::int16_t&> PageChanged;

private:
  std::int16_t PageCount() const;
  bool OpenFirstPageFile(Procedure& run);
  bool OpenAndSplit(Procedure& run);
  bool WritePages(Procedure& run, std::int16_t count);
  bool AskToKeepChanges(Procedure& run);
  void ShowPageControls(Procedure& run);
  void ResetView(Procedure& run);
  void SetPageRange(std::int16_t first, std::int16_t last);
  void TakePageValue();
  bool Load(Procedure& run, const std::string& path);
  void ReportFileError(Procedure& run);

  Desktop& desktop;
  EditorForm& form;
  Trap& trap;
  Layers& layers;
  CommandBracket& bracket;
  EditorProperties& properties;
  PictureEngine& KWPic;

  std::string m_FilePath;
  std::string m_FirstFilePath;
  std::int16_t m_CurrentPageNo = 0;
  bool m_IgnorePageChange = false;
  std::int16_t m_PageSaveCounter = 0;
};

}  // namespace kw
