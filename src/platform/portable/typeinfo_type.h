// One type of a library: what ITypeInfo reads and ICreateTypeInfo writes.
#pragma once

#include "platform/holders.h"
#include "platform/portable/typeinfo_copy.h"

#include <memory>
#include <optional>

namespace platform {

class TypeLibrary;

// A text that may never have been set, in which case a caller gets a null BSTR.
using OptionalText = std::optional<OleString>;

// What GetDocumentation gives, of a library, a type or a member.
struct Documentation {
    const OptionalText& name;
    const OptionalText& doc;
    DWORD helpContext;
    const OptionalText& helpFile;

    // Fills the out-parameters, which may be null: all of them or, without memory, none.
    HRESULT give(BSTR* nameOut, BSTR* docOut, DWORD* contextOut, BSTR* fileOut) const;
};

// Owned by its library; a reference to the type is one to the library.
class TypeDescription final : public ICreateTypeInfo, public ITypeInfo {
  public:
    TypeDescription(TypeLibrary& library, OleString name, TYPEKIND kind);
    ~TypeDescription() = default;

    const OleString& name() const { return name_; }
    const GUID& guid() const { return attr_.guid; }
    TYPEKIND kind() const { return attr_.typekind; }

    // The name as the type or one of its members or parameters spells it; null when none does.
    const OleString* findSpelling(OleView name) const;
    // The id of the member with that name.
    std::optional<MEMBERID> findMember(OleView name) const;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    // ITypeInfo
    HRESULT STDMETHODCALLTYPE GetTypeAttr(TYPEATTR** typeAttr) override;
    HRESULT STDMETHODCALLTYPE GetTypeComp(ITypeComp** comp) override;
    HRESULT STDMETHODCALLTYPE GetFuncDesc(UINT index, FUNCDESC** funcDesc) override;
    HRESULT STDMETHODCALLTYPE GetVarDesc(UINT index, VARDESC** varDesc) override;
    HRESULT STDMETHODCALLTYPE GetNames(MEMBERID memid, BSTR* names, UINT maxNames,
                                       UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetRefTypeOfImplType(UINT index, HREFTYPE* refType) override;
    HRESULT STDMETHODCALLTYPE GetImplTypeFlags(UINT index, INT* flags) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(LPOLESTR* names, UINT count, MEMBERID* memids) override;
    HRESULT STDMETHODCALLTYPE Invoke(PVOID instance, MEMBERID memid, WORD flags, DISPPARAMS* params,
                                     VARIANT* result, EXCEPINFO* excepInfo, UINT* argErr) override;
    HRESULT STDMETHODCALLTYPE GetDocumentation(MEMBERID memid, BSTR* name, BSTR* docString,
                                               DWORD* helpContext, BSTR* helpFile) override;
    HRESULT STDMETHODCALLTYPE GetDllEntry(MEMBERID memid, INVOKEKIND invkind, BSTR* dllName,
                                          BSTR* name, WORD* ordinal) override;
    HRESULT STDMETHODCALLTYPE GetRefTypeInfo(HREFTYPE refType, ITypeInfo** typeInfo) override;
    HRESULT STDMETHODCALLTYPE AddressOfMember(MEMBERID memid, INVOKEKIND invkind,
                                              PVOID* address) override;
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, PVOID* object) override;
    HRESULT STDMETHODCALLTYPE GetMops(MEMBERID memid, BSTR* mops) override;
    HRESULT STDMETHODCALLTYPE GetContainingTypeLib(ITypeLib** library, UINT* index) override;
    void STDMETHODCALLTYPE ReleaseTypeAttr(TYPEATTR* typeAttr) override;
    void STDMETHODCALLTYPE ReleaseFuncDesc(FUNCDESC* funcDesc) override;
    void STDMETHODCALLTYPE ReleaseVarDesc(VARDESC* varDesc) override;

