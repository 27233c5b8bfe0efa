// A type library in memory, which owns its types.
#pragma once

#include "platform/counted.h"
#include "platform/portable/typeinfo_type.h"

namespace platform {

// One count of references for the library and its types. References from type to type within the
// library aren't counted; those to types of other libraries are.
class TypeLibrary final : public Counted<ICreateTypeLib2, ITypeLib> {
  public:
    explicit TypeLibrary(SYSKIND sysKind);

    const OptionalText& helpFile() const { return helpFile_; }
    LCID lcid() const { return attr_.lcid; }
    UINT indexOf(const TypeDescription* type) const;
    bool hasGuid(REFGUID guid, const TypeDescription* except) const;

    // The number that stands for a type in this library's descriptions.
    HREFTYPE addReference(ITypeInfo* typeInfo);
    // The type that a number stands for; empty for a number that was never given.
    ComPtr<ITypeInfo> resolve(HREFTYPE refType) const;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;

    // ITypeLib
    UINT STDMETHODCALLTYPE GetTypeInfoCount() override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, ITypeInfo** typeInfo) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoType(UINT index, TYPEKIND* kind) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoOfGuid(REFGUID guid, ITypeInfo** typeInfo) override;
    HRESULT STDMETHODCALLTYPE GetLibAttr(TLIBATTR** libAttr) override;
    HRESULT STDMETHODCALLTYPE GetTypeComp(ITypeComp** comp) override;
    HRESULT STDMETHODCALLTYPE GetDocumentation(INT index, BSTR* name, BSTR* docString,
                                               DWORD* helpContext, BSTR* helpFile) override;
    HRESULT STDMETHODCALLTYPE IsName(LPOLESTR name, ULONG hash, BOOL* isName) override;
    HRESULT STDMETHODCALLTYPE FindName(LPOLESTR name, ULONG hash, ITypeInfo** typeInfos,
                                       MEMBERID* memids, USHORT* found) override;
    void STDMETHODCALLTYPE ReleaseTLibAttr(TLIBATTR* libAttr) override;

    // ICreateTypeLib2
    HRESULT STDMETHODCALLTYPE CreateTypeInfo(LPOLESTR name, TYPEKIND kind,
                                             ICreateTypeInfo** typeInfo) override;
    HRESULT STDMETHODCALLTYPE SetName(LPOLESTR name) override;
    HRESULT STDMETHODCALLTYPE SetVersion(WORD major, WORD minor) override;
    HRESULT STDMETHODCALLTYPE SetGuid(REFGUID guid) override;
    HRESULT STDMETHODCALLTYPE SetDocString(LPOLESTR text) override;
    HRESULT STDMETHODCALLTYPE SetHelpFileName(LPOLESTR fileName) override;
    HRESULT STDMETHODCALLTYPE SetHelpContext(DWORD helpContext) override;
    HRESULT STDMETHODCALLTYPE SetLcid(LCID lcid) override;
    HRESULT STDMETHODCALLTYPE SetLibFlags(UINT flags) override;
    HRESULT STDMETHODCALLTYPE SaveAllChanges() override;
    HRESULT STDMETHODCALLTYPE DeleteTypeInfo(LPOLESTR name) override;
    HRESULT STDMETHODCALLTYPE SetCustData(REFGUID guid, VARIANT* value) override;
    HRESULT STDMETHODCALLTYPE SetHelpStringContext(ULONG context) override;
    HRESULT STDMETHODCALLTYPE SetHelpStringDll(LPOLESTR fileName) override;

  private:
    ~TypeLibrary() override = default;

    // A type of this library, or a counted one of another.
    struct Reference {
        TypeDescription* own = nullptr;
        ComPtr<ITypeInfo> foreign;
    };

    TLIBATTR attr_{};
    OptionalText name_;
    OptionalText doc_;
    OptionalText helpFile_;
    DWORD helpContext_ = 0;
    std::vector<std::unique_ptr<TypeDescription>> types_;
    std::vector<Reference> typeReferences_;
};

// A new library named "stdole" 2.0, as LoadRegTypeLib gives it.
HRESULT createStandardLibrary(ITypeLib** library);

} // namespace platform
