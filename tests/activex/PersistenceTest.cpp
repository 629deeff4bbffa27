// The persisted properties in a bag, a stream and a storage.

#include <windows.h>

#include <ocidl.h>
#include <ole2.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/activex/Fixture.h"
#include "tests/activex/Sinks.h"
#include "tests/activex/TextBag.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

const std::vector<std::wstring> ReadingOrder = {
    L"Enabled",    L"MaxUndoLevels", L"IsToolboxVisible",     L"IsOpenButtonVisible",     L"IsSaveButtonEnabled",
    L"IsEditable", L"AppDir",        L"IsToAllowChooseColor", L"IsToSaveAsMultiPageFile", L"IsToLightenBackImage"};
const std::vector<std::wstring> WritingOrder = {L"Enabled",
                                                L"MaxUndoLevels",
                                                L"IsToolboxVisible",
                                                L"IsOpenButtonVisible",
                                                L"IsToAllowChooseColor",
                                                L"IsSaveButtonEnabled",
                                                L"IsEditable",
                                                L"IsToSaveAsMultiPageFile",
                                                L"AppDir",
                                                L"IsToLightenBackImage"};

class PersistenceTest : public ControlTest {
protected:
  static bool IsTrue(const ComPtr<_KwEditorLayers>& of,
                     HRESULT (STDMETHODCALLTYPE _KwEditorLayers::*get)(VARIANT_BOOL*)) {
    VARIANT_BOOL value = VARIANT_FALSE;
    EXPECT_EQ((of.Get()->*get)(&value), S_OK);
    return value != VARIANT_FALSE;
  }
  static short LevelsOf(const ComPtr<_KwEditorLayers>& of) {
    short levels = 0;
    of->get_MaxUndoLevels(&levels);
    return levels;
  }
  std::wstring FolderOf(const ComPtr<_KwEditorLayers>& of) {
    BSTR folder = nullptr;
    of->get_AppDir(&folder);
    return Take(folder);
  }
  template <class Interface>
  static ComPtr<Interface> Of(const ComPtr<_KwEditorLayers>& of) {
    ComPtr<Interface> asked;
    EXPECT_HRESULT_SUCCEEDED(of.As(&asked));
    return asked;
  }
  void ChangeEverything() {
    control->put_MaxUndoLevels(23);
    control->put_IsToolboxVisible(VARIANT_TRUE);
    control->put_IsOpenButtonVisible(VARIANT_TRUE);
    control->put_IsToAllowChooseColor(VARIANT_TRUE);
    control->put_IsSaveButtonEnabled(VARIANT_FALSE);
    control->put_IsToSaveAsMultiPageFile(VARIANT_TRUE);
    control->put_IsToLightenBackImage(VARIANT_TRUE);
  }
  void ExpectEverythingChanged(const ComPtr<_KwEditorLayers>& of) {
    EXPECT_EQ(LevelsOf(of), 23);
    EXPECT_TRUE(IsTrue(of, &_KwEditorLayers::get_Enabled));
    EXPECT_TRUE(IsTrue(of, &_KwEditorLayers::get_IsToolboxVisible));
    EXPECT_TRUE(IsTrue(of, &_KwEditorLayers::get_IsOpenButtonVisible));
    EXPECT_TRUE(IsTrue(of, &_KwEditorLayers::get_IsToAllowChooseColor));
    EXPECT_FALSE(IsTrue(of, &_KwEditorLayers::get_IsSaveButtonEnabled));
    EXPECT_TRUE(IsTrue(of, &_KwEditorLayers::get_IsToSaveAsMultiPageFile));
    EXPECT_TRUE(IsTrue(of, &_KwEditorLayers::get_IsToLightenBackImage));
    EXPECT_TRUE(IsTrue(of, &_KwEditorLayers::get_IsEditable));
    EXPECT_EQ(FolderOf(of), scratch.Path());
  }
  void ExpectDefaults(const ComPtr<_KwEditorLayers>& of) {
    EXPECT_TRUE(IsTrue(of, &_KwEditorLayers::get_Enabled));
    EXPECT_EQ(LevelsOf(of), 5);
    EXPECT_FALSE(IsTrue(of, &_KwEditorLayers::get_IsToolboxVisible));
    EXPECT_FALSE(IsTrue(of, &_KwEditorLayers::get_IsOpenButtonVisible));
    EXPECT_TRUE(IsTrue(of, &_KwEditorLayers::get_IsSaveButtonEnabled));
    EXPECT_TRUE(IsTrue(of, &_KwEditorLayers::get_IsEditable));
    EXPECT_FALSE(IsTrue(of, &_KwEditorLayers::get_IsToAllowChooseColor));
    EXPECT_FALSE(IsTrue(of, &_KwEditorLayers::get_IsToSaveAsMultiPageFile));
    EXPECT_FALSE(IsTrue(of, &_KwEditorLayers::get_IsToLightenBackImage));
    EXPECT_EQ(FolderOf(of), L"");
  }
};

