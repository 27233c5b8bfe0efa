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

// The lists of a record, which is left without any: a walk that comes back finds nothing to do.
struct TakenLinks {
    explicit TakenLinks(COMInstanceRecord& record)
        : children(std::exchange(record.children, {})), parents(std::exchange(record.parents, {})) {
    }

    Links children;
    Links parents;
};

} // namespace

void linkToOwner(const hos::HOSInterfacePtr& object, const hos::HOSInterfacePtr& owner) {
    COMInstanceRecord* record = recordOf(object);
    COMInstanceRecord* ownerRecord = recordOf(owner);
    if (!record || !ownerRecord) return;
    ownerRecord->children.emplace_back(object, hos::HOSReferenceType::Weak);
    record->parents.emplace_back(owner, hos::HOSReferenceType::Weak);
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
                parentRecord->children.push_back(child);
    }
    record.children.clear();
    record.parents.clear();
}

void deleteTree(COMInstanceRecord& record, const hos::HOSClient* client) {
    if (record.parents.empty() && record.children.empty()) return;
    // A parent must still know this object when it is told to forget it.
    const TakenLinks links(record);
    for (const auto& child : links.children) {
        const hos::HOSInterfacePtr kept(child, hos::HOSReferenceType::Strong);
        COMInstanceRecord* childRecord = recordOf(kept);
        if (!childRecord) continue;
        childRecord->parents.clear();
        deleteTree(*childRecord, client);
        kept->destroy(hos::HOSGetPublicClient());
    }
    for (const auto& parent : links.parents) {
        const hos::HOSInterfacePtr kept(parent, hos::HOSReferenceType::Strong);
        COMInstanceRecord* parentRecord = recordOf(kept);
        if (!parentRecord) continue;
        eraseLink(parentRecord->children, record);
        deleteTree(*parentRecord, client);
        kept->destroy(client);
    }
}

} // namespace axlink2
