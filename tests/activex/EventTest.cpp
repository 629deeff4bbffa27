// Events and property notifications at their connection points.

#include <windows.h>

#include <ocidl.h>
#include <olectl.h>

#include <algorithm>

#include "tests/activex/Fixture.h"
#include "tests/activex/Sinks.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

class EventTest : public ControlTest {
protected:
  std::string Narrow(const std::wstring& text) { return {text.begin(), text.end()}; }
  HRESULT Open(const std::wstring& path, const std::vector<ExpectedBox>& boxes = {Once(ListOfPendingWork)}) {
    const BoxAnswerer user(boxes);
    return control->OpenFile(Text(path));
  }

  // The boxes of a document whose page files cannot be named.
  const std::vector<ExpectedBox> withoutPageFiles = {Once(ListOfPendingWork), Once("Critical Error: Error Number : 5"),
                                                     Once("File Error: Invalid file format..")};
  EventSink sink;
  PropertySink properties;
};

TEST_F(EventTest, OpeningAThreePageFileTellsOfEachPageLastFirst) {
  const Connection connection(control.Get(), DIID___KwEditorLayers, &sink);
  ASSERT_EQ(connection.Result(), S_OK);
  EXPECT_EQ(Open(scratch.WriteTiff(L"D.tif", 3)), S_OK);
  const std::string stem = Narrow(scratch.File(L"D_Page_"));
  EXPECT_EQ(sink.events, (std::vector<std::string>{"NewPageCreated(" + stem + "3.tif, 3, 3)",
                                                   "NewPageCreated(" + stem + "2.tif, 2, 3)",
                                                   "NewPageCreated(" + stem + "1.tif, 1, 3)", "PageChanged(1)"}));
  for (const wchar_t* name : {L"D_Page_1.tif", L"D_Page_2.tif", L"D_Page_3.tif"}) {
    EXPECT_TRUE(FileExists(scratch.File(name)));
  }
}

TEST_F(EventTest, OpeningAOnePageFileWritesNoPageFile) {
  const Connection connection(control.Get(), DIID___KwEditorLayers, &sink);
  EXPECT_EQ(Open(scratch.WriteTiff(L"One.tif", 1)), S_OK);
  ASSERT_EQ(sink.events.size(), 1U);
  EXPECT_EQ(sink.events[0].substr(0, 12), "PageChanged(");
  EXPECT_FALSE(FileExists(scratch.File(L"One_Page_1.tif")));
}

TEST_F(EventTest, ArgumentsAreReferencesThatASinkMayChange) {
  EventSink second;
  sink.onEvent = [](DISPID event, VARIANT* arguments, UINT count) {
    if (event != NewPageCreatedEventId) return;
    ASSERT_EQ(count, 3U);
    EXPECT_EQ(SysReAllocString(V_BSTRREF(&arguments[0]), L"changed by the first"), TRUE);
    *V_I2REF(&arguments[1]) = 77;
    *V_I2REF(&arguments[2]) = -1;
  };
  const Connection first(control.Get(), DIID___KwEditorLayers, &sink);
  const Connection other(control.Get(), DIID___KwEditorLayers, &second);
  Open(scratch.WriteTiff(L"D.tif", 2));
  ASSERT_EQ(second.events.size(), 3U);
  EXPECT_EQ(second.events[0], "NewPageCreated(changed by the first, 77, -1)");
  EXPECT_EQ(second.events[2], "PageChanged(1)");
}

TEST_F(EventTest, ArgumentsOfAnErrorAreReferencesThatASinkMayChange) {
  EventSink second;
  sink.onEvent = [](DISPID event, VARIANT* arguments, UINT count) {
    if (event != ErrorOccuredEventId) return;
    ASSERT_EQ(count, 2U);
    EXPECT_EQ(*V_I2REF(&arguments[0]), 5);
    *V_I2REF(&arguments[0]) = 77;
    EXPECT_EQ(SysReAllocString(V_BSTRREF(&arguments[1]), L"changed by the first"), TRUE);
  };
  const Connection first(control.Get(), DIID___KwEditorLayers, &sink);
  const Connection other(control.Get(), DIID___KwEditorLayers, &second);
  Open(scratch.WriteTiff(L"nodot", 2), withoutPageFiles);
  ASSERT_FALSE(second.events.empty());
  EXPECT_EQ(second.events[0], "ErrorOccured(77, changed by the first)");
}

