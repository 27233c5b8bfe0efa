// The registry's tree: look-up through the merged view of the classes, and changes.
#include "platform/portable/registry_tree.h"

namespace platform {
namespace {

const OleView classesRoot = OLESTR("HKEY_CLASSES_ROOT");

// Where the merged classes live below one of the two roots.
RegistryPath classesBelow(OleView root, const RegistryPath& path) {
    RegistryPath result{OleString(root), OLESTR("Software"), OLESTR("Classes")};
    result.insert(result.end(), path.begin() + 1, path.end());
    return result;
}

bool isMerged(const RegistryPath& path) {
    return !path.empty() && equalNoCase(path.front(), classesRoot);
}

} // namespace

RegistryTree& RegistryTree::instance() {
    static RegistryTree tree;
    return tree;
}

const RegistryKey* RegistryTree::findPlain(const RegistryPath& path) const {
    const RegistryKey* key = &root_;
    for (std::size_t i = 0; i < path.size(); ++i) {
        const auto found = key->keys.find(path[i]);
        if (found == key->keys.end()) {
            // The roots are there before anything is loaded.
            static const RegistryKey empty;
            return i == 0 && path.size() == 1 ? &empty : nullptr;
        }
        key = &found->second;
    }
    return key;
}

std::vector<const RegistryKey*> RegistryTree::find(const RegistryPath& path) const {
    std::vector<const RegistryKey*> found;
    const auto add = [&](const RegistryPath& plain) {
        if (const RegistryKey* key = findPlain(plain)) {
            found.push_back(key);
        }
    };
    if (isMerged(path)) {
        add(classesBelow(OLESTR("HKEY_CURRENT_USER"), path));
        add(classesBelow(OLESTR("HKEY_LOCAL_MACHINE"), path));
        if (found.empty() && path.size() == 1) {
            add(path);
        }
    } else {
        add(path);
    }
    return found;
}

// What is written to the merged classes goes where the key is already, else to the machine.
RegistryPath RegistryTree::writablePath(const RegistryPath& path) const {
    if (!isMerged(path)) {
        return path;
    }
    RegistryPath users = classesBelow(OLESTR("HKEY_CURRENT_USER"), path);
    return findPlain(users) ? users : classesBelow(OLESTR("HKEY_LOCAL_MACHINE"), path);
}

RegistryKey& RegistryTree::make(const RegistryPath& path) {
    RegistryKey* key = &root_;
    for (const OleString& name : path) {
        key = &key->keys[name];
    }
    return *key;
}

void RegistryTree::remove(const RegistryPath& path) {
    RegistryKey* key = &root_;
    for (std::size_t i = 0; i + 1 < path.size(); ++i) {
        const auto found = key->keys.find(path[i]);
        if (found == key->keys.end()) {
            return;
        }
        key = &found->second;
    }
    key->keys.erase(path.back());
}

void RegistryTree::apply(const std::vector<RegistryChange>& changes) {
    // A failed allocation half-way must leave nothing behind, so the changes go to a copy.
    RegistryTree changed;
    changed.root_ = root_;
    RegistryKey* key = nullptr;
    for (const RegistryChange& change : changes) {
        if (const auto* keyChange = std::get_if<KeyChange>(&change)) {
            const RegistryPath path = changed.writablePath(keyChange->path);
            if (keyChange->remove) {
                changed.remove(path);
                key = nullptr;
            } else {
                key = &changed.make(path);
            }
            continue;
        }
        const auto& valueChange = std::get<ValueChange>(change);
        if (valueChange.value) {
            key->values[valueChange.name] = *valueChange.value;
        } else {
            key->values.erase(valueChange.name);
        }
    }
    std::swap(root_, changed.root_);
}

void RegistryTree::clear() { root_ = {}; }

} // namespace platform
