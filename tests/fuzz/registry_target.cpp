// Text of .reg files: refused with file and line, or brought in and readable.
#include "fuzz/fuzz_target.h"
#include "fuzz/memory_file.h"
#include "platform/com.h"
#include "platform/registry_changes.h"
#include "platform/registry_files.h"

#include <cstring>

using namespace fuzz;

namespace {

std::size_t keysBelow(HKEY key, int depth) {
    std::size_t count = 0;
    OLECHAR name[512];
    for (DWORD index = 0;; ++index) {
        DWORD size = std::size(name);
        const LSTATUS status =
            RegEnumKeyExW(key, index, name, &size, nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_NO_MORE_ITEMS) return count;
        if (status == ERROR_MORE_DATA) continue;
        if (status != ERROR_SUCCESS) fail("a key that can't be listed");
        ++count;
        HKEY inner = nullptr;
        if (depth == 0 || RegOpenKeyExW(key, name, 0, KEY_READ, &inner) != ERROR_SUCCESS) continue;
        BYTE data[64];
        DWORD bytes = sizeof data, type = 0;
        RegQueryValueExW(inner, nullptr, nullptr, &type, data, &bytes);
        count += keysBelow(inner, depth - 1);
        RegCloseKey(inner);
    }
}

std::size_t allKeys() {
    std::size_t count = 0;
    for (HKEY root : {HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE, HKEY_USERS})
        count += keysBelow(root, 12);
    return count;
}

void lookUp() {
    CLSID clsid{};
    CLSIDFromProgID(OLESTR("A.B"), &clsid);
    LPOLESTR progId = nullptr;
    if (SUCCEEDED(ProgIDFromCLSID(clsid, &progId))) CoTaskMemFree(progId);
    ITypeLib* library = nullptr;
    if (SUCCEEDED(LoadRegTypeLib(clsid, 1, 0, 0, &library))) library->Release();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    prepare();
    const NothingLeft check;
    const MemoryFile file({data, size});
    if (!file) return 0;
    const std::string start = file.path().string() + ":";
    try {
        platform::loadRegistryFile(file.path());
        allKeys();
        lookUp();
        platform::loadRegistryFile(file.path());
        allKeys();
    } catch (const platform::RegistryFileError& error) {
        if (!std::string_view(error.what()).starts_with(start)) fail("an error without its place");
    }
    platform::clearRegistry();
    return 0;
}
