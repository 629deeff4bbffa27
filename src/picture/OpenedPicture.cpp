#include "picture/OpenedPicture.h"

#include <array>

#include "picture/Unreadable.h"

namespace kw {

OpenedPicture::OpenedPicture(const std::string& path, const ReadLimits& limits) : file(path) {
  TellingFailures(file, [&] {
    std::array<std::uint8_t, RecognisedBytes> head{};
    const std::size_t count = file.Read(head.data(), head.size());
    format = FormatOfContent({head.data(), count});
    if (format == nullptr) RaiseUnreadable("The file is not a picture of a known format.");
    source = format->open(file, limits);
  });
}

}  // namespace kw