TEST_F(PersistenceTest, EmptyBagGivesTheDefaultsInTheReadingOrder) {
  ChangeEverything();
  control->put_IsEditable(VARIANT_FALSE);
  control->put_Enabled(VARIANT_FALSE);
  TextBag bag;
  EXPECT_EQ(As<IPersistPropertyBag>()->Load(&bag, nullptr), S_OK);
  EXPECT_EQ(bag.read, ReadingOrder);
  ExpectDefaults(control);
}

TEST_F(PersistenceTest, NewControlHasWhatItsStartUpGaveIt) {
  const auto expectNew = [this] {
    EXPECT_TRUE(IsTrue(control, &_KwEditorLayers::get_Enabled));
    EXPECT_EQ(LevelsOf(control), 5);
    EXPECT_TRUE(IsTrue(control, &_KwEditorLayers::get_IsToolboxVisible));
    EXPECT_FALSE(IsTrue(control, &_KwEditorLayers::get_IsOpenButtonVisible));
    EXPECT_TRUE(IsTrue(control, &_KwEditorLayers::get_IsSaveButtonEnabled));
    EXPECT_TRUE(IsTrue(control, &_KwEditorLayers::get_IsEditable));
    EXPECT_TRUE(IsTrue(control, &_KwEditorLayers::get_IsToAllowChooseColor));
    EXPECT_EQ(FolderOf(control), scratch.Path()) << "the thread's other controls use it";
  };
  expectNew();
  EXPECT_EQ(As<IPersistStreamInit>()->InitNew(), S_OK);
  expectNew();
  EXPECT_EQ(TracedTimes(scratch.Path(), "UserControl_ReadProperties"), 0);
}

TEST_F(PersistenceTest, BagIsWrittenInTheWritingOrderAndReadBack) {
  ChangeEverything();
  TextBag bag;
  EXPECT_EQ(As<IPersistPropertyBag>()->Save(&bag, TRUE, TRUE), S_OK);
  EXPECT_EQ(bag.written, WritingOrder);
  const auto copy = Ocx::Create();
  EXPECT_EQ(Of<IPersistPropertyBag>(copy)->Load(&bag, nullptr), S_OK);
  ExpectEverythingChanged(copy);
}

TEST_F(PersistenceTest, DefaultsNeedNotBeWritten) {
  TextBag none;
  EXPECT_EQ(As<IPersistPropertyBag>()->Load(&none, nullptr), S_OK);
  control->put_MaxUndoLevels(23);
  control->put_AppDir(Text(scratch.Path()));
  TextBag bag;
  EXPECT_EQ(As<IPersistPropertyBag>()->Save(&bag, TRUE, FALSE), S_OK);
  EXPECT_EQ(bag.written, (std::vector<std::wstring>{L"MaxUndoLevels", L"AppDir"}));
}

