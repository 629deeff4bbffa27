#pragma once

#include <string>
#include <utility>

#include "components/controls/Control.h"
#include "components/controls/MouseInput.h"

namespace kw {

// A raised frame that groups tool bars and status panels.
class RaisedArea : public Control, public MouseInput {
public:
  explicit RaisedArea(std::string controlName) : Control(std::move(controlName), "KWRaisedAreaCtl") {}
  void LoadFrom(const RaisedArea& other) { CopyDesign(other); }
};

// A raised frame that shows a picture of the image list by its key; an empty key shows none. While it has the keyboard
// it is dropped open: whatever the user does elsewhere takes the keyboard away from it.
class RaisedPicture : public Control, public MouseInput {
public:
  explicit RaisedPicture(std::string controlName) : Control(std::move(controlName), "KWRaisedPicture") {}

  const std::string& Picture() const { return picture; }
  void SetPicture(std::string key) {
    picture = std::move(key);
    Tell(Aspect::Content);
  }
  bool TryClearPicture() override {
    SetPicture({});
    return true;
  }
  // A button raises nothing but MouseDown, once for each press, when that ends and with the place where it ends.
  bool IsButton() const { return isButton; }
  void SetIsButton(bool value) { isButton = value; }

private:
  std::string picture;
  bool isButton = false;
};

// A plain frame with an optional caption.
class Frame : public Control {
public:
  explicit Frame(std::string controlName) : Control(std::move(controlName), "Frame") {}
};

}  // namespace kw
