#include "document/Document.h"

#include <algorithm>
#include <limits>

#include "components/base/Arithmetic.h"
#include "components/base/Blank.h"
#include "components/controls/AccessibleTexts.h"
#include "document/PageFiles.h"

namespace kw {
namespace {

// Shown at the start of every opening: the work that is still to be done.
constexpr const char* WorkToDo =
    "Yet to implement : ReCreateUndoFileIndex\r\n"
    "tmrWatchClipBoard_Timer\r\n"
    "imgUndoBuffer(i).Picture = Nothing\r\n"
    "mnuSelectAll_Click\r\n"
    "mnuMergeDown_Click\r\n"
    "PrintImageOnSinglePage PicImgBuffer\r\n"
    "SavePage\r\n"
    "PicImgBuffer.DrawWidth = sldLineHeight.Value";

std::vector<std::string> PageFileNames(const std::string& path, std::int16_t count) {
  std::vector<std::string> names;
  for (std::int32_t page = 1; page <= count; ++page) names.push_back(GetPageFileName(path, ToInteger16(page)));
  return names;
}

}  // namespace

Document::Document(const EditorContext& context, CommandBracket& commandBracket)
    : EditorContext(context), bracket(commandBracket) {
  form.PageIndex.Change.Connect([this] { PageIndex_Change(); });
  form.cmbPageNo.Click.Connect([this] { cmbPageNo_Click(); });
}

void Document::OpenFile(const std::string& fPath) {
  Procedure before(trap);
  before([&] { desktop.ShowMessageBox(WorkToDo); });
  openings.Begin();
  DocumentProcedure run(trap, "OpenFile", openings);
  run([&] { layers.UnloadLayerItems(); });
  run([&] { state.LetIsFileChanged(false); });
  run([&] {
    m_FilePath = fPath;
    unwrittenPages.clear();
  });
  run([&] {
    if (IsBlank(m_FirstFilePath)) m_FirstFilePath = m_FilePath;
  });
  run([&] { form.TransLayers(Layers::PageLayer).SetPicture({}); });
  run([&] { form.editor.SetAccessibleName(accessible::Editor); });
  run([&] { form.TransBackImage.SetPicture({}); });
  ResetView(run);
  run([&] { m_IgnorePageChange = true; });
  run([&] { SetPageRange(0, 0); });
  const bool isOpen = !run.IsOver() && (IsFirstPageFile(m_FilePath) ? OpenFirstPageFile(run) : OpenAndSplit(run));
  if (!isOpen) return;
  if (!run.Ask<bool>([&] { return PageIndex_Change(); }, true)) return;
  run([&] { form.tmrDefaultToolsSelection.SetEnabled(false); });
  run([&] { form.tmrDefaultToolsSelection.SetEnabled(true); });
  run([&] { bracket.DoPostCommandProcess(); });
}

// The user picked page 1 of a document that was split earlier: its other pages are found by probing.
bool Document::OpenFirstPageFile(DocumentProcedure& run) {
  run([&] { m_FilePath = GetSourceFileName(m_FilePath); });
  run([&] { SetPageRange(1, 1); });
  run([&] {
    constexpr std::int16_t last = std::numeric_limits<std::int16_t>::max();
    for (std::int16_t page = 1; page < last;) {
      if (desktop.DirectoryLookUp(GetPageFileName(m_FilePath, ++page)).empty()) return;
      m_IgnorePageChange = true;
      form.PageIndex.SetMax(page);
    }
  });
  run([&] { m_CurrentPageNo = 1; });
  const auto path = run.Ask<std::string>([&] { return GetPageFileName(m_FilePath, 1); }, {});
  if (!Load(run, path)) return false;
  run([&] { TakePageValue(); });
  return true;
}

bool Document::OpenAndSplit(DocumentProcedure& run) {
  if (!Load(run, m_FilePath)) return false;
  run([&] { TakePageValue(); });
  const auto count = run.Ask<std::int16_t>([&] { return ToInteger16(KWPic.PageCount()); }, 0);
  if (count < 2) return true;
  const std::string path = m_FirstFilePath.empty() ? m_FilePath : m_FirstFilePath;
  const auto names = run.Ask<std::vector<std::string>>([&] { return PageFileNames(path, count); }, {});
  // A split that wrote onto the file that it reads would destroy it.
  const auto writesOntoIt = run.Ask<bool>(
      [&] { return std::ranges::any_of(names, [&](const std::string& name) { return KWPic.IsLoadedFrom(name); }); },
      true);
  if (writesOntoIt) return Load(run, {});
  run([&] { SetPageRange(1, count); });
  const std::string source = m_FilePath;
  run([&] { m_FilePath = path; });
  run([&] {
    for (std::int32_t page = 1; page <= count; ++page) unwrittenPages.insert(ToInteger16(page));
  });
  WritePages(run, source, names);
  run([&] { m_CurrentPageNo = 1; });
  run([&] { m_IgnorePageChange = true; });
  return true;
}

// Last page first. A full disk ends it: no other page file would be whole either.
void Document::WritePages(DocumentProcedure& run, const std::string& source, const std::vector<std::string>& names) {
  const std::int16_t count = ToInteger16(std::ssize(names));
  for (std::int16_t page = count; page >= 1; --page) {
    // A command or a change of the page, in the event of the page before, leaves the engine another picture.
    if (!run.IsOver() && KWPic.PageCount() != count) KWPic.Load(source);
    std::string path = names[static_cast<std::size_t>(page - 1)];
    const std::int32_t error = WritePage(run, page, path);
    if (run.IsOver() || error == static_cast<std::int32_t>(ErrorNumber::DiskFull)) return;
    if (error != 0) continue;
    run([&] {
      unwrittenPages.erase(page);
      std::int16_t pageNo = page;
      std::int16_t totalPages = count;
      events.Raise<EventId::NewPageCreated>(path, pageNo, totalPages);
    });
  }
}

// Reports an error, and returns its number if the page was not written. Of a damaged page, what can be read of it is
// written, so that the pages behind it are found.
std::int32_t Document::WritePage(DocumentProcedure& run, std::int16_t page, const std::string& path) {
  std::int32_t error = run.Attempt([&] {
    KWPic.SelectPage(page);
    TakePageValue();
    KWPic.SavePage(path);
  });
  if (error == static_cast<std::int32_t>(ErrorNumber::InvalidPicture)) {
    run.Report();
    error = run.Attempt([&] {
      KWPic.RecoverPage(page);
      KWPic.SavePage(path);
    });
    if (error == static_cast<std::int32_t>(ErrorNumber::InvalidPicture)) return error;
  }
  if (error != 0) run.Report();
  return error;
}

bool Document::PageIndex_Change() {
  DocumentProcedure run(trap, "PageIndex_Change", openings);
  run([&] {
    std::int16_t pageNo = ToInteger16(form.PageIndex.Value());
    events.Raise<EventId::PageChanged>(pageNo);
  });
  ShowPageControls(run);
  if (run.IsOver() || (!m_IgnorePageChange && !AskToKeepChanges(run))) return true;
  run([&] { form.editor.SetPointer(MousePointer::Hourglass); });
  ResetView(run);
  run([&] { m_CurrentPageNo = ToInteger16(form.PageIndex.Value()); });
  const auto path = run.Ask<std::string>(
      [&] {
        if (unwrittenPages.contains(m_CurrentPageNo)) return std::string();
        return m_CurrentPageNo == 0 ? m_FilePath : GetPageFileName(m_FilePath, m_CurrentPageNo);
      },
      {});
  if (!LoadPage(run, path)) return false;
  run([&] { TakePageValue(); });
  run([&] { layers.UnloadLayerItems(); });
  run([&] { bracket.DoPostCommandProcess(); });
  run([&] { layers.SetCurrentLayer(Layers::PageLayer); });
  run([&] { m_IgnorePageChange = false; });
  return true;
}

// Buttons, caption and list of the pages follow the spinner.
void Document::ShowPageControls(DocumentProcedure& run) {
  const auto page = std::max<std::int32_t>(1, form.PageIndex.Value());
  const std::int32_t count = PageCount();
  run([&] { form.editor.SetAccessibleName(accessible::EditorWithPage(page, count)); });
  run([&] { form.TransLayers(Layers::PageLayer).SetAccessibleName(accessible::PageOf(page, count)); });
  run([&] { BarOf(form.tbrBasicTools, "PrevPage").SetButtonEnabled("PrevPage", page > 1); });
  run([&] { BarOf(form.tbrBasicTools, "NextPage").SetButtonEnabled("NextPage", page < count); });
  run([&] { form.lblPageNo.SetCaption("Page" + std::string(20, ' ') + "of " + std::to_string(count)); });
  run([&] {
    if (form.cmbPageNo.ItemCount() == count) return;
    form.cmbPageNo.Clear();
    for (std::int32_t i = 1; i <= count; ++i) form.cmbPageNo.Add(std::to_string(i));
  });
  run([&] { form.cmbPageNo.Select(page); });
  run([&] { form.cmbPageNo.Refresh(); });
}

// False when the user wants to stay on the page.
bool Document::AskToKeepChanges(DocumentProcedure& run) {
  const bool isToAsk = run.Ask<bool>(
      [&] {
        const bool canSave = state.GetIsSaveButtonEnabled();
        const bool isChanged = state.GetIsFileChanged();
        return canSave && isChanged && m_PageSaveCounter > 1;
      },
      false);
  if (!isToAsk) return true;
  const auto answer = run.Ask<MessageAnswer>(
      [&] {
        return desktop.ShowMessageBox("Do you want to Save Current Page?", "Save changes..",
                                      MessageButtons::YesNoCancel);
      },
      MessageAnswer::No);
  if (answer == MessageAnswer::Cancel) {
    run([&] { m_IgnorePageChange = true; });
    run([&] { form.PageIndex.SetValue(m_CurrentPageNo); });
    return false;
  }
  if (answer == MessageAnswer::Yes) run([&] { state.SavePage(); });
  run([&] { state.LetIsFileChanged(false); });
  return true;
}

void Document::cmbPageNo_Click() {
  Procedure run(trap, "cmbPageNo_Click");
  run([&] {
    if (!layers.HasPage()) return;
    const std::int32_t chosen = form.cmbPageNo.SelectedItem();  // the list counts as the pages do
    if (chosen != form.PageIndex.Value()) form.PageIndex.SetValue(chosen);
  });
}

void Document::ResetView(DocumentProcedure& run) {
  run([&] { form.vScroll.SetValue(0); });
  run([&] { form.hScroll.SetValue(0); });
  run([&] { BarOf(form.tbrBasicTools, "Undo").SetButtonEnabled("Undo", false); });
  run([&] { BarOf(form.tbrBasicTools, "Redo").SetButtonEnabled("Redo", false); });
}

// A document that is not split has the range 0 to 0, a split one counts from 1.
void Document::SetPageRange(std::int16_t first, std::int16_t last) {
  form.PageIndex.SetMin(0);
  form.PageIndex.SetMax(last);
  form.PageIndex.SetMin(first);
}

std::int16_t Document::PageCount() const { return std::max<std::int16_t>(1, ToInteger16(form.PageIndex.Max())); }

void Document::TakePageValue() { bracket.SetBitsPerPixel(KWPic.PageValue()); }

// An empty path is that of a page that has no file. If there is nothing to load, the engine is emptied.
bool Document::Load(DocumentProcedure& run, const std::string& path) {
  return !run.IsOver() && Reported(run, KWPic.Load(path));
}

bool Document::LoadPage(DocumentProcedure& run, const std::string& path) {
  return !run.IsOver() && Reported(run, KWPic.LoadPage(path));
}

bool Document::Reported(DocumentProcedure& run, bool isLoaded) {
  if (!isLoaded) ReportFileError(run);
  return isLoaded;
}

void Document::ReportFileError(DocumentProcedure& run) {
  run([&] { form.editor.SetPointer(MousePointer::Default); });
  run([&] { state.LetIsEditable(false); });
  run([&] { desktop.ShowMessageBox("Invalid file format..", "File Error"); });
}

}  // namespace kw
