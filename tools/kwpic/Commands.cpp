#include "Commands.h"

#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <new>
#include <optional>

#include "Describe.h"
#include "Progress.h"
#include "components/base/FilePath.h"
#include "components/base/Files.h"
#include "components/base/RunTimeError.h"
#include "picture/OpenedPicture.h"
#include "picture/PageMarker.h"
#include "picture/PictureDocument.h"

namespace kw {
namespace {

// What changes the current page on its way, if anything does.
using Change = std::function<void(PictureDocument& engine)>;

// Runs a step that works on the file; what it raises becomes a failure that names it.
template <typename Step>
void For(const std::string& file, const Step& step) {
  try {
    step();
  } catch (const RunTimeError& error) {
    throw Failure{file + ": " + error.Description()};
  } catch (const std::bad_alloc&) {
    throw Failure{file + ": there is not enough memory"};
  }
}

const PictureFormat& FormatFor(const std::string& path) {
  const PictureFormat* format = FormatOfPath(path);
  if (format == nullptr) throw UsageError{path + ": no known format has this extension (" + UsualExtensions() + ")"};
  return *format;
}

void Open(PictureDocument& engine, const std::string& path) {
  if (!engine.Load(path)) throw Failure{path + ": " + engine.LastLoadError()};
}

std::string PageName(const std::string& path, std::int32_t pages, std::int32_t page) {
  return pages == 1 ? path : path + ", page " + std::to_string(page);
}

// If a progress bar is shown, it is removed first.
void Warn(const std::string& name, const PictureDocument& engine, Progress* progress = nullptr) {
  if (engine.Warning().empty()) return;
  if (progress != nullptr) progress->Clear();
  std::fprintf(stderr, "kwpic: warning: %s: %s\n", name.c_str(), engine.Warning().c_str());
}

// Selects each page and calls take() with its number and name.
template <typename Take>
void ForPages(PictureDocument& engine, const std::string& path, const Take& take) {
  const std::int32_t pages = engine.PageCount();
  for (std::int32_t page = 1; page <= pages; ++page) {
    const std::string name = PageName(path, pages, page);
    For(name, [&] { engine.SelectPage(page); });
    take(page, name);
  }
}

void Info(const std::string& path) {
  std::optional<OpenedPicture> opened;
  For(path, [&] { opened.emplace(path, ReadLimits{}); });
  const std::int32_t pages = opened->source->PageCount();
  std::printf("%s: %s, %d %s\n", path.c_str(), std::string(opened->format->name).c_str(), static_cast<int>(pages),
              pages == 1 ? "page" : "pages");
  for (std::int32_t page = 1; page <= pages; ++page) {
    For(PageName(path, pages, page), [&] {
      const PageHeader header = opened->source->Header(opened->file, page);
      std::printf("page %d: %s x %s pixels, %d bit%s per pixel", static_cast<int>(page),
                  std::to_string(header.size.width).c_str(), std::to_string(header.size.height).c_str(),
                  static_cast<int>(header.bitsPerPixel), header.bitsPerPixel == 1 ? "" : "s");
      if (header.horizontalResolution > 0 && header.verticalResolution > 0) {
        std::printf(", %s x %s dpi", Short(header.horizontalResolution).c_str(),
                    Short(header.verticalResolution).c_str());
      }
      std::printf("\n");
    });
  }
}

// `engine` itself or, if there is a change, `changed`, which then holds the changed page.
PictureDocument& Changed(PictureDocument& engine, const Change& change, PictureDocument& changed) {
  if (!change) return engine;
  changed.GetOptions() = engine.GetOptions();
  changed.Replace(engine.Current());
  change(changed);
  return changed;
}

// The path of a page's file: NAME_Page_N with the document's extension.
std::string PageFile(const std::string& document, const std::string& folder, std::int32_t page) {
  std::filesystem::path path = ToFilesystemPath(document);
  const std::filesystem::path extension = path.extension();
  path.replace_extension();
  path += std::string(PageMarker) + std::to_string(page);
  path += extension;
  return FromFilesystemPath(folder.empty() ? path : ToFilesystemPath(folder) / path.filename());
}

void Split(const std::string& path, const std::string& folder) {
  FormatFor(path);
  PictureDocument engine;
  Open(engine, path);
  if (!folder.empty()) For(folder, [&] { MakeFolders(folder); });
  Progress progress(engine.PageCount(), "pages");
  ForPages(engine, path, [&](std::int32_t page, const std::string& name) {
    const std::string file = PageFile(path, folder, page);
    For(name + " to " + file, [&] { engine.Save(file); });
    Warn(name, engine, &progress);
    progress.Step();
  });
}

// Writes all pages of the files, changed, into one document.
void WriteDocument(const std::vector<std::string>& inputs, const std::string& path, const PictureFormat& format,
                   const PictureDocument::Options& options, const Change& change) {
  std::unique_ptr<OutputFile> file;
  std::unique_ptr<PageAppender> appender;
  For(path, [&] {
    file = std::make_unique<OutputFile>(path);
    appender = format.append(*file);
  });
  const bool isOfFiles = inputs.size() > 1;
  std::optional<Progress> progress;
  if (isOfFiles) progress.emplace(static_cast<std::int32_t>(inputs.size()), "files");
  for (const std::string& input : inputs) {
    PictureDocument engine;
    engine.GetOptions() = options;
    Open(engine, input);
    if (!isOfFiles) progress.emplace(engine.PageCount(), "pages");
    ForPages(engine, input, [&](std::int32_t /*page*/, const std::string& name) {
      For(name, [&] {
        PictureDocument changed;
        Changed(engine, change, changed).AppendTo(*appender);
      });
      For(path, [&] { file->RaiseFailure(); });
      Warn(name, engine, &*progress);
      if (!isOfFiles) progress->Step();
    });
    if (isOfFiles) progress->Step();
  }
  For(path, [&] { file->Commit(); });
}

void Join(const Request& request) {
  const PictureFormat& format = FormatFor(request.output);
  if (format.append == nullptr) {
    throw UsageError{request.output + ": " + std::string(format.name) + " holds one page; join to " +
                     DocumentExtensions(Which::Usual)};
  }
  PictureDocument::Options options;
  // Pages that keep their coded pixels are not decoded.
  options.decodesWhenAsked = true;
  WriteDocument(request.inputs, request.output, format, options, {});
}

// One picture, or a document page by page.
void Rewrite(const Request& request, const Change& change) {
  const std::string& input = request.inputs.front();
  const PictureFormat& format = FormatFor(request.output);
  PictureDocument::Options options;
  if (request.quality) options.writing.jpegQuality = *request.quality;
  PictureDocument engine;
  engine.GetOptions() = options;
  Open(engine, input);
  const std::int32_t pages = engine.PageCount();
  if (request.page && *request.page > pages) {
    throw Failure{input + ": there is no page " + std::to_string(*request.page) + " among " + std::to_string(pages)};
  }
  if (pages > 1 && !request.page) {
    if (format.append == nullptr) {
      throw Failure{input + ": it has " + std::to_string(pages) + " pages and " + std::string(format.name) +
                    " holds one; " + (request.effect == nullptr ? "choose one with --page" : "split it first")};
    }
    return WriteDocument({input}, request.output, format, options, change);
  }
  const std::string name = PageName(input, pages, request.page.value_or(1));
  PictureDocument changed;
  PictureDocument* result = nullptr;
  For(name, [&] {
    engine.SelectPage(request.page.value_or(1));
    result = &Changed(engine, change, changed);
  });
  For(request.output, [&] { result->Save(request.output); });
  Warn(name, engine);
}

void Convert(const Request& request) {
  // Without one of these, a page may keep its coded pixels.
  if (!request.bitsPerPixel && !request.quality) return Rewrite(request, {});
  Rewrite(request, [&request](PictureDocument& engine) {
    if (!request.bitsPerPixel) return;
    auto bits = static_cast<std::int16_t>(*request.bitsPerPixel);
    engine.ConvertToBitsPerPixel(bits);
  });
}

void Apply(const Request& request) {
  Rewrite(request, [&request](PictureDocument& engine) { engine.Apply(*request.effect, request.values); });
}

}  // namespace

void Run(const Request& request) {
  switch (request.command) {
    case Request::Command::Info:
      return Info(request.inputs.front());
    case Request::Command::Split:
      return Split(request.inputs.front(), request.output);
    case Request::Command::Join:
      return Join(request);
    case Request::Command::Convert:
      return Convert(request);
    case Request::Command::Apply:
      return Apply(request);
    case Request::Command::Effects:
      std::fputs((request.isMarkdown ? MarkdownOfEffects() : DescribeEffects()).c_str(), stdout);
  }
}

}  // namespace kw