    // ICreateTypeInfo
    HRESULT STDMETHODCALLTYPE SetGuid(REFGUID guid) override;
    HRESULT STDMETHODCALLTYPE SetTypeFlags(UINT flags) override;
    HRESULT STDMETHODCALLTYPE SetDocString(LPOLESTR text) override;
    HRESULT STDMETHODCALLTYPE SetHelpContext(DWORD helpContext) override;
    HRESULT STDMETHODCALLTYPE SetVersion(WORD major, WORD minor) override;
    HRESULT STDMETHODCALLTYPE AddRefTypeInfo(ITypeInfo* typeInfo, HREFTYPE* refType) override;
    HRESULT STDMETHODCALLTYPE AddFuncDesc(UINT index, FUNCDESC* funcDesc) override;
    HRESULT STDMETHODCALLTYPE AddImplType(UINT index, HREFTYPE refType) override;
    HRESULT STDMETHODCALLTYPE SetImplTypeFlags(UINT index, INT flags) override;
    HRESULT STDMETHODCALLTYPE SetAlignment(WORD alignment) override;
    HRESULT STDMETHODCALLTYPE SetSchema(LPOLESTR schema) override;
    HRESULT STDMETHODCALLTYPE AddVarDesc(UINT index, VARDESC* varDesc) override;
    HRESULT STDMETHODCALLTYPE SetFuncAndParamNames(UINT index, LPOLESTR* names,
                                                   UINT count) override;
    HRESULT STDMETHODCALLTYPE SetVarName(UINT index, LPOLESTR name) override;
    HRESULT STDMETHODCALLTYPE SetTypeDescAlias(TYPEDESC* alias) override;
    HRESULT STDMETHODCALLTYPE DefineFuncAsDllEntry(UINT index, LPOLESTR dllName,
                                                   LPOLESTR procName) override;
    HRESULT STDMETHODCALLTYPE SetFuncDocString(UINT index, LPOLESTR text) override;
    HRESULT STDMETHODCALLTYPE SetVarDocString(UINT index, LPOLESTR text) override;
    HRESULT STDMETHODCALLTYPE SetFuncHelpContext(UINT index, DWORD helpContext) override;
    HRESULT STDMETHODCALLTYPE SetVarHelpContext(UINT index, DWORD helpContext) override;
    HRESULT STDMETHODCALLTYPE SetMops(UINT index, BSTR mops) override;
    HRESULT STDMETHODCALLTYPE SetTypeIdldesc(IDLDESC* idlDesc) override;
    HRESULT STDMETHODCALLTYPE LayOut() override;

  private:
    // A function or a variable: its description, and the texts that belong to it. A function's
    // names are its own and those of its parameters.
    template <class Desc>
    struct Member {
        explicit Member(const Desc& from) : desc(std::make_unique<OwnedDesc<Desc>>(from)) {}
        std::unique_ptr<OwnedDesc<Desc>> desc;
        std::vector<OleString> names;
        OptionalText doc;
        DWORD helpContext = 0;
    };
    using Function = Member<FUNCDESC>;
    using Variable = Member<VARDESC>;

    struct ImplementedType {
        HREFTYPE refType = 0;
        INT flags = 0;
    };

    // Calls use with the first function, else the first variable, of that id; false without one.
    template <class Use>
    bool useMember(MEMBERID memid, Use use) const;
    bool isInterface() const;
    // The interface that this one extends; empty without one.
    ComPtr<ITypeInfo> base() const;
    bool namesAgree(std::size_t index, OleView name) const;
    HRESULT layOutMethods();
    HRESULT layOutFields();
    HRESULT inheritFrom(ITypeInfo* from);
    HRESULT inheritFunction(ITypeInfo* owner, const FUNCDESC& from);
    HRESULT renumber(ITypeInfo* owner, TYPEDESC& type);

    TypeLibrary& library_;
    OleString name_;
    OptionalText doc_;
    DWORD helpContext_ = 0;
    // Counts stay 0 here and are filled into each copy.
    TYPEATTR attr_{};
    DescMemory aliasMemory_;
    std::vector<Function> functions_;
    std::vector<Variable> variables_;
    // Of a dispinterface: the functions of what it extends, which come before its own.
    std::vector<std::unique_ptr<OwnedDesc<FUNCDESC>>> inherited_;
    std::vector<ImplementedType> implemented_;
};

} // namespace platform
