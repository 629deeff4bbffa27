#include <cstdio>

#include <gif_lib.h>
#include <hwy/highway.h>
#include <jpeglib.h>
#include <tiffio.h>
#include <zlib.h>

#include "Libraries.h"

namespace kw {
namespace {

std::string Dotted(int major, int minor, int patch) {
  return std::to_string(major) + "." + std::to_string(minor) + "." + std::to_string(patch) + "\n";
}

// The number after the comma of the first line of what libtiff reports: "LIBTIFF, Version 4.5.0".
std::string TiffVersion() {
  const std::string report = TIFFGetVersion();
  const std::string line = report.substr(0, report.find('\n'));
  return line.substr(line.rfind(' ') + 1) + "\n";
}

// As a string, since the headers give it without quotes.
#define KW_TEXT_OF(text) #text
#define KW_TEXT(macro) KW_TEXT_OF(macro)

}  // namespace

// giflib, libjpeg-turbo and Highway do not report a version when they run: theirs are those of their headers.
std::string Libraries() {
  return "giflib " + Dotted(GIFLIB_MAJOR, GIFLIB_MINOR, GIFLIB_RELEASE) +  //
         "highway " + Dotted(HWY_MAJOR, HWY_MINOR, HWY_PATCH) +            //
         "libjpeg-turbo " + KW_TEXT(LIBJPEG_TURBO_VERSION) + "\n" +        //
         "tiff " + TiffVersion() +                                         //
         "zlib " + zlibVersion() + "\n";
}

}  // namespace kw
