// Storages: folders of streams and further storages, with or without transactions of their own.
#pragma once

#include "platform/portable/persistence.h"
#include "platform/portable/storage_tree.h"

#include <functional>

namespace platform {

struct StorageOpening {
    OleString name;
    DWORD mode = STGM_READ;
    int depth = 0;
    std::shared_ptr<StorageEntry> entry; // what is opened
    // Where changes go beyond the entry: called with every new content before it becomes the
    // entry's, and able to refuse it. Only a root has one; it lives as long as the storage.
    std::function<HRESULT(const StorageEntry&)> write;
    std::shared_ptr<Lifetime> lifetime = std::make_shared<Lifetime>();
};

// With STGM_TRANSACTED, and always where `write` is given, the storage works on a copy until it
// commits; without STGM_TRANSACTED its last release commits too. Raises std::bad_alloc.
ComPtr<IStorage> makeStorage(StorageOpening opening);

// What EnumElements gives.
struct ElementDescription {
    OleString name;
    STGTY type;
    std::size_t size;
    CLSID clsid;
};
ComPtr<IEnumSTATSTG>
makeElementEnumerator(std::shared_ptr<const std::vector<ElementDescription>> elements,
                      std::size_t position = 0);

// Copies the elements of one storage into another, over what is there. `excluded` may be null.
HRESULT copyElements(IStorage* source, IStorage* target, SNB excluded, bool withStorages,
                     bool withStreams);

// Copies one element, of that STGTY, into another storage under that name. With STGM_CREATE in
// `creating` it goes over what is there; else STG_E_FILEALREADYEXISTS.
HRESULT copyElement(IStorage* source, const OLECHAR* name, DWORD type, IStorage* target,
                    const OLECHAR* newName, DWORD creating);

} // namespace platform