TEST_F(PersistenceTest, KnowsWhetherItHasToBeSaved) {
  const auto stream = As<IPersistStreamInit>();
  stream->InitNew();
  EXPECT_EQ(stream->IsDirty(), S_FALSE);
  control->put_MaxUndoLevels(30);
  EXPECT_EQ(stream->IsDirty(), S_OK);
  TextBag bag;
  EXPECT_EQ(As<IPersistPropertyBag>()->Save(&bag, FALSE, TRUE), S_OK);
  EXPECT_EQ(stream->IsDirty(), S_OK);
  bag.writeResult = STG_E_MEDIUMFULL;
  EXPECT_EQ(As<IPersistPropertyBag>()->Save(&bag, TRUE, TRUE), STG_E_MEDIUMFULL);
  EXPECT_EQ(stream->IsDirty(), S_OK);
  bag.writeResult = S_OK;
  EXPECT_EQ(As<IPersistPropertyBag>()->Save(&bag, TRUE, TRUE), S_OK);
  EXPECT_EQ(stream->IsDirty(), S_FALSE);
}

TEST_F(PersistenceTest, HasToBeSavedOnlyForWhatIsSaved) {
  const auto stream = As<IPersistStreamInit>();
  const std::wstring document = scratch.WriteTiff(L"D.tif", 2);
  const std::function<void()> kept[] = {
      [&] { control->put_Enabled(VARIANT_TRUE); },
      [&] { control->put_IsToolboxVisible(VARIANT_FALSE); },
      [&] { control->put_IsOpenButtonVisible(VARIANT_TRUE); },
      [&] { control->put_IsSaveButtonEnabled(VARIANT_TRUE); },
      [&] { control->put_IsEditable(VARIANT_TRUE); },
      [&] { control->put_AppDir(Text(scratch.Path())); },
      [&] { control->put_IsToAllowChooseColor(VARIANT_TRUE); },
      [&] { control->put_IsToSaveAsMultiPageFile(VARIANT_TRUE); },
      [&] { control->put_IsToLightenBackImage(VARIANT_TRUE); },
      [&] { control->put_MaxUndoLevels(7); },
  };
  const std::function<void()> forgotten[] = {
      [&] { control->put_IsFileChanged(VARIANT_TRUE); },
      [&] { control->put_m_IsFileChanged(VARIANT_FALSE); },
      [&] { control->put_IsToShowBackImage(VARIANT_TRUE); },
      [&] { control->put_SignatureFilePath(Text(document)); },
      [&] { control->put_BGImage(Text(document)); },
      [&] { control->put_SaveFilePath(Text(document)); },
      [&] {
        const BoxAnswerer user({Once(ListOfPendingWork)});
        control->OpenFile(Text(document));
      },
      [&] { control->SavePage(); },
  };
  for (const auto& change : kept) {
    stream->InitNew();
    change();
    EXPECT_EQ(stream->IsDirty(), S_OK) << &change - kept;
  }
  for (const auto& change : forgotten) {
    stream->InitNew();
    change();
    EXPECT_EQ(stream->IsDirty(), S_FALSE) << &change - forgotten;
  }
}

TEST_F(PersistenceTest, WrongTypeInTheBagIsReportedAndTheOthersAreRead) {
  const BoxAnswerer user({Once("Critical Error: Error Number : 13/")});
  EventSink sink;
  const Connection connection(control.Get(), DIID___KwEditorLayers, &sink);
  TextBag bag;
  bag.values = {{L"MaxUndoLevels", L"many"}, {L"IsOpenButtonVisible", L"True"}, {L"AppDir", scratch.Path()}};
  EXPECT_EQ(As<IPersistPropertyBag>()->Load(&bag, nullptr), S_OK);
  EXPECT_EQ(LevelsOf(control), 5);
  EXPECT_TRUE(IsTrue(control, &_KwEditorLayers::get_IsOpenButtonVisible));
  ASSERT_EQ(sink.events.size(), 1U);
  EXPECT_EQ(sink.events[0].substr(0, 16), "ErrorOccured(13,");
  EXPECT_EQ(user.Boxes().size(), 1U);
}

TEST_F(PersistenceTest, NumberTooLargeInTheBagIsAnOverflow) {
  const BoxAnswerer user({Once("Critical Error: Error Number : 6/")});
  EventSink sink;
  const Connection connection(control.Get(), DIID___KwEditorLayers, &sink);
  TextBag bag;
  bag.values = {{L"MaxUndoLevels", L"70000"}, {L"AppDir", scratch.Path()}};
  EXPECT_EQ(As<IPersistPropertyBag>()->Load(&bag, nullptr), S_OK);
  ASSERT_EQ(sink.events.size(), 1U);
  EXPECT_EQ(sink.events[0].substr(0, 15), "ErrorOccured(6,");
}

