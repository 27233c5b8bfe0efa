// Writes a type library through ICreateTypeLib2 and ICreateTypeInfo.
#include "servers/kit/type_library.h"

#include "platform/text.h"
#include "servers/kit/errors.h"
#include "servers/kit/guid.h"

#include <algorithm>
#include <deque>
#include <map>
#include <memory>

namespace kit {

namespace {

using platform::ComPtr;
using platform::OleString;

constexpr GUID stdoleLibrary = guid("00020430-0000-0000-C000-000000000046");

// COM's text of a name; the API takes it without const but doesn't write to it.
class Name {
  public:
    Name(const std::string& text) : text_(platform::toOle(text)) {}
    operator LPOLESTR() { return text_.data(); }

  private:
    OleString text_;
};

ComPtr<ITypeInfo> dispatchInterface() {
    ComPtr<ITypeLib> library;
    check(LoadRegTypeLib(stdoleLibrary, 2, 0, 0, library.put()));
    ComPtr<ITypeInfo> info;
    check(library->GetTypeInfoOfGuid(IID_IDispatch, info.put()));
    return info;
}

// A type under construction.
struct Draft {
    ComPtr<ICreateTypeInfo> writer;
    ComPtr<ITypeInfo> info;

    HREFTYPE refer(ITypeInfo* target) const {
        HREFTYPE reference = 0;
        check(writer->AddRefTypeInfo(target, &reference));
        return reference;
    }
};

class LibraryWriter {
  public:
    explicit LibraryWriter(const LibrarySpec& spec) : spec_(spec) {
        OleString fileName = platform::toOle(spec.name + ".tlb");
        check(CreateTypeLib2(SYS_WIN64, fileName.c_str(), library_.put()));
        check(library_->SetName(Name(spec.name)));
        check(library_->SetGuid(spec.guid));
        check(library_->SetVersion(1, 0));
    }

    ComPtr<ITypeLib> write() {
        for (const auto& type : spec_.types)
            begin(type.name, type.kind);
        for (const auto& entry : spec_.interfaces)
            check(begin(entry.name, entry.kind).writer->SetGuid(entry.iid));
        for (const auto& coclass : spec_.coclasses)
            check(begin(coclass.name, TKIND_COCLASS).writer->SetGuid(coclass.clsid));
        for (const auto& type : spec_.types)
            writeUserType(type);
        for (const auto& entry : spec_.interfaces)
            writeInterface(entry);
        for (const auto& coclass : spec_.coclasses)
            writeCoclass(coclass);
        return platform::queryInterface<ITypeLib>(library_.get(), IID_ITypeLib);
    }

  private:
    Draft& begin(const std::string& name, TYPEKIND kind) {
        Draft& draft = drafts_[name];
        check(library_->CreateTypeInfo(Name(name), kind, draft.writer.put()));
        draft.info = platform::queryInterface<ITypeInfo>(draft.writer.get(), IID_ITypeInfo);
        return draft;
    }

    const std::string& nameOf(const TypeSpec& type) const {
        if (!type.cppType) return type.name;
        const auto found = std::ranges::find(spec_.types, type.cppType, &UserTypeSpec::cppType);
        if (found == spec_.types.end())
            throw std::out_of_range("an enumeration is used but not declared");
        return found->name;
    }

    // The TYPEDESC of a type; what it points to lives until the next member is begun.
    TYPEDESC describe(const Draft& owner, const TypeSpec& type) {
        TYPEDESC desc{};
        desc.vt = type.vt;
        if (type.vt == VT_USERDEFINED) {
            desc.hreftype = owner.refer(drafts_.at(nameOf(type)).info.get());
        } else if (type.vt == VT_CARRAY) {
            desc.lpadesc = describeArray(owner, type);
        } else if (!type.inner.empty()) {
            desc.lptdesc = &pointedAt_.emplace_back(describe(owner, type.inner.front()));
        }
        return desc;
    }

    ARRAYDESC* describeArray(const Draft& owner, const TypeSpec& type) {
        const std::size_t size = sizeof(ARRAYDESC) + type.bounds.size() * sizeof(SAFEARRAYBOUND);
        auto& block = arrays_.emplace_back(std::make_unique<std::byte[]>(size));
        auto* desc = new (block.get()) ARRAYDESC{};
        desc->tdescElem = describe(owner, type.inner.front());
        desc->cDims = static_cast<USHORT>(type.bounds.size());
        std::ranges::copy(type.bounds, static_cast<SAFEARRAYBOUND*>(desc->rgbounds));
        return desc;
    }

    ELEMDESC element(const Draft& owner, const TypeSpec& type, WORD flags = 0) {
        ELEMDESC desc{};
        desc.tdesc = describe(owner, type);
        desc.paramdesc.wParamFlags = flags;
        return desc;
    }

    void forgetPointedAt() {
        pointedAt_.clear();
        arrays_.clear();
    }

