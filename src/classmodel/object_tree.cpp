// The two walks over the links. Links to objects that have gone are passed over everywhere.
#include "classmodel/object_tree.h"

#include <deque>
#include <new>
#include <utility>

namespace axlink2 {
namespace {

// One object of a tree that is being deleted, with what is still to be ended before it.
struct Ending {
    Ending(COMInstanceRecord& record, hos::HOSInterfacePtr object)
        : object(std::move(object)), children(std::exchange(record.children, {})),
          parents(std::exchange(record.parents, {})) {}

    hos::HOSInterfacePtr object; // null for the one that its caller ends
    ChildLinks children;
    ParentLinks parents;
    std::size_t nextParent = 0;
};

// The next relation of an object, told to forget it; null when there is none left.
hos::HOSInterfacePtr nextRelation(Ending& ending) {
    while (!ending.children.empty()) {
        hos::HOSInterfacePtr child(ending.children.takeFirst().second,
                                   hos::HOSReferenceType::Strong);
        if (COMInstanceRecord* record = recordOf(child)) {
            record->parents.clear();
            return child;
        }
    }
    while (ending.nextParent < ending.parents.size()) {
        const ParentLink& link = ending.parents[ending.nextParent++];
        hos::HOSInterfacePtr parent(link.object, hos::HOSReferenceType::Strong);
        if (COMInstanceRecord* record = recordOf(parent)) {
            record->children.erase(link.key);
            return parent;
        }
    }
    return {};
}

// What there is no memory for is left out: an end can't fail.
void copyLinks(const ChildLinks& from, ChildLinks& to) noexcept {
    try {
        for (const auto& [key, object] : from)
            to.add(object);
    } catch (const std::bad_alloc&) {
    }
}

} // namespace

void linkToOwner(const hos::HOSInterfacePtr& object, const hos::HOSInterfacePtr& owner) {
    COMInstanceRecord* record = recordOf(object);
    COMInstanceRecord* ownerRecord = recordOf(owner);
    if (!record || !ownerRecord) return;
    record->parents.reserve(record->parents.size() + 1);
    record->parents.push_back({ownerRecord->children.add(object),
                               hos::HOSInterfacePtr(owner, hos::HOSReferenceType::Weak)});
}

void detachFromTree(COMInstanceRecord& record) noexcept {
    ChildLinks children = std::exchange(record.children, {});
    for (const auto& [key, child] : children)
        if (COMInstanceRecord* childRecord = recordOf(child)) childRecord->parents.clear();
    // The last parent gets the links themselves; what a member returned has no other.
    ChildLinks* heir = nullptr;
    for (const auto& [key, parent] : record.parents) {
        COMInstanceRecord* parentRecord = recordOf(parent);
        if (!parentRecord) continue;
        parentRecord->children.erase(key);
        if (heir) copyLinks(children, *heir);
        heir = &parentRecord->children;
    }
    if (heir) heir->take(std::move(children));
    record.parents.clear();
}

void deleteTree(COMInstanceRecord& record, const hos::HOSClient* client) {
    if (record.parents.empty() && record.children.empty()) return;
    // Chains may be longer than the stack is deep.
    std::deque<Ending> endings;
    endings.emplace_back(record, hos::HOSInterfacePtr());
    while (!endings.empty()) {
        if (hos::HOSInterfacePtr relation = nextRelation(endings.back())) {
            endings.emplace_back(*recordOf(relation), relation);
            continue;
        }
        const hos::HOSInterfacePtr ended = endings.back().object;
        endings.pop_back();
        if (ended) ended->destroy(client);
    }
}

} // namespace axlink2
