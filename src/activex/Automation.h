#pragma once

#include <windows.h>

#include <ocidl.h>

#include "activex/EditorCore.h"
#include "activex/KwEditor.h"

namespace kw::activex {

// The control's methods and properties, and its type information.
class Automation : public _KwEditorLayers, public IProvideClassInfo2, public ISupportErrorInfo {
public:
  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT index, LCID lcid, ITypeInfo** info) override;
  STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID lcid, DISPID* ids) override;
  STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID lcid, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* exception, UINT* badArgument) override;

  STDMETHODIMP get_m_IsFileChanged(VARIANT_BOOL* value) override;
  STDMETHODIMP put_m_IsFileChanged(VARIANT_BOOL value) override;
  STDMETHODIMP get_SaveFilePath(BSTR* value) override;
  STDMETHODIMP put_SaveFilePath(BSTR value) override;
  STDMETHODIMP SavePage() override;
  STDMETHODIMP OpenFile(BSTR fPath) override;
  STDMETHODIMP get_IsToShowBackImage(VARIANT_BOOL* value) override;
  STDMETHODIMP put_IsToShowBackImage(VARIANT_BOOL value) override;
  STDMETHODIMP get_IsFileChanged(VARIANT_BOOL* value) override;
  STDMETHODIMP put_IsFileChanged(VARIANT_BOOL value) override;
  STDMETHODIMP get_IsToLightenBackImage(VARIANT_BOOL* value) override;
  STDMETHODIMP put_IsToLightenBackImage(VARIANT_BOOL value) override;
  STDMETHODIMP get_IsToolboxVisible(VARIANT_BOOL* value) override;
  STDMETHODIMP put_IsToolboxVisible(VARIANT_BOOL value) override;
  STDMETHODIMP put_SignatureFilePath(BSTR value) override;
  STDMETHODIMP put_BGImage(BSTR value) override;
  STDMETHODIMP get_Enabled(VARIANT_BOOL* value) override;
  STDMETHODIMP put_Enabled(VARIANT_BOOL value) override;
  STDMETHODIMP get_IsOpenButtonVisible(VARIANT_BOOL* value) override;
  STDMETHODIMP put_IsOpenButtonVisible(VARIANT_BOOL value) override;
  STDMETHODIMP get_IsToSaveAsMultiPageFile(VARIANT_BOOL* value) override;
  STDMETHODIMP put_IsToSaveAsMultiPageFile(VARIANT_BOOL value) override;
  STDMETHODIMP get_IsToAllowChooseColor(VARIANT_BOOL* value) override;
  STDMETHODIMP put_IsToAllowChooseColor(VARIANT_BOOL value) override;
  STDMETHODIMP get_MaxUndoLevels(short* value) override;
  STDMETHODIMP put_MaxUndoLevels(short value) override;
  STDMETHODIMP get_IsEditable(VARIANT_BOOL* value) override;
  STDMETHODIMP put_IsEditable(VARIANT_BOOL value) override;
  STDMETHODIMP get_IsSaveButtonEnabled(VARIANT_BOOL* value) override;
  STDMETHODIMP put_IsSaveButtonEnabled(VARIANT_BOOL value) override;
  STDMETHODIMP get_AppDir(BSTR* value) override;
  STDMETHODIMP put_AppDir(BSTR value) override;

  STDMETHODIMP GetClassInfo(ITypeInfo** info) override;
  STDMETHODIMP GetGUID(DWORD kind, GUID* guid) override;

  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override;

protected:
  explicit Automation(EditorCore& shared) : core(shared) {}
  ~Automation() = default;

private:
  // Calls a property procedure of the editor and converts between COM's types and its own.
  template <class Value, class Read>
  HRESULT Get(Value* value, Read read);
  template <class Write>
  HRESULT LetBoolean(VARIANT_BOOL value, Write write);
  template <class Write>
  HRESULT LetText(BSTR value, Write write);

  EditorCore& core;
};

}  // namespace kw::activex
