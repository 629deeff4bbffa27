// The control as a COM object: identity, class factory, aggregation, null pointers, error texts.

#include <windows.h>

#include <objsafe.h>
#include <ocidl.h>
#include <ole2.h>

#include "tests/activex/Aggregate.h"
#include "tests/activex/Fixture.h"

namespace kw::test {
namespace {

class ObjectTest : public ControlTest {};

TEST_F(ObjectTest, AnswersToEveryInterfaceOfItsTable) {
  const IID* const interfaces[] = {&IID_IUnknown,
                                   &IID_IDispatch,
                                   &IID__KwEditorLayers,
                                   &IID_IProvideClassInfo,
                                   &IID_IProvideClassInfo2,
                                   &IID_ISupportErrorInfo,
                                   &IID_IConnectionPointContainer,
                                   &IID_IOleObject,
                                   &IID_IOleControl,
                                   &IID_IOleWindow,
                                   &IID_IOleInPlaceObject,
                                   &IID_IOleInPlaceActiveObject,
                                   &IID_IViewObject,
                                   &IID_IViewObject2,
                                   &IID_IViewObjectEx,
                                   &IID_IDataObject,
                                   &IID_IPersist,
                                   &IID_IPersistStreamInit,
                                   &IID_IPersistStorage,
                                   &IID_IPersistPropertyBag,
                                   &IID_ISpecifyPropertyPages,
                                   &IID_IPerPropertyBrowsing,
                                   &IID_ICategorizeProperties};
  ComPtr<IUnknown> identity;
  ASSERT_HRESULT_SUCCEEDED(control.As(&identity));
  for (const IID* const iid : interfaces) {
    ComPtr<IUnknown> asked;
    ASSERT_EQ(control->QueryInterface(*iid, reinterpret_cast<void**>(asked.GetAddressOf())), S_OK);
    // From every interface the way leads back to the one identity.
    ComPtr<IUnknown> back;
    ASSERT_EQ(asked.As(&back), S_OK);
    EXPECT_EQ(back.Get(), identity.Get());
  }
}

TEST_F(ObjectTest, DoesNotClaimToBeSafeForScripts) {
  for (const IID* const iid : {&IID_IObjectSafety, &IID_IOleLink, &IID_IMarshal}) {
    void* object = this;
    EXPECT_EQ(control->QueryInterface(*iid, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
  }
  EXPECT_EQ(control->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(ObjectTest, FactoryRefusesWhatItCannotDo) {
  const auto factory = Ocx::Factory();
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
  void* object = this;
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IOleLink, &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  // An aggregate has to ask for IUnknown first.
  EXPECT_EQ(factory->CreateInstance(control.Get(), IID_IDispatch, &object), CLASS_E_NOAGGREGATION);
}

TEST_F(ObjectTest, LocksAndObjectsKeepTheLibraryLoaded) {
  EXPECT_FALSE(Ocx::CanUnload());
  control.Reset();
  EXPECT_TRUE(Ocx::CanUnload());
  {
    const auto factory = Ocx::Factory();
    EXPECT_FALSE(Ocx::CanUnload());
    EXPECT_EQ(factory->LockServer(TRUE), S_OK);
  }
  EXPECT_FALSE(Ocx::CanUnload());
  EXPECT_EQ(Ocx::Factory()->LockServer(FALSE), S_OK);
  EXPECT_TRUE(Ocx::CanUnload());
}

TEST_F(ObjectTest, CanBePartOfAnAggregate) {
  Aggregate whole;
  ASSERT_NE(whole.inner.Get(), nullptr);
  ComPtr<_KwEditorLayers> part;
  ASSERT_EQ(whole.QueryInterface(IID_PPV_ARGS(&part)), S_OK);
  ComPtr<IUnknown> identity;
  ASSERT_EQ(part.As(&identity), S_OK);
  EXPECT_EQ(identity.Get(), static_cast<IUnknown*>(&whole));
  EXPECT_EQ(part->put_MaxUndoLevels(9), S_OK);
  short levels = 0;
  EXPECT_EQ(part->get_MaxUndoLevels(&levels), S_OK);
  EXPECT_EQ(levels, 9);
  identity.Reset();
  part.Reset();
  EXPECT_EQ(whole.references, 1U);
  whole.inner.Reset();
  EXPECT_EQ(whole.references, 1U);
}

TEST_F(ObjectTest, NullPointersAreErrors) {
  EXPECT_EQ(control->get_IsEditable(nullptr), E_POINTER);
  EXPECT_EQ(control->get_AppDir(nullptr), E_POINTER);
  EXPECT_EQ(control->get_MaxUndoLevels(nullptr), E_POINTER);
  EXPECT_EQ(control->GetTypeInfo(0, 0, nullptr), E_POINTER);
  EXPECT_EQ(control->GetTypeInfoCount(nullptr), E_POINTER);
  EXPECT_EQ(control->GetIDsOfNames(IID_NULL, nullptr, 1, 0, nullptr), E_POINTER);
  EXPECT_EQ(control->Invoke(1, IID_NULL, 0, DISPATCH_PROPERTYGET, nullptr, nullptr, nullptr, nullptr), E_POINTER);
  const auto classInfo = As<IProvideClassInfo2>();
  EXPECT_EQ(classInfo->GetClassInfo(nullptr), E_POINTER);
  EXPECT_EQ(classInfo->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, nullptr), E_POINTER);
  const auto points = As<IConnectionPointContainer>();
  EXPECT_EQ(points->EnumConnectionPoints(nullptr), E_POINTER);
  EXPECT_EQ(points->FindConnectionPoint(IID_IPropertyNotifySink, nullptr), E_POINTER);
  const auto object = As<IOleObject>();
  EXPECT_EQ(object->GetClientSite(nullptr), E_POINTER);
  EXPECT_EQ(object->GetExtent(DVASPECT_CONTENT, nullptr), E_POINTER);
  EXPECT_EQ(object->SetExtent(DVASPECT_CONTENT, nullptr), E_POINTER);
  EXPECT_EQ(object->GetMiscStatus(DVASPECT_CONTENT, nullptr), E_POINTER);
  EXPECT_EQ(object->GetMoniker(0, 0, nullptr), E_POINTER);
  EXPECT_EQ(object->GetUserClassID(nullptr), E_POINTER);
  EXPECT_EQ(object->GetUserType(USERCLASSTYPE_FULL, nullptr), E_POINTER);
  EXPECT_EQ(object->GetClipboardData(0, nullptr), E_POINTER);
  EXPECT_EQ(object->EnumVerbs(nullptr), E_POINTER);
  EXPECT_EQ(object->EnumAdvise(nullptr), E_POINTER);
  DWORD connection = 7;
  EXPECT_EQ(object->Advise(nullptr, nullptr), E_POINTER);
  EXPECT_EQ(object->Advise(nullptr, &connection), E_POINTER);
  EXPECT_EQ(connection, 0U);
  EXPECT_EQ(As<IOleControl>()->GetControlInfo(nullptr), E_POINTER);
  const auto inPlace = As<IOleInPlaceObject>();
  EXPECT_EQ(inPlace->GetWindow(nullptr), E_POINTER);
  EXPECT_EQ(inPlace->SetObjectRects(nullptr, nullptr), E_POINTER);
  EXPECT_EQ(As<IOleInPlaceActiveObject>()->TranslateAccelerator(nullptr), E_POINTER);
  const auto view = As<IViewObjectEx>();
  EXPECT_EQ(view->GetExtent(DVASPECT_CONTENT, -1, nullptr, nullptr), E_POINTER);
  EXPECT_EQ(view->GetRect(DVASPECT_CONTENT, nullptr), E_POINTER);
  EXPECT_EQ(view->GetViewStatus(nullptr), E_POINTER);
  EXPECT_EQ(view->QueryHitPoint(DVASPECT_CONTENT, nullptr, {}, 0, nullptr), E_POINTER);
  EXPECT_EQ(view->QueryHitRect(DVASPECT_CONTENT, nullptr, nullptr, 0, nullptr), E_POINTER);
  EXPECT_EQ(view->GetNaturalExtent(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, nullptr), E_POINTER);
  EXPECT_EQ(view->GetColorSet(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, nullptr), E_POINTER);
  EXPECT_EQ(view->GetAdvise(nullptr, nullptr, nullptr), S_OK);  // each of the three may be left out
  const auto stream = As<IPersistStreamInit>();
  EXPECT_EQ(stream->GetClassID(nullptr), E_POINTER);
  EXPECT_EQ(stream->Load(nullptr), E_POINTER);
  EXPECT_EQ(stream->Save(nullptr, TRUE), E_POINTER);
  EXPECT_EQ(stream->GetSizeMax(nullptr), E_POINTER);
  const auto storage = As<IPersistStorage>();
  EXPECT_EQ(storage->InitNew(nullptr), E_POINTER);
  EXPECT_EQ(storage->Load(nullptr), E_POINTER);
  EXPECT_EQ(storage->Save(nullptr, FALSE), E_POINTER);
  const auto bag = As<IPersistPropertyBag>();
  EXPECT_EQ(bag->Load(nullptr, nullptr), E_POINTER);
  EXPECT_EQ(bag->Save(nullptr, TRUE, TRUE), E_POINTER);
}

TEST_F(ObjectTest, NullTextsAreEmptyTexts) {
  EXPECT_EQ(control->put_SaveFilePath(nullptr), S_OK);
  EXPECT_EQ(control->put_SignatureFilePath(nullptr), S_OK);
  EXPECT_EQ(control->put_BGImage(nullptr), S_OK);
  BSTR path = nullptr;
  EXPECT_EQ(control->get_SaveFilePath(&path), S_OK);
  ASSERT_NE(path, nullptr);
  EXPECT_EQ(Take(path), L"");
}

TEST_F(ObjectTest, ErrorsOfTheDefaultInterfaceHaveTexts) {
  const auto support = As<ISupportErrorInfo>();
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID__KwEditorLayers), S_OK);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IOleObject), S_FALSE);
}

TEST_F(ObjectTest, DescribesItsClassAndItsEvents) {
  const auto info = As<IProvideClassInfo2>();
  GUID events = {};
  EXPECT_EQ(info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events), S_OK);
  EXPECT_EQ(events, DIID___KwEditorLayers);
  EXPECT_EQ(info->GetGUID(17, &events), E_INVALIDARG);
  ComPtr<ITypeInfo> classInfo;
  ASSERT_EQ(info->GetClassInfo(&classInfo), S_OK);
  TYPEATTR* attributes = nullptr;
  ASSERT_EQ(classInfo->GetTypeAttr(&attributes), S_OK);
  EXPECT_EQ(attributes->typekind, TKIND_COCLASS);
  EXPECT_EQ(attributes->guid, CLSID_KwEditorLayers);
  classInfo->ReleaseTypeAttr(attributes);
}

}  // namespace
}  // namespace kw::test
