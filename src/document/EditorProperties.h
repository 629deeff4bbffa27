#pragma once

#include "components/base/Bitmap.h"

namespace kw {

// The properties of the control as its own procedures use them: read and written like a host does, trace included.
class EditorProperties {
public:
  EditorProperties() = default;
  EditorProperties(const EditorProperties&) = delete;
  EditorProperties& operator=(const EditorProperties&) = delete;
  virtual ~EditorProperties() = default;

  virtual bool GetIsEditable() = 0;
  virtual void LetIsEditable(bool value) = 0;
  virtual bool GetIsFileChanged() = 0;
  virtual void LetIsFileChanged(bool value) = 0;
  virtual bool GetIsSaveButtonEnabled() = 0;
  virtual bool GetIsToolboxVisible() = 0;
  virtual void LetIsToolboxVisible(bool value) = 0;
  virtual bool GetIsToShowBackImage() = 0;
  virtual void LetIsToShowBackImage(bool value) = 0;
  // The ink of the signature on transparent paper; empty without one.
  virtual const Bitmap& SignatureImage() const = 0;
  virtual void SavePage() = 0;
};

}  // namespace kw
