// The host's own message keys, and how the host raises and warns with them.
#pragma once

#include "host/exception.h"
#include "host/message.h"

#include <cstddef>
#include <initializer_list>
#include <iterator>

// KEY(component, key, identifier of the error, number of arguments)
// clang-format off
#define VELMAR_HOST_MESSAGES(KEY)                                                                  \
    KEY("VELMAR", maxlhs, "VELMAR:maxlhs", 0)                                                      \
    KEY("VELMAR", maxrhs, "VELMAR:maxrhs", 0)                                                      \
    KEY("VELMAR", minrhs, "VELMAR:minrhs", 0)                                                      \
    KEY("VELMAR", badsubscript, "VELMAR:badsubscript", 2)                                          \
    KEY("VELMAR", UndefinedFunction, "VELMAR:UndefinedFunction", 1)                                \
    KEY("VELMAR", UndefinedMember, "VELMAR:UndefinedFunction", 2)                                  \
    KEY("VELMAR", NoMatchingSignature, "VELMAR:NoMatchingSignature", 2)                            \
    KEY("VELMAR", TooManyOutputs, "VELMAR:maxlhs", 2)                                              \
    KEY("VELMAR", UnknownOption, "VELMAR:UnknownOption", 3)                                        \
    KEY("VELMAR", OutputLost, "VELMAR:OutputLost", 0)                                              \
    KEY("VELMAR:array", NullArray, "VELMAR:array:NullArray", 1)                                    \
    KEY("VELMAR:array", WrongArrayClass, "VELMAR:array:WrongClass", 2)                             \
    KEY("VELMAR:array", NoSuchClass, "VELMAR:array:NoSuchClass", 1)                                \
    KEY("VELMAR:array", WrongConversion, "VELMAR:array:WrongConversion", 2)                        \
    KEY("VELMAR:type", UnknownType, "VELMAR:type:UnknownType", 1)                                  \
    KEY("VELMAR:class", ReadOnlyProperty, "VELMAR:class:ReadOnlyProperty", 2)                      \
    KEY("VELMAR:class", WriteOnlyProperty, "VELMAR:class:WriteOnlyProperty", 2)                    \
    KEY("VELMAR:class", PropertyInputs, "VELMAR:class:PropertyInputs", 1)                          \
    KEY("VELMAR:class", UndefinedEvent, "VELMAR:class:UndefinedEvent", 2)                          \
    KEY("VELMAR:class", EventAccess, "VELMAR:class:EventAccess", 2)                                \
    KEY("VELMAR:class", AbstractClass, "VELMAR:class:AbstractClass", 1)                            \
    KEY("VELMAR:class", NoConstructor, "VELMAR:class:NoConstructor", 1)                            \
    KEY("VELMAR:class", ClassIsClosed, "VELMAR:class:ClassIsClosed", 2)                            \
    KEY("VELMAR:class", PropertyExists, "VELMAR:class:PropertyExists", 2)                          \
    KEY("VELMAR:class", NotAnObject, "VELMAR:class:NotAnObject", 2)                                \
    KEY("VELMAR:class", NotOneObject, "VELMAR:class:NotOneObject", 2)                              \
    KEY("VELMAR:class", ListenerFailed, "VELMAR:class:ListenerFailed", 3)                          \
    KEY("VELMAR:class", EndFailed, "VELMAR:class:EndFailed", 2)
// clang-format on

namespace velmar {

struct HostKey {
    const char* component;
    const char* key;
    const char* identifier;
    std::size_t arguments;
};

namespace keys {

#define VELMAR_KEY(component, key, identifier, count)                                              \
    inline constexpr HostKey key{component, #key, identifier, count};
VELMAR_HOST_MESSAGES(VELMAR_KEY)
#undef VELMAR_KEY

#define VELMAR_KEY(component, key, identifier, count) key,
inline constexpr HostKey all[] = {VELMAR_HOST_MESSAGES(VELMAR_KEY)};
#undef VELMAR_KEY

} // namespace keys

// A message of one of the keys above.
struct HostMessage final : hmsgcore::BaseMsgID {
    HostMessage(const HostKey& key, std::vector<hmsgcore::MessageArgument> arguments)
        : BaseMsgID(key.component, key.key, std::move(arguments)) {}
};

// Throws the error of that key; arguments in catalogue order.
template <class... Arguments>
[[noreturn]] void fail(const HostKey& key, const Arguments&... arguments) {
    hmsgcore::raise(std::string(key.identifier), HostMessage(key, {arguments...}));
}

// Warns with the key's identifier.
template <class... Arguments>
void warn(const HostKey& key, const Arguments&... arguments) {
    hxWarningMsgId(std::string(key.identifier), HostMessage(key, {arguments...}));
}

} // namespace velmar
