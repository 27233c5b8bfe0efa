// The walks over variables, functions, events and inherited interfaces.
#include "comruntime/type_reader.h"

#include "comruntime/source_interface.h"
#include "platform/typeinfo_holders.h"

#include <string_view>

namespace axlink2 {
namespace {

using Pointers = TypeReducer::Pointers;
using platform::FuncDescHolder;
using platform::TypeAttrHolder;
using platform::VarDescHolder;

// Inherited interfaces that are walked at most; type information that inherits from itself ends
// here.
constexpr int mostInterfaces = 256;

COMMemberEntry& entryOf(COMMemberMap& members, MEMBERID member, std::string name) {
    auto& entry = members[member];
    if (!entry) entry = std::make_unique<COMMemberEntry>(std::move(name));
    return *entry;
}

// The parameters of a function; none when their number lies or they are missing.
struct Parameters {
    explicit Parameters(const FUNCDESC& function)
        : first(function.lprgelemdescParam),
          count(first && function.cParams > 0 ? static_cast<std::size_t>(function.cParams) : 0),
          readable(first || function.cParams <= 0) {}

    const ELEMDESC* begin() const { return first; }
    const ELEMDESC* end() const { return first + count; }

    const ELEMDESC* first;
    std::size_t count;
    bool readable;
};

void append(COMMemberSignature& signature, const ELEMDESC& parameter, COMMemberType type,
            std::uint16_t flags) {
    signature.parameterTypes.push_back(std::move(type));
    signature.parameterFlags.push_back(flags);
    signature.byReference.push_back(parameter.tdesc.vt == VT_PTR);
}

// The parameters' names; fewer, or none, when the type information gives fewer.
std::vector<std::string> parameterNames(ITypeInfo* type, const FUNCDESC& function,
                                        std::size_t count) {
    if (count == 0) return {};
    std::vector<BSTR> raw(count + 1, nullptr);
    std::vector<platform::ScopedBstr> names;
    names.reserve(raw.size()); // so that nothing fails while the names belong to nobody
    UINT given = 0;
    const HRESULT hr = askServer([&] {
        return type->GetNames(function.memid, raw.data(), static_cast<UINT>(raw.size()), &given);
    });
    if (SUCCEEDED(hr))
        for (BSTR name : raw)
            names.push_back(platform::ScopedBstr::adopt(name));

    std::vector<std::string> result;
    for (std::size_t index = 1; index < names.size() && index < given; ++index)
        result.push_back(narrowName(names[index].get()).value_or(std::string()));
    return result;
}

// The names of the parameters that aren't the result, in order. A signature may end before them.
std::vector<std::string> keptNames(ITypeInfo* type, const FUNCDESC& function,
                                   const Parameters& parameters) {
    std::vector<std::string> names = parameterNames(type, function, parameters.count);
    std::size_t index = 0;
    std::erase_if(names, [&](const std::string&) {
        return parameters.first[index++].paramdesc.wParamFlags & PARAMFLAG_FRETVAL;
    });
    return names;
}

class Reader {
  public:
    Reader(IDispatch* server, COMTypeDescription& description)
        : server_(server), description_(description), reducer_(description.enumerations) {}

    void walkInterface(ITypeInfo* type, const TYPEATTR& attributes) {
        walkVariables(type, attributes);
        walkFunctions(type, attributes);
    }
    void walkEvents(ITypeInfo* type);
    void walkBases(ITypeInfo* type, const TYPEATTR& attributes);

  private:
    void walkVariables(ITypeInfo* type, const TYPEATTR& attributes);
    void readVariable(ITypeInfo* type, const VARDESC& variable);
    void walkFunctions(ITypeInfo* type, const TYPEATTR& attributes);
    void readFunction(ITypeInfo* type, const FUNCDESC& function);
    std::unique_ptr<COMMemberSignature> readSignature(ITypeInfo* type, const FUNCDESC& function);
    void readEvent(ITypeInfo* type, const FUNCDESC& function);
    void walkBase(ITypeInfo* base);

