// How a TYPEDESC becomes a COMMemberType.
#include "comruntime/type_reader.h"
#include "platform/typeinfo_holders.h"

namespace axlink2 {
namespace {

// Type information that refers to itself must not keep the reader for ever.
constexpr int longestReferenceChain = 64;

const TYPEDESC* withoutPointers(const TYPEDESC* type) {
    for (int level = 0; type && type->vt == VT_PTR && level < longestReferenceChain; ++level) {
        if (!type->lptdesc) break;
        type = type->lptdesc;
    }
    return type;
}

// The reference behind an alias of an interface, directly or through a pointer.
const TYPEDESC* aliasedReference(const TYPEDESC& alias) {
    const TYPEDESC* type = alias.vt == VT_PTR ? alias.lptdesc : &alias;
    return type && type->vt == VT_USERDEFINED ? type : nullptr;
}

bool isInterface(ITypeInfo* owner, HREFTYPE reference) {
    auto current = ServerPtr<ITypeInfo>::borrow(owner);
    for (int level = 0; level < longestReferenceChain; ++level) {
        auto type = referencedType(current.get(), reference);
        const platform::TypeAttrHolder attributes(type.get(), &ITypeInfo::GetTypeAttr);
        if (!attributes) return false;
        switch (attributes->typekind) {
        case TKIND_INTERFACE:
        case TKIND_DISPATCH:
        case TKIND_COCLASS:
            return true;
        case TKIND_ALIAS: {
            const TYPEDESC* target = aliasedReference(attributes->tdescAlias);
            if (!target) return false;
            reference = target->hreftype;
            break;
        }
        default:
            return false;
        }
        current = type;
    }
    return false;
}

// The type that holds the constants: `type` itself, or what it is an alias of, one level. Empty
// when neither is an enumeration.
ServerPtr<ITypeInfo> enumerationBehind(const ServerPtr<ITypeInfo>& type) {
    const platform::TypeAttrHolder attributes(type.get(), &ITypeInfo::GetTypeAttr);
    if (!attributes) return {};
    if (attributes->typekind == TKIND_ENUM) return type;
    if (attributes->typekind != TKIND_ALIAS || attributes->tdescAlias.vt != VT_USERDEFINED)
        return {};
    auto target = referencedType(type.get(), attributes->tdescAlias.hreftype);
    const platform::TypeAttrHolder targetAttributes(target.get(), &ITypeInfo::GetTypeAttr);
    const bool isEnumeration = targetAttributes && targetAttributes->typekind == TKIND_ENUM;
    return isEnumeration ? target : ServerPtr<ITypeInfo>();
}

// A constant's value as 32 bits; none when it is no constant or doesn't fit.
std::optional<std::int32_t> constantValue(const VARDESC& variable) {
    if (variable.varkind != VAR_CONST || !variable.lpvarValue) return std::nullopt;
    if (variable.lpvarValue->vt == VT_I4) return variable.lpvarValue->lVal;
    platform::ScopedVariant value;
    if (FAILED(platform::changeVariant(*value.put(), *variable.lpvarValue, VT_I4)))
        return std::nullopt;
    return value->lVal;
}

std::vector<COMEnumValue> readConstants(ITypeInfo* type) {
    std::vector<COMEnumValue> constants;
    const platform::TypeAttrHolder attributes(type, &ITypeInfo::GetTypeAttr);
    for (UINT index = 0; attributes && index < attributes->cVars; ++index) {
        const platform::VarDescHolder variable(type, &ITypeInfo::GetVarDesc, index);
        if (!variable) continue;
        auto name = readName(type, variable->memid, nullptr);
        const auto value = constantValue(*variable);
        if (name && value) constants.push_back({std::move(*name), *value});
    }
    return constants;
}

} // namespace

COMMemberType TypeReducer::reduce(ITypeInfo* owner, const TYPEDESC& type, Pointers pointers,
                                  bool output) {
    const TYPEDESC* reached = pointers == Pointers::Strip ? withoutPointers(&type) : &type;
    switch (reached->vt) {
    case VT_SAFEARRAY: {
        const TYPEDESC* element = withoutPointers(reached->lptdesc);
        if (!element) return COMUnsupportedType();
        return COMArrayType{element->vt, output};
    }
    case VT_USERDEFINED:
        return reduceUserDefined(owner, reached->hreftype);
    case VT_INT_PTR:
    case VT_UINT_PTR:
        return COMUnsupportedType();
    default:
        return reached->vt;
    }
}

COMMemberType TypeReducer::reduceUserDefined(ITypeInfo* owner, HREFTYPE reference) {
    if (isInterface(owner, reference)) return VARTYPE{VT_DISPATCH};
    if (auto name = readEnumeration(owner, reference)) return COMEnumerationType{std::move(*name)};
    return VARTYPE{VT_VARIANT};
}

std::optional<std::string> TypeReducer::readEnumeration(ITypeInfo* owner, HREFTYPE reference) {
    const auto type = referencedType(owner, reference);
    if (!type) return std::nullopt;
    auto name = readName(type.get(), MEMBERID_NIL, nullptr);
    if (!name || enumerations_.contains(*name)) return name;

    const auto constants = enumerationBehind(type);
    if (!constants) return std::nullopt;
    enumerations_.emplace(*name, readConstants(constants.get()));
    return name;
}

} // namespace axlink2