ComPtr<IStream> NewStream() {
  ComPtr<IStream> stream;
  EXPECT_HRESULT_SUCCEEDED(CreateStreamOnHGlobal(nullptr, TRUE, &stream));
  return stream;
}

void Rewind(IStream& stream) {
  const LARGE_INTEGER start = {};
  EXPECT_HRESULT_SUCCEEDED(stream.Seek(start, STREAM_SEEK_SET, nullptr));
}

std::uint64_t SizeOf(IStream& stream) {
  STATSTG status = {};
  EXPECT_HRESULT_SUCCEEDED(stream.Stat(&status, STATFLAG_NONAME));
  return status.cbSize.QuadPart;
}

TEST_F(PersistenceTest, StreamIsReadBack) {
  ChangeEverything();
  const auto stream = NewStream();
  const auto persist = As<IPersistStreamInit>();
  EXPECT_EQ(persist->Save(stream.Get(), FALSE), S_OK);
  EXPECT_EQ(persist->IsDirty(), S_OK);
  EXPECT_EQ(persist->Save(stream.Get(), TRUE), S_OK);
  EXPECT_EQ(persist->IsDirty(), S_FALSE);
  Rewind(*stream.Get());
  const auto copy = Ocx::Create();
  EXPECT_EQ(Of<IPersistStreamInit>(copy)->Load(stream.Get()), S_OK);
  ExpectEverythingChanged(copy);
  // A load reads exactly the bytes of a save: the second copy follows directly.
  EXPECT_EQ(Of<IPersistStreamInit>(copy)->Load(stream.Get()), S_OK);
  EXPECT_EQ(Of<IPersistStreamInit>(copy)->IsDirty(), S_FALSE);
}

TEST_F(PersistenceTest, StreamSizeIsForetold) {
  const auto stream = NewStream();
  ULARGE_INTEGER size = {};
  EXPECT_EQ(As<IPersistStreamInit>()->GetSizeMax(&size), S_OK);
  EXPECT_EQ(As<IPersistStreamInit>()->Save(stream.Get(), TRUE), S_OK);
  EXPECT_EQ(size.QuadPart, SizeOf(*stream.Get()));
}

TEST_F(PersistenceTest, EveryShortenedStreamIsRefusedAndChangesNothing) {
  ChangeEverything();
  const auto whole = NewStream();
  ASSERT_EQ(As<IPersistStreamInit>()->Save(whole.Get(), TRUE), S_OK);
  const std::uint64_t size = SizeOf(*whole.Get());
  control->put_MaxUndoLevels(40);
  for (std::uint64_t length = 0; length < size; ++length) {
    const auto part = NewStream();
    Rewind(*whole.Get());
    ULARGE_INTEGER count = {};
    count.QuadPart = length;
    ASSERT_HRESULT_SUCCEEDED(whole->CopyTo(part.Get(), count, nullptr, nullptr));
    Rewind(*part.Get());
    EXPECT_HRESULT_FAILED(As<IPersistStreamInit>()->Load(part.Get())) << length << " of " << size;
  }
  EXPECT_EQ(LevelsOf(control), 40);
}

TEST_F(PersistenceTest, ForeignAndLaterStreamsAreRefused) {
  const auto write = [](const std::string& bytes) {
    auto stream = NewStream();
    stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr);
    Rewind(*stream.Get());
    return stream;
  };
  const auto persist = As<IPersistStreamInit>();
  EXPECT_EQ(persist->Load(write("something else entirely").Get()), STG_E_INVALIDHEADER);
  EXPECT_EQ(persist->Load(write(std::string("KwEP\2\0\0\0", 8)).Get()), STG_E_OLDDLL);
  // One entry with the key "x" of a type that there is not, and one with a text of 4 GB.
  EXPECT_EQ(persist->Load(write(std::string("KwEP\1\0\1\0\1\0x\x9", 12)).Get()), E_FAIL);
  EXPECT_EQ(persist->Load(write(std::string("KwEP\1\0\1\0\1\0x\3\xff\xff\xff\xff", 16)).Get()), E_FAIL);
  // No entries at all, and one with a key that this version does not know: the defaults hold.
  for (const auto& bytes : {std::string("KwEP\1\0\0\0", 8), std::string("KwEP\1\0\1\0\1\0x\1\1", 13)}) {
    ChangeEverything();
    EXPECT_EQ(persist->Load(write(bytes).Get()), S_OK);
    ExpectDefaults(control);
    control->put_AppDir(Text(scratch.Path()));
  }
}

