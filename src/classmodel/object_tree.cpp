// The two walks over the links. Links to objects that have gone are passed over everywhere.
#include "classmodel/object_tree.h"

#include <utility>

namespace axlink2 {
namespace {

// One object of a tree that is being deleted, with what is still to be ended before it.
struct Ending {
    Ending(COMInstanceRecord& record, hos::HOSInterfacePtr object)
        : object(std::move(object)), children(std::exchange(record.children, {})),
          parents(std::exchange(record.parents, {})) {}

    hos::HOSInterfacePtr object; // null for the one that its caller ends
    ObjectLinks children;
    ObjectLinks parents;
    std::size_t nextChild = 0;
    std::size_t nextParent = 0;
};

// The next relation of an object, told to forget it; null when there is none left.
hos::HOSInterfacePtr nextRelation(Ending& ending) {
    while (ending.nextChild < ending.children.size()) {
        hos::HOSInterfacePtr child(ending.children[ending.nextChild++].object,
                                   hos::HOSReferenceType::Strong);
        if (COMInstanceRecord* record = recordOf(child)) {
            record->parents.clear();
            return child;
        }
    }
    while (ending.nextParent < ending.parents.size()) {
        const ObjectLink& link = ending.parents[ending.nextParent++];
        hos::HOSInterfacePtr parent(link.object, hos::HOSReferenceType::Strong);
        if (COMInstanceRecord* record = recordOf(parent)) {
            record->children.erase(link.key);
            return parent;
        }
    }
    return {};
}

} // namespace

void linkToOwner(const hos::HOSInterfacePtr& object, const hos::HOSInterfacePtr& owner) {
    COMInstanceRecord* record = recordOf(object);
    COMInstanceRecord* ownerRecord = recordOf(owner);
    if (!record || !ownerRecord) return;
    record->parents.add(owner, ownerRecord->children.add(object));
}

void detachFromTree(COMInstanceRecord& record) {
    if (record.parents.empty() && record.children.empty()) return;
    for (const ObjectLink& parent : record.parents)
        if (COMInstanceRecord* parentRecord = recordOf(parent.object))
            parentRecord->children.erase(parent.key);
    for (const ObjectLink& child : record.children) {
        COMInstanceRecord* childRecord = recordOf(child.object);
        if (!childRecord) continue;
        childRecord->parents.clear();
        for (const ObjectLink& parent : record.parents)
            if (COMInstanceRecord* parentRecord = recordOf(parent.object))
                parentRecord->children.add(child.object);
    }
    record.children.clear();
    record.parents.clear();
}

void deleteTree(COMInstanceRecord& record, const hos::HOSClient* client) {
    if (record.parents.empty() && record.children.empty()) return;
    // Chains may be longer than the stack is deep.
    std::vector<Ending> endings;
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
