#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "components/engine/KWPicEd.h"
#include "components/platform/Desktop.h"
#include "document/CommandBracket.h"
#include "document/DocumentProcedure.h"
#include "document/EditorContext.h"
#include "form/EditorForm.h"
#include "layers/Layers.h"

namespace kw {

// The open document: opening, splitting into page files, and the way from page to page. The control edits one page at
// a time, the one that the picture engine KWPic holds.
class Document : private EditorContext {
public:
  // Everything passed in must outlive the document.
  Document(const EditorContext& context, CommandBracket& commandBracket);

  // Opens an image or a multi-page file, which is split into page files beside it. Failures are shown to the user.
  //
  // A document that is opened while the list of pending work is up is opened first. One that is opened later, out of an
  // event or a box, takes the place of this one: the outer call then ends at once, as does a change of the page.
  void OpenFile(const std::string& fPath);
  // False if the page that the spinner tells cannot be loaded, as the user was told.
  bool PageIndex_Change();
  void cmbPageNo_Click();

  const std::string& FilePath() const { return m_FilePath; }
  const std::string& FirstFilePath() const { return m_FirstFilePath; }
  void SetFirstFilePath(const std::string& path) { m_FirstFilePath = path; }
  std::int16_t CurrentPageNo() const { return m_CurrentPageNo; }
  // From 2 on the user is asked whether to keep a page's changes. No procedure counts it up in this version.
  void SetPageSaveCounter(std::int16_t value) { m_PageSaveCounter = value; }
  // Pages whose page files the split of this document could not write. What lies there under their names belongs to
  // another document, or to an earlier state of this one, and is not shown.
  const std::set<std::int16_t>& UnwrittenPages() const { return unwrittenPages; }

private:
  std::int16_t PageCount() const;
  bool OpenFirstPageFile(DocumentProcedure& run);
  bool OpenAndSplit(DocumentProcedure& run);
  void WritePages(DocumentProcedure& run, const std::string& source, const std::vector<std::string>& names);
  std::int32_t WritePage(DocumentProcedure& run, std::int16_t page, const std::string& path);
  bool AskToKeepChanges(DocumentProcedure& run);
  void ShowPageControls(DocumentProcedure& run);
  void ResetView(DocumentProcedure& run);
  void SetPageRange(std::int16_t first, std::int16_t last);
  void TakePageValue();
  bool Load(DocumentProcedure& run, const std::string& path);
  bool LoadPage(DocumentProcedure& run, const std::string& path);
  bool Reported(DocumentProcedure& run, bool isLoaded);
  void ReportFileError(DocumentProcedure& run);

  CommandBracket& bracket;

  std::string m_FilePath;
  std::string m_FirstFilePath;
  std::int16_t m_CurrentPageNo = 0;
  bool m_IgnorePageChange = false;
  std::int16_t m_PageSaveCounter = 0;
  std::set<std::int16_t> unwrittenPages;
};

}  // namespace kw
