// Names and signatures of all built-in methods, as data.
#pragma once

#include "builtins/builtin_method.h"

namespace axlink2::declarations {

// clang-format off
inline constexpr SignatureStep classInput = {SignatureStep::Input, ownClass};
inline constexpr SignatureStep variableInput = {SignatureStep::VariableInput};
inline constexpr SignatureStep variableOutput = {SignatureStep::VariableOutput};

constexpr SignatureStep input(const char* type, const char* label = nullptr) {
    return {SignatureStep::Input, type, label};
}
constexpr SignatureStep output(const char* type) { return {SignatureStep::Output, type}; }
constexpr SignatureStep optionalInputs(std::size_t count) {
    return {SignatureStep::OptionalInputs, nullptr, nullptr, count};
}

// The steps of a member, then its declaration. One that yields leaves calls to the server's own
// method of that name where that fits; the others come first, because programs need them of every
// object.
#define AXLINK2_DECLARE(id, name, precedence, ...)                                                 \
    inline constexpr SignatureStep id##Steps[] = {__VA_ARGS__};                                    \
    inline constexpr BuiltinDeclaration id = {name, hos::Precedence::precedence, id##Steps}
#define AXLINK2_BUILTIN(id, name, ...) AXLINK2_DECLARE(id, name, First, __VA_ARGS__)
#define AXLINK2_YIELDING(id, name, ...) AXLINK2_DECLARE(id, name, Last, __VA_ARGS__)

AXLINK2_BUILTIN(release, "release", classInput);
AXLINK2_BUILTIN(deleteObject, "delete", classInput, input("any"), variableInput);
AXLINK2_BUILTIN(events, "events", classInput, output("any"));
AXLINK2_BUILTIN(invoke, "invoke", classInput, optionalInputs(2), input("asciiString"),
                input("any"), variableInput, output("any"), variableOutput);
AXLINK2_BUILTIN(addproperty, "addproperty", classInput, input("asciiString"));
AXLINK2_BUILTIN(deleteproperty, "deleteproperty", classInput, input("asciiString"));
AXLINK2_BUILTIN(get1, "get", input("handle scalar"), output("struct"));
AXLINK2_BUILTIN(get2, "get", input("handle scalar"), input("any"), output("any"));
AXLINK2_BUILTIN(get3, "get", input("handle vector"), input("asciiString"), output("cell"));
AXLINK2_BUILTIN(get4, "get", input("handle scalar"), input("asciiString"),
                input("any", "varargin"), variableInput, output("cell"));
AXLINK2_BUILTIN(set1, "set", input("handle scalar"), output("struct"));
AXLINK2_BUILTIN(set2, "set", input("handle scalar"), input("any"), input("any", "varargin"),
                variableInput, output("any"));
AXLINK2_BUILTIN(set3, "set", input("handle vector"), input("asciiString"), input("any"),
                output("any"));
AXLINK2_BUILTIN(methods, "methods", classInput, input("any"), optionalInputs(1), output("any"),
                variableOutput);
AXLINK2_BUILTIN(isprop, "isprop", classInput, variableInput, input("any"),
                output("logical scalar"));
AXLINK2_BUILTIN(setappdata, "setappdata", classInput, input("asciiString"), input("any"));
AXLINK2_BUILTIN(getappdata, "getappdata", classInput, optionalInputs(1), input("asciiString"),
                output("any"));
AXLINK2_BUILTIN(rmappdata, "rmappdata", classInput, input("asciiString"));
AXLINK2_BUILTIN(isappdata, "isappdata", classInput, input("asciiString"),
                output("logical scalar"));

AXLINK2_BUILTIN(constructor, nullptr, input("asciiString"), input("unicodeString"),
                input("asciiString"), output(ownClass));
AXLINK2_YIELDING(save, "save", classInput, input("unicodeString"));
AXLINK2_YIELDING(load, "load", classInput, input("unicodeString"));
AXLINK2_YIELDING(move, "move", classInput, optionalInputs(2), input("double"),
                 input("logical scalar"), output("double"));
AXLINK2_YIELDING(send, "send", classInput, output("any"));
AXLINK2_YIELDING(propedit, "propedit", classInput);
AXLINK2_YIELDING(interfaces, "interfaces", classInput, output("cell"));

AXLINK2_YIELDING(saveobj, "saveobj", classInput, output("any"));
AXLINK2_YIELDING(loadobj, "loadobj", classInput, output("any"));

#undef AXLINK2_YIELDING
#undef AXLINK2_BUILTIN
#undef AXLINK2_DECLARE
// clang-format on

} // namespace axlink2::declarations