    IDispatch* server_;
    COMTypeDescription& description_;
    TypeReducer reducer_;
    int interfacesLeft_ = mostInterfaces;
};

void Reader::walkVariables(ITypeInfo* type, const TYPEATTR& attributes) {
    for (UINT index = 0; index < attributes.cVars; ++index) {
        const VarDescHolder variable(type, &ITypeInfo::GetVarDesc, index);
        if (variable && !(variable->wVarFlags & (VARFLAG_FHIDDEN | VARFLAG_FRESTRICTED)))
            readVariable(type, *variable);
    }
}

void Reader::readVariable(ITypeInfo* type, const VARDESC& variable) {
    auto name = readName(type, variable.memid, server_);
    if (!name || variable.varkind != VAR_DISPATCH) return;
    auto signature = std::make_unique<COMMemberSignature>();
    signature->returnType = reducer_.reduce(type, variable.elemdescVar.tdesc, Pointers::Keep, true);
    if (isUnsupported(signature->returnType)) return;

    auto& entry = entryOf(description_.members, variable.memid, std::move(*name));
    entry.set(INVOKE_PROPERTYGET, std::move(signature));
    if (!(variable.wVarFlags & VARFLAG_FREADONLY))
        entry.set(INVOKE_PROPERTYPUT, std::make_unique<COMMemberSignature>());
}

void Reader::walkFunctions(ITypeInfo* type, const TYPEATTR& attributes) {
    for (UINT index = 0; index < attributes.cFuncs; ++index) {
        const FuncDescHolder function(type, &ITypeInfo::GetFuncDesc, index);
        if (function && !(function->wFuncFlags & (FUNCFLAG_FRESTRICTED | FUNCFLAG_FHIDDEN)))
            readFunction(type, *function);
    }
}

void Reader::readFunction(ITypeInfo* type, const FUNCDESC& function) {
    auto name = readName(type, function.memid, server_);
    if (!name) return;
    auto signature = readSignature(type, function);
    if (!signature) return;
    entryOf(description_.members, function.memid, std::move(*name))
        .set(function.invkind, std::move(signature));
}

// Null for a function that a type in it makes unusable.
std::unique_ptr<COMMemberSignature> Reader::readSignature(ITypeInfo* type,
                                                          const FUNCDESC& function) {
    const Parameters parameters(function);
    if (!parameters.readable) return nullptr;
    auto signature = std::make_unique<COMMemberSignature>();
    COMMemberType result = reducer_.reduce(type, function.elemdescFunc.tdesc, Pointers::Keep, true);

    bool ended = false;
    for (const ELEMDESC& parameter : parameters) {
        std::uint16_t flags = parameter.paramdesc.wParamFlags;
        if (!(flags & (PARAMFLAG_FIN | PARAMFLAG_FOUT))) flags |= PARAMFLAG_FIN;
        const bool isResult = flags & PARAMFLAG_FRETVAL;
        // A property ends before its first optional parameter; only its result stands behind that.
        ended = ended || (function.invkind != INVOKE_FUNC && (flags & PARAMFLAG_FOPT));
        if (ended && !isResult) continue;
        const bool output = isResult || (flags & PARAMFLAG_FOUT);
        COMMemberType reduced = reducer_.reduce(type, parameter.tdesc, Pointers::Strip, output);
        if (isUnsupported(reduced)) return nullptr;
        if (isResult)
            result = std::move(reduced);
        else
            append(*signature, parameter, std::move(reduced), flags);
        if ((flags & (PARAMFLAG_FIN | PARAMFLAG_FOPT)) == PARAMFLAG_FIN)
            signature->requiresInput = true;
    }
    if (!signature->parameterTypes.empty() && function.invkind != INVOKE_PROPERTYPUT)
        signature->parameterNames = keptNames(type, function, parameters);
    signature->optionalCount = function.cParamsOpt;
    signature->returnType = std::move(result);
    if (function.invkind != INVOKE_PROPERTYPUT && isUnsupported(signature->returnType))
        return nullptr;
    return signature;
}

void Reader::walkEvents(ITypeInfo* type) {
    description_.sourceInterfaceIID = findSourceInterface(type);
    if (IsEqualGUID(description_.sourceInterfaceIID, GUID_NULL)) return;
    const auto library = containingLibrary(type);
    if (!library) return;
    const auto source = obtain<ITypeInfo>([&](ITypeInfo** out) {
        return library->GetTypeInfoOfGuid(description_.sourceInterfaceIID, out);
    });
    const TypeAttrHolder attributes(source.get(), &ITypeInfo::GetTypeAttr);
    for (UINT index = 0; attributes && index < attributes->cFuncs; ++index) {
        const FuncDescHolder function(source.get(), &ITypeInfo::GetFuncDesc, index);
        if (function && !(function->wFuncFlags & (FUNCFLAG_FRESTRICTED | FUNCFLAG_FHIDDEN)))
            readEvent(source.get(), *function);
    }
}

void Reader::readEvent(ITypeInfo* type, const FUNCDESC& function) {
    if (function.invkind != INVOKE_FUNC) return;
    auto name = readName(type, function.memid, nullptr);
    const Parameters parameters(function);
    if (!name || !parameters.readable) return;

    auto signature = std::make_unique<COMMemberSignature>();
    signature->parameterNames = parameterNames(type, function, parameters.count);
    for (const ELEMDESC& parameter : parameters) {
        COMMemberType reduced = reducer_.reduce(type, parameter.tdesc, Pointers::Strip, true);
        if (isUnsupported(reduced)) return;
        append(*signature, parameter, std::move(reduced), parameter.paramdesc.wParamFlags);
    }
    entryOf(description_.events, function.memid, std::move(*name))
        .set(INVOKE_FUNC, std::move(signature));
}

// IUnknown and IDispatch are every server's own and add no members.
bool isRootInterface(ITypeInfo* base) {
    platform::ScopedBstr name;
    platform::ScopedBstr documentation;
    if (FAILED(askServer([&] {
            return base->GetDocumentation(MEMBERID_NIL, name.put(), documentation.put(), nullptr,
                                          nullptr);
        }))) {
        (void)name.detach();
        (void)documentation.detach();
        return true; // without documentation the base is passed over as well
    }
    const platform::OleView text = platform::viewOf(name.get());
    return text == OLESTR("IUnknown") || text == OLESTR("IDispatch");
}

void Reader::walkBases(ITypeInfo* type, const TYPEATTR& attributes) {
    for (UINT index = 0; index < attributes.cImplTypes && interfacesLeft_ > 0; ++index) {
        const auto base = implementedType(type, index);
        if (base && !isRootInterface(base.get())) walkBase(base.get());
    }
}

void Reader::walkBase(ITypeInfo* base) {
    --interfacesLeft_;
    const TypeAttrHolder attributes(base, &ITypeInfo::GetTypeAttr);
    if (!attributes) return;
    walkInterface(base, *attributes);
    walkBases(base, *attributes);
}

} // namespace

void readTypeDescription(ITypeInfo* typeInfo, IDispatch* server, COMTypeDescription& description) {
    const TypeAttrHolder attributes(typeInfo, &ITypeInfo::GetTypeAttr);
    if (!attributes) return;
    Reader reader(server, description);
    reader.walkInterface(typeInfo, *attributes);
    reader.walkEvents(typeInfo);
    reader.walkBases(typeInfo, *attributes);
}

} // namespace axlink2
