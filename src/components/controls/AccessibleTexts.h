#pragma once

#include <array>
#include <cstdint>
#include <string>

// The texts that a screen reader speaks and nobody sees. Captions and tool tips, which are seen, are spoken, too.
namespace kw::accessible {

inline constexpr const char* Editor = "Image annotation editor";
inline constexpr const char* View = "View of the page";
inline constexpr const char* Canvas = "Canvas";
inline constexpr const char* Page = "Page";
inline constexpr const char* Background = "Background image";
inline constexpr const char* BottomBorder = "Bottom border of the page";
inline constexpr const char* RightBorder = "Right border of the page";
inline constexpr const char* CornerBorder = "Corner of the page";
inline constexpr const char* VerticalScroll = "Vertical scroll bar";
inline constexpr const char* HorizontalScroll = "Horizontal scroll bar";
inline constexpr const char* Scratch = "Scratch picture";

inline constexpr const char* FileStrip = "File and zoom";
inline constexpr const char* PageStrip = "View and pages";
inline constexpr const char* Separator = "Separator";
inline constexpr const char* OpenBar = "Open";
inline constexpr const char* BasicBar = "Basic tools";
inline constexpr const char* PageBar = "Page tools";
inline constexpr const char* Zoom = "Zoom";
inline constexpr const char* PageCount = "Number of pages";
inline constexpr const char* PageList = "Page";
inline constexpr const char* PageSpinner = "Page";
inline constexpr const char* ImageSize = "Size of the page";

inline constexpr const char* ToolBox = "Tool box";
inline constexpr const char* Tools = "Tools";
inline constexpr const char* EditingBar = "Drawing tools";
inline constexpr const char* FillArea = "Fill";
inline constexpr const char* FillBar = "Fill pattern";
inline constexpr const char* FontArea = "Font";
inline constexpr const char* FontBar = "Font";
inline constexpr const char* ColourArea = "Colors";
inline constexpr const char* ColourReadOut = "Color";
inline constexpr const char* Palette = "Color palette";
inline constexpr const char* LineThickness = "Line Thickness";
inline constexpr const char* LineSample = "Sample of the line";
inline constexpr const char* EffectsBar = "Effects";

inline constexpr const char* PrintingPanel = "Printing";
inline constexpr const char* ScanningPanel = "Scanning";

inline constexpr const char* StampList = "Stamp";
inline constexpr const char* StampCount = "Approved for a number of times";
inline constexpr const char* StampTimes = "Times";
inline constexpr const char* StampDate = "OK until a date";
inline constexpr const char* StampPreview = "Preview of the stamp";

inline constexpr const char* TextLayer = "Text layer";
inline constexpr const char* PictureLayer = "Picture layer";
inline constexpr const char* EllipseLayer = "Circle layer";
inline constexpr const char* RectangleLayer = "Rectangle layer";
inline constexpr const char* LineLayer = "Line layer";
// In the order of a layer's handles, clockwise from the top left corner.
inline constexpr std::array<const char*, 8> Handles = {"Top left handle",    "Top handle",          "Top right handle",
                                                       "Right handle",       "Bottom right handle", "Bottom handle",
                                                       "Bottom left handle", "Left handle"};

inline constexpr const char* PressAction = "Press";
inline constexpr const char* PickAction = "Pick";

inline std::string PageOf(std::int32_t page, std::int32_t count) {
  return "Page " + std::to_string(page) + " of " + std::to_string(count);
}

inline std::string EditorWithPage(std::int32_t page, std::int32_t count) {
  return std::string(Editor) + ", page " + std::to_string(page) + " of " + std::to_string(count);
}

}  // namespace kw::accessible
