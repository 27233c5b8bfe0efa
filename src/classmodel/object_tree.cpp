// The two walks over the links. Links to objects that have gone are passed over everywhere.
#include "classmodel/object_tree.h"

#include <algorithm>
#include <utility>

namespace axlink2 {
namespace {

using Links = std::vector<hos::HOSInterfacePtr>;

void eraseLink(Links& links, const COMInstanceRecord& record) {
    const auto found = std::find_if(links.begin(), links.end(),
                                    [&](const auto& link) { return recordOf(link) == &record; });
    if (found != links.end()) links.erase(found);
}

// Objects that have gone leave their links behind; before a list grows they are swept out.
void addLink(Links& links, const hos::HOSInterfacePtr& object) {
    if (links.size() == links.capacity())
        std::erase_if(links, [](const auto& link) { return !link; });
    links.emplace_back(object, hos::HOSReferenceType::Weak);
}

// One object of a tree that is being deleted, with what is still to be ended before it.
struct Ending {
    Ending(COMInstanceRecord& record, hos::HOSInterfacePtr object)
        : record(&record), object(std::move(object)), children(std::exchange(record.children, {})),
          parents(std::exchange(record.parents, {})) {}

    COMInstanceRecord* record;
    hos::HOSInterfacePtr object; // null for the one that its caller ends
    Links children;
    Links parents;
    std::size_t nextChild = 0;
    std::size_t nextParent = 0;
};

// The next relation of an object, told to forget it; null when there is none left.
hos::HOSInterfacePtr nextRelation(Ending& ending) {
    while (ending.nextChild < ending.children.size()) {
        const hos::HOSInterfacePtr child(ending.children[ending.nextChild++],
                                         hos::HOSReferenceType::Strong);
        if (COMInstanceRecord* record = recordOf(child)) {
            record->parents.clear();
            return child;
        }
    }
    while (ending.nextParent < ending.parents.size()) {
        const hos::HOSInterfacePtr parent(ending.parents[ending.nextParent++],
                                          hos::HOSReferenceType::Strong);
        if (COMInstanceRecord* record = recordOf(parent)) {
            eraseLink(record->children, *ending.record);
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
    addLink(ownerRecord->children, object);
    addLink(record->parents, owner);
}

void detachFromTree(COMInstanceRecord& record) {
    if (record.parents.empty() && record.children.empty()) return;
    for (const auto& parent : record.parents)
        if (COMInstanceRecord* parentRecord = recordOf(parent))
            eraseLink(parentRecord->children, record);
    for (const auto& child : record.children) {
        COMInstanceRecord* childRecord = recordOf(child);
        if (!childRecord) continue;
        childRecord->parents.clear();
        for (const auto& parent : record.parents)
            if (COMInstanceRecord* parentRecord = recordOf(parent))
                addLink(parentRecord->children, child);
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