TEST_F(EventTest, ATextThatASinkTakesAwayIsEmptyForTheNext) {
  EventSink second;
  sink.onEvent = [](DISPID event, VARIANT* arguments, UINT) {
    if (event != NewPageCreatedEventId) return;
    SysFreeString(*V_BSTRREF(&arguments[0]));
    *V_BSTRREF(&arguments[0]) = nullptr;
  };
  const Connection first(control.Get(), DIID___KwEditorLayers, &sink);
  const Connection other(control.Get(), DIID___KwEditorLayers, &second);
  EXPECT_EQ(Open(scratch.WriteTiff(L"D.tif", 2)), S_OK);
  ASSERT_FALSE(second.events.empty());
  EXPECT_EQ(second.events[0], "NewPageCreated(, 2, 2)");
}

TEST_F(EventTest, AnErrorIsReportedToUserAndHost) {
  const Connection connection(control.Get(), DIID___KwEditorLayers, &sink);
  const BoxAnswerer user(withoutPageFiles);
  // A name without a dot is a file-name error when page files are to be named after it.
  const std::wstring document = scratch.WriteTiff(L"nodot", 2);
  EXPECT_EQ(control->OpenFile(Text(document)), S_OK);
  ASSERT_FALSE(sink.events.empty());
  EXPECT_EQ(sink.events[0].substr(0, 13), "ErrorOccured(");
  VARIANT_BOOL enabled = VARIANT_TRUE;
  control->get_Enabled(&enabled);
  EXPECT_EQ(enabled, VARIANT_FALSE);
  bool reported = false;
  for (const std::string& box : user.Boxes()) reported |= box.substr(0, 15) == "Critical Error:";
  EXPECT_TRUE(reported);
}

TEST_F(EventTest, FrozenEventsAreDropped) {
  const Connection connection(control.Get(), DIID___KwEditorLayers, &sink);
  const auto ole = As<IOleControl>();
  EXPECT_EQ(ole->FreezeEvents(TRUE), S_OK);
  EXPECT_EQ(ole->FreezeEvents(TRUE), S_OK);
  Open(scratch.WriteTiff(L"D.tif", 2));
  EXPECT_EQ(ole->FreezeEvents(FALSE), S_OK);
  Open(scratch.File(L"D.tif"));
  EXPECT_TRUE(sink.events.empty()) << "one of two freezes is still on";
  EXPECT_EQ(ole->FreezeEvents(FALSE), S_OK);
  EXPECT_EQ(ole->FreezeEvents(FALSE), S_OK);  // one too many
  Open(scratch.File(L"D.tif"));
  EXPECT_EQ(sink.events.size(), 3U);
}

