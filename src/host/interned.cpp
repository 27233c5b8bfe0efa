// The one copy of every name.
#include "host/interned.h"

#include <string_view>
#include <unordered_set>

namespace hos::internal {
namespace {

struct NameHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view name) const {
        return std::hash<std::string_view>()(name);
    }
};

// Never destroyed: ids outlive every other static.
auto& names() {
    static auto& set = *new std::unordered_set<std::string, NameHash, std::equal_to<>>;
    return set;
}

} // namespace

id makeInterned(std::string&& name) { return id(&*names().insert(std::move(name)).first); }

id findInterned(const char* name) {
    if (!name) return {};
    const auto at = names().find(std::string_view(name));
    return at == names().end() ? id() : id(&*at);
}

} // namespace hos::internal
