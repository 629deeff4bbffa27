#include <algorithm>
#include <cctype>
#include <set>

#include "tests/architecture/Rules.h"

namespace kw::architecture {
namespace {

using SafeNames = std::set<std::string_view>;

bool IsOfAWord(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; }

// A barrier, or what has one around all that it does.
const SafeNames Barriers = {"Guard", "GuardOr", "AtComBoundary", "AtClient", "RunToItsEnd", "Get", "Let"};

// Calls that need no barrier. Of the control's own procedures, those that only free, count or hand out what is
// there; of the system's, all: they are written in another language.
const SafeNames Safe = {
    // The system's and the libraries' own.
    "AbortDoc", "AddRef", "BitBlt", "CloseEnhMetaFile", "CoRevokeClassObject", "CoTaskMemAlloc", "CoUninitialize",
    "DeactivateActCtx", "DeleteDC", "DeleteEnhMetaFile", "DeleteObject", "DestroyCursor", "DestroyWindow",
    "EnableModeless", "EnableWindow", "EndPaint", "FreeLibrary", "GdiFlush", "GetAncestor", "GetFocus",
    "GetTickCount64", "GlobalFree", "GlobalUnlock", "IID_PPV_ARGS", "IntersectRect", "IsChild", "KillTimer",
    "PostMessageW", "PtInRect", "QueryInterface", "RegCloseKey", "RegOverridePredefKey", "Release", "ReleaseActCtx",
    "ReleaseDC", "SUCCEEDED", "SendMessageW", "SetCursor", "SetFocus", "SetStretchBltMode", "SetViewportOrgEx",
    "ShowWindow", "SysFreeString", "TlsFree", "VariantClear", "__uuidof", "__xl_f", "begin", "copy", "end", "erase_if",
    "inflateEnd", "size",
    // Ours.
    "Abandon", "Activation", "AreObjectsHeld", "Bars", "Close", "Context", "Detach", "Disconnect", "Extent", "Find",
    "Free", "FreeRetired", "GiveBack", "GoDownTo", "HandOut", "HeightOf", "IsDirty", "IsHeldByOthers", "IsNeeded",
    "IsUnused", "Life", "Lock", "Only", "ReleaseLater", "Remove", "RunningTimers", "Shared", "TakeBack", "Unhook",
    "Unknown", "Unlock", "Unmake", "WidthOf", "Window"};

const SafeNames Keywords = {"if", "for", "while", "switch", "return", "sizeof", "catch"};

int LineAt(std::string_view text, std::size_t at) {
  return 1 + static_cast<int>(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
}

// The place behind the bracket that closes the one at `open`.
std::size_t BehindBrackets(std::string_view code, std::size_t open, char opening, char closing) {
  int depth = 0;
  for (std::size_t at = open; at < code.size(); ++at) {
    if (code[at] == opening) ++depth;
    if (code[at] == closing && --depth == 0) return at + 1;
  }
  return code.size();
}

// The body of the function whose name or result begins at `from`; empty for a declaration.
std::string_view BodyFrom(std::string_view code, std::size_t from) {
  const auto parameters = code.find('(', from);
  if (parameters == std::string_view::npos) return {};
  const auto behind = BehindBrackets(code, parameters, '(', ')');
  const auto next = code.find_first_of("{;=", behind);
  if (next == std::string_view::npos || code[next] != '{') return {};
  return code.substr(next, BehindBrackets(code, next, '{', '}') - next);
}

// The first name that is called in the body and may throw; empty if there is none.
std::string_view FirstUnsafeCall(std::string_view body) {
  std::string_view unsafe;
  for (std::size_t at = body.find('('); at != std::string_view::npos; at = body.find('(', at + 1)) {
    std::size_t start = at;
    while (start > 0 && IsOfAWord(body[start - 1])) --start;
    const std::string_view name = body.substr(start, at - start);
    if (Barriers.contains(name)) return {};
    const bool isCall = !name.empty() && !Keywords.contains(name) && !Safe.contains(name);
    if (isCall && unsafe.empty()) unsafe = name;
  }
  return unsafe;
}

// Places behind a word that marks a function which is called from outside, and of destructors.
std::vector<std::size_t> EntriesOf(std::string_view code) {
  std::vector<std::size_t> entries;
  for (const std::string_view word : {" CALLBACK ", "STDMETHODIMP ", "STDAPI "}) {
    for (auto at = code.find(word); at != std::string_view::npos; at = code.find(word, at + 1))
      entries.push_back(at + word.size());
  }
  constexpr std::string_view WithResult = "STDMETHODIMP_(";
  for (auto at = code.find(WithResult); at != std::string_view::npos; at = code.find(WithResult, at + 1))
    entries.push_back(BehindBrackets(code, at + WithResult.size() - 1, '(', ')'));
  for (auto at = code.find('~'); at != std::string_view::npos; at = code.find('~', at + 1)) {
    const bool isName = at + 1 < code.size() && std::isupper(static_cast<unsigned char>(code[at + 1])) != 0;
    if (isName && code.substr(at, code.find('(', at) - at).find_first_of(" ;,") == std::string_view::npos)
      entries.push_back(at);
  }
  return entries;
}

}  // namespace

std::vector<Finding> OpenBarriers(std::string_view path, std::string_view text) {
  std::vector<Finding> findings;
  const bool isCode = path.ends_with(".h") || path.ends_with(".cpp");
  if (!isCode || (!path.starts_with("src/windows/") && !path.starts_with("src/activex/"))) return findings;
  const std::string code = WithoutCommentsAndLiterals(text);
  const auto add = [&](std::size_t at, const std::string& what) {
    findings.push_back({std::string(path), LineAt(code, at), what});
  };
  for (const std::size_t at : EntriesOf(code)) {
    const std::string_view unsafe = FirstUnsafeCall(BodyFrom(code, at));
    if (!unsafe.empty()) add(at, "lets the errors of " + std::string(unsafe) + " out");
  }
  if (path == "src/windows/base/Guard.h") return findings;
  for (const std::string_view word : {"try", "catch"}) {
    for (auto at = code.find(word); at != std::string::npos; at = code.find(word, at + 1)) {
      const bool isWhole = (at == 0 || !IsOfAWord(code[at - 1])) && !IsOfAWord(code[at + word.size()]);
      if (isWhole) add(at, "has a " + std::string(word) + " of its own");
    }
  }
  return findings;
}

}  // namespace kw::architecture