TEST_F(EventTest, EveryAssignedPropertyNotifiesWithItsNumber) {
  const Connection connection(control.Get(), IID_IPropertyNotifySink, &properties);
  ASSERT_EQ(connection.Result(), S_OK);
  const auto contains = [&](DISPID number) {
    return std::find(properties.changed.begin(), properties.changed.end(), number) != properties.changed.end();
  };
  const struct {
    HRESULT (STDMETHODCALLTYPE _KwEditorLayers::*put)(VARIANT_BOOL);
    DISPID number;
  } rows[] = {
      {&_KwEditorLayers::put_IsToShowBackImage, EditorIsToShowBackImageId},
      {&_KwEditorLayers::put_IsFileChanged, EditorIsFileChangedId},
      {&_KwEditorLayers::put_IsToLightenBackImage, EditorIsToLightenBackImageId},
      {&_KwEditorLayers::put_IsToolboxVisible, EditorIsToolboxVisibleId},
      {&_KwEditorLayers::put_Enabled, EditorEnabledId},
      {&_KwEditorLayers::put_IsOpenButtonVisible, EditorIsOpenButtonVisibleId},
      {&_KwEditorLayers::put_IsToSaveAsMultiPageFile, EditorIsToSaveAsMultiPageFileId},
      {&_KwEditorLayers::put_IsToAllowChooseColor, EditorIsToAllowChooseColorId},
      {&_KwEditorLayers::put_IsEditable, EditorIsEditableId},
      {&_KwEditorLayers::put_IsSaveButtonEnabled, EditorIsSaveButtonEnabledId},
  };
  for (const auto& row : rows) {
    properties.changed.clear();
    (control.Get()->*row.put)(VARIANT_TRUE);
    EXPECT_TRUE(contains(row.number)) << row.number;
    EXPECT_FALSE(contains(DISPID_UNKNOWN));
  }
  properties.changed.clear();
  control->put_MaxUndoLevels(8);
  EXPECT_EQ(properties.changed, std::vector<DISPID>{EditorMaxUndoLevelsId});
  properties.changed.clear();
  control->put_AppDir(Text(scratch.Path()));
  EXPECT_EQ(properties.changed, std::vector<DISPID>{EditorAppDirId});
  properties.changed.clear();
  control->put_SignatureFilePath(nullptr);
  EXPECT_EQ(properties.changed, std::vector<DISPID>{EditorSignatureFilePathId});
  properties.changed.clear();
  control->put_BGImage(nullptr);
  EXPECT_TRUE(contains(EditorBGImageId));
  // The data members notify nobody.
  properties.changed.clear();
  control->put_m_IsFileChanged(VARIANT_TRUE);
  control->put_SaveFilePath(nullptr);
  EXPECT_TRUE(properties.changed.empty());
}

TEST_F(EventTest, ChangesUnderAFreezeAreToldOnceAtTheThaw) {
  const Connection connection(control.Get(), IID_IPropertyNotifySink, &properties);
  const auto ole = As<IOleControl>();
  ole->FreezeEvents(TRUE);
  control->put_MaxUndoLevels(8);
  control->put_MaxUndoLevels(9);
  EXPECT_TRUE(properties.changed.empty());
  ole->FreezeEvents(FALSE);
  EXPECT_EQ(properties.changed, std::vector<DISPID>{EditorMaxUndoLevelsId});
}

TEST_F(EventTest, SinksMayCutTheirOwnConnectionInsideAnEvent) {
  EventSink second;
  Connection first(control.Get(), DIID___KwEditorLayers, &sink);
  const Connection other(control.Get(), DIID___KwEditorLayers, &second);
  sink.onEvent = [&](DISPID, VARIANT*, UINT) { first.Cut(); };
  Open(scratch.WriteTiff(L"D.tif", 2));
  EXPECT_EQ(sink.events.size(), 1U);
  EXPECT_EQ(second.events.size(), 3U);
}

TEST_F(EventTest, PointsAreListedWithTheEventsFirst) {
  const auto container = As<IConnectionPointContainer>();
  ComPtr<IEnumConnectionPoints> points;
  ASSERT_EQ(container->EnumConnectionPoints(&points), S_OK);
  IConnectionPoint* found[3] = {};
  ULONG count = 0;
  EXPECT_EQ(points->Next(3, found, &count), S_FALSE);
  ASSERT_EQ(count, 2U);
  IID iid = {};
  EXPECT_EQ(found[0]->GetConnectionInterface(&iid), S_OK);
  EXPECT_EQ(iid, DIID___KwEditorLayers);
  EXPECT_EQ(found[1]->GetConnectionInterface(&iid), S_OK);
  EXPECT_EQ(iid, IID_IPropertyNotifySink);
  ComPtr<IConnectionPointContainer> back;
  EXPECT_EQ(found[0]->GetConnectionPointContainer(&back), S_OK);
  EXPECT_EQ(back.Get(), container.Get());
  EXPECT_EQ(points->Skip(1), S_FALSE);
  EXPECT_EQ(points->Reset(), S_OK);
  EXPECT_EQ(points->Skip(1), S_OK);
  ComPtr<IEnumConnectionPoints> copy;
  EXPECT_EQ(points->Clone(&copy), S_OK);
  ComPtr<IConnectionPoint> second;
  EXPECT_EQ(copy->Next(1, &second, nullptr), S_OK);
  EXPECT_EQ(second.Get(), found[1]);
  EXPECT_EQ(points->Next(2, found, nullptr), E_POINTER);
  EXPECT_EQ(points->Next(1, nullptr, &count), E_POINTER);
  found[0]->Release();
  found[1]->Release();
}

