// The property procedures. Each traces its name; a Let stores, applies its side effect and notifies the container.

#include <algorithm>
#include <utility>

#include "components/base/Blank.h"
#include "control/KwEditorLayers.h"
#include "document/ScratchBitmap.h"
#include "picture/Signature.h"
#include "trap/Procedure.h"

namespace kw {
bool KwEditorLayers::GetEnabled() {
  const Procedure run(trap, "Get Enabled");
  return form.editor.Enabled();
}

void KwEditorLayers::LetEnabled(bool value) {
  Procedure run(trap, "Let Enabled");
  run([&] { form.editor.SetEnabled(value); });
  PropertyChanged(run, PropertyId::Enabled);
}

bool KwEditorLayers::GetIsToLightenBackImage() {
  const Procedure run(trap, "Get IsToLightenBackImage");
  return m_IsToLightenBackImage;
}

void KwEditorLayers::LetIsToLightenBackImage(bool value) {
  Procedure run(trap, "Let IsToLightenBackImage");
  run([&] { m_IsToLightenBackImage = value; });
  run([&] { form.TransBackImage.SetLightened(value); });
  run([&] { zoom.UpdateAndZoom(); });
  PropertyChanged(run, PropertyId::IsToLightenBackImage);
}

bool KwEditorLayers::GetIsOpenButtonVisible() {
  const Procedure run(trap, "Get IsOpenButtonVisible");
  return form.tbrOpenFile.Visible();
}

void KwEditorLayers::LetIsOpenButtonVisible(bool value) {
  Procedure run(trap, "Let IsOpenButtonVisible");
  run([&] { form.tbrOpenFile.SetVisible(value); });
  run([&] { strip.RedrawToolBars(); });
  PropertyChanged(run, PropertyId::IsOpenButtonVisible);
}

bool KwEditorLayers::GetIsToSaveAsMultiPageFile() {
  const Procedure run(trap, "Get IsToSaveAsMultiPageFile");
  return m_IsToSaveAsMultiPageFile;
}

void KwEditorLayers::LetIsToSaveAsMultiPageFile(bool value) {
  Procedure run(trap, "Let IsToSaveAsMultiPageFile");
  run([&] { m_IsToSaveAsMultiPageFile = value; });
  PropertyChanged(run, PropertyId::IsToSaveAsMultiPageFile);
}

bool KwEditorLayers::GetIsToAllowChooseColor() {
  const Procedure run(trap, "Get IsToAllowChooseColor");
  return form.kwraChooseColorTool.Enabled();
}

void KwEditorLayers::LetIsToAllowChooseColor(bool value) {
  Procedure run(trap, "Let IsToAllowChooseColor");
  run([&] { form.kwraChooseColorTool.SetEnabled(value); });
  run([&] { form.tbrEditingTools.SetButtonEnabled("Chooser", value); });
  run([&] { form.tbrEditingTools.SetButtonEnabled("Fill", value); });
  PropertyChanged(run, PropertyId::IsToAllowChooseColor);
}

std::int16_t KwEditorLayers::UndoLevelsOf(std::int16_t value) { return std::max(value, std::int16_t{5}); }

std::int16_t KwEditorLayers::GetMaxUndoLevels() {
  const Procedure run(trap, "Get MaxUndoLevels");
  return m_MaxUndoLevels;
}

void KwEditorLayers::LetMaxUndoLevels(std::int16_t value) {
  Procedure run(trap, "Let MaxUndoLevels");
  run([&] { m_MaxUndoLevels = UndoLevelsOf(value); });
  run([&] { ReCreateUndoFileIndex(); });
  PropertyChanged(run, PropertyId::MaxUndoLevels);
}

std::string KwEditorLayers::GetAppDir() {
  const Procedure run(trap, "Get AppDir");
  return AppDir;
}

void KwEditorLayers::LetAppDir(const std::string& value) {
  Procedure run(trap, "Let AppDir");
  run([&] { AppDir = value; });
  PropertyChanged(run, PropertyId::AppDir);
}

void KwEditorLayers::LetSignatureFilePath(const std::string& path) {
  Procedure run(trap, "Let SignatureFilePath");
  Bitmap image;
  if (!IsBlank(path) && KWPicTempBuffer.LoadPage(path)) {
    run([&] { KWPicTempBuffer.PrepareSignature(); });
    run([&] { ScratchBitmap(desktop).PassAndRemove(KWPicTempBuffer, image); });
  }
  Bitmap ink;
  run([&] { ink = SignatureInk(image); });
  run([&] { signatureImage = std::move(ink); });
  run([&] { form.tbrEditingTools.SetButtonEnabled("Signature", !signatureImage.IsEmpty()); });
  PropertyChanged(run, PropertyId::SignatureFilePath);
}

void KwEditorLayers::LetBGImage(const std::string& path) {
  Procedure run(trap, "Let BackGroundImage");
  if (IsBlank(path) || !KWPicTempBuffer.LoadPage(path)) {
    run([&] { form.TransBackImage.SetPicture({}); });
    run([&] { form.TransBackImage.SetVisible(false); });
    SetButton(run, "ShowHideBackImage", false);
  } else {
    run([&] {
      const Bitmap image = ScratchBitmap(desktop).Pass(KWPicTempBuffer);
      form.TransBackImage.SetPicture(image);
      form.TransBackImage.Move(form.TransBackImage.Left(), form.TransBackImage.Top(), static_cast<float>(image.Width()),
                               static_cast<float>(image.Height()));
    });
    run([&] { form.TransBackImage.SetVisible(m_IsToShowBackImage); });
    run([&] { form.TransBackImage.SetLightened(GetIsToLightenBackImage()); });
    SetButton(run, "ShowHideBackImage", true);
    run([&] { zoom.UpdateAndZoom(); });
  }
  PropertyChanged(run, PropertyId::BGImage);
}

}  // namespace kw
