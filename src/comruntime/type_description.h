// A server's type information as plain data: what the generated class will have.
#pragma once

#include "platform/com.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace axlink2 {

// A SAFEARRAY; `output` is false for an array that only goes in.
struct COMArrayType {
    VARTYPE elementType;
    bool output;
};

// An enumeration, by its key in `COMTypeDescription::enumerations`.
struct COMEnumerationType {
    std::string name;
};

// A type that makes a member unusable.
struct COMUnsupportedType {};

// A COM type after reduction; the first alternative is a plain VARTYPE.
using COMMemberType = std::variant<VARTYPE, COMArrayType, COMEnumerationType, COMUnsupportedType>;

inline bool isUnsupported(const COMMemberType& type) {
    return std::holds_alternative<COMUnsupportedType>(type);
}

struct COMEnumValue {
    std::string name;
    std::int32_t value;
};

// One way to call a member. The lists run left to right and hold no [retval] parameter.
struct COMMemberSignature {
    std::int64_t optionalCount = 0;
    bool requiresInput = false; // at least one parameter is input and not optional
    COMMemberType returnType = VARTYPE{VT_EMPTY};
    std::vector<COMMemberType> parameterTypes;
    std::vector<bool> byReference;
    std::vector<std::uint16_t> parameterFlags;
    std::vector<std::string> parameterNames; // may be shorter than the others
};

// What stands under one DISPID.
struct COMMemberEntry {
    explicit COMMemberEntry(std::string name) : name(std::move(name)) {}

    // A method, or a property that can't be read without an argument.
    bool isMethod() const;
    // A property with a half that needs no argument.
    bool isProperty() const;
    COMMemberType resultType() const;
    // Stores the signature of that INVOKEKIND in place of what was there.
    void set(int invokeKind, std::unique_ptr<COMMemberSignature> signature);

    std::string name;
    std::unique_ptr<COMMemberSignature> method;
    std::unique_ptr<COMMemberSignature> propertyGet;
    std::unique_ptr<COMMemberSignature> propertyPut;
    std::unique_ptr<COMMemberSignature> propertyPutRef;
};

using COMMemberMap = std::map<std::int32_t, std::unique_ptr<COMMemberEntry>>;

// Everything that a class is made from. Holds no COM object.
class COMTypeDescription {
  public:
    // Reads `typeInfo`; `server`, when given, decides which members exist by name. Both stay the
    // caller's. What can't be read is left out.
    COMTypeDescription(ITypeInfo* typeInfo, IDispatch* server);

    // Null for a server without type information, or with more than one.
    static std::unique_ptr<COMTypeDescription> ofServer(IDispatch* server);

    GUID sourceInterfaceIID{};
    COMMemberMap members;
    std::map<std::string, std::vector<COMEnumValue>> enumerations;
    COMMemberMap events;
};

} // namespace axlink2