TEST_F(EventTest, ConnectionsAreListedAndRefusedByTheRules) {
  const auto container = As<IConnectionPointContainer>();
  ComPtr<IConnectionPoint> point;
  EXPECT_EQ(container->FindConnectionPoint(IID_IOleObject, &point), CONNECT_E_NOCONNECTION);
  ASSERT_EQ(container->FindConnectionPoint(IID_IPropertyNotifySink, &point), S_OK);
  DWORD cookie = 1;
  EXPECT_EQ(point->Advise(nullptr, &cookie), E_POINTER);
  EXPECT_EQ(point->Advise(&properties, nullptr), E_POINTER);
  EXPECT_EQ(point->Advise(&sink, &cookie), CONNECT_E_CANNOTCONNECT);
  EXPECT_EQ(cookie, 0U);
  EXPECT_EQ(point->Unadvise(1), CONNECT_E_NOCONNECTION);
  ASSERT_EQ(point->Advise(&properties, &cookie), S_OK);
  ComPtr<IEnumConnections> connections;
  ASSERT_EQ(point->EnumConnections(&connections), S_OK);
  CONNECTDATA data = {};
  EXPECT_EQ(connections->Next(1, &data, nullptr), S_OK);
  EXPECT_EQ(data.dwCookie, cookie);
  data.pUnk->Release();
  EXPECT_EQ(point->Unadvise(cookie), S_OK);
  EXPECT_EQ(point->Unadvise(cookie), CONNECT_E_NOCONNECTION);
  EXPECT_EQ(point->EnumConnections(nullptr), E_POINTER);
  connections.Reset();
  EXPECT_EQ(properties.References(), 1U);
}

// A sink that cuts all connections as soon as the control lets go of it.
class CuttingSink final : public IPropertyNotifySink {
public:
  CuttingSink(IConnectionPoint& from, DWORD cookies) : point(from), last(cookies) {}
  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    *object = iid == IID_IUnknown || iid == IID_IPropertyNotifySink ? this : nullptr;
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
  STDMETHODIMP_(ULONG) Release() override {
    for (DWORD cookie = 1; isOver && cookie <= last; ++cookie) point.Unadvise(cookie);
    return --references;
  }
  STDMETHODIMP OnChanged(DISPID /*property*/) override { return S_OK; }
  STDMETHODIMP OnRequestEdit(DISPID /*property*/) override { return S_OK; }

  bool isOver = false;
  ULONG references = 1;

private:
  IConnectionPoint& point;
  DWORD last;
};

TEST_F(EventTest, SinksMayCutTheirConnectionsWhileTheControlLetsGoOfThem) {
  IConnectionPoint* point = nullptr;
  ASSERT_HRESULT_SUCCEEDED(As<IConnectionPointContainer>()->FindConnectionPoint(IID_IPropertyNotifySink, &point));
  constexpr DWORD Count = 5;
  CuttingSink cutting(*point, Count);
  for (DWORD i = 0; i < Count; ++i) {
    DWORD cookie = 0;
    ASSERT_EQ(point->Advise(&cutting, &cookie), S_OK);
  }
  point->Release();
  cutting.isOver = true;
  control.Reset();
  EXPECT_EQ(cutting.references, 1U);
}

TEST_F(EventTest, ControlLetsGoOfSinksThatWereNeverCut) {
  Connection connection(control.Get(), DIID___KwEditorLayers, &sink);
  connection.Forget();
  EXPECT_EQ(sink.References(), 2U);
  control.Reset();
  EXPECT_EQ(sink.References(), 1U);
}

}  // namespace
}  // namespace kw::test
