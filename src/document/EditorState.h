#pragma once

#include "components/base/Bitmap.h"
#include "form/EditorForm.h"
#include "members/EditorEvents.h"
#include "trap/Procedure.h"
#include "trap/Trap.h"
#include "view/Zoom.h"

namespace kw {

// Those properties of the control that its own procedures use: read and written like a host does, trace included.
class EditorState {
public:
  // Everything passed in must outlive the state; it need not be constructed yet.
  EditorState(EditorEvents& container, EditorForm& editorForm, Trap& errorTrap, Zoom& zoomFactor)
      : events(container), form(editorForm), trap(errorTrap), zoom(zoomFactor) {}
  EditorState(const EditorState&) = delete;
  EditorState& operator=(const EditorState&) = delete;

  bool GetIsEditable();
  void LetIsEditable(bool value);
  bool GetIsFileChanged();
  void LetIsFileChanged(bool value);
  bool GetIsSaveButtonEnabled();
  void LetIsSaveButtonEnabled(bool value);
  bool GetIsToolboxVisible();
  void LetIsToolboxVisible(bool value);
  bool GetIsToShowBackImage();
  void LetIsToShowBackImage(bool value);
  // Saves nothing in this version.
  void SavePage();

  // The signature as it is placed: its ink on transparent paper (see SignatureInk). Empty without one.
  const Bitmap& SignatureImage() const { return signatureImage; }

  bool m_IsFileChanged = false;

protected:
  ~EditorState() = default;

  void PropertyChanged(Procedure& run, PropertyId property);
  void SetButton(Procedure& run, const char* key, bool isEnabled) const;

  bool m_IsEditable = true;
  bool m_IsSaveButtonEnabled = true;
  bool m_IsToShowBackImage = false;
  Bitmap signatureImage;

private:
  EditorEvents& events;
  EditorForm& form;
  Trap& trap;
  Zoom& zoom;
};

}  // namespace kw
