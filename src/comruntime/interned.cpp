// Interned ids: the host's operations don't take empty texts, the ids of which are empty.
#include "comruntime/interned.h"

#include <string>

namespace axlink2 {

hos::id internedId(std::string_view name) {
    return name.empty() ? hos::id() : hos::internal::makeInterned(std::string(name));
}

hos::id knownId(const char* name) {
    return name && *name ? hos::internal::findInterned(name) : hos::id();
}

} // namespace axlink2
