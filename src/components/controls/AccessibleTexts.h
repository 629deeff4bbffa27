#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "components/base/Texts.h"

// The texts that a screen reader speaks and nobody sees. Captions and tool tips, which are seen, are spoken, too.
namespace kw::accessible {

// A text of Texts.def, in English: models hold it so, and who tells it to the system translates it.
consteval const char* Own(const char* english) {
  static_cast<void>(OwnText(english));
  return english;
}

inline constexpr const char* Editor = Own("Image annotation editor");
inline constexpr const char* View = Own("View of the page");
inline constexpr const char* Canvas = Own("Canvas");
inline constexpr const char* Page = Own("Page");
inline constexpr const char* Background = Own("Background image");
inline constexpr const char* BottomBorder = Own("Bottom border of the page");
inline constexpr const char* RightBorder = Own("Right border of the page");
inline constexpr const char* CornerBorder = Own("Corner of the page");
inline constexpr const char* VerticalScroll = Own("Vertical scroll bar");
inline constexpr const char* HorizontalScroll = Own("Horizontal scroll bar");
inline constexpr const char* Scratch = Own("Scratch picture");

inline constexpr const char* FileStrip = Own("File and zoom");
inline constexpr const char* PageStrip = Own("View and pages");
inline constexpr const char* Separator = Own("Separator");
inline constexpr const char* OpenBar = Own("Open");
inline constexpr const char* BasicBar = Own("Basic tools");
inline constexpr const char* PageBar = Own("Page tools");
inline constexpr const char* Zoom = Own("Zoom");
inline constexpr const char* PageCount = Own("Number of pages");
inline constexpr const char* PageList = Own("Page");
inline constexpr const char* PageSpinner = Own("Page");
inline constexpr const char* ImageSize = Own("Size of the page");

inline constexpr const char* ToolBox = Own("Tool box");
inline constexpr const char* Tools = Own("Tools");
inline constexpr const char* EditingBar = Own("Drawing tools");
inline constexpr const char* FillArea = Own("Fill");
inline constexpr const char* FillBar = Own("Fill pattern");
inline constexpr const char* FontArea = Own("Font");
inline constexpr const char* FontBar = Own("Font");
inline constexpr const char* ColourArea = Own("Colors");
inline constexpr const char* ColourReadOut = Own("Color");
inline constexpr const char* Palette = Own("Color palette");
inline constexpr const char* LineThickness = Own("Line Thickness");
inline constexpr const char* LineSample = Own("Sample of the line");
inline constexpr const char* EffectsBar = Own("Effects");

inline constexpr const char* PrintingPanel = Own("Printing");
inline constexpr const char* ScanningPanel = Own("Scanning");

inline constexpr const char* StampList = Own("Stamp");
inline constexpr const char* StampCount = Own("Approved for a number of times");
inline constexpr const char* StampTimes = Own("Times");
inline constexpr const char* StampDate = Own("OK until a date");
inline constexpr const char* StampPreview = Own("Preview of the stamp");

inline constexpr const char* TextLayer = Own("Text layer");
inline constexpr const char* PictureLayer = Own("Picture layer");
inline constexpr const char* EllipseLayer = Own("Circle layer");
inline constexpr const char* RectangleLayer = Own("Rectangle layer");
inline constexpr const char* LineLayer = Own("Line layer");
// In the order of a layer's handles, clockwise from the top left corner.
inline constexpr std::array<const char*, 8> Handles = {
    Own("Top left handle"),     Own("Top handle"),    Own("Top right handle"),   Own("Right handle"),
    Own("Bottom right handle"), Own("Bottom handle"), Own("Bottom left handle"), Own("Left handle")};

inline constexpr const char* PressAction = Own("Press");
inline constexpr const char* PickAction = Own("Pick");

inline std::string PageOf(std::int32_t page, std::int32_t count) {
  return Filled(Translated("Page {1} of {2}"), {std::to_string(page), std::to_string(count)});
}

inline std::string EditorWithPage(std::int32_t page, std::int32_t count) {
  return Filled(Translated("Image annotation editor, page {1} of {2}"), {std::to_string(page), std::to_string(count)});
}

}  // namespace kw::accessible
