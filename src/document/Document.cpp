#include "document/Document.h"

#include <algorithm>

#include "components/Arithmetic.h"
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

bool IsBlank(const std::string& text) { return text.find_first_not_of(' ') == std::string::npos; }

}  // namespace

Document::Document(const Rooms& rooms)
    : desktop(rooms.desktop),
      form(rooms.form),
      trap(rooms.trap),
      layers(rooms.layers),
      bracket(rooms.bracket),
      properties(rooms.properties),
      KWPic(rooms.KWPic) {
  form.PageIndex.Change.Connect([this] { PageIndex_Change(); });
  form.cmbPageNo.Click.Connect([this] { cmbPageNo_Click(); });
}

void Document::OpenFile(const std::string& fPath) {
  Procedure run(trap);
  run([&] { desktop.ShowMessageBox(WorkToDo); });
  run([&] { trap.TraceFunction("OpenFile"); });
  run([&] { layers.UnloadLayerItems(); });
  run([&] { properties.LetIsFileChanged(false); });
  run([&] { m_FilePath = fPath; });
  run([&] {
    if (IsBlank(m_FirstFilePath)) m_FirstFilePath = m_FilePath;
  });
  run([&] { form.TransLayers(Layers::PageLayer).SetPicture({}); });
  run([&] { form.TransBackImage.SetPicture({}); });
  ResetView(run);
  run([&] { m_IgnorePageChange = true; });
  run([&] { SetPageRange(0, 0); });
  const bool isOpen = IsFirstPageFile(m_FilePath) ? OpenFirstPageFile(run) : OpenAndSplit(run);
  if (!isOpen) return;
  run([&] { PageIndex_Change(); });
  run([&] { form.tmrDefaultToolsSelection.SetEnabled(false); });
  run([&] { form.tmrDefaultToolsSelection.SetEnabled(true); });
  run([&] { bracket.DoPostCommandProcess(); });
}

// The user picked page 1 of a document that was split earlier: its other pages are found by probing.
bool Document::OpenFirstPageFile(Procedure& run) {
  run([&] { m_FilePath = GetSourceFileName(m_FilePath); });
  run([&] { SetPageRange(1, 1); });
  run([&] {
    for (std::int16_t page = 2; !desktop.DirectoryLookUp(GetPageFileName(m_FilePath, page)).empty();
         page = ToInteger16(page + 1)) {
      m_IgnorePageChange = true;
      form.PageIndex.SetMax(page);
    }
  });
  run([&] { m_CurrentPageNo = 1; });
  if (!Load(run, run.Ask<std::string>([&] { return GetPageFileName(m_FilePath, 1); }, {}))) return false;
  run([&] { TakePageValue(); });
  return true;
}

bool Document::OpenAndSplit(Procedure& run) {
  if (!Load(run, m_FilePath)) return false;
  run([&] { TakePageValue(); });
  const auto count = run.Ask<std::int16_t>([&] { return ToInteger16(KWPic.PageCount()); }, 0);
  if (count < 2) return true;
  run([&] { SetPageRange(1, count); });
  run([&] {
    if (!m_FirstFilePath.empty()) m_FilePath = m_FirstFilePath;
  });
  if (!WritePages(run, count)) return false;
  run([&] { m_CurrentPageNo = 1; });
  run([&] { m_IgnorePageChange = true; });
  return true;
}

// Last page first. False when a page cannot be read.
bool Document::WritePages(Procedure& run, std::int16_t count) {
  for (std::int16_t page = count; page >= 1; --page) {
    auto path = run.Ask<std::string>([&] { return GetPageFileName(m_FilePath, page); }, {});
    if (path.empty()) continue;
    const std::int32_t error = run.Attempt([&] {
      KWPic.SelectPage(page);
      TakePageValue();
      KWPic.Save(path);
    });
    if (error == static_cast<std::int32_t>(ErrorNumber::InvalidPicture)) {
      ReportFileError(run);
      return false;
    }
    if (error != 0) {
      run.Report();
      continue;
    }
    run([&] {
      std::int16_t pageNo = page;
      std::int16_t totalPages = count;
      NewPageCreated.Raise(path, pageNo, totalPages);
    });
  }
  return true;
}

void Document::PageIndex_Change() {
  Procedure run(trap, "PageIndex_Change");
  run([&] {
    std::int16_t pageNo = ToInteger16(form.PageIndex.Value());
    PageChanged.Raise(pageNo);
  });
  ShowPageControls(run);
  if (!m_IgnorePageChange && !AskToKeepChanges(run)) return;
  run([&] { form.editor.SetPointer(MousePointer::Hourglass); });
  ResetView(run);
  run([&] { m_CurrentPageNo = ToInteger16(form.PageIndex.Value()); });
  const auto path = run.Ask<std::string>(
      [&] { return m_CurrentPageNo == 0 ? m_FilePath : GetPageFileName(m_FilePath, m_CurrentPageNo); }, {});
  if (!Load(run, path)) return;
  run([&] { TakePageValue(); });
  run([&] { layers.UnloadLayerItems(); });
  run([&] { bracket.DoPostCommandProcess(); });
  run([&] { layers.SetCurrentLayer(Layers::PageLayer); });
  run([&] { m_IgnorePageChange = false; });
}

// Buttons, caption and list of the pages follow the spinner.
void Document::ShowPageControls(Procedure& run) {
  const auto page = std::max<std::int32_t>(1, form.PageIndex.Value());
  const std::int32_t count = PageCount();
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
bool Document::AskToKeepChanges(Procedure& run) {
  const bool isToAsk =
      run.Ask<bool>([&] { return properties.GetIsSaveButtonEnabled() && properties.GetIsFileChanged(); }, false) &&
      m_PageSaveCounter > 1;
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
  if (answer == MessageAnswer::Yes) run([&] { properties.SavePage(); });
  run([&] { properties.LetIsFileChanged(false); });
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

void Document::ResetView(Procedure& run) {
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

bool Document::Load(Procedure& run, const std::string& path) {
  if (!path.empty() && KWPic.Load(path)) return true;
  ReportFileError(run);
  return false;
}

void Document::ReportFileError(Procedure& run) {
  run([&] { form.editor.SetPointer(MousePointer::Default); });
  run([&] { properties.LetIsEditable(false); });
  run([&] { desktop.ShowMessageBox("Invalid file format..", "File Error"); });
}

}  // namespace kw
