#pragma once

#include <string>

#include "components/platform/Desktop.h"
#include "form/EditorForm.h"
#include "layers/Layers.h"
#include "trap/Trap.h"

namespace kw {

// The zoom factor with its list, and the layout of page, background, layers and borders that every change of it ends
// in. The factor is kept and stepped; nothing is drawn scaled by it.
class Zoom {
public:
  Zoom(Desktop& platform, EditorForm& editorForm, Trap& errorTrap, Layers& layerArray);

  // The sixteen factors: 10 % to 100 % by ten, 150 % to 400 % by fifty. A step of start-up, without a trace of its own.
  void FillZoomList();
  // A ratio, 1.0 is 100 %. A factor that the list does not hold is kept all the same.
  void LetZoomFactor(double value);
  double ZoomFactor() const { return m_ZoomFactor; }
  // One step in the list from the present factor; one that the list does not hold steps to its neighbour there.
  void ZoomIn();
  void ZoomOut();
  void cmbZoomFactor_Click();
  void UpdateAndZoom();

private:
  Desktop& desktop;
  EditorForm& form;
  Trap& trap;
  Layers& layers;
  double m_ZoomFactor = 1.0;
};

}  // namespace kw
