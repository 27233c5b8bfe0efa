// The registry's calls over the tree that .reg files filled.
#include "platform/portable/registry.h"

#include "platform/answer.h"
#include "platform/portable/registry_tree.h"
#include "platform/portable/system.h"

#include <algorithm>
#include <set>

using platform::OleString;
using platform::OleView;
using platform::RegistryKey;
using platform::RegistryPath;
using platform::RegistryTree;

// An open key is its path: each call looks it up again.
struct HKEY__ {
    RegistryPath path;
};

namespace {

constexpr LSTATUS status(DWORD code) { return static_cast<LSTATUS>(code); }

template <class Call>
LSTATUS withoutRaising(Call&& call) {
    return platform::answer(call, status(ERROR_NOT_ENOUGH_MEMORY));
}

const OLECHAR* predefinedName(HKEY key) {
    if (key == HKEY_CLASSES_ROOT) {
        return OLESTR("HKEY_CLASSES_ROOT");
    }
    if (key == HKEY_CURRENT_USER) {
        return OLESTR("HKEY_CURRENT_USER");
    }
    if (key == HKEY_LOCAL_MACHINE) {
        return OLESTR("HKEY_LOCAL_MACHINE");
    }
    return key == HKEY_USERS ? OLESTR("HKEY_USERS") : nullptr;
}

RegistryPath pathOf(HKEY key) {
    const OLECHAR* root = predefinedName(key);
    return root ? RegistryPath{root} : key->path;
}

// The names of all subkeys, in order.
std::vector<OleString> subkeyNames(const std::vector<const RegistryKey*>& keys) {
    std::set<OleString, platform::LessNoCase> names;
    for (const RegistryKey* key : keys) {
        for (const auto& [name, child] : key->keys) {
            names.insert(name);
        }
    }
    return {names.begin(), names.end()};
}

} // namespace

extern "C" {

LSTATUS RegOpenKeyExW(HKEY key, LPCOLESTR path, DWORD, REGSAM, HKEY* opened) {
    if (!opened) {
        return status(ERROR_INVALID_PARAMETER);
    }
    *opened = nullptr;
    if (!key) {
        return status(ERROR_INVALID_HANDLE);
    }
    const OleView name = path ? OleView(path) : OleView();
    // Only the classes may be asked for from their root.
    if (name.starts_with(OLESTR('\\')) && key != HKEY_CLASSES_ROOT) {
        return status(ERROR_BAD_PATHNAME);
    }
    return withoutRaising([&] {
        RegistryPath whole = pathOf(key);
        const RegistryPath below = platform::splitRegistryPath(name);
        whole.insert(whole.end(), below.begin(), below.end());
        RegistryTree& tree = RegistryTree::instance();
        const auto lock = tree.lock();
        if (tree.find(whole).empty()) {
            return status(ERROR_FILE_NOT_FOUND);
        }
        *opened = new HKEY__{std::move(whole)};
        return status(ERROR_SUCCESS);
    });
}

LSTATUS RegOpenKeyW(HKEY key, LPCOLESTR path, HKEY* opened) {
    return RegOpenKeyExW(key, path, 0, KEY_READ, opened);
}

LSTATUS RegEnumKeyExW(HKEY key, DWORD index, LPOLESTR name, DWORD* size, DWORD*, LPOLESTR className,
                      DWORD* classSize, FILETIME* written) {
    if (!key) {
        return status(ERROR_INVALID_HANDLE);
    }
    if (!name || !size) {
        return status(ERROR_INVALID_PARAMETER);
    }
    return withoutRaising([&] {
        RegistryTree& tree = RegistryTree::instance();
        const auto lock = tree.lock();
        const auto keys = tree.find(pathOf(key));
        if (keys.empty()) {
            return status(ERROR_KEY_DELETED);
        }
        const std::vector<OleString> names = subkeyNames(keys);
        if (index >= names.size()) {
            return status(ERROR_NO_MORE_ITEMS);
        }
        const OleString& found = names[index];
        if (found.size() >= *size) {
            return status(ERROR_MORE_DATA);
        }
        found.copy(name, found.size());
        name[found.size()] = 0;
        *size = static_cast<DWORD>(found.size());
        if (className && classSize && *classSize > 0) {
            className[0] = 0;
        }
        if (classSize) {
            *classSize = 0;
        }
        if (written) {
            *written = {};
        }
        return status(ERROR_SUCCESS);
    });
}

LSTATUS RegQueryValueExW(HKEY key, LPCOLESTR name, DWORD* reserved, DWORD* type, BYTE* data,
                         DWORD* size) {
    if (!key) {
        return status(ERROR_INVALID_HANDLE);
    }
    if (reserved || (data && !size)) {
        return status(ERROR_INVALID_PARAMETER);
    }
    return withoutRaising([&] {
        RegistryTree& tree = RegistryTree::instance();
        const auto lock = tree.lock();
        const auto keys = tree.find(pathOf(key));
        if (keys.empty()) {
            return status(ERROR_KEY_DELETED);
        }
        for (const RegistryKey* found : keys) {
            const auto value = found->values.find(name ? OleView(name) : OleView());
            if (value == found->values.end()) {
                continue;
            }
            const std::vector<BYTE>& bytes = value->second.data;
            if (type) {
                *type = value->second.type;
            }
            const DWORD room = size ? *size : 0;
            if (size) {
                *size = static_cast<DWORD>(bytes.size());
            }
            if (data && room < bytes.size()) {
                return status(ERROR_MORE_DATA);
            }
            if (data) {
                std::copy(bytes.begin(), bytes.end(), data);
            }
            return status(ERROR_SUCCESS);
        }
        return status(ERROR_FILE_NOT_FOUND);
    });
}

LSTATUS RegCloseKey(HKEY key) {
    if (!key) {
        return status(ERROR_INVALID_HANDLE);
    }
    if (!predefinedName(key)) {
        delete key;
    }
    return status(ERROR_SUCCESS);
}
}
