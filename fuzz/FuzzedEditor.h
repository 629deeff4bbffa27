#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <span>
#include <string>

#include "components/base/RunTimeError.h"
#include "control/EncodedBag.h"
#include "control/KwEditorLayers.h"
#include "tests/support/RecordedEvents.h"
#include "tests/support/ScriptedDesktop.h"
#include "tests/support/TemporaryFolder.h"

namespace kw {

// The whole control on a scripted desktop, in a folder of its own.
class FuzzedEditor {
public:
  // Small limits, so that most time goes into the reader and not into the pixels that a few bytes can claim.
  static PictureDocument::Options SmallLimits();
  explicit FuzzedEditor(const PictureDocument::Options& engineOptions = SmallLimits());
  FuzzedEditor(const FuzzedEditor&) = delete;
  FuzzedEditor& operator=(const FuzzedEditor&) = delete;
  ~FuzzedEditor();

  KwEditorLayers& Control() { return *control; }
  EditorForm& Form() { return control->Form(); }
  // Writes a file of the folder and returns its path.
  std::string Put(const std::string& name, std::span<const std::uint8_t> bytes) const;
  // Makes a new control in place of this one; in design mode it has not been initialised.
  void BeginLife(bool designed);

  // Loads the properties of a bag, but none that names another folder to write to.
  void ReadProperties(PropertyBag& bag);

  // The promises of the control between two calls, whatever was done with it. Enables it again if an error that may
  // occur has disabled it; any other error breaks a promise.
  void RequireSound(const std::set<ErrorNumber>& mayOccur);
  // The page that a host is given is a sound picture of its size.
  void RequireGivenPage();

  test::TemporaryFolder folder;
  test::ScriptedDesktop desktop;
  test::RecordedEvents events;

private:
  PictureDocument::Options options;
  std::unique_ptr<KwEditorLayers> control;
};

EncodedBag::Outcome DecodeFrom(std::span<const std::uint8_t> bytes, EncodedBag& bag);
std::span<const std::uint8_t> BytesOf(const std::string& text);

}  // namespace kw