    void writeUserType(const UserTypeSpec& type) {
        const Draft& draft = drafts_.at(type.name);
        forgetPointedAt();
        if (type.kind == TKIND_ALIAS) {
            TYPEDESC target = describe(draft, type.target);
            check(draft.writer->SetTypeDescAlias(&target));
        }
        UINT index = 0;
        for (const auto& constant : type.constants)
            writeConstant(draft, index++, constant);
        for (const auto& field : type.fields) {
            VARDESC desc{};
            desc.memid = static_cast<MEMBERID>(0x40000000 + index);
            desc.varkind = VAR_PERINSTANCE;
            desc.elemdescVar = element(draft, field.type);
            check(draft.writer->AddVarDesc(index, &desc));
            check(draft.writer->SetVarName(index++, Name(field.name)));
        }
        check(draft.writer->LayOut());
    }

    static void writeConstant(const Draft& draft, UINT index, const ConstantSpec& constant) {
        platform::ScopedVariant value;
        value->vt = VT_I8;
        value->llVal = constant.value;
        check(VariantChangeType(value.inOut(), value.inOut(), 0, constant.vt));
        VARDESC desc{};
        desc.memid = static_cast<MEMBERID>(0x40000000 + index);
        desc.varkind = VAR_CONST;
        desc.lpvarValue = value.inOut();
        desc.elemdescVar.tdesc.vt = constant.vt;
        check(draft.writer->AddVarDesc(index, &desc));
        check(draft.writer->SetVarName(index, Name(constant.name)));
    }

    void writeInterface(const InterfaceSpec& spec) {
        const Draft& draft = drafts_.at(spec.name);
        ITypeInfo* base = spec.base.empty() ? dispatch_.get() : drafts_.at(spec.base).info.get();
        check(draft.writer->AddImplType(0, draft.refer(base)));
        UINT index = 0;
        for (const auto& function : spec.functions)
            writeFunction(draft, spec.kind, index++, function);
        index = 0;
        for (const auto& variable : spec.variables) {
            forgetPointedAt();
            VARDESC desc{};
            desc.memid = variable.dispid;
            desc.varkind = VAR_DISPATCH;
            desc.wVarFlags = variable.flags;
            desc.elemdescVar = element(draft, variable.type);
            check(draft.writer->AddVarDesc(index, &desc));
            check(draft.writer->SetVarName(index++, Name(variable.name)));
        }
        check(draft.writer->LayOut());
    }

    void writeFunction(const Draft& draft, TYPEKIND kind, UINT index, const FunctionSpec& spec) {
        forgetPointedAt();
        std::vector<ELEMDESC> params;
        SHORT optional = 0;
        for (const auto& param : spec.params) {
            params.push_back(element(draft, param.type, param.flags));
            if (param.flags & PARAMFLAG_FOPT) ++optional;
        }
        FUNCDESC desc{};
        desc.memid = spec.dispid;
        desc.funckind = kind == TKIND_DISPATCH ? FUNC_DISPATCH : FUNC_PUREVIRTUAL;
        desc.invkind = spec.kind;
        desc.callconv = CC_STDCALL;
        desc.lprgelemdescParam = params.data();
        desc.cParams = static_cast<SHORT>(params.size());
        desc.cParamsOpt = spec.optionalCount.value_or(optional);
        desc.elemdescFunc = element(draft, spec.result);
        desc.wFuncFlags = spec.flags;
        check(draft.writer->AddFuncDesc(index, &desc));
        writeNames(draft, index, spec);
    }

    static void writeNames(const Draft& draft, UINT index, const FunctionSpec& spec) {
        std::vector<OleString> names{platform::toOle(spec.name)};
        for (const auto& param : spec.params)
            names.push_back(platform::toOle(param.name));
        if (spec.kind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF) && names.size() > 1)
            names.pop_back();
        std::vector<LPOLESTR> pointers;
        pointers.reserve(names.size());
        for (auto& name : names)
            pointers.push_back(name.data());
        const auto count = static_cast<UINT>(pointers.size());
        check(draft.writer->SetFuncAndParamNames(index, pointers.data(), count));
    }

    void writeCoclass(const CoclassSpec& spec) {
        const Draft& draft = drafts_.at(spec.name);
        check(draft.writer->SetTypeFlags(TYPEFLAG_FCANCREATE));
        UINT index = 0;
        for (const auto& implemented : spec.interfaces) {
            const Draft& target = drafts_.at(implemented.interfaceName);
            check(draft.writer->AddImplType(index, draft.refer(target.info.get())));
            check(draft.writer->SetImplTypeFlags(index++, implemented.flags));
        }
        check(draft.writer->LayOut());
    }

    const LibrarySpec& spec_;
    ComPtr<ICreateTypeLib2> library_;
    ComPtr<ITypeInfo> dispatch_ = dispatchInterface();
    std::map<std::string, Draft> drafts_;
    std::deque<TYPEDESC> pointedAt_;
    std::deque<std::unique_ptr<std::byte[]>> arrays_;
};

} // namespace

ComPtr<ITypeLib> makeTypeLibrary(const LibrarySpec& spec) { return LibraryWriter(spec).write(); }

} // namespace kit
