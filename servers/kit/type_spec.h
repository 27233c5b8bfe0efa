// What a type library is to say, as plain data. Names are UTF-8.
#pragma once

#include "platform/com.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kit {

// One TYPEDESC.
struct TypeSpec {
    VARTYPE vt = VT_VOID;
    std::vector<TypeSpec> inner = {};        // what a VT_PTR points at, what an array holds
    std::string name = {};                   // VT_USERDEFINED: a type of the library, by name
    const void* cppType = nullptr;           // VT_USERDEFINED: by the key of its C++ enumeration
    std::vector<SAFEARRAYBOUND> bounds = {}; // VT_CARRAY

    TypeSpec() = default;
    TypeSpec(VARTYPE type) : vt(type) {}
};

inline TypeSpec typeOf(VARTYPE vt, TypeSpec inner) {
    TypeSpec result(vt);
    result.inner.push_back(std::move(inner));
    return result;
}
inline TypeSpec pointerTo(TypeSpec target) { return typeOf(VT_PTR, std::move(target)); }
inline TypeSpec safeArrayOf(TypeSpec element) { return typeOf(VT_SAFEARRAY, std::move(element)); }
inline TypeSpec fixedArrayOf(TypeSpec element, std::vector<SAFEARRAYBOUND> bounds) {
    TypeSpec result = typeOf(VT_CARRAY, std::move(element));
    result.bounds = std::move(bounds);
    return result;
}
inline TypeSpec userType(std::string name) {
    TypeSpec result(VT_USERDEFINED);
    result.name = std::move(name);
    return result;
}

// A parameter of a function, or a field of a record.
struct ParamSpec {
    std::string name;
    TypeSpec type;
    WORD flags = PARAMFLAG_FIN;
};

// One FUNCDESC. A put function's last parameter has no name in the library.
struct FunctionSpec {
    std::string name;
    MEMBERID dispid = DISPID_UNKNOWN; // DISPID_UNKNOWN: the builder gives the next free number
    INVOKEKIND kind = INVOKE_FUNC;
    TypeSpec result = {};
    std::vector<ParamSpec> params = {};
    WORD flags = 0;
    std::optional<SHORT> optionalCount = std::nullopt; // when it isn't to be counted from the flags
};

// One VARDESC of a dispinterface.
struct VariableSpec {
    std::string name;
    MEMBERID dispid = DISPID_UNKNOWN;
    TypeSpec type = {};
    WORD flags = 0;
};

// A constant of an enumeration, stored as a VARIANT of the kind `vt`.
struct ConstantSpec {
    std::string name;
    LONGLONG value = 0;
    VARTYPE vt = VT_I4;
};

// An enumeration (constants), a record (fields) or an alias (target).
struct UserTypeSpec {
    std::string name;
    TYPEKIND kind = TKIND_ENUM;
    const void* cppType = nullptr;
    std::vector<ConstantSpec> constants = {};
    std::vector<ParamSpec> fields = {};
    TypeSpec target = {};
};

// An interface; without a base it derives from IDispatch.
struct InterfaceSpec {
    std::string name;
    IID iid{};
    TYPEKIND kind = TKIND_DISPATCH;
    std::string base = {};
    std::vector<FunctionSpec> functions = {};
    std::vector<VariableSpec> variables = {};
};

struct ImplementedSpec {
    std::string interfaceName;
    INT flags = 0; // IMPLTYPEFLAG_...
};

struct CoclassSpec {
    std::string name;
    CLSID clsid{};
    std::vector<ImplementedSpec> interfaces = {};
};

// The types appear in the library in this order.
struct LibrarySpec {
    std::string name;
    GUID guid{};
    std::vector<UserTypeSpec> types = {};
    std::vector<InterfaceSpec> interfaces = {};
    std::vector<CoclassSpec> coclasses = {};
};

} // namespace kit