TEST_F(PersistenceTest, AStorageThatIsACopyLeavesTheControlChanged) {
  ComPtr<IStorage> storage;
  ASSERT_HRESULT_SUCCEEDED(StgCreateDocfile(scratch.File(L"form.stg").c_str(),
                                            STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0, &storage));
  const auto persist = As<IPersistStorage>();
  EXPECT_EQ(persist->InitNew(storage.Get()), S_OK);
  ChangeEverything();
  EXPECT_EQ(persist->Save(storage.Get(), FALSE), S_OK);
  EXPECT_EQ(persist->SaveCompleted(nullptr), S_OK);
  EXPECT_EQ(persist->IsDirty(), S_OK);
  EXPECT_EQ(persist->HandsOffStorage(), S_OK);
  EXPECT_EQ(persist->SaveCompleted(storage.Get()), S_OK);
  EXPECT_EQ(persist->IsDirty(), S_OK) << "nothing was saved";
  EXPECT_EQ(persist->Save(storage.Get(), FALSE), S_OK);
  EXPECT_EQ(persist->SaveCompleted(storage.Get()), S_OK);
  EXPECT_EQ(persist->IsDirty(), S_FALSE) << "that storage is its own now";
}

TEST_F(PersistenceTest, StorageFollowsItsProtocol) {
  ComPtr<IStorage> storage;
  ASSERT_HRESULT_SUCCEEDED(StgCreateDocfile(scratch.File(L"form.stg").c_str(),
                                            STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0, &storage));
  const auto persist = As<IPersistStorage>();
  EXPECT_EQ(persist->SaveCompleted(nullptr), E_UNEXPECTED);
  EXPECT_EQ(persist->HandsOffStorage(), E_UNEXPECTED);
  EXPECT_HRESULT_FAILED(persist->Load(storage.Get()));  // nothing in it yet
  EXPECT_EQ(persist->InitNew(storage.Get()), S_OK);
  EXPECT_EQ(persist->InitNew(storage.Get()), CO_E_ALREADYINITIALIZED);
  ChangeEverything();
  EXPECT_EQ(persist->IsDirty(), S_OK);
  EXPECT_EQ(persist->Save(storage.Get(), TRUE), S_OK);
  EXPECT_EQ(persist->Save(storage.Get(), TRUE), E_UNEXPECTED);  // not before SaveCompleted
  EXPECT_EQ(persist->IsDirty(), S_OK);
  EXPECT_EQ(persist->SaveCompleted(nullptr), S_OK);
  EXPECT_EQ(persist->IsDirty(), S_FALSE);
  EXPECT_EQ(persist->HandsOffStorage(), S_OK);
  EXPECT_EQ(persist->SaveCompleted(nullptr), E_INVALIDARG);
  EXPECT_EQ(persist->SaveCompleted(storage.Get()), S_OK);

  const auto copy = Ocx::Create();
  EXPECT_EQ(Of<IPersistStorage>(copy)->Load(storage.Get()), S_OK);
  EXPECT_EQ(Of<IPersistStorage>(copy)->Load(storage.Get()), CO_E_ALREADYINITIALIZED);
  ExpectEverythingChanged(copy);
  CLSID classId = {};
  EXPECT_EQ(Of<IPersistStorage>(copy)->GetClassID(&classId), S_OK);
  EXPECT_EQ(classId, CLSID_KwEditorLayers);
}

}  // namespace
}  // namespace kw::test
