// Each of the control's own requests for memory fails once, in a real container: the host gets an error code for it,
// the user the box that the trap shows, and the same call succeeds behind it. KW_TORTURE=all tries every request of an
// action up to 2,000 and 200 of those beyond, in a mixed order and for the action's share of KW_TORTURE_MINUTES; else
// some of each are tried. KW_TORTURE_SEED chooses others.

#include <windows.h>

#include <ole2.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/activex/Fixture.h"
#include "tests/ocxmemory/OcxActions.h"
#include "tests/ocxmemory/OcxMemory.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

constexpr long EachUpTo = 2000;
constexpr std::size_t DrawnBeyond = 200;

std::string TextOf(const char* variable, const char* otherwise) {
  const char* const text = std::getenv(variable);
  return text == nullptr ? otherwise : text;
}

std::string BytesOf(const std::wstring& path) {
  std::ifstream file(std::filesystem::path(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

bool IsLackOfMemory(HRESULT result) {
  constexpr auto control = static_cast<HRESULT>(0x800A0000);
  for (const HRESULT number : {7, 480, 481}) {
    if (result == (control | number)) return true;
  }
  return result == E_OUTOFMEMORY || SUCCEEDED(result);
}

bool IsAboutMemory(const std::string& box) {
  constexpr const char* told[] = {"Error Number : 7/", "There is not enough memory", "Error Number : 91/"};
  return !box.starts_with("Critical Error") ||
         std::ranges::any_of(told, [&](const char* words) { return box.find(words) != std::string::npos; });
}

class OcxShortOfMemory : public testing::TestWithParam<OcxAction> {
protected:
  OcxShortOfMemory() { EXPECT_HRESULT_SUCCEEDED(OleInitialize(nullptr)); }
  ~OcxShortOfMemory() override {
    Ocx::ForgetFolder();
    OleUninitialize();
  }

  struct Result {
    HRESULT code = S_OK;
    long requests = 0;
    HRESULT again = S_OK;
  };
  Result Try(long failing, const BoxAnswerer& user) {
    Result result;
    if (place == nullptr || action.needsNewPlace) {
      place.reset();
      place = std::make_unique<Place>(scratch, action.isShown, action.isOpen);
      document = BytesOf(place->path);
    }
    {
      const OcxMemory memory(failing);
      result.code = action.act(*place);
      result.requests = memory.Requests();
    }
    PumpMessages();
    for (const std::string& box : user.Boxes()) EXPECT_PRED1(IsAboutMemory, box);
    EXPECT_EQ(place->control->put_Enabled(VARIANT_TRUE), S_OK);
    EXPECT_EQ(place->control->put_IsEditable(VARIANT_TRUE), S_OK);
    result.again = action.act(*place);
    EXPECT_TRUE(BytesOf(place->path) == document) << "the document is another one";
    return result;
  }

  // All up to a bound and some beyond, or some.
  static std::vector<long> Chosen(long requests) {
    const bool isAll = TextOf("KW_TORTURE", "some") == "all";
    const long each = isAll ? std::min(requests, EachUpTo) : 0;
    std::vector<long> beyond;
    for (long request = each + 1; request <= requests; ++request) beyond.push_back(request);
    std::vector<long> chosen;
    for (long request = 1; request <= each; ++request) chosen.push_back(request);
    std::mt19937 random(static_cast<unsigned>(std::stoul(TextOf("KW_TORTURE_SEED", "20261122"))));
    std::ranges::sample(beyond, std::back_inserter(chosen), isAll ? DrawnBeyond : 2, random);
    std::ranges::shuffle(chosen, random);
    return chosen;
  }

  const OcxAction action = GetParam();
  ScratchFolder scratch;
  std::unique_ptr<Place> place;
  std::string document;
};

TEST_P(OcxShortOfMemory, TheHostGetsACodeAndTheControlWorksOn) {
  long requests = 0;
  {
    const BoxAnswerer user({AnyBox()});  // each result is judged by what the boxes say
    const Result whole = Try(0, user);
    EXPECT_EQ(whole.code, S_OK);
    requests = whole.requests;
  }
  const double minutes = std::stod(TextOf("KW_TORTURE_MINUTES", "1000"));
  const std::chrono::duration<double> share(minutes * 60 / static_cast<double>(OcxActions().size()));
  const auto start = std::chrono::steady_clock::now();
  long tried = 0;
  for (const long failing : Chosen(requests)) {
    if (std::chrono::steady_clock::now() - start > share) break;
    ++tried;
    const BoxAnswerer user({AnyBox()});  // each result is judged by what the boxes say
    const Result result = Try(failing, user);
    EXPECT_PRED1(IsLackOfMemory, result.code);
    EXPECT_EQ(result.again, S_OK);
    ASSERT_FALSE(HasFailure()) << "request " << failing << " of " << requests;
  }
  std::cout << "tried " << tried << " of " << requests << " in " << action.name << "\n";
  place.reset();
  PumpMessages(20);
  EXPECT_TRUE(Ocx::CanUnload()) << "something of the control is still alive";
}

INSTANTIATE_TEST_SUITE_P(Actions, OcxShortOfMemory, testing::ValuesIn(OcxActions().begin(), OcxActions().end()),
                         [](const testing::TestParamInfo<OcxAction>& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace kw::test
