// The built-in library "stdole": the two root interfaces and the records of their methods.
#include "platform/portable/typeinfo_library.h"

#include <array>
#include <span>

namespace platform {
namespace {

// A field, parameter or result: its type from the outside in (VT_EMPTY where the chain has ended
// earlier), and the record that VT_USERDEFINED stands for.
struct Element {
    const OLECHAR* name;
    std::array<VARTYPE, 3> chain;
    USHORT flags = PARAMFLAG_NONE;
    std::size_t record = 0;
};

struct Method {
    const OLECHAR* name;
    VARTYPE result;
    std::span<const Element> parameters;
};

struct Record {
    const OLECHAR* name;
    std::span<const Element> fields;
};

struct Interface {
    const OLECHAR* name;
    std::uint32_t iidStart;
    std::span<const Method> methods;
};

constexpr USHORT in = PARAMFLAG_FIN;
constexpr USHORT out = PARAMFLAG_FOUT;
constexpr std::size_t guidRecord = 0;
constexpr std::size_t dispParamsRecord = 1;
constexpr std::size_t excepInfoRecord = 2;

constexpr Element guidFields[] = {
    {OLESTR("Data1"), {VT_UI4}},
    {OLESTR("Data2"), {VT_UI2}},
    {OLESTR("Data3"), {VT_UI2}},
    {OLESTR("Data4"), {VT_CARRAY, VT_UI1}},
};
constexpr Element dispParamsFields[] = {
    {OLESTR("rgvarg"), {VT_PTR, VT_VARIANT}},
    {OLESTR("rgdispidNamedArgs"), {VT_PTR, VT_I4}},
    {OLESTR("cArgs"), {VT_UINT}},
    {OLESTR("cNamedArgs"), {VT_UINT}},
};
constexpr Element excepInfoFields[] = {
    {OLESTR("wCode"), {VT_UI2}},
    {OLESTR("wReserved"), {VT_UI2}},
    {OLESTR("bstrSource"), {VT_BSTR}},
    {OLESTR("bstrDescription"), {VT_BSTR}},
    {OLESTR("bstrHelpFile"), {VT_BSTR}},
    {OLESTR("dwHelpContext"), {VT_UI4}},
    {OLESTR("pvReserved"), {VT_PTR, VT_VOID}},
    {OLESTR("pfnDeferredFillIn"), {VT_PTR, VT_VOID}},
    {OLESTR("scode"), {VT_ERROR}},
};
constexpr Record records[] = {
    {OLESTR("GUID"), guidFields},
    {OLESTR("DISPPARAMS"), dispParamsFields},
    {OLESTR("EXCEPINFO"), excepInfoFields},
};

constexpr Element queryInterface[] = {
    {OLESTR("riid"), {VT_PTR, VT_USERDEFINED}, in, guidRecord},
    {OLESTR("ppvObj"), {VT_PTR, VT_PTR, VT_VOID}, out},
};
constexpr Element getTypeInfoCount[] = {{OLESTR("pctinfo"), {VT_PTR, VT_UINT}, out}};
constexpr Element getTypeInfo[] = {
    {OLESTR("itinfo"), {VT_UINT}, in},
    {OLESTR("lcid"), {VT_UI4}, in},
    {OLESTR("pptinfo"), {VT_PTR, VT_PTR, VT_VOID}, out},
};
constexpr Element getIdsOfNames[] = {
    {OLESTR("riid"), {VT_PTR, VT_USERDEFINED}, in, guidRecord},
    {OLESTR("rgszNames"), {VT_PTR, VT_PTR, VT_I1}, in},
    {OLESTR("cNames"), {VT_UINT}, in},
    {OLESTR("lcid"), {VT_UI4}, in},
    {OLESTR("rgdispid"), {VT_PTR, VT_I4}, out},
};
constexpr Element invoke[] = {
    {OLESTR("dispidMember"), {VT_I4}, in},
    {OLESTR("riid"), {VT_PTR, VT_USERDEFINED}, in, guidRecord},
    {OLESTR("lcid"), {VT_UI4}, in},
    {OLESTR("wFlags"), {VT_UI2}, in},
    {OLESTR("pdispparams"), {VT_PTR, VT_USERDEFINED}, in, dispParamsRecord},
    {OLESTR("pvarResult"), {VT_PTR, VT_VARIANT}, out},
    {OLESTR("pexcepinfo"), {VT_PTR, VT_USERDEFINED}, out, excepInfoRecord},
    {OLESTR("puArgErr"), {VT_PTR, VT_UINT}, out},
};
constexpr Method unknownMethods[] = {
    {OLESTR("QueryInterface"), VT_HRESULT, queryInterface},
    {OLESTR("AddRef"), VT_UI4, {}},
    {OLESTR("Release"), VT_UI4, {}},
};
constexpr Method dispatchMethods[] = {
    {OLESTR("GetTypeInfoCount"), VT_HRESULT, getTypeInfoCount},
    {OLESTR("GetTypeInfo"), VT_HRESULT, getTypeInfo},
    {OLESTR("GetIDsOfNames"), VT_HRESULT, getIdsOfNames},
    {OLESTR("Invoke"), VT_HRESULT, invoke},
};
// Each extends the one before it.
constexpr Interface interfaces[] = {
    {OLESTR("IUnknown"), 0x00000000, unknownMethods},
    {OLESTR("IDispatch"), 0x00020400, dispatchMethods},
};

constexpr GUID comGuid(std::uint32_t first) {
    return {first, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
}

// Writes through the interfaces that any server describes itself with; the first failure stays.
struct Failed {
    HRESULT hr;
};

class StandardLibraryWriter {
  public:
    explicit StandardLibraryWriter(ICreateTypeLib2* library) : library_(library) {}

    // Raises `Failed` at the first step that fails.
    void write() {
        keep(library_->SetName(text(OLESTR("stdole"))));
        keep(library_->SetGuid(comGuid(0x00020430)));
        keep(library_->SetVersion(2, 0));
        keep(library_->SetDocString(text(OLESTR("OLE Automation"))));
        for (std::size_t i = 0; i < std::size(records); ++i) {
            recordReferences_[i] = writeRecord(records[i]);
        }
        HREFTYPE base = 0;
        for (const Interface& described : interfaces) {
            base = writeInterface(described, base);
        }
    }

  private:
    static void keep(HRESULT hr) {
        if (FAILED(hr)) throw Failed{hr};
    }

    // Names are handed over as changeable text, which nobody changes.
    static LPOLESTR text(const OLECHAR* fixed) { return const_cast<LPOLESTR>(fixed); }

    ComPtr<ICreateTypeInfo> create(const OLECHAR* name, TYPEKIND kind) {
        ComPtr<ICreateTypeInfo> type;
        keep(library_->CreateTypeInfo(text(name), kind, type.put()));
        return type;
    }

    HREFTYPE finish(const ComPtr<ICreateTypeInfo>& type) {
        keep(type->LayOut());
        const auto described = platform::queryInterface<ITypeInfo>(type.get(), IID_ITypeInfo);
        HREFTYPE reference = 0;
        keep(type->AddRefTypeInfo(described.get(), &reference));
        return reference;
    }

    ELEMDESC describe(DescMemory& memory, const Element& element) const {
        ELEMDESC result{};
        result.paramdesc.wParamFlags = element.flags;
        TYPEDESC* type = &result.tdesc;
        for (std::size_t i = 0;; ++i) {
            type->vt = element.chain[i];
            if (type->vt == VT_USERDEFINED) {
                type->hreftype = recordReferences_[element.record];
            }
            if (type->vt == VT_CARRAY) {
                type->lpadesc = memory.make<ARRAYDESC>();
                type->lpadesc->tdescElem.vt = element.chain[i + 1];
                type->lpadesc->cDims = 1;
                type->lpadesc->rgbounds[0].cElements = sizeof(GUID::Data4);
            }
            if (type->vt != VT_PTR) {
                return result;
            }
            type->lptdesc = memory.make<TYPEDESC>();
            type = type->lptdesc;
        }
    }

    HREFTYPE writeRecord(const Record& record) {
        const ComPtr<ICreateTypeInfo> type = create(record.name, TKIND_RECORD);
        for (UINT i = 0; i < record.fields.size(); ++i) {
            DescMemory memory;
            VARDESC field{};
            field.memid = MEMBERID_NIL;
            field.varkind = VAR_PERINSTANCE;
            field.elemdescVar = describe(memory, record.fields[i]);
            keep(type->AddVarDesc(i, &field));
            keep(type->SetVarName(i, text(record.fields[i].name)));
        }
        return finish(type);
    }

    HREFTYPE writeInterface(const Interface& described, HREFTYPE base) {
        const ComPtr<ICreateTypeInfo> type = create(described.name, TKIND_INTERFACE);
        keep(type->SetGuid(comGuid(described.iidStart)));
        keep(type->SetTypeFlags(TYPEFLAG_FRESTRICTED));
        if (base != 0) {
            keep(type->AddImplType(0, base));
        }
        for (UINT i = 0; i < described.methods.size(); ++i) {
            writeMethod(type, i, described.methods[i]);
        }
        return finish(type);
    }

    void writeMethod(const ComPtr<ICreateTypeInfo>& type, UINT index, const Method& method) {
        DescMemory memory;
        std::vector<ELEMDESC> parameters;
        std::vector<LPOLESTR> names{text(method.name)};
        for (const Element& parameter : method.parameters) {
            parameters.push_back(describe(memory, parameter));
            names.push_back(text(parameter.name));
        }
        FUNCDESC function{};
        function.memid = MEMBERID_NIL;
        function.lprgelemdescParam = parameters.data();
        function.cParams = static_cast<SHORT>(parameters.size());
        function.funckind = FUNC_PUREVIRTUAL;
        function.invkind = INVOKE_FUNC;
        function.callconv = CC_STDCALL;
        function.elemdescFunc.tdesc.vt = method.result;
        function.wFuncFlags = FUNCFLAG_FRESTRICTED;
        keep(type->AddFuncDesc(index, &function));
        keep(type->SetFuncAndParamNames(index, names.data(), static_cast<UINT>(names.size())));
    }

    ICreateTypeLib2* library_;
    std::array<HREFTYPE, std::size(records)> recordReferences_{};
};

} // namespace

HRESULT createStandardLibrary(ITypeLib** library) {
    ComPtr<ICreateTypeLib2> created;
    const HRESULT hr = CreateTypeLib2(SYS_WIN64, OLESTR("stdole"), created.put());
    if (FAILED(hr)) return hr;
    try {
        StandardLibraryWriter(created.get()).write();
    } catch (const Failed& failure) {
        return failure.hr;
    }
    return created->QueryInterface(IID_ITypeLib, reinterpret_cast<void**>(library));
}

} // namespace platform
