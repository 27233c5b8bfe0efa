// Loading a module from its shared library.
#include "host/embedding.h"
#include "platform/shared_library.h"

#include <set>
#include <stdexcept>
#include <utility>

namespace velmar {
namespace {

using BuiltinFunction = void(int, harray::unique_array*, int, const hxArray* const*);

// The decorated names of the module's builtin functions.
constexpr std::pair<const char*, const char*> builtins[] = {
    {"actxserver", "_ZN4COM210actxserverEiPSt10unique_ptrI7hxArrayN6harray6detail17hxDestroy_"
                   "deleterEEiPKPKS1_"},
    {"actxGetRunningServer", "_ZN4COM220actxGetRunningServerEiPSt10unique_ptrI7hxArrayN6harray6"
                             "detail17hxDestroy_deleterEEiPKPKS1_"},
};

template <class Symbol>
Symbol* require(const platform::SharedLibrary& library, const std::filesystem::path& file,
                const char* symbol, const char* name) {
    Symbol* found = library.find<Symbol>(symbol);
    if (!found)
        throw std::runtime_error("'" + file.string() + "' is not a module: it has no function '" +
                                 name + "'.");
    return found;
}

} // namespace

void loadModule(const std::filesystem::path& file) {
    static auto& loaded = *new std::set<std::filesystem::path>;
    std::error_code unresolved;
    std::filesystem::path resolved = std::filesystem::weakly_canonical(file, unresolved);
    if (unresolved) resolved = file;
    if (loaded.contains(resolved)) return;

    platform::SharedLibrary library(resolved);
    if (!library)
        throw std::runtime_error("The module '" + file.string() +
                                 "' could not be loaded: " + library.error());
    auto* registration = require<void()>(library, file, "RegisterAxlink2", "RegisterAxlink2");
    std::vector<std::pair<const char*, BuiltinFunction*>> found;
    for (const auto& [name, symbol] : builtins)
        found.emplace_back(name, require<BuiltinFunction>(library, file, symbol, name));
    // What a registration leaves behind points into the library, also when it fails.
    library.keep();
    registration();
    for (const auto& [name, function] : found)
        defineFunction(name, function);
    loaded.insert(resolved);
}

} // namespace velmar
