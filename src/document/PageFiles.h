#pragma once

#include <cstdint>
#include <string>

#include "components/platform/Desktop.h"

namespace kw {

// Names of the page files and of the scratch bitmap. All are plain functions of their arguments and of AppDir; none
// touches a file.

// AppDir when it holds anything besides blanks, else the folder of the host's executable; ends with a backslash.
std::string GetWorkFolder(const Desktop& desktop);

// Tells machines and their processes apart; the process is the lower half. Two machines may share a number, so it is no
// proof of whose a file is.
std::int64_t InstanceNumber(const std::string& machine, std::int64_t process);

// The bitmap that hands a picture from one component to another: one name for each process of each machine.
std::string GetTempImagePath(const Desktop& desktop);

// Page `pageNo` of the document D.ext is D_Page_n.ext. The extension is what follows the last dot of the whole path.
// Raises InvalidProcedureCall for a path without a dot.
std::string GetPageFileName(const std::string& path, std::int16_t pageNo);

// The document that a page file belongs to. Raises InvalidProcedureCall for a name without a dot or without "_Page_".
std::string GetSourceFileName(const std::string& pageFile);

// Whether the name is that of a first page: "_1." follows anywhere from the closing underscore of the first "_Page_".
bool IsFirstPageFile(const std::string& name);

}  // namespace kw
