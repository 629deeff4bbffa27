// What starts a new control, and what does not.

#include <windows.h>

#include <ocidl.h>
#include <ole2.h>

#include <algorithm>
#include <functional>
#include <set>
#include <string>

#include "tests/activex/Designer.h"
#include "tests/activex/Sinks.h"

namespace kw::test {
namespace {

// Containers that do not design: each first call starts the control.
class FirstCall : public Designer {
protected:
  FirstCall() { container.userMode.reset(); }
  bool HasStarted() const { return TracedTimes(scratch.Path(), "UserControl_Initialize") == 1; }
};

TEST_F(FirstCall, OfASiteThatDoesNotKnowTheModeStartsTheControl) {
  EXPECT_EQ(As<IOleObject>()->SetClientSite(nullptr), S_OK);
  EXPECT_FALSE(HasStarted());
  EXPECT_EQ(As<IOleObject>()->SetClientSite(&container), S_OK);
  EXPECT_TRUE(HasStarted());
  EXPECT_EQ(As<IOleObject>()->SetClientSite(nullptr), S_OK);
}

TEST_F(FirstCall, OfASiteWithoutAmbientsStartsTheControl) {
  container.hasAmbients = false;
  container.Take(control.Get());
  EXPECT_TRUE(HasStarted());
  container.LetGo();
}

TEST_F(FirstCall, StartsTheControlWhicheverItIs) {
  VARIANT_BOOL flag = VARIANT_FALSE;
  ULARGE_INTEGER size = {};
  ComPtr<IStream> stream;
  ASSERT_HRESULT_SUCCEEDED(CreateStreamOnHGlobal(nullptr, TRUE, &stream));
  const std::function<HRESULT()> calls[] = {
      [&] { return As<IPersistStreamInit>()->InitNew(); },
      [&] { return As<IPersistStreamInit>()->Save(stream.Get(), FALSE); },
      [&] {
        EXPECT_HRESULT_SUCCEEDED(stream->Seek({}, STREAM_SEEK_SET, nullptr));
        return As<IPersistStreamInit>()->Load(stream.Get());
      },
      [&] { return As<IPersistStreamInit>()->GetSizeMax(&size); },
      [&] { return control->get_IsEditable(&flag); },
      [&] { return control->put_IsEditable(VARIANT_TRUE); },
      [&] { return control->put_SaveFilePath(nullptr); },
      [&] { return control->SavePage(); },
      [&] { return As<IOleObject>()->DoVerb(OLEIVERB_HIDE, nullptr, nullptr, 0, nullptr, nullptr); },
      [&] {
        Drawn(control);
        return S_OK;
      },
  };
  for (const auto& call : calls) {
    control = Ocx::Create();
    EXPECT_FALSE(HasStarted()) << &call - calls;
    EXPECT_EQ(call(), S_OK) << &call - calls;
    EXPECT_TRUE(HasStarted()) << &call - calls;
    control.Reset();
    DeleteFileW(scratch.File(L"FunctionsInExecution.txt").c_str());
  }
}

// What a container asks of every object before it decides what to do with it.
TEST_F(FirstCall, ThatOnlyDescribesTheControlDoesNotStartIt) {
  DWORD status = 0;
  SIZEL extent = {5000, 4000};
  CLSID id = {};
  ComPtr<IEnumOLEVERB> verbs;
  ComPtr<ITypeInfo> info;
  EventSink sink;
  EXPECT_EQ(As<IOleObject>()->GetMiscStatus(DVASPECT_CONTENT, &status), S_OK);
  EXPECT_EQ(As<IOleObject>()->GetUserClassID(&id), S_OK);
  EXPECT_EQ(As<IOleObject>()->EnumVerbs(&verbs), S_OK);
  EXPECT_EQ(As<IOleObject>()->SetExtent(DVASPECT_CONTENT, &extent), S_OK);
  EXPECT_EQ(As<IOleObject>()->GetExtent(DVASPECT_CONTENT, &extent), S_OK);
  EXPECT_EQ(extent.cx, 5000);
  EXPECT_EQ(control->GetTypeInfo(0, LOCALE_USER_DEFAULT, &info), S_OK);
  EXPECT_EQ(As<IPersistStreamInit>()->IsDirty(), S_FALSE);
  { const Connection connection(control.Get(), DIID___KwEditorLayers, &sink); }
  EXPECT_EQ(As<IOleObject>()->Close(OLECLOSE_NOSAVE), S_OK);
  EXPECT_EQ(Files(), std::set<std::string>());
  // The extent is laid out behind the start-up.
  control->SavePage();
  const auto trace = Trace();
  const auto layout = std::ranges::find(trace, "UserControl_Resize");
  ASSERT_NE(layout, trace.end());
  EXPECT_EQ(*(layout - 1), "Let BackGroundImage") << "the last one of start-up";
}

}  // namespace
}  // namespace kw::test
